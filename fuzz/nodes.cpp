// Any file as nodes.xml: both ways of reading it agree, and a tree that was written is read as the same tree.

#include "opmode/keeping/nodes_file.h"
#include "opmode/operational_mode.h"
#include "support/environment.h"
#include "support/manual_timers.h"
#include "support/recorded_line.h"
#include "support/require.h"

#include <QTemporaryFile>

using namespace ktr;

namespace {

struct Node
{
    std::string key;
    std::string text;
    std::int32_t colour;
    std::optional<StationAttributes> station;
    bool operator==(const Node &) const = default;
};

std::optional<std::vector<Node>> nodesOf(const QByteArray &document)
{
    std::vector<Node> nodes;
    QStringList remarks;
    const Status read = readNodes(document, remarks, [&nodes](const StoredNode &element) {
        nodes.push_back({std::string(element.key), std::string(element.text), element.colour,
                         element.station != nullptr ? std::optional(*element.station) : std::nullopt});
    });
    fuzz::require(read || nodes.empty(), "a file that cannot be read gives no nodes");
    return read ? std::optional(nodes) : std::nullopt;
}

/// The document of the tree that the operational mode makes of a document.
QByteArray opened(const QByteArray &document, const QString &path)
{
    QFile file(path);
    fuzz::require(file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(document) >= 0,
                  "the file is there");
    file.close();
    test::ManualTimers timers;
    OperationalMode mode({test::fixedEnvironment(), timers,
                          [] { return std::make_unique<test::RecordedLine>(); }, [] {},
                          test::manualCallbackTimers(timers)},
                         stationCaptions({}));
    (void)mode.open(path, OperationalMode::Use::Watch); // a part of it may be in the tree all the same
    for (int row = 0; row < mode.tree().rowCount(); ++row) {
        const QModelIndex station = mode.tree().index(row, 0);
        fuzz::require(mode.tree().find(station.data(StationTree::KeyRole).toString()) == station,
                      "a station is found by its key");
    }
    return writeNodes(mode.tree().nodes(),
                      [&mode](const QString &kennung) { return mode.attributes(kennung); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray document(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const auto nodes = nodesOf(document);
    if (document.startsWith("<KTR>")) {
        // A blank behind the end keeps the fast reader, which knows one form only, from reading it.
        fuzz::require(nodesOf(document + '\n') == nodes, "both readers read the same");
    }
    if (!nodes) {
        return 0;
    }
    static QTemporaryFile file(QStringLiteral("/dev/shm/fuzz-nodes"));
    fuzz::require(file.isOpen() || file.open(), "a file can be made");
    const QByteArray written = opened(document, file.fileName());
    fuzz::require(nodesOf(written).has_value(), "nodes that were written can be read");
    fuzz::require(opened(written, file.fileName()) == written, "nodes that were written are read again");
    return 0;
}

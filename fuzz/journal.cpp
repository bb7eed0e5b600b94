// Any bytes as the records of the journal that the version before kept, and changes in any order as a tree
// that can be saved.
//
//     a t c r s p    key=text=number of a change: a node added, its text, colour, removal, a station, a
//     repetition x              bytes as the content of a record j              bytes as records

#include "opmode/keeping/earlier/journal_record.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/node_texts.h"
#include "opmode/tree/station_tree_loader.h"
#include "support/require.h"
#include "support/script.h"

using namespace ktr;

namespace {

using What = NodeChange::What;

std::optional<NodeChange> changeOfStep(const fuzz::Step &step)
{
    constexpr std::string_view letters = "atcrsp";
    const std::size_t what = letters.find(step.what);
    if (what == std::string_view::npos) {
        return std::nullopt;
    }
    const QStringList fields = QString::fromUtf8(step.bytes).split(u'=');
    NodeChange change;
    change.what = static_cast<What>(what + 1);
    change.key = storedText(fields.value(0));
    if (change.what == What::Added || change.what == What::Text) {
        change.text = storedText(fields.value(1));
    }
    const int number = fields.value(2).toInt();
    change.colour = number;
    change.moment = number;
    change.count = number;
    if (change.what == What::Repeated) {
        change.raised = number;
    } else if (change.what == What::Station) {
        change.station = {number % 2 != 0, {fields.value(1), number, {}, 1}, fields.value(1), number > 0};
    }
    return change;
}

void checkBytes(const QByteArray &bytes)
{
    for (JournalRecordReader record(bytes); record.next();) {
        fuzz::require(record.start() >= 0 && record.end() > record.start() && record.end() <= bytes.size(),
                      "a record lies in the journal");
        changeOf(record.content());
    }
    changeOf(bytes);
    keysOf(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

void replay(const std::vector<NodeChange> &changes)
{
    StationTree tree(stationCaptions({}));
    {
        StationTreeLoader loader(tree);
        loader.load("A", "A", StationTree::normalColour);
        loader.load("A/meldung/+49 --> M,1", "+49 --> M,1", StationTree::alarmColour);
        for (const NodeChange &change : changes) {
            loader.replay(change);
        }
    }
    const QByteArray written = writeNodes(tree.nodes(), [](const QString &) { return StationAttributes(); });
    std::size_t nodes = 0;
    QStringList remarks;
    const Status read = readNodes(written, remarks, [&nodes](const StoredNode &) { ++nodes; });
    fuzz::require(read && remarks.isEmpty() && nodes == tree.nodes().count(), "the tree can be saved");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::vector<NodeChange> changes;
    for (const fuzz::Step &step : fuzz::stepsOf(data, size)) {
        if (const auto change = changeOfStep(step)) {
            changes.push_back(*change);
        } else {
            checkBytes(step.bytes);
        }
    }
    replay(changes);
    return 0;
}

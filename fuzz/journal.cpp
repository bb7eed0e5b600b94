// Any changes as records of a journal: they are read as they were written, a torn journal gives those before
// the tear, and the tree that they make can be saved. Any bytes as records.
//
//     a t c r s p    key=text=number of a record: a node added, its text, colour, removal, a station, a
//     repetition m              the mark that a file was begun x              bytes as the content of a
//     record j              bytes as a journal

#include "opmode/keeping/journal_file.h"
#include "opmode/keeping/journal_record.h"
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

std::vector<NodeChange> changesOf(QByteArrayView records)
{
    std::vector<NodeChange> changes;
    for (RecordReader record(records); record.next();) {
        fuzz::require(record.start() >= 0 && record.size() > 0 &&
                          record.start() + record.size() <= records.size(),
                      "a record lies in the journal");
        subjectOf(record.content());
        if (const auto change = changeOf(record.content())) {
            changes.push_back(*change);
        }
    }
    return changes;
}

void checkBytes(const QByteArray &bytes)
{
    changesOf(bytes);
    subjectOf(bytes);
    JournalFile::partFor(bytes, 0);
    if (const auto change = changeOf(bytes)) {
        QByteArray record;
        putRecord(record, *change);
        fuzz::require(changesOf(record) == std::vector{*change}, "a change is read as it was written");
    }
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
    QByteArray records;
    std::vector<NodeChange> written;
    std::vector<qsizetype> ends;
    for (const fuzz::Step &step : fuzz::stepsOf(data, size)) {
        if (const auto change = changeOfStep(step)) {
            written.push_back(*change);
        } else if (step.what == 'm') {
            written.push_back(savedMark(static_cast<quint64>(step.number(3)), {{"A", "B"}}));
        } else {
            checkBytes(step.bytes);
            continue;
        }
        putRecord(records, written.back());
        ends.push_back(records.size());
    }
    fuzz::require(changesOf(records) == written, "changes are read as they were written");
    for (std::size_t torn = 0; torn < ends.size(); ++torn) {
        const QByteArrayView left = QByteArrayView(records).first(ends[torn] - 1);
        fuzz::require(changesOf(left).size() == torn, "a torn journal has what was before the tear");
    }
    for (quint64 base = 0; base < 4; ++base) {
        if (const auto behind = recordsBehindMark(records, base)) {
            replay(changesOf(*behind));
        }
    }
    replay(written);
    return 0;
}

#include "opmode/keeping/earlier/earlier_files.h"

#include "opmode/keeping/checksum.h"
#include "opmode/keeping/earlier/byte_fields.h"
#include "opmode/keeping/earlier/journal_record.h"
#include "platform/environment.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace ktr {

namespace {

// The first eight bytes of each of the files. The file of times had a checksum of all its records behind them
// at first, and their number later.
constexpr quint64 journalBeginning = 0x3352'4E4A'5254'4BFF;
constexpr quint64 timesBeginning = 0x3353'4D54'5254'4BFF;
constexpr quint64 firstTimesBeginning = 0x3253'4D54'5254'4BFF;
constexpr qsizetype headerSize = 16;

struct KnownTimes
{
    std::string_view key; ///< of the notification
    Arrival arrival;
};

KnownTimes takeTimes(FieldReader &fields)
{
    KnownTimes times;
    times.key = fields.text();
    times.arrival.received = fields.number<qint64>();
    times.arrival.acknowledged = fields.number<qint64>();
    times.arrival.count = fields.number<qint32>();
    times.arrival.raised = fields.number<qint64>();
    return times;
}

/// 0 where the file is too short to have a header.
quint64 headerNumber(const QByteArray &bytes, qsizetype at)
{
    return bytes.size() < headerSize ? 0 : numberAt<quint64>(bytes.constData() + at);
}

} // namespace

EarlierFiles::EarlierFiles(const QString &nodesPath)
{
    const QFileInfo info(nodesPath);
    const QString base = joinPath(info.path(), info.completeBaseName());
    m_journal = base + QLatin1String(".journal");
    m_times = base + QLatin1String(".times");
}

bool EarlierFiles::isThere() const
{
    return QFileInfo::exists(m_journal) || QFileInfo::exists(m_times);
}

Status EarlierFiles::loadTimes(StationTreeLoader &tree) const
{
    if (!QFileInfo::exists(m_times)) {
        return Status::done();
    }
    QByteArray bytes;
    if (Status read = readFile(m_times, bytes); !read) {
        return read;
    }
    const QByteArrayView records = QByteArrayView(bytes).sliced(std::min(headerSize, bytes.size()));
    quint64 known = 0;
    const auto give = [&](const KnownTimes &times) {
        ++known;
        (void)tree.loadArrival(times.key, times.arrival); // a node that has gone needs none
    };
    if (headerNumber(bytes, 0) == firstTimesBeginning && headerNumber(bytes, 8) == checksum(records)) {
        for (FieldReader fields(records); !fields.atEnd() && fields.isSound();) {
            give(takeTimes(fields));
        }
        return Status::done();
    }
    JournalRecordReader record(records);
    while (record.next()) {
        FieldReader fields(record.content());
        const KnownTimes times = takeTimes(fields);
        if (fields.isSound() && fields.atEnd()) {
            give(times);
        }
    }
    if (headerNumber(bytes, 0) != timesBeginning || headerNumber(bytes, 8) != known || record.skipped() > 0) {
        return fileFailure(m_times, QCoreApplication::translate(
                                        "Files", "is damaged; times of notifications that are known: %1")
                                        .arg(known));
    }
    return Status::done();
}

EarlierFiles::Replayed EarlierFiles::replay(quint64 nodesChecksum,
                                            const std::function<bool(const NodeChange &)> &carryOut) const
{
    Replayed result;
    QByteArray journal;
    if (!QFileInfo::exists(m_journal)) {
        return result;
    }
    result.status = readFile(m_journal, journal);
    if (!result.status || journal.size() <= headerSize) {
        return result;
    }
    const QByteArrayView records = QByteArrayView(journal).sliced(headerSize);
    const bool isOfTheList =
        headerNumber(journal, 0) == journalBeginning && headerNumber(journal, 8) == nodesChecksum;
    // A mark names a list that was written later: what follows belongs to that one, too.
    qsizetype begin = isOfTheList ? 0 : -1;
    StationKeys keys;
    for (JournalRecordReader record(records); record.next();) {
        const std::optional<NodeChange> change = changeOf(record.content());
        if (change && change->what == NodeChange::What::Saved &&
            static_cast<quint64>(change->moment) == nodesChecksum) {
            begin = record.end();
            keys = keysOf(change->text);
        }
    }
    qsizetype unfit = 0;
    JournalRecordReader record(begin < 0 ? QByteArrayView() : records.sliced(begin));
    while (record.next()) {
        std::optional<NodeChange> change = changeOf(record.content());
        if (!change || change->what == NodeChange::What::Saved) {
            continue;
        }
        const std::string before = change->key;
        change->key = withStationKey(before, keys);
        ++(carryOut(*change) ? result.changes : unfit);
        if (change->what == NodeChange::What::Removed) {
            keys.erase(before); // another station may take it up
        }
    }
    if (begin < 0) {
        result.status = fileFailure(
            m_journal,
            QCoreApplication::translate("Files", "does not go on from the list of stations that is there"));
    } else if (record.skipped() > 0 || unfit > 0) {
        result.status = fileFailure(
            m_journal, QCoreApplication::translate("Files", "is damaged; changes that were taken up: %1")
                           .arg(result.changes));
    }
    return result;
}

} // namespace ktr

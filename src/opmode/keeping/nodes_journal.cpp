#include "opmode/keeping/nodes_journal.h"

#include "opmode/keeping/journal_record.h"
#include "opmode/keeping/nodes_file.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace ktr {

namespace {

Status failure(const QString &path, const char *reason)
{
    return fileFailure(path, QCoreApplication::translate("Files", reason));
}

} // namespace

NodesJournal::NodesJournal(QString path, Timers &timers, std::function<void(const QString &)> troubleChanged,
                           const SavedKeys *keys)
    : m_troubleChanged(std::move(troubleChanged)),
      m_timer(timers.create()),
      m_keys(keys),
      m_file(std::move(path))
{}

NodesJournal::~NodesJournal()
{
    (void)flushNow(); // what keeps it from the disk was told
}

NodesJournal::Replayed NodesJournal::replay(quint64 nodesChecksum,
                                            const std::function<bool(const NodeChange &)> &carryOut,
                                            ForeignChanges *foreign)
{
    settle();
    Replayed result;
    QByteArray journal;
    if (QFileInfo::exists(m_file.path())) {
        result.status = readFile(m_file.path(), journal);
    }
    if (result.status && journal.size() <= JournalFile::headerSize) { // new, or torn before its first change
        result.status = restart(nodesChecksum);
        return result;
    }
    const QByteArray own = JournalFile::partFor(journal, nodesChecksum);
    if (result.status && own.isEmpty()) {
        return takeUpForeign(journal, nodesChecksum, carryOut, foreign);
    }
    if (!result.status) {
        const Status aside = keepAside({m_file.path()}, &result.keptAs);
        if (!aside) {
            result.status = aside;
            return result; // rather no journal than one that destroys another
        }
        if (const Status started = restart(nodesChecksum); !started) {
            result.status = started;
        }
        return result;
    }
    const bool isSpoilt = !JournalFile::hasHeader(journal) ||
                          isDamaged(QByteArrayView(journal).sliced(JournalFile::headerSize));
    result.damaged = isSpoilt;
    const QByteArrayView records = QByteArrayView(own).sliced(JournalFile::headerSize);
    QByteArray whole = own.first(JournalFile::headerSize);
    result.dropped = records.size();
    for (RecordReader record(records); record.next();) {
        whole += records.sliced(record.start(), record.size());
        if (const std::optional<NodeChange> change = changeOf(record.content())) {
            if (change->what != NodeChange::What::Saved) {
                ++(carryOut(*change) ? result.changes : result.unfit);
            }
            result.dropped -= record.size();
        }
    }
    if (isSpoilt) {
        result.status = keepCopyAside(m_file.path(), journal, &result.keptAs);
    }
    // Or the last run ended before it could leave out what the file has.
    if (result.status && (isSpoilt || own != journal)) {
        result.status = replaceFile(m_file.path(), whole);
    }
    if (result.status) {
        result.status = m_file.resume(whole);
    }
    m_size = m_file.size();
    m_isUsable = static_cast<bool>(result.status); // else beginning anew would destroy what it holds
    return result;
}

/// The new journal is there as a whole or not at all: a crash meanwhile costs nothing of the other.
NodesJournal::Replayed NodesJournal::takeUpForeign(const QByteArray &journal, quint64 nodesChecksum,
                                                   const std::function<bool(const NodeChange &)> &carryOut,
                                                   ForeignChanges *foreign)
{
    Replayed result;
    const QByteArrayView records = QByteArrayView(journal).sliced(JournalFile::headerSize);
    for (RecordReader record(records); record.next();) {
        const std::optional<NodeChange> change = changeOf(record.content());
        if (change && foreign != nullptr) {
            foreign->learnName(*change);
        }
    }
    QByteArray taken = JournalFile::beginningOf(nodesChecksum);
    const auto take = [&](const NodeChange &change) {
        const bool isTaken = carryOut(change);
        if (isTaken) {
            putRecord(taken, change);
        }
        return isTaken;
    };
    result.dropped = records.size();
    for (RecordReader record(records); record.next();) {
        if (const std::optional<NodeChange> change = changeOf(record.content())) {
            result.dropped -= record.size();
            if (change->what != NodeChange::What::Saved) {
                const QList<NodeChange> fitting =
                    foreign == nullptr ? QList<NodeChange>() : foreign->fit(*change);
                const bool isTaken = !fitting.isEmpty() && std::ranges::all_of(fitting, take);
                ++(isTaken ? result.changes : result.unfit);
            }
        }
    }
    for (const NodeChange &change : foreign == nullptr ? QList<NodeChange>() : foreign->colours()) {
        (void)take(change);
    }
    result.damaged = isDamaged(records);
    result.status = keepCopyAside(m_file.path(), journal, &result.keptAs);
    if (result.status) {
        result.status = replaceFile(m_file.path(), taken);
    }
    if (result.status) {
        result.status = m_file.resume(taken);
    }
    m_size = m_file.size();
    m_isUsable = static_cast<bool>(result.status);
    if (result.status) {
        result.status = fileFailure(
            m_file.path(),
            QCoreApplication::translate("Files", "does not go on from the list of stations that is there; "
                                                 "changes taken up for its stations: %1")
                .arg(result.changes));
    }
    return result;
}

Status NodesJournal::restart(quint64 nodesChecksum)
{
    discard();
    m_isUsable = true;
    m_isRemoved = false;
    Status begun = m_file.begin(nodesChecksum);
    m_size = m_file.size();
    return begun;
}

Status NodesJournal::markSave(quint64 nodesChecksum)
{
    add(savedMark(nodesChecksum, m_keys == nullptr ? StationKeys() : m_keys->renamings()));
    return flushNow();
}

Status NodesJournal::rebase(quint64 nodesChecksum)
{
    if (Status flushed = flushNow(); !flushed) {
        return flushed;
    }
    Status gone = m_file.rebase(nodesChecksum);
    m_size = m_file.size();
    return gone;
}

Status NodesJournal::remove()
{
    discard();
    m_isUsable = false;
    m_isRemoved = true;
    return m_file.remove();
}

void NodesJournal::discard()
{
    settle();
    m_waiting.clear();
    m_onDiskCount = m_addedCount; // the file has them
    m_timer->stop();
}

void NodesJournal::add(const NodeChange &change)
{
    if (m_isRemoved) {
        return;
    }
    ++m_addedCount;
    if (m_keys == nullptr || m_keys->isEmpty()) {
        putRecord(m_waiting, change);
    } else {
        putRecord(m_waiting, change, m_keys->inJournal(change.key));
    }
    if (!m_timer->isRunning()) {
        m_timer->start(longestDelay, [this] { flush(); });
    }
}

void NodesJournal::flush()
{
    m_timer->stop();
    m_isDue = m_isWriting;
    if (!m_isWriting && !m_waiting.isEmpty()) {
        write();
    }
}

Status NodesJournal::flushNow()
{
    settle();
    m_timer->stop();
    if (!m_waiting.isEmpty()) {
        write();
        settle();
    }
    return m_waiting.isEmpty() ? Status::done() : Status::failed(m_trouble);
}

void NodesJournal::write()
{
    if (!m_isUsable) {
        ended(failure(
            m_file.path(),
            QT_TRANSLATE_NOOP("Files",
                              "changes since the start are not kept until the list of stations is written")));
        return;
    }
    m_isWriting = true;
    m_isWritten = false;
    m_inHand = std::exchange(m_waiting, {});
    m_lastInHand = m_addedCount;
    m_thread.start([this] {
        m_kept = m_file.append(m_inHand);
        m_isWritten = true;
        QMetaObject::invokeMethod(
            &m_receiver,
            [this] {
                collect();
                if (m_settled) { // never from inside a call of the owner's
                    m_settled();
                }
            },
            Qt::QueuedConnection);
    });
}

void NodesJournal::settle()
{
    m_thread.wait();
    m_isDue = false;
    collect();
}

void NodesJournal::collect()
{
    if (!m_isWriting || !m_isWritten) { // the report of one that was waited for
        return;
    }
    m_thread.wait(); // it has reported, but may not be free for the next job yet
    m_isWriting = false;
    m_size = m_file.size();
    if (m_kept) {
        m_onDiskCount = m_lastInHand;
    } else {
        m_waiting.prepend(m_inHand);
    }
    m_inHand.clear();
    ended(m_kept);
    if (std::exchange(m_isDue, false)) {
        flush();
    }
}

void NodesJournal::ended(const Status &kept)
{
    if (!kept) {
        m_timer->start(retryDelay, [this] { flush(); });
    }
    if (kept.message() != std::exchange(m_trouble, kept.message())) {
        m_troubleChanged(m_trouble);
    }
}

} // namespace ktr

#pragma once

#include "opmode/keeping/foreign_changes.h"
#include "opmode/keeping/journal_file.h"
#include "opmode/tree/node_change.h"
#include "opmode/tree/saved_keys.h"
#include "platform/timers.h"
#include "platform/worker_thread.h"

#include <QObject>

#include <atomic>

namespace ktr {

/// What changed since `nodes.xml` was written, so that a crash loses neither an alarm nor its
/// acknowledgement. A record that is damaged is dropped, and so is the last one when a power cut tore it. A
/// thread of its own writes the file, so that a slow disk does not hold up the owner.
class NodesJournal
{
public:
    /// Changes are gathered this long, unless flush() is called for one that must not wait.
    static constexpr Milliseconds longestDelay{10};
    /// What the disk refused is tried again after this time.
    static constexpr Milliseconds retryDelay{500};

    /// `troubleChanged` gets the reason when changes cannot be kept, once, and an empty text when they can
    /// again. Changes are kept under the keys that the files have; `keys` must outlive the journal.
    NodesJournal(QString path, Timers &timers, std::function<void(const QString &)> troubleChanged,
                 const SavedKeys *keys = nullptr);
    /// Waits until the disk has the changes, or has refused them.
    ~NodesJournal();

    struct Replayed
    {
        Status status = Status::done(); ///< why the journal could not be used; it is kept aside then
        qsizetype changes = 0;          ///< carried out
        qsizetype unfit = 0;            ///< whole, but not carried out
        qint64 dropped = 0;             ///< bytes that were no whole record
        bool damaged = false;           ///< more of them than the record that a power cut tears
        QString keptAs;                 ///< the file with all that the journal was, if it is kept
    };
    /// Carries out the changes of the last run, when they belong to the `nodes.xml` of this checksum, and
    /// appends behind them from now on. `carryOut` gives false for a change that does not fit. Of a journal
    /// of another file, what `foreign` makes fit is carried out and goes into the new one.
    Replayed replay(quint64 nodesChecksum, const std::function<bool(const NodeChange &)> &carryOut,
                    ForeignChanges *foreign = nullptr);

    /// Marks that a `nodes.xml` of this checksum with all changes so far is going to be written. From then on
    /// the journal fits the old file and the new one: it is replayed on the new one from the mark on. After a
    /// failure the file must not be written.
    Status markSave(quint64 nodesChecksum);
    /// The file that was marked is there: what stands before its mark is left out. After a failure the
    /// journal is as before.
    Status rebase(quint64 nodesChecksum);
    /// Bytes in the file, or soon in it.
    qint64 size() const { return m_size; }

    /// Begins anew, after the file of this checksum was written with all changes.
    Status restart(quint64 nodesChecksum);
    /// Removes the journal, after the file was written with all changes. Later changes are not kept.
    Status remove();

    /// Is called some time after changes came to the disk, or were refused by it.
    void setSettled(std::function<void()> settled) { m_settled = std::move(settled); }
    /// How many changes were added, and how many of them the disk has.
    quint64 addedCount() const { return m_addedCount; }
    quint64 onDiskCount() const { return m_onDiskCount; }
    /// Whether the disk refused changes, and still does.
    bool isFailing() const { return !m_trouble.isEmpty(); }

    /// Adds a change; flush() follows by itself. Fit for StationTree::setObserver.
    void add(const NodeChange &change);
    /// Begins to write what was added, at once or as soon as the disk has what was begun before.
    /// After a failure it is tried again.
    void flush();
    /// Writes all that was added and waits for the disk. A failure says that not all of it is there; it is
    /// tried again.
    Status flushNow();

private:
    Replayed takeUpForeign(const QByteArray &journal, quint64 nodesChecksum,
                           const std::function<bool(const NodeChange &)> &carryOut, ForeignChanges *foreign);
    void discard();
    void write();
    void settle();
    void collect();
    void ended(const Status &kept);

    std::function<void(const QString &)> m_troubleChanged;
    std::unique_ptr<OneShotTimer> m_timer;
    bool m_isUsable = false; ///< nothing of another run is in the way
    bool m_isRemoved = false;
    const SavedKeys *m_keys;
    QByteArray m_waiting;
    quint64 m_addedCount = 0;
    quint64 m_onDiskCount = 0;
    std::function<void()> m_settled;
    qint64 m_size = 0; ///< of the file when the thread used it last
    QString m_trouble;

    // While m_isWriting is set, the thread alone uses the file, and reads what is being written.
    bool m_isWriting = false;
    bool m_isDue = false; ///< the time to write came meanwhile
    JournalFile m_file;
    QByteArray m_inHand;
    quint64 m_lastInHand = 0; ///< addedCount() at the end of it
    Status m_kept = Status::done();
    std::atomic<bool> m_isWritten = false;
    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr

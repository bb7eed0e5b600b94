#pragma once

#include "opmode/keeping/journal_file.h"
#include "opmode/tree/node_change.h"
#include "opmode/tree/saved_keys.h"
#include "platform/timers.h"
#include "platform/worker_thread.h"

#include <QObject>

#include <atomic>

namespace ktr {

/// What changed since `nodes.xml` was written, so that a crash loses neither an alarm nor its
/// acknowledgement. It names the file that it goes on from, and holds records of a length, a checksum and a
/// change each; one that is damaged is dropped, as the last one is when it was torn. A thread of its own
/// writes it, so that a slow disk does not hold up the owner.
class NodesJournal
{
public:
    /// Changes are gathered this long, unless flush() is called for one that must not wait.
    static constexpr Milliseconds longestDelay{10};
    /// What the disk refused is tried again after this time.
    static constexpr Milliseconds retryDelay{500};

    /// `told` hears why changes cannot be kept, once until that is over; then an empty text.
    /// Changes are kept under the keys that the files have; `keys` must outlive the journal.
    NodesJournal(QString path, Timers &timers, std::function<void(const QString &)> told,
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
    };
    /// Carries out the changes of the last run, when they go on from the file of this checksum, and goes on
    /// behind them. `carryOut` gives false for a change that does not fit.
    Replayed replay(quint64 base, const std::function<bool(const NodeChange &)> &carryOut);

    /// A file of this checksum with all changes so far is going to be written: from then on the journal goes
    /// on from this one as well as from the one before. After a failure the file must not be written.
    Status begin(quint64 base);
    /// The file that begin() was told of is there: what it has is left out. After a failure the journal is as
    /// before.
    Status goOnFrom(quint64 base);
    /// Bytes in the file, or soon in it.
    qint64 size() const { return m_size; }

    /// Begins anew, after the file of this checksum was written with all changes.
    Status restart(quint64 base);
    /// Removes the journal, after the file was written with all changes. Later changes are not kept.
    Status remove();

    /// Is called some time after changes came to the disk, or were refused by it.
    void setSettled(std::function<void()> settled) { m_settled = std::move(settled); }
    /// How many changes were taken down, and how many of them the disk has.
    quint64 taken() const { return m_taken; }
    quint64 kept() const { return m_onDisk; }
    /// Whether the disk refused changes, and still does.
    bool isFailing() const { return !m_trouble.isEmpty(); }

    /// Takes a change down; flush() follows by itself. Fit for StationTree::setObserver.
    void add(const NodeChange &change);
    /// Begins to put what was taken down on the disk, at once or as soon as it has what was begun before.
    /// After a failure it is tried again.
    void flush();
    /// Puts all that was taken down on the disk and waits for it. A failure says that not all of it is there;
    /// it is tried again.
    Status flushNow();

private:
    void discard();
    void write();
    void settle();
    void collect();
    void ended(const Status &kept);

    std::function<void(const QString &)> m_told;
    std::unique_ptr<OneShotTimer> m_timer;
    bool m_isUsable = false; ///< nothing of another run is in the way
    bool m_isRemoved = false;
    const SavedKeys *m_keys;
    QByteArray m_waiting;
    quint64 m_taken = 0;
    quint64 m_onDisk = 0;
    std::function<void()> m_settled;
    qint64 m_size = 0; ///< of the file when the thread used it last
    QString m_trouble;

    // While m_isWriting is set, the thread alone uses the file, and reads what is being written.
    bool m_isWriting = false;
    bool m_isDue = false; ///< the time to write came meanwhile
    JournalFile m_file;
    QByteArray m_inHand;
    quint64 m_lastInHand = 0; ///< taken() at the end of it
    Status m_kept = Status::done();
    std::atomic<bool> m_isWritten = false;
    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr

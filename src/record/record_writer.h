#pragma once

#include "platform/timers.h"
#include "platform/worker_thread.h"
#include "record/background_work.h"
#include "record/record_file.h"
#include "record/row_batch.h"
#include "record/spool_place.h"
#include "record/waiting_rows.h"

#include <QObject>

#include <array>
#include <atomic>
#include <deque>
#include <memory>
#include <optional>

namespace ktr {

class RowSpool;
class SpoolWriter;
class WriterConnection;

/// Writes the record on a thread of its own, so that neither a slow disk nor a full one holds up the owner.
/// What arrives together is committed together, and what was committed is on the disk.
///
/// With a spool, what a server refuses, or has not committed within `patience`, goes into a file of this
/// machine, and what comes afterwards behind it, until the server has taken all of it from there:
///
///     waiting -> batch -> server                       as long as that takes it
///                     \-> spool -> server              from then on, until the spool is empty
class RecordWriter
{
public:
    /// Rows are gathered this long, unless flush() is called for one that must not wait.
    static constexpr Milliseconds longestDelay{10};
    /// What the disk refused is tried again after this time.
    static constexpr Milliseconds retryDelay{500};
    /// What has time, such as the index of texts, is done step by step, the first one so long after rows were
    /// written and the next ones after so long each.
    static constexpr Milliseconds restDelay{200};
    static constexpr Milliseconds stepDelay{20};
    /// A damaged record that could not be mended is tried again after this time, and one that was damaged
    /// again after it had been mended after that one: each leaves a file that is kept aside.
    static constexpr Milliseconds mendDelay{30'000};
    static constexpr Milliseconds mendPause{3'600'000};
    /// A server that has not committed rows within this time is not waited for, where there is a spool.
    static constexpr Milliseconds patience{1'000};
    /// Without a spool it is waited for longer.
    static constexpr Milliseconds longestEnd{10'000};
    /// About so many bytes of rows wait in memory while the disk refuses them.
    static constexpr qint64 mostWaiting = qint64{256} << 20;

    /// How many commits took up to so long, in seconds, with those that took longer at the end.
    struct CommitTimes
    {
        static constexpr std::array bounds{0.001, 0.003, 0.01, 0.03, 0.1, 0.3, 1.0, 3.0, 10.0};
        std::array<quint64, bounds.size() + 1> counts{};
        double sum = 0;
    };

    /// Goes on with a record that openRecord() opened. `troubleChanged` gets the reason when rows cannot be
    /// written, once, and an empty text when they can again.
    RecordWriter(QString path, const OpenedRecord &opened, Timers &timers,
                 std::function<void(const QString &)> troubleChanged, qint64 most = mostWaiting,
                 std::unique_ptr<SpoolPlace> spool = {});
    /// Waits until the disk has the rows, or has refused them, and closes the record. A server that does not
    /// answer is not waited for: what it has not got is in the spool for the next one.
    // NOLINTNEXTLINE(bugprone-exception-escape): as where it is defined
    ~RecordWriter();
    Q_DISABLE_COPY_MOVE(RecordWriter)

    /// The next numbers that are free; each call gives another.
    qint64 nextEventId() { return ++m_lastEvent; }
    qint64 nextAlarmId() { return ++m_lastAlarm; }

    /// Adds a row; flush() follows by itself.
    void add(RecordRow row);
    /// Begins to write what was added, at once or as soon as the disk has what was begun before.
    /// After a failure it is tried again.
    void flush();
    /// Writes all that was added and waits for the disk. A failure says that not all of it is there; it is
    /// tried again. A damaged record is not waited for.
    Status flushNow();

    /// Adds rows and waits until the disk has them. After a failure they are not kept, as if they had never
    /// been added.
    Status commit(std::vector<RecordRow> rows);

    /// Is called some time after rows came to the disk, or were refused by it.
    void setSettled(std::function<void()> settled) { m_settled = std::move(settled); }
    /// How many rows were added, and up to which of them the disk has them all, but for those left out.
    quint64 addedCount() const { return m_addedCount; }
    quint64 onDiskCount() const { return m_onDiskCount; }
    /// Up to which of them the record has them: those in a spool are on the disk, and not in the record.
    quint64 inRecordCount() const { return m_inRecordCount; }
    /// How many rows were left out because too many had to wait: the oldest, but none of an alarm.
    quint64 leftOutCount() const { return m_waiting.leftOutCount(); }
    /// Of the commits so far.
    const CommitTimes &commitTimes() const { return m_commitTimes; }
    /// Whether the record refused rows, and still does.
    bool isFailing() const { return !m_trouble.isEmpty(); }
    /// Whether what is added comes to the disk within a moment, be it into the spool.
    bool isSafe() const { return !isFailing() || (m_isSpooling && m_spoolTrouble.isEmpty()); }

    /// What waits in the spool.
    struct Spooled
    {
        QString path{};
        qint64 rows = 0;
        qint64 since = 0;   ///< when the oldest of them came, in milliseconds since 1970; 0: there are none
        qint64 refused = 0; ///< rows that the server will not have, kept aside in the file
    };
    /// Nothing where there is no spool.
    std::optional<Spooled> spooled() const;
    /// Whether the record lacks something that is to be handed over first.
    bool isSpooling() const { return m_isSpooling; }
    /// The keeper of a shared list in whose time rows are added from now on.
    void setKeeper(qint64 keeper) { m_keeper = keeper; }
    /// Is called, in the event loop, when rows were kept aside that the server will not have, or something is
    /// wrong with the spool.
    void setRemarked(std::function<void(const QString &)> remarked) { m_remarked = std::move(remarked); }

    /// A number that is another one for each piece of work of the thread; 0 while it has none, or mends a
    /// record, which may take as long as it is large.
    quint64 workInHand() const { return m_isBusy && !m_hasEnded && m_job != Job::Mend ? m_jobs : 0; }

    /// Is called, in the event loop, after a record that turned out to be damaged, or that somebody removed
    /// or replaced, was kept aside and has a new one in its place. What of it was lost was not added again.
    void setMended(std::function<void(const OpenedRecord &)> mended) { m_mended = std::move(mended); }
    /// Somebody else found the record damaged.
    void mend();

    /// Removes what may go because of its age, little by little. What was asked for before and is not done
    /// yet is left.
    void thinOut(Retention retention);
    /// Whether there is nothing more to be indexed or thinned out.
    bool isAtRest() const { return !m_hasWork && !m_isBusy; }

private:
    enum class Job {
        Write,
        HandOver,
        Step, ///< of what has time
        Mend
    };

    /// A batch, and addedCount() at its end.
    struct Pending
    {
        std::shared_ptr<const RowBatch> batch;
        quint64 last = 0;
    };

    bool hasRows() const;
    void takeBatch();
    void goOn();
    void write();
    void handOver();
    void work();
    void workLater(Milliseconds delay);
    void begin(std::function<void()> job, Job what);
    void settle();
    void collect();
    void collectRows();
    void collectRefused(const Pending &refused);
    void collectHandedOver();
    void collectSpooled();
    void loseTime();
    void beginSpool(std::unique_ptr<SpoolPlace> place);
    void beginSpooling();
    void spool();
    void endSpooling();
    void settleServer();
    void closeServer();
    void remark(const QString &what);
    void collectMended();
    void mendIfBroken();
    void tell();
    bool isMending() const { return m_isBusy && m_job == Job::Mend && !m_hasEnded; }

    QString m_path;
    std::function<void(const QString &)> m_troubleChanged;
    std::unique_ptr<OneShotTimer> m_timer;
    qint64 m_lastEvent;
    qint64 m_lastAlarm;
    WaitingRows m_waiting;
    quint64 m_addedCount = 0;
    quint64 m_onDiskCount = 0;
    quint64 m_inRecordCount = 0;
    std::deque<Pending> m_pending; ///< neither in the record nor in the spool, as far as that is known
    qint64 m_lastBatch = 0;
    qint64 m_keeper = 0;
    QString m_name; ///< of this writer on a server
    CommitTimes m_commitTimes;
    std::function<void()> m_settled;
    std::function<void(const OpenedRecord &)> m_mended;
    QString m_trouble; ///< why rows could not be written
    QString m_told;

    std::unique_ptr<SpoolWriter> m_spool;
    std::unique_ptr<OneShotTimer> m_patience;
    std::unique_ptr<OneShotTimer> m_spoolTimer; ///< until it is tried again to write into the spool
    std::unique_ptr<OneShotTimer> m_handTimer;  ///< until it is tried again to hand over
    bool m_isSpooling = false;
    Spooled m_spooled;
    QString m_spoolTrouble; ///< why it cannot be written
    std::function<void(const QString &)> m_remarked;

    bool m_hasWork = true; ///< something to be done that has time; a record may come with some
    std::unique_ptr<OneShotTimer> m_workTimer;
    std::unique_ptr<OneShotTimer> m_mendTimer; ///< runs while it must not be tried
    bool m_isMendDue = false;                  ///< somebody else found damage
    std::optional<Retention> m_retention;      ///< to be handed to the thread

    // While m_isBusy is set, the thread alone uses what follows.
    bool m_isBusy = false;
    Job m_job = Job::Write;
    quint64 m_jobs = 0;         ///< begun so far
    bool m_isDue = false;       ///< the time to write came meanwhile
    bool m_isWorkDue = false;   ///< the time for such a step came meanwhile
    bool m_hasMoreWork = false; ///< what the step gave
    Status m_worked = Status::done();
    OpenedRecord m_found; ///< what mending gave
    std::unique_ptr<WriterConnection> m_connection;
    Pending m_inHand;
    std::unique_ptr<RowSpool> m_spoolInHand; ///< for handing over
    qint64 m_handedOver = 0;                 ///< rows, by the last job
    qint64 m_handedUpTo = 0;                 ///< when the last of them came
    qint64 m_refused = 0;                    ///< of these
    QString m_refusal;                       ///< why the last of them was
    Status m_kept = Status::done();
    double m_commitTime = 0; ///< seconds, of the last one
    std::atomic<bool> m_hasEnded = false;
    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr

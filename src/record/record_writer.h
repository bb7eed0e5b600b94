#pragma once

#include "platform/timers.h"
#include "platform/worker_thread.h"
#include "record/record_file.h"
#include "record/record_rows.h"

#include <QObject>

#include <atomic>
#include <deque>

namespace ktr {

/// Writes the record on a thread of its own, so that neither a slow disk nor a full one holds up the owner.
/// What arrives together is committed together, and what was committed is on the disk.
class RecordWriter
{
public:
    /// Rows are gathered this long, unless flush() is called for one that must not wait.
    static constexpr Milliseconds longestDelay{10};
    /// What the disk refused is tried again after this time.
    static constexpr Milliseconds retryDelay{500};
    /// About so many bytes of rows wait while the disk refuses them.
    static constexpr qint64 mostWaiting = qint64{256} << 20;

    /// Goes on with a record that openRecord() opened. `troubleChanged` gets the reason when rows cannot be
    /// written, once, and an empty text when they can again.
    RecordWriter(QString path, const OpenedRecord &opened, Timers &timers,
                 std::function<void(const QString &)> troubleChanged, qint64 most = mostWaiting);
    /// Waits until the disk has the rows, or has refused them, and closes the record.
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
    /// tried again.
    Status flushNow();

    /// Is called some time after rows came to the disk, or were refused by it.
    void setSettled(std::function<void()> settled) { m_settled = std::move(settled); }
    /// How many rows were added, and up to which of them the disk has them all, but for those left out.
    quint64 addedCount() const { return m_addedCount; }
    quint64 onDiskCount() const { return m_onDiskCount; }
    /// How many rows were left out because too many had to wait: the oldest, but none of an alarm.
    quint64 leftOutCount() const { return m_leftOutCount; }
    /// Whether the disk refused rows, and still does.
    bool isFailing() const { return !m_trouble.isEmpty(); }

private:
    struct Connection;

    void write();
    void settle();
    void collect();
    void ended(const Status &kept);
    void leaveOut();

    QString m_path;
    std::function<void(const QString &)> m_troubleChanged;
    std::unique_ptr<OneShotTimer> m_timer;
    qint64 m_most;
    qint64 m_lastEvent;
    qint64 m_lastAlarm;
    std::vector<RecordRow> m_waiting;
    qint64 m_waitingBytes = 0;
    quint64 m_addedCount = 0;
    quint64 m_onDiskCount = 0;
    quint64 m_leftOutCount = 0;
    std::function<void()> m_settled;
    QString m_trouble;

    // While m_isWriting is set, the thread alone uses these.
    bool m_isWriting = false;
    bool m_isDue = false; ///< the time to write came meanwhile
    std::unique_ptr<Connection> m_connection;
    std::vector<RecordRow> m_inHand;
    quint64 m_lastInHand = 0; ///< addedCount() at the end of it
    Status m_kept = Status::done();
    std::atomic<bool> m_isWritten = false;
    QObject m_receiver; ///< of the thread's reports, on the owner's thread
    WorkerThread m_thread;
};

} // namespace ktr

#include "record/record_writer.h"

#include "record/row_writing.h"

#include <algorithm>
#include <optional>

namespace ktr {

namespace {

/// About what a row takes while it waits.
qint64 bytesOf(const RecordRow &row)
{
    constexpr qint64 overhead = 64; // of the texts' own memory
    const auto texts = [](const auto &...text) {
        return ((text.isEmpty() ? 0 : overhead + 2 * text.size()) + ... + qint64{sizeof(RecordRow)});
    };
    struct Sizes
    {
        decltype(texts) of;
        qint64 operator()(const EventRow &event) const
        {
            return of(event.text, event.detail, event.operatorName);
        }
        qint64 operator()(const StationRow &station) const { return of(station.name, station.attributes); }
        qint64 operator()(const NotificationRow &notification) const { return of(notification.entry); }
        qint64 operator()(const AlarmRow &alarm) const
        {
            return of(alarm.text, alarm.comment, alarm.acknowledgedBy, alarm.overWhy, alarm.shelvedBy,
                      alarm.shelvedWhy, alarm.recipients.join(u' '));
        }
        qint64 operator()(const HistoryRow &history) const { return of(history.first, history.second); }
        qint64 operator()(const ValueRow &value) const { return of(value.value); }
        qint64 operator()(const ListFileRow &file) const { return of(file.checksum); }
        qint64 operator()(const SettingRow &setting) const { return of(setting.name, setting.value); }
    };
    return std::visit(Sizes{texts}, row);
}

/// What may be left out when there is no room for all: what was said, not what must be done about it.
bool isDispensable(const RecordRow &row)
{
    const auto *event = std::get_if<EventRow>(&row);
    return (event != nullptr && event->alarm == 0) || std::holds_alternative<HistoryRow>(row) ||
           std::holds_alternative<ValueRow>(row);
}

} // namespace

/// What the thread writes with. Made and destroyed there.
struct RecordWriter::Connection
{
    RecordDatabase database;
    std::optional<RowWriting> writing;
    bool again = false; ///< a commit failed

    Status open(const QString &path)
    {
        if (database.isOpen()) {
            return Status::done();
        }
        Status opened = database.open(path, RecordDatabase::Use::Write);
        if (opened) {
            opened = database.execute(
                QStringLiteral("INSERT OR REPLACE INTO setting(name, value) VALUES('open', '1')"));
            writing.emplace(database, again);
        }
        if (!opened) {
            close();
        }
        return opened;
    }

    void close()
    {
        writing.reset();
        database.close();
    }

    Status write(const std::vector<RecordRow> &rows)
    {
        if (!database.begin()) {
            return refused();
        }
        const bool written =
            std::ranges::all_of(rows, [this](const RecordRow &row) { return writing->write(row); });
        if (!written || !database.commit()) {
            return refused();
        }
        if (std::exchange(again, false)) {
            writing.emplace(database);
        }
        return Status::done();
    }

    /// The next try begins with a new connection: after an error of the disk this one may not know what
    /// stands there.
    Status refused()
    {
        Status failure = database.failure();
        database.rollBack();
        close();
        again = true;
        return failure;
    }
};

RecordWriter::RecordWriter(QString path, const OpenedRecord &opened, Timers &timers,
                           std::function<void(const QString &)> troubleChanged, qint64 most)
    : m_path(std::move(path)),
      m_troubleChanged(std::move(troubleChanged)),
      m_timer(timers.create()),
      m_most(most),
      m_lastEvent(opened.lastEvent),
      m_lastAlarm(opened.lastAlarm),
      m_connection(std::make_unique<Connection>())
{}

RecordWriter::~RecordWriter()
{
    (void)flushNow(); // what keeps it from the disk was told
    m_thread.start([this] {
        if (m_connection->database.isOpen()) {
            (void)m_connection->database.execute(
                QStringLiteral("INSERT OR REPLACE INTO setting(name, value) VALUES('open', '0')"));
        }
        m_connection.reset();
    });
    m_thread.wait();
}

void RecordWriter::add(RecordRow row)
{
    ++m_addedCount;
    m_waitingBytes += bytesOf(row);
    m_waiting.push_back(std::move(row));
    if (m_waitingBytes > m_most) {
        leaveOut();
    }
    if (!m_timer->isRunning()) {
        m_timer->start(longestDelay, [this] { flush(); });
    }
}

void RecordWriter::flush()
{
    m_timer->stop();
    m_isDue = m_isWriting;
    if (!m_isWriting && !m_waiting.empty()) {
        write();
    }
}

Status RecordWriter::flushNow()
{
    settle();
    m_timer->stop();
    if (!m_waiting.empty()) {
        write();
        settle();
    }
    return m_waiting.empty() ? Status::done() : Status::failed(m_trouble);
}

/// A part of the room is made free, so that not each row that comes goes through all that wait.
void RecordWriter::leaveOut()
{
    const qint64 wanted = m_most - m_most / 16;
    m_leftOutCount += std::erase_if(m_waiting, [&](const RecordRow &row) {
        if (m_waitingBytes <= wanted || !isDispensable(row)) {
            return false;
        }
        m_waitingBytes -= bytesOf(row);
        return true;
    });
}

void RecordWriter::write()
{
    m_isWriting = true;
    m_isWritten = false;
    m_inHand = std::exchange(m_waiting, {});
    m_waitingBytes = 0;
    m_lastInHand = m_addedCount;
    m_thread.start([this] {
        m_kept = m_connection->open(m_path);
        if (m_kept) {
            m_kept = m_connection->write(m_inHand);
        }
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

void RecordWriter::settle()
{
    m_thread.wait();
    m_isDue = false;
    collect();
}

void RecordWriter::collect()
{
    if (!m_isWriting || !m_isWritten) { // the report of one that was waited for
        return;
    }
    m_thread.wait(); // it has reported, but may not be free for the next job yet
    m_isWriting = false;
    if (m_kept) {
        m_onDiskCount = m_lastInHand;
        m_inHand.clear();
    } else {
        for (const RecordRow &row : m_inHand) {
            m_waitingBytes += bytesOf(row);
        }
        m_inHand.insert(m_inHand.end(), std::move_iterator(m_waiting.begin()),
                        std::move_iterator(m_waiting.end()));
        m_waiting = std::exchange(m_inHand, {});
        if (m_waitingBytes > m_most) {
            leaveOut();
        }
    }
    ended(m_kept);
    if (std::exchange(m_isDue, false)) {
        flush();
    }
}

void RecordWriter::ended(const Status &kept)
{
    if (!kept) {
        m_timer->start(retryDelay, [this] { flush(); });
    }
    if (kept.message() != std::exchange(m_trouble, kept.message())) {
        m_troubleChanged(m_trouble);
    }
}

} // namespace ktr

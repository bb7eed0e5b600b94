#include "opmode/list_follower.h"

#include "opmode/keeper_beat.h"
#include "opmode/keeping/list_record.h"
#include "opmode/keeping/nodes_file.h"
#include "platform/file_lock.h"

namespace ktr {

ListFollower::ListFollower(const QString &nodesPath, Timers &timers, Listener listener)
    : m_path(ListRecord::pathFor(nodesPath)),
      m_lockPath(listLockPath(nodesPath)),
      m_listener(std::move(listener)),
      m_timer(timers.create()),
      m_reader(std::make_unique<RecordReader>(m_path))
{
    lookAtHolder();
}

QString ListFollower::holder() const
{
    return m_holder ? lockHolderText(*m_holder) : QString();
}

void ListFollower::start(qint64 lastEvent, qint64 lastAlarmChange)
{
    m_lastEvent = lastEvent;
    m_lastAlarmChange = lastAlarmChange;
    lookLater(period);
}

void ListFollower::lookLater(Milliseconds delay)
{
    m_timer->start(delay, [this] { look(); });
}

/// One that has just begun writes its name into the record when that is ready for it.
void ListFollower::lookAtHolder()
{
    const std::optional<QByteArray> holder = FileLock::heldBy(m_lockPath);
    const bool isAnother = holder != m_holder;
    if (isAnother || m_reader->isStale()) { // a damaged record is replaced
        m_reader = std::make_unique<RecordReader>(m_path);
        m_version = 0;
    }
    if (isAnother) {
        m_holder = holder;
        m_isOfRecord = false;
        m_unheard = Milliseconds(0);
    }
    if (!m_isOfRecord) {
        std::optional<QString> keeper;
        m_isOfRecord = !m_holder || (m_reader->setting(keeperSetting(), keeper) && keeper &&
                                     keeper->toUtf8() == *m_holder);
    }
}

void ListFollower::look()
{
    m_unheard += m_hasMore ? Milliseconds(0) : period;
    lookAtHolder(); // first: what it said before it went is told before that is
    const Status done = read();
    if (done.message() != m_trouble) {
        m_trouble = done.message();
        m_listener.trouble(m_trouble);
    }
    lookLater(m_hasMore ? Milliseconds(0) : period);
    m_listener.looked();
}

void ListFollower::drain()
{
    do {
        if (!read()) {
            return;
        }
    } while (m_hasMore);
}

Status ListFollower::read()
{
    const qint64 version = m_reader->dataVersion();
    if (!m_hasMore && version == m_version && version != 0) {
        return Status::done();
    }
    m_hasMore = false;
    if (m_version == 0) { // of a record that was mended all may be counted anew
        qint64 change = 0;
        if (m_reader->lastAlarmChange(change) && change < m_lastAlarmChange) {
            m_lastAlarmChange = 0;
        }
    }
    QList<EventRow> events;
    QList<AlarmRow> alarms;
    QHash<QString, QString> settings;
    qint64 change = m_lastAlarmChange;
    // What belongs together is read at one moment: an alarm does not come before its notification.
    Status done = m_reader->beginSnapshot();
    if (done) {
        done = m_reader->eventsAfter(m_lastEvent, [&](const EventRow &event) {
            events += event;
            return events.size() < slice;
        });
        const bool hasMore = events.size() == slice;
        if (done && !hasMore) {
            done = m_reader->alarmsChangedAfter(change, [&](const AlarmRow &alarm, qint64 at) {
                alarms += alarm;
                change = at;
            });
        }
        if (done) {
            done = m_reader->settings(settings);
        }
        m_reader->endSnapshot();
        m_hasMore = done && hasMore;
    }
    if (!done) { // the next try has a new connection
        m_reader = std::make_unique<RecordReader>(m_path);
        m_version = 0;
        return done;
    }
    m_version = version;
    m_lastAlarmChange = change;
    const QString beat = settings.value(beatSetting());
    if (!events.isEmpty() || !alarms.isEmpty() || beat != m_beat) { // requests are of others
        m_beat = beat;
        m_unheard = Milliseconds(0);
    }
    for (const EventRow &event : std::as_const(events)) {
        m_lastEvent = event.id;
        m_listener.event(event);
    }
    for (const AlarmRow &alarm : std::as_const(alarms)) {
        m_listener.alarm(alarm);
    }
    m_listener.settings(settings);
    return done;
}

} // namespace ktr

#include "opmode/list_follower.h"

#include "opmode/keeper_beat.h"
#include "opmode/keeping/list_record.h"
#include "opmode/keeping/nodes_file.h"
#include "platform/file_lock.h"
#include "record/record_address.h"

#include <QCoreApplication>

namespace ktr {

ListFollower::ListFollower(const QString &nodesPath, Timers &timers, Listener listener)
    : m_path(ListRecord::pathFor(nodesPath)),
      m_lockPath(listLockPath(nodesPath)),
      m_listener(std::move(listener)),
      m_timer(timers.create()),
      m_patience(timers.create()),
      m_reader(std::make_unique<RecordReader>(m_path))
{
    if (isServerAddress(m_path)) {
        m_queries.emplace(m_path);
        m_isOfRecord = true;
    } else {
        lookAtHolder();
    }
}

QString ListFollower::holder() const
{
    return m_queries ? m_keepers.names : m_holder ? lockHolderText(*m_holder) : QString();
}

void ListFollower::start(qint64 lastEvent, qint64 lastAlarmChange)
{
    m_lastEvent = lastEvent;
    m_lastAlarmChange = lastAlarmChange;
    lookLater(period);
}

void ListFollower::start(const SharedState &state)
{
    m_keepers.names = state.keepers;
    m_notices = std::make_unique<RecordNotices>(m_path, [this] { noticed(); });
    start(state.lastEvent, state.lastAlarmChange);
}

/// While a look goes on, it may be too early for what is new.
void ListFollower::noticed()
{
    if (std::exchange(m_isNoticed, true)) { // notices that never end must not put the look off for ever
        return;
    }
    if (!m_queries->isWaitedFor(this)) {
        lookLater(leastPeriod);
    }
}

void ListFollower::lookLater(Milliseconds delay)
{
    m_timer->start(delay, [this] { look(); });
}

/// One that has just begun writes its name into the record when that is ready for it.
void ListFollower::lookAtHolder()
{
    if (m_queries) {
        return;
    }
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
    if (m_queries) {
        m_isNoticed = false;
        m_queries->ask(
            this, [known = known()](RecordReader &reader) { return read(reader, known); },
            [this](const News &news) { looked(news); });
        m_patience->start(serverPatience, [this] {
            tell(QCoreApplication::translate("ListFollower", "%1: the server does not answer").arg(m_path));
        });
        return;
    }
    m_unheard += m_hasMore ? Milliseconds(0) : period;
    lookAtHolder(); // first: what it said before it went is told before that is
    looked(read(*m_reader, known()));
}

void ListFollower::looked(const News &news)
{
    m_patience->stop();
    take(news);
    tell(news.status.message());
    if (!news.answers.isEmpty()) {
        m_listener.answers(news.answers);
    }
    const bool isTold = m_notices != nullptr && m_notices->isListening();
    lookLater(m_hasMore ? Milliseconds(0) : m_isNoticed ? leastPeriod : isTold ? quietPeriod : period);
    m_listener.looked();
}

void ListFollower::tell(const QString &trouble)
{
    if (trouble != m_trouble) {
        m_trouble = trouble;
        m_listener.trouble(trouble);
    }
}

void ListFollower::drain()
{
    do {
        const News news = read(*m_reader, known());
        take(news);
        if (!news.status) {
            return;
        }
    } while (m_hasMore);
}

ListFollower::News ListFollower::read(RecordReader &reader, const Known &known)
{
    News news;
    if (isServerAddress(reader.path())) {
        news.keepers = keepersOf(reader);
        if (RecordRights rights; known.version == 0 && reader.rights(rights)) {
            news.rights = rights;
        }
    }
    if (!reader.answersOf(known.awaited, news.answers)) {
        news.answers.clear(); // the next look has them all
    }
    news.version = reader.dataVersion();
    news.change = known.change;
    if (!known.hasMore && news.version == known.version && news.version != 0) {
        news.isNothing = true;
        return news;
    }
    if (known.version == 0) { // of a record that was mended all may be counted anew
        qint64 change = 0;
        if (reader.lastAlarmChange(change) && change < known.change) {
            news.change = 0;
        }
    }
    // What belongs together is read at one moment: an alarm does not come before its notification.
    news.status = reader.beginSnapshot();
    if (!news.status) {
        return news;
    }
    news.status = reader.eventsAfter(known.event, [&](const EventRow &event) {
        news.events += event;
        return news.events.size() < slice;
    });
    news.hasMore = news.events.size() == slice;
    if (news.status && !news.hasMore) {
        news.status = reader.alarmsChangedAfter(news.change, [&](const AlarmRow &alarm, qint64 at) {
            news.alarms += alarm;
            news.change = at;
        });
    }
    if (news.status) {
        news.status = reader.settings(news.settings);
    }
    reader.endSnapshot();
    return news;
}

void ListFollower::take(const News &news)
{
    if (news.keepers) {
        m_keepers = *news.keepers;
    }
    if (news.rights) {
        m_listener.rights(*news.rights);
    }
    if (news.isNothing) {
        return;
    }
    m_hasMore = news.status && news.hasMore;
    if (!news.status) { // the next try has a new connection
        m_reader = std::make_unique<RecordReader>(m_path);
        m_version = 0;
        return;
    }
    m_version = news.version;
    m_lastAlarmChange = news.change;
    const QString beat = news.settings.value(beatSetting());
    if (!news.events.isEmpty() || !news.alarms.isEmpty() || beat != m_beat) { // requests are of others
        m_beat = beat;
        m_unheard = Milliseconds(0);
    }
    for (const EventRow &event : news.events) {
        if (event.id > m_lastEvent) { // or it was told since the look began
            m_lastEvent = event.id;
            m_listener.event(event);
        }
    }
    for (const AlarmRow &alarm : news.alarms) {
        m_listener.alarm(alarm);
    }
    m_listener.settings(news.settings);
}

} // namespace ktr

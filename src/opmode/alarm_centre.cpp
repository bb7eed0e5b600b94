#include "opmode/alarm_centre.h"

#include "opmode/operational_mode.h"
#include "opmode/watch_alarms.h"

#include <algorithm>

namespace ktr {

Alarm alarmOf(const OperationalMode &mode, const AlarmRow &row)
{
    Alarm alarm;
    alarm.id = row.id;
    alarm.priority = static_cast<AlarmPriority>(row.priority);
    alarm.kennung = mode.stationOf(row);
    alarm.station = mode.tree().find(alarm.kennung).data().toString();
    alarm.message = WatchAlarms::shownText(row);
    alarm.received = row.last;
    alarm.raised = row.first;
    const QModelIndexList entries = mode.entriesOf(row);
    alarm.entry = entries.isEmpty() ? QModelIndex() : entries.constFirst();
    return alarm;
}

AlarmCentre::AlarmCentre(const AlarmBook &book, Describe describe, Timers &timers, QObject *parent)
    : QObject(parent),
      m_book(book),
      m_describe(std::move(describe)),
      m_pause(timers.create()),
      m_soon(timers.create())
{
    connect(&book, &AlarmBook::changed, this, &AlarmCentre::onAlarmChanged);
    connect(&book, &AlarmBook::reset, this, &AlarmCentre::takeLoaded);
    takeLoaded();
}

AlarmCentre::~AlarmCentre() = default;

void AlarmCentre::onAlarmChanged(const AlarmRow &alarm, AlarmBook::Change change)
{
    using Change = AlarmBook::Change;
    const bool isNews = change == Change::Came || change == Change::CameAgain || change == Change::Returned;
    if (isNews && m_book.isWaiting(alarm)) {
        m_latest = alarm.id;
        addNews(alarm);
        m_soon->stop();
        update();
    } else {
        recount();
    }
}

void AlarmCentre::addNews(const AlarmRow &alarm)
{
    ++m_news.arrived;
    m_firstNew = m_firstNew == 0 ? alarm.id : m_firstNew;
    m_news.priority = std::min(m_news.priority, static_cast<AlarmPriority>(alarm.priority));
    m_news.sounds = m_news.sounds || sounds(alarm);
}

/// What is no module's has no rule, and what had one when it came may have none by now.
bool AlarmCentre::sounds(const AlarmRow &alarm) const
{
    const AlarmRule *rule = alarm.kind == AlarmKind::Module ? m_book.rules().of(alarm.text) : nullptr;
    return rule == nullptr || rule->sounds;
}

std::optional<AlarmPriority> AlarmCentre::sounding() const
{
    std::optional<AlarmPriority> most;
    for (const qint64 id : m_book.waiting()) {
        const AlarmRow &alarm = *m_book.alarm(id);
        const auto priority = static_cast<AlarmPriority>(alarm.priority);
        if ((!most || priority < *most) && sounds(alarm)) {
            most = priority;
        }
        if (most == AlarmPriority::High) {
            break;
        }
    }
    return most;
}

/// Many acknowledgements in one turn are told once; an alarm that is on its way here tells of it, too.
void AlarmCentre::recount()
{
    if (!m_pause->isRunning() && !m_soon->isRunning()) {
        m_soon->start(Milliseconds(0), [this] { update(); });
    }
    m_isStale = true;
}

/// What an earlier run left is told like one alarm that arrives now.
void AlarmCentre::takeLoaded()
{
    m_news = {};
    m_firstNew = 0;
    for (const qint64 id : m_book.waiting()) {
        addNews(*m_book.alarm(id));
    }
    m_latest = 0;
    if (m_news.arrived > 0 || m_told > 0) {
        update();
    }
}

void AlarmCentre::update()
{
    if (m_pause->isRunning()) {
        m_isStale = true;
    } else {
        tell();
    }
}

void AlarmCentre::tell()
{
    m_isStale = false;
    m_told = m_book.waitingCount();
    m_pause->start(pauseBetweenNews, [this] {
        if (m_isStale) {
            tell();
        }
    });
    Q_EMIT changed();
    AlarmNews news = std::exchange(m_news, {});
    const qint64 firstNew = std::exchange(m_firstNew, 0);
    // What was acknowledged meanwhile is no news.
    if (news.arrived > 0 && m_told > 0) {
        news.unacknowledged = m_told;
        news.latest = latest().value_or(Alarm());
        news.first = described(firstNew).value_or(news.latest);
        Q_EMIT attention(news);
    }
}

std::optional<Alarm> AlarmCentre::described(qint64 id) const
{
    const AlarmRow *alarm = m_book.alarm(id);
    return alarm != nullptr && m_book.isWaiting(*alarm) ? std::optional(m_describe(*alarm)) : std::nullopt;
}

std::optional<Alarm> AlarmCentre::first() const
{
    return m_book.waiting().empty() ? std::nullopt : described(*m_book.waiting().begin());
}

std::optional<Alarm> AlarmCentre::latest() const
{
    const std::optional<Alarm> known = described(m_latest);
    return known || m_book.waiting().empty() ? known : described(*m_book.waiting().rbegin());
}

} // namespace ktr

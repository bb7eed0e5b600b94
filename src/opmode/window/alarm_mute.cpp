#include "opmode/window/alarm_mute.h"

#include "platform/settings_store.h"

#include <algorithm>

namespace ktr {

namespace {

const QString untilKey = QStringLiteral("muteUntil");
const QString lengthKey = QStringLiteral("muteLength");

constexpr int hour = 3600;
constexpr int firstShift = 6; ///< o'clock; the others follow after eight hours each
constexpr int hoursOfShift = 8;
constexpr Milliseconds longestWait{60'000}; ///< the clock may be set meanwhile

} // namespace

AlarmMute::AlarmMute(Timers &timers, std::function<QDateTime()> now, QObject *parent)
    : QObject(parent), m_now(std::move(now)), m_timer(timers.create())
{
    const SettingsStore store;
    bool ok = false;
    const int length =
        store.GetSetting(settingsOwner, settings_sections::operationalMode, lengthKey).toInt(&ok);
    m_length = ok && length >= 0 && length < lengths ? static_cast<Length>(length) : Length::Hour;
    m_until = QDateTime::fromString(
        store.GetSetting(settingsOwner, settings_sections::operationalMode, untilKey), Qt::ISODate);
    check();
}

AlarmMute::~AlarmMute() = default;

QDateTime AlarmMute::end() const
{
    const QDateTime now = m_now();
    switch (m_length) {
    case Length::QuarterHour:
        return now.addSecs(hour / 4);
    case Length::Hour:
        return now.addSecs(hour);
    case Length::FourHours:
        return now.addSecs(qint64{4} * hour);
    case Length::Shift:
        break;
    }
    QDateTime change = now;
    change.setTime(QTime(firstShift, 0));
    while (change <= now) {
        change = change.addSecs(qint64{hoursOfShift} * hour);
    }
    return change;
}

void AlarmMute::setMuted(bool muted)
{
    m_until = muted ? end() : QDateTime();
    keep();
    check();
    Q_EMIT changed();
}

void AlarmMute::setLength(Length length)
{
    m_length = length;
    if (isMuted()) {
        setMuted(true);
    } else {
        keep();
    }
}

void AlarmMute::check()
{
    m_timer->stop();
    if (!isMuted()) {
        return;
    }
    const qint64 left = m_now().msecsTo(m_until);
    if (left <= 0 || left > Milliseconds(std::chrono::hours(24)).count()) { // the clock was set back
        setMuted(false);
    } else {
        m_timer->start(std::min(Milliseconds(left), longestWait), [this] { check(); });
    }
}

void AlarmMute::keep() const
{
    SettingsStore().SaveSettings(settingsOwner, settings_sections::operationalMode,
                                 {{untilKey, m_until.toUTC().toString(Qt::ISODate)},
                                  {lengthKey, QString::number(static_cast<int>(m_length))}});
}

} // namespace ktr

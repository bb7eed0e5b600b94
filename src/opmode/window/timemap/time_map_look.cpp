#include "opmode/window/timemap/time_map_look.h"

#include "look/palettes.h"
#include "opmode/alarms/alarm_rules.h"

#include <QCoreApplication>
#include <QDateTime>

#include <array>

namespace ktr {

namespace {

constexpr qint64 minuteMs = 60'000;
constexpr int minutesOfHour = 60;

QColor mixed(const QColor &ground, const QColor &colour, double part)
{
    const auto mix = [part](int from, int to) { return qRound(from + (to - from) * part); };
    return {mix(ground.red(), colour.red()), mix(ground.green(), colour.green()),
            mix(ground.blue(), colour.blue())};
}

QString translated(const char *text)
{
    return QCoreApplication::translate("TimeMap", text);
}

} // namespace

QColor hourColour(const QPalette &palette, TimeMapTopic topic, int priority, int step)
{
    const QColor ground = palette.color(QPalette::Base);
    if (step == 0) {
        return ground;
    }
    constexpr std::array parts = {0.0, 0.3, 0.52, 0.76, 1.0};
    const bool dark = isDark(palette);
    QColor full = dark ? QColor(150, 160, 255) : QColor(58, 62, 160); // silence
    if (topic == TimeMapTopic::Alarms) {
        full = priority == static_cast<int>(AlarmPriority::High) ? QColor(204, 30, 44)
               : priority == static_cast<int>(AlarmPriority::Medium)
                   ? QColor(232, 126, 4)
                   : (dark ? QColor(214, 190, 40) : QColor(196, 166, 0));
    }
    return mixed(ground, full, parts.at(static_cast<std::size_t>(step)));
}

QBrush unknownBrush(const QPalette &palette)
{
    return {mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.35), Qt::BDiagPattern};
}

/// One of them has a contrast of at least 4.58 to any ground.
QColor textOn(const QColor &ground)
{
    const QColor black(Qt::black);
    const QColor white(Qt::white);
    return contrast(black, ground) > contrast(white, ground) ? black : white;
}

QString priorityName(int priority)
{
    switch (static_cast<AlarmPriority>(priority)) {
    case AlarmPriority::High:
        return translated(QT_TRANSLATE_NOOP("TimeMap", "high"));
    case AlarmPriority::Medium:
        return translated(QT_TRANSLATE_NOOP("TimeMap", "medium"));
    case AlarmPriority::Low:
        return translated(QT_TRANSLATE_NOOP("TimeMap", "low"));
    }
    return QString::number(priority); // of a newer version
}

QString durationText(qint64 milliseconds)
{
    const qint64 minutes = (milliseconds + minuteMs / 2) / minuteMs;
    if (minutes == 0) {
        return translated(QT_TRANSLATE_NOOP("TimeMap", "less than a minute"));
    }
    if (minutes < minutesOfHour) {
        return translated(QT_TRANSLATE_NOOP("TimeMap", "%1 min")).arg(minutes);
    }
    return translated(QT_TRANSLATE_NOOP("TimeMap", "%1 h %2 min"))
        .arg(minutes / minutesOfHour)
        .arg(minutes % minutesOfHour, 2, 10, QLatin1Char('0'));
}

QString hourNumber(TimeMapTopic topic, const HourFigures &hour, qsizetype stations)
{
    if (topic == TimeMapTopic::Alarms) {
        const bool isUrgent = hour.priority == static_cast<int>(AlarmPriority::High);
        return hour.alarms == 0 ? QString() : QString::number(hour.alarms) + (isUrgent ? u"!" : u"");
    }
    if (hour.stations == 0) {
        return {};
    }
    return QString::number(stations == 1 ? std::max(qint64{1}, hour.unheardMs / minuteMs)
                                         : qint64{hour.stations});
}

QString figuresText(TimeMapTopic topic, const HourFigures &hour, qsizetype stations, const QLocale &locale)
{
    QStringList parts;
    if (topic == TimeMapTopic::Alarms) {
        parts += hour.alarms == 0 ? translated(QT_TRANSLATE_NOOP("TimeMap", "no alarm"))
                 : hour.alarms == 1
                     ? translated(QT_TRANSLATE_NOOP("TimeMap", "1 alarm, priority %1"))
                           .arg(priorityName(hour.priority))
                     : translated(QT_TRANSLATE_NOOP("TimeMap", "%1 alarms, the most urgent priority: %2"))
                           .arg(locale.toString(hour.alarms), priorityName(hour.priority));
    } else if (stations == 1 && hour.stations > 0) {
        parts +=
            translated(QT_TRANSLATE_NOOP("TimeMap", "not heard for %1")).arg(durationText(hour.unheardMs));
    } else if (hour.stations > 0) {
        parts +=
            translated(QT_TRANSLATE_NOOP("TimeMap", "stations not heard: %1 of %2, together for %3"))
                .arg(locale.toString(hour.stations), locale.toString(stations), durationText(hour.unheardMs));
    } else if (hour.unknownMs == 0) {
        parts += translated(QT_TRANSLATE_NOOP("TimeMap", "no silence"));
    }
    if (hour.unknownMs > 0) {
        parts += translated(QT_TRANSLATE_NOOP("TimeMap", "not known for %1: nobody watched"))
                     .arg(durationText(hour.unknownMs));
    }
    return parts.join(QStringLiteral("; "));
}

QString timesText(qint64 from, qint64 to, const QLocale &locale)
{
    const QDateTime begin = QDateTime::fromMSecsSinceEpoch(from);
    // A minute that has begun is meant, too: of the first one of a day the times would be the same.
    const QDateTime end = QDateTime::fromMSecsSinceEpoch((to + minuteMs - 1) / minuteMs * minuteMs);
    const auto day = [&locale](const QDateTime &moment) -> QString {
        return locale.dayName(moment.date().dayOfWeek(), QLocale::ShortFormat) + u' ' +
               moment.toString(QStringLiteral("dd.MM.yyyy "));
    };
    const QString time = QStringLiteral("HH:mm");
    const bool isOneDay = QDateTime::fromMSecsSinceEpoch(to - 1).date() == begin.date();
    const QString last =
        isOneDay && end.date() != begin.date() ? QStringLiteral("24:00") : end.toString(time);
    return day(begin) + begin.toString(time) + u'–' + (isOneDay ? last : day(end) + end.toString(time));
}

} // namespace ktr

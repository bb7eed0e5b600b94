#pragma once

#include "opmode/timemap/time_map.h"

#include <QBrush>
#include <QLocale>
#include <QPalette>
#include <QString>

namespace ktr {

// How hours of a map of time look and what is said of them.

/// The ground of an hour; the higher the step the stronger. Of alarms the priority gives the hue.
QColor hourColour(const QPalette &palette, TimeMapTopic topic, int priority, int step);
/// The ground of hours in which nobody listened.
QBrush unknownBrush(const QPalette &palette);
/// For text on such a ground.
QColor textOn(const QColor &ground);

/// "high", "medium", "low".
QString priorityName(int priority);
/// "1 h 05 min".
QString durationText(qint64 milliseconds);
/// The number that stands in an hour where there is room: alarms, with "!" where one is urgent; minutes of
/// one station, or how many stations were not heard. Empty for nothing.
QString hourNumber(TimeMapTopic topic, const HourFigures &hour, qsizetype stations);
/// The exact figures in words.
QString figuresText(TimeMapTopic topic, const HourFigures &hour, qsizetype stations, const QLocale &locale);
/// "Mon 02.11.2026 03:00–04:00"; what is longer than a day has both dates.
QString timesText(qint64 from, qint64 to, const QLocale &locale);

} // namespace ktr

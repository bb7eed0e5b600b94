#pragma once

#include "opmode/timemap/hour_grid.h"
#include "record/record_reader.h"

#include <optional>

namespace ktr {

/// What a map of time is about: alarms by the time at which they came, or how long stations were not heard.
enum class TimeMapTopic { Alarms, Silence };

struct TimeMapQuestion
{
    TimeMapTopic topic = TimeMapTopic::Alarms;
    HourGrid grid{};
    QList<qint64> stations{}; ///< without any, all
    qint64 now = 0;           ///< nothing is known of later times
    bool hasOneKeeper = true; ///< as UnheardTimes has it
};

/// What happened in an hour.
struct HourFigures
{
    qint64 alarms = 0;
    int priority = 0;     ///< of the most urgent one; 0: there was none
    int stations = 0;     ///< how many were not heard for any part of it
    qint64 unheardMs = 0; ///< all of theirs together
    qint64 unknownMs = 0; ///< nobody listened
    bool operator==(const HourFigures &) const = default;
};

struct TimeMapAnswer
{
    Status status = Status::done();
    std::vector<HourFigures> hours{}; ///< one for each of the grid
    qint64 begin = 0;                 ///< of the record; 0: it is empty
};

TimeMapAnswer readTimeMap(RecordReader &reader, const TimeMapQuestion &question);

/// What a station had in a time.
struct StationFigures
{
    qint64 station = 0; ///< 0: about none
    QString name{};
    qint64 alarms = 0;
    int priority = 0;
    qint64 unheardMs = 0;
    bool isOffline = false; ///< for some of it somebody wanted it so
    qint64 since = 0;       ///< it is not heard now, and was not since then; 0: it is heard
    bool isOfflineNow = false;
    bool operator==(const StationFigures &) const = default;
};

struct StationsQuestion
{
    TimeMapTopic topic = TimeMapTopic::Alarms;
    QList<qint64> stations{}; ///< as above
    qint64 from = 0;
    qint64 to = 0; ///< not later than now
    bool hasOneKeeper = true;
    qint64 now = 0; ///< 0: `to`
};

struct StationsAnswer
{
    Status status = Status::done();
    QList<StationFigures>
        stations{}; ///< those that had any; the most urgent, or those longest not heard, first
};

StationsAnswer readStationsOf(RecordReader &reader, const StationsQuestion &question);

/// Which of five steps an hour is at, 0 (nothing) to 4, so that one of many stations is seen and half of
/// them stand out. Of silence it is the part of the time that all `stations` were not heard: from 5, 20 and
/// 50 % on it is another step. Of alarms it is their number: from 2, 5 and 20 on.
int stepOf(TimeMapTopic topic, const HourFigures &hour, qint64 lengthMs, qsizetype stations);
/// From how much on it is a step from 1 on: alarms, or percent.
int stepBegin(TimeMapTopic topic, int step);
inline constexpr int timeMapSteps = 5;

} // namespace ktr

#pragma once

#include "record/record_rows.h"

#include <optional>

/// A year at some stations, made up from their numbers alone: what the modules say, what operators do, and,
/// told beside it by nobody's book, what must be known of each alarm afterwards.
namespace ktr::year {

constexpr qint64 aMinute = 60'000;
constexpr qint64 anHour = 60 * aMinute;
constexpr qint64 aDay = 24 * anHour;
constexpr qint64 firstDay = 1'735'689'600'000; ///< milliseconds since 1970, UTC
/// A story is over so many days after it began, or never.
constexpr int longestStory = 6;

/// Something that happens to a station.
struct Step
{
    enum class What { Say, FallSilent, IsHeard, Comment, Acknowledge };

    qint64 at = 0;
    qint64 station = 0; ///< 1 and up
    What what = What::Say;
    QString text{};   ///< of the message or comment; of the alarm to be acknowledged or commented, `alarm`
    QString number{}; ///< that the message is sent to
    QString by{};     ///< the operator
    QString alarm{};
    bool operator==(const Step &) const = default;
};

/// An alarm as the record must tell it, without its number there.
struct Occurrence
{
    AlarmRow row{};
    qint64 told = 0; ///< messages that belong to it
};

struct Story
{
    QList<Step> steps{}; ///< in their order
    QList<Occurrence> occurrences{};
};

QString stationName(qint64 station);

/// The story of an alarm that begins on a day at a station; nothing when none does, or when it would not be
/// over by the end of all days.
std::optional<Story> storyOf(qint64 station, int day, int days);

/// What else a station says on a day: its archive, values and notes, in no order.
QList<Step> everydayOf(qint64 station, int day);

/// The name of whoever sees to it.
QString operatorOf(qint64 chance);

/// The text under which an alarm about silence stands.
QString silenceText();

} // namespace ktr::year

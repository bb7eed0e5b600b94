#include "opmode/curves/curve_reading.h"

#include "opmode/station/station_messages.h"
#include "opmode/timemap/unheard_times.h"
#include "opmode/tree/history_entry_text.h"
#include "opmode/tree/node_texts.h"
#include "platform/module_minutes.h"
#include "platform/text_rules.h"

#include <algorithm>

namespace ktr {

namespace {

/// The module's clock shows the time of the wall.
qint64 momentOfModule(qint32 minute)
{
    constexpr qint64 second = 1000;
    const QDateTime wall = QDateTime::fromSecsSinceEpoch(secondsAtModuleMinute(minute), Qt::UTC);
    return QDateTime(wall.date(), wall.time()).toSecsSinceEpoch() * second;
}

/// From a moment the end of the time in which the wall clock is as far from UTC as then, or of the time that
/// is read, and how far that is.
std::pair<qint64, qint64> untilClockIsSet(qint64 from, qint64 end)
{
    constexpr qint64 second = 1000;
    constexpr qint64 quarter = qint64{15} * 60 * second;
    const auto offsetAt = [](qint64 at) {
        return QDateTime::fromMSecsSinceEpoch(at).offsetFromUtc() * second;
    };
    constexpr qint64 aWeek = qint64{7} * 96 * quarter; // it stays as it is for longer
    const qint64 offset = offsetAt(from);
    qint64 same = from;
    while (same < end && offsetAt(std::min(same + aWeek, end)) == offset) {
        same += aWeek;
    }
    if (same >= end) {
        return {end, offset};
    }
    qint64 other = (same + aWeek) / quarter; // clocks are set at a full quarter of an hour
    for (same /= quarter; other - same > 1;) {
        const qint64 middle = same + (other - same) / 2;
        (offsetAt(middle * quarter) == offset ? same : other) = middle;
    }
    return {std::min(end, other * quarter), offset};
}

template <class Take> void eachEntry(const StationTree &tree, const QString &kennung, const Take &take)
{
    const QModelIndex branch = tree.find(branchKey(kennung, branches::history));
    for (int row = 0; row < tree.rowCount(branch); ++row) {
        const QString text = tree.index(row, 0, branch).data().toString();
        if (const auto entry = splitHistoryEntry(text); entry && entry->minute) {
            take(*entry);
        }
    }
}

} // namespace

ReadCurve readCurve(RecordReader &reader, qint64 station, int channel, const CurveRange &range,
                    HistoryLevel level)
{
    CurveBuilder builder(level, range);
    if (level == HistoryLevel::Raw) {
        Status read = reader.measured(station, channel, range.from, range.to,
                                      [&builder](qint64 at, double value) { builder.add(at, value); });
        return {std::move(read), builder.take()};
    }
    Status read = Status::done();
    for (qint64 from = range.from; from < range.to && read;) {
        const auto [to, offset] = untilClockIsSet(from, range.to);
        read =
            reader.measuredSpans(station, channel, from, to, {lengthOf(level), offset},
                                 [&builder](const RecordReader::MeasuredSpan &span) { builder.add(span); });
        from = to;
    }
    return {std::move(read), builder.take()};
}

namespace {

/// In order, and those that touch each other as one.
std::vector<CurveRange> joined(std::vector<CurveRange> times)
{
    std::ranges::sort(times, {}, &CurveRange::from);
    std::vector<CurveRange> all;
    for (const CurveRange &each : times) {
        if (!all.empty() && each.from <= all.back().to) {
            all.back().to = std::max(all.back().to, each.to);
        } else {
            all.push_back(each);
        }
    }
    return all;
}

/// At both ends of a silence something may have been measured.
Status dropMeasured(RecordReader &reader, std::pair<qint64, int> input, std::vector<CurveRange> &gaps)
{
    constexpr qint64 edge = 1000;
    QList<std::pair<qint64, qint64>> inner;
    for (const CurveRange &gap : gaps) {
        inner.append({gap.from + edge, gap.to - edge});
    }
    QList<bool> are;
    Status read = reader.measuredWithin(input.first, input.second, inner, are);
    std::vector<CurveRange> left;
    for (qsizetype i = 0; i < are.size(); ++i) {
        if (!are[i]) {
            left.push_back(gaps[static_cast<std::size_t>(i)]);
        }
    }
    gaps = left;
    return read;
}

} // namespace

ReadGaps readGaps(RecordReader &reader, const GapsQuestion &question)
{
    constexpr qint64 partsSeen = 5000; // as wide as a screen, at most
    const CurveRange &range = question.range;
    constexpr qint64 leastSeen = 2000; // what lies between the edges of dropMeasured()
    const qint64 shortest = std::max(leastSeen, range.length() / partsSeen);
    QList<qint64> stations;
    for (const auto &[station, channel] : question.inputs) {
        if (!stations.contains(station)) {
            stations += station;
        }
    }
    std::unordered_map<qint64, std::vector<CurveRange>> unheard; // of station 0: nobody listened
    const qint64 to = std::min(range.to, question.now);
    UnheardTimes times(range.from, to, question.hasOneKeeper, [&unheard](const UnheardTimes::Time &time) {
        unheard[time.station].push_back({time.from, time.to});
    });
    ReadGaps read;
    if (!stations.isEmpty() && to > range.from) {
        read.status = reader.connections(stations, range.from, to,
                                         [&times](const ConnectionChange &change) { times.play(change); });
    }
    times.finish();
    for (const auto &input : question.inputs) {
        std::vector<CurveRange> gaps = unheard[input.first];
        gaps.insert(gaps.end(), unheard[0].begin(), unheard[0].end());
        gaps = joined(std::move(gaps));
        std::erase_if(gaps, [shortest](const CurveRange &gap) { return gap.length() <= shortest; });
        if (read.status) {
            read.status = dropMeasured(reader, input, gaps);
        }
        read.gaps += gaps;
    }
    return read;
}

ReadCurve treeCurve(const StationTree &tree, const QString &kennung, int channel, const CurveRange &range,
                    HistoryLevel level)
{
    std::vector<std::pair<qint64, double>> values;
    eachEntry(tree, kennung, [&](const HistoryEntryText &entry) {
        const std::optional<double> value = entry.input == channel ? toNumber(entry.value) : std::nullopt;
        const qint64 at = value ? momentOfModule(*entry.minute) : 0;
        if (value && range.contains(at)) {
            values.emplace_back(at, *value);
        }
    });
    std::ranges::stable_sort(values, std::less(), [](const auto &each) { return each.first; });
    CurveBuilder builder(level, range);
    for (const auto &[at, value] : values) {
        builder.add(at, value);
    }
    return {Status::done(), builder.take()};
}

QList<int> treeChannels(const StationTree &tree, const QString &kennung)
{
    QList<int> channels;
    eachEntry(tree, kennung, [&channels](const HistoryEntryText &entry) {
        if (entry.input >= 1 && entry.input <= channelCount && !channels.contains(entry.input)) {
            channels += entry.input;
        }
    });
    std::ranges::sort(channels);
    return channels;
}

ReadMarks readMarks(RecordReader &reader, const QList<qint64> &stations, const CurveRange &range)
{
    constexpr int most = 500;
    constexpr qint64 sameTime = 60'000;
    if (stations.isEmpty()) {
        return {};
    }
    const EventFilter filter{
        .from = range.from, .to = range.to, .stations = stations, .kinds = {EventKind::Notification}};
    ReadMarks marks;
    std::optional<RecordKey> after;
    int looked = 0;
    do {
        const EventPage page = reader.findEvents(filter, after, most);
        marks.status = page.status;
        for (const EventRow &row : page.rows) {
            constexpr QLatin1StringView arrow(" --> ");
            const qsizetype text = row.text.indexOf(arrow);
            const CurveMark mark{row.at, row.station,
                                 text < 0 ? row.text : row.text.sliced(text + arrow.size()),
                                 row.alarm != 0 || isAlarmText(row.text)};
            const bool isKnown = std::ranges::any_of(marks.marks, [&](const CurveMark &other) {
                return other.station == mark.station && other.text == mark.text &&
                       other.at - mark.at < sameTime;
            });
            if (!isKnown) {
                marks.marks += mark;
            }
        }
        looked += static_cast<int>(page.rows.size());
        after = page.next;
    } while (marks.status && after && looked < most);
    marks.areAll = !after;
    return marks;
}

} // namespace ktr

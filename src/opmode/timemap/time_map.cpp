#include "opmode/timemap/time_map.h"

#include "opmode/timemap/unheard_times.h"

#include <QCollator>

#include <algorithm>
#include <array>
#include <tuple>

namespace ktr {

namespace {

constexpr qint64 partMs = 900'000; // hours begin at whole quarters in every zone

auto &at(auto &of, int place)
{
    return of[static_cast<std::size_t>(place)];
}

/// Adds up the times of many stations by hours. One of months costs no more than one of minutes.
class UnheardSum
{
public:
    UnheardSum(const HourGrid &grid, std::vector<HourFigures> &hours)
        : m_grid(grid), m_hours(hours), m_whole(hours.size() + 1), m_begun(hours.size() + 1)
    {}

    void add(const UnheardTimes::Time &time)
    {
        const int first = m_grid.placeOf(time.from);
        const int last = m_grid.placeOf(time.to - 1);
        if (first < 0 || last < 0) {
            return;
        }
        if (time.station == 0) {
            for (int place = first; place <= last; ++place) {
                const HourOfDay &hour = m_grid.hour(place);
                at(m_hours, place).unknownMs += std::min(time.to, hour.to) - std::max(time.from, hour.from);
            }
            return;
        }
        if (first == last) {
            at(m_hours, first).unheardMs += time.to - time.from;
        } else {
            at(m_hours, first).unheardMs += m_grid.hour(first).to - time.from;
            at(m_hours, last).unheardMs += time.to - m_grid.hour(last).from;
            at(m_whole, first + 1) += 1;
            at(m_whole, last) -= 1;
        }
        const auto [counted, isNew] = m_countedUpTo.try_emplace(time.station, last);
        const int begin = isNew ? first : std::max(first, counted->second + 1); // each hour has it once
        counted->second = last;
        if (begin <= last) {
            at(m_begun, begin) += 1;
            at(m_begun, last + 1) -= 1;
        }
    }

    void finish()
    {
        qint64 whole = 0;
        int stations = 0;
        for (int place = 0; place < m_grid.count(); ++place) {
            whole += at(m_whole, place);
            stations += at(m_begun, place);
            HourFigures &hour = at(m_hours, place);
            hour.unheardMs += whole * (m_grid.hour(place).to - m_grid.hour(place).from);
            hour.stations = stations;
        }
    }

private:
    const HourGrid &m_grid;
    std::vector<HourFigures> &m_hours;
    std::vector<int> m_whole; ///< where whole hours of stations begin, and end
    std::vector<int> m_begun; ///< the same of hours that have any of them
    std::unordered_map<qint64, int> m_countedUpTo;
};

Status readAlarms(RecordReader &reader, const TimeMapQuestion &question, std::vector<HourFigures> &hours)
{
    const HourGrid &grid = question.grid;
    QList<AlarmSpan> spans;
    Status read = reader.alarmSpans(question.stations, grid.from(), grid.to(), partMs, spans);
    for (const AlarmSpan &span : std::as_const(spans)) {
        const int place = grid.placeOf(span.begin);
        if (place >= 0) {
            HourFigures &hour = hours[static_cast<std::size_t>(place)];
            hour.alarms += span.count;
            hour.priority = hour.priority == 0 ? span.priority : std::min(hour.priority, span.priority);
        }
    }
    return read;
}

/// Nothing is known of the time before the record.
void addUnwritten(UnheardSum &sum, const HourGrid &grid, qint64 begin, qint64 to)
{
    if (begin > grid.from()) {
        sum.add({0, grid.from(), std::min(begin, to), false});
    }
}

/// Alarms of hours in which nobody listened are not known, either.
Status readUnwatched(RecordReader &reader, const TimeMapQuestion &question, qint64 begin,
                     std::vector<HourFigures> &hours)
{
    const HourGrid &grid = question.grid;
    const qint64 to = std::min(grid.to(), question.now);
    if (to <= grid.from()) {
        return Status::done();
    }
    UnheardSum sum(grid, hours);
    addUnwritten(sum, grid, begin, to);
    UnheardTimes times(grid.from(), to, question.hasOneKeeper,
                       [&sum](const UnheardTimes::Time &time) { sum.add(time); });
    Status read =
        reader.watches(grid.from(), to, [&times](const ConnectionChange &change) { times.play(change); });
    times.finish();
    sum.finish();
    return read;
}

Status readSilence(RecordReader &reader, const TimeMapQuestion &question, qint64 begin,
                   std::vector<HourFigures> &hours)
{
    const HourGrid &grid = question.grid;
    const qint64 to = std::min(grid.to(), question.now);
    if (to <= grid.from()) {
        return Status::done();
    }
    UnheardSum sum(grid, hours);
    UnheardTimes times(grid.from(), to, question.hasOneKeeper,
                       [&sum](const UnheardTimes::Time &time) { sum.add(time); });
    addUnwritten(sum, grid, begin, to);
    Status read = reader.connections(question.stations, grid.from(), to,
                                     [&times](const ConnectionChange &change) { times.play(change); });
    times.finish();
    sum.finish();
    return read;
}

Status readUnheard(RecordReader &reader, const StationsQuestion &question,
                   std::unordered_map<qint64, StationFigures> &all)
{
    UnheardTimes times(question.from, question.to, question.hasOneKeeper,
                       [&all](const UnheardTimes::Time &time) {
                           if (time.station != 0) {
                               StationFigures &station = all[time.station];
                               station.unheardMs += time.to - time.from;
                               station.isOffline = station.isOffline || time.isOffline;
                           }
                       });
    Status read = reader.connections(question.stations, question.from, std::max(question.to, question.now),
                                     [&times](const ConnectionChange &change) { times.play(change); });
    const auto lasting = times.lasting();
    times.finish();
    for (auto &[number, figures] : all) {
        if (const auto now = lasting.find(number); now != lasting.end()) {
            figures.since = now->second.at;
            figures.isOfflineNow = now->second.isOffline;
        }
    }
    return read;
}

} // namespace

TimeMapAnswer readTimeMap(RecordReader &reader, const TimeMapQuestion &question)
{
    TimeMapAnswer answer;
    answer.hours.resize(static_cast<std::size_t>(question.grid.count()));
    answer.status = reader.begin(answer.begin);
    if (!answer.status || answer.begin == 0) {
        return answer;
    }
    if (question.topic == TimeMapTopic::Silence) {
        answer.status = readSilence(reader, question, answer.begin, answer.hours);
        return answer;
    }
    answer.status = readAlarms(reader, question, answer.hours);
    if (answer.status) {
        answer.status = readUnwatched(reader, question, answer.begin, answer.hours);
    }
    return answer;
}

StationsAnswer readStationsOf(RecordReader &reader, const StationsQuestion &question)
{
    StationsAnswer answer;
    std::unordered_map<qint64, StationFigures> all;
    if (question.topic == TimeMapTopic::Silence) {
        answer.status = readUnheard(reader, question, all);
    } else {
        QList<StationAlarms> alarms;
        answer.status = reader.stationAlarms(question.stations, question.from, question.to, alarms);
        for (const StationAlarms &of : std::as_const(alarms)) {
            all[of.station].alarms = of.count;
            all[of.station].priority = of.priority;
        }
    }
    if (answer.status && !all.empty()) {
        answer.status = reader.stations([&all](const StationRow &row) {
            if (const auto known = all.find(row.id); known != all.end()) {
                known->second.name = row.name;
            }
        });
    }
    for (auto &[number, figures] : all) {
        figures.station = number;
        answer.stations += figures;
    }
    QCollator byName;
    byName.setNumericMode(true);
    std::ranges::sort(answer.stations, [&byName](const StationFigures &one, const StationFigures &other) {
        const auto order = [](const StationFigures &of) {
            return std::tuple(-of.unheardMs, of.priority, -of.alarms);
        };
        return order(one) != order(other) ? order(one) < order(other) : byName(one.name, other.name);
    });
    return answer;
}

int stepBegin(TimeMapTopic topic, int step)
{
    constexpr std::array alarms = {0, 1, 2, 5, 20};
    constexpr std::array percent = {0, 0, 5, 20, 50};
    return topic == TimeMapTopic::Alarms ? alarms.at(static_cast<std::size_t>(step))
                                         : percent.at(static_cast<std::size_t>(step));
}

int stepOf(TimeMapTopic topic, const HourFigures &hour, qint64 lengthMs, qsizetype stations)
{
    const qint64 amount = topic == TimeMapTopic::Alarms ? hour.alarms : hour.unheardMs;
    if (amount == 0) {
        return 0;
    }
    constexpr double hundred = 100;
    const double whole =
        static_cast<double>(lengthMs) * static_cast<double>(std::max(qsizetype{1}, stations));
    const double measure = topic == TimeMapTopic::Alarms ? static_cast<double>(amount)
                                                         : hundred * static_cast<double>(amount) / whole;
    int step = 1;
    while (step + 1 < timeMapSteps && measure >= stepBegin(topic, step + 1)) {
        ++step;
    }
    return step;
}

} // namespace ktr

// The curves of several stations: a year of values each quarter of an hour read from the record at its level,
// beside the least that reading the same rows costs, and drawn. Of a record in a file and, where a server can
// be started, of one there, which tells a map of time as well.

#include "bare_database.h"
#include "figures.h"
#include "look/style.h"
#include "opmode/curves/curve_reading.h"
#include "opmode/timemap/time_map.h"
#include "opmode/window/curves/curves_canvas.h"
#include "platform/registry.h"
#include "process_cost.h"
#include "record/record_care.h"
#include "record/record_file.h"
#include "record/record_queries.h"
#include "record/record_writer.h"
#include "support/private_postgres.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <array>

using namespace ktr;
using figures::row;
using figures::Unit;

namespace {

constexpr int seriesCount = 12;
constexpr int valuesOfAYear = 35'040;
constexpr qint64 quarter = 900'000;
constexpr qint64 begin = 1'767'225'600'000; // 2026
constexpr CurveRange year{begin, begin + valuesOfAYear *quarter};
constexpr double most = 0.1;

double wallTime()
{
    static const QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return static_cast<double>(clock.nsecsElapsed()) * 1e-9;
}

using Clock = double (*)();

/// What each of them takes, run in turn: what slows the machine down meets all of them.
template <class... Works> std::vector<double> timesOf(Clock clock, const Works &...works)
{
    constexpr int runs = 15;
    std::vector<std::vector<double>> times(sizeof...(works));
    for (int run = 0; run < runs; ++run) {
        std::size_t place = 0;
        const auto measure = [&](const auto &work) {
            const double started = clock();
            work();
            times[place++].push_back(clock() - started);
        };
        (measure(works), ...);
    }
    std::vector<double> medians;
    for (std::vector<double> &each : times) {
        std::ranges::nth_element(each, each.begin() + runs / 2);
        medians.push_back(each[runs / 2]);
    }
    return medians;
}

template <class Work> double secondsOf(const Work &work)
{
    return timesOf(wallTime, work).front();
}

constexpr int stations = 10'000;
constexpr int connectionEvents = 520'000; ///< in the year, of all of them
constexpr qint64 connectionStep = valuesOfAYear * quarter / connectionEvents;

/// Each station is silent and heard again in turn.
void addConnections(RecordWriter &writer)
{
    for (int i = 1; i <= connectionEvents; ++i) {
        EventRow event;
        event.id = writer.nextEventId();
        event.at = begin + i * connectionStep;
        event.station = 1 + i / 2 % stations;
        event.kind = i % 2 == 0 ? EventKind::Silent : EventKind::Alive;
        writer.add(event);
    }
    (void)writer.flushNow();
}

void fill(const QString &path, bool withConnections)
{
    EventLoopTimers timers;
    const OpenedRecord opened = openRecord(path);
    if (!opened.status) {
        std::fprintf(stderr, "%s\n", qPrintable(opened.status.message()));
        std::exit(1);
    }
    RecordWriter writer(path, opened, timers, [](const QString &) { std::exit(1); });
    for (int station = 1; station <= seriesCount; ++station) {
        writer.add(
            StationRow{station, QStringLiteral("Station %1").arg(station), true, QStringLiteral("{}")});
        for (int i = 0; i < valuesOfAYear; ++i) {
            const double value = 2 + std::sin(i * 0.01 + station) + (i % 7) * 0.01;
            writer.add(HistoryRow{station, 9, begin + i * quarter, QStringLiteral("9"),
                                  QString::number(value, 'f', 2)});
        }
        (void)writer.flushNow();
    }
    if (withConnections) {
        addConnections(writer);
    }
    constexpr double patience = 120;
    const double started = wallTime();
    while (!writer.isAtRest() && wallTime() - started < patience) { // all is brought into order
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// Curves read on several connections, as the page of curves does; gives the time until the first is there
/// and until all are.
std::pair<double, double> readBeside(const QString &path, int connections)
{
    std::vector<std::unique_ptr<RecordQueries>> queries;
    for (int each = 0; each < connections; ++each) {
        queries.push_back(std::make_unique<RecordQueries>(path));
    }
    const std::array<char, seriesCount + 1> askers{}; // their addresses
    std::vector<double> firsts;
    std::vector<double> alls;
    constexpr int runs = 9;
    for (int run = -1; run < runs; ++run) {
        int arrived = 0;
        const double started = wallTime();
        double first = 0;
        QEventLoop loop;
        for (int station = 1; station <= seriesCount; ++station) {
            queries[static_cast<std::size_t>(station % connections)]->ask(
                &askers.at(static_cast<std::size_t>(station)),
                [station](RecordReader &reader) {
                    return readCurve(reader, station, 9, year, HistoryLevel::Day);
                },
                [&](const ReadCurve &) {
                    first = arrived == 0 ? wallTime() - started : first;
                    if (++arrived == seriesCount) {
                        loop.quit();
                    }
                });
        }
        loop.exec();
        if (run >= 0) { // the first time they connect
            firsts.push_back(first);
            alls.push_back(wallTime() - started);
        }
    }
    std::ranges::sort(firsts);
    std::ranges::sort(alls);
    return {firsts[runs / 2], alls[runs / 2]};
}

int connectionsHere()
{
    return std::clamp(QThread::idealThreadCount(), 1, 4);
}

std::vector<ReadCurve> readCurves(RecordReader &reader, HistoryLevel level, const CurveRange &range,
                                  int count)
{
    std::vector<ReadCurve> curves;
    for (int station = 1; station <= count; ++station) {
        curves.push_back(readCurve(reader, station, 9, range, level));
        if (!curves.back().status) {
            std::fprintf(stderr, "%s\n", qPrintable(curves.back().status.message()));
            std::exit(1);
        }
    }
    return curves;
}

const CurveRange month{year.to - 30 * 96 * quarter, year.to};

/// The processor time of one thread tells how much of it is the program's, whatever else runs.
void measureFile(const QString &path)
{
    RecordReader reader(path);
    const BareDatabase bare(path);
    constexpr double mostTimes = 6;         // of the floor
    constexpr double mostTimesOfMonth = 12; // as many points as rows
    const auto floor = [&](const CurveRange &range) {
        (void)bare.ask(
            "SELECT at, second FROM history WHERE station = 1 AND channel = 9 AND at >= ? AND at < ?",
            {range.from, range.to});
    };
    const char *const library = "the library reading the same rows";
    const auto ofYear = timesOf(
        processorTime, [&] { (void)readCurves(reader, HistoryLevel::Day, year, 1); }, [&] { floor(year); });
    row("a year of a curve (35,040 values) read by days, processor time", ofYear[0], Unit::Seconds, most,
        figures::Floor{ofYear[1], library, mostTimes});
    const auto ofMonth = timesOf(
        processorTime, [&] { (void)readCurves(reader, HistoryLevel::QuarterHour, month, 1); },
        [&] { floor(month); });
    row("a month of it by quarters of an hour, processor time", ofMonth[0], Unit::Seconds, most,
        figures::Floor{ofMonth[1], library, mostTimesOfMonth});
    row("a year of a curve by days, by the clock",
        secondsOf([&] { (void)readCurves(reader, HistoryLevel::Day, year, 1); }), Unit::Seconds, most);
    const double all = secondsOf([&] { (void)readCurves(reader, HistoryLevel::Day, year, seriesCount); });
    row("a year of twelve curves by days, one after the other", all, Unit::Seconds);
    const auto [first, last] = readBeside(path, connectionsHere());
    row("the same on as many connections as there are processors: the first curve is there", first,
        Unit::Seconds);
    row("the same, all of them", last, Unit::Seconds, figures::unbounded,
        figures::Floor{all / connectionsHere(), "shared evenly by the processors"});
    GapsQuestion gaps{.range = year, .now = year.to};
    for (int station = 1; station <= seriesCount; ++station) {
        gaps.inputs.append({station, 9});
    }
    row("the gaps of twelve curves of a year, 10,000 stations were silent at times",
        secondsOf([&] { (void)readGaps(reader, gaps); }), Unit::Seconds);
}

/// A year of 10,000 stations: 500,000 alarms, 520,000 events that tell of connections, a million others.
void fillMap(const test::PrivatePostgres &server, const QString &database)
{
    const QString made =
        QStringLiteral(
            "SET search_path = ktrconfig;"
            "INSERT INTO station(id, name, listed, attributes) SELECT n, 'Station ' || n, 1, '{}'"
            " FROM generate_series(%1, %3) n;"
            "INSERT INTO alarm(id, station, kind, text, priority, first, last, count, recipients, "
            "acknowledged, over)"
            " SELECT n, 1 + n % %3, 1, 'Pump fail', 1 + n % 3, at, at, 1, '[]', at, at FROM (SELECT n,"
            " %2 + n::bigint * 63072 AS at FROM generate_series(1, 500000) n) each;"
            "INSERT INTO event(at, station, kind, text) SELECT %2 + n::bigint * %5, 1 + (n / 2) % %3,"
            " 11 - n % 2, '' FROM generate_series(1, %4) n;"
            "INSERT INTO event(at, station, kind, text) SELECT %2 + n::bigint * 31536, 1 + n % %3, 2, ''"
            " FROM generate_series(1, 1000000) n;"
            "ANALYZE")
            .arg(seriesCount + 1)
            .arg(begin)
            .arg(stations)
            .arg(connectionEvents)
            .arg(connectionStep);
    const QString trouble = server.sql(database, made);
    if (trouble.contains(QLatin1String("ERROR"))) {
        std::fprintf(stderr, "%s\n", qPrintable(trouble));
        std::exit(1);
    }
}

void measureServer()
{
    test::PrivatePostgres server;
    const QString trouble = test::PrivatePostgres::canBe() ? server.start() : QStringLiteral("there is none");
    if (!trouble.isEmpty()) {
        std::fprintf(stderr, "no server to measure: %s\n", qPrintable(trouble));
        return;
    }
    const QString database = QStringLiteral("curves");
    const QString path = server.makeDatabase(database);
    if (!initRecord(path)) {
        std::exit(1);
    }
    fill(path, false);
    fillMap(server, database);
    RecordReader reader(path);
    const char *const rows = "its rows fetched as they are";
    const auto floor = [&](const CurveRange &range) {
        (void)reader.history(1, 9, range.from, range.to, [](const HistoryRow &) {});
    };
    const auto ofYear = timesOf(
        wallTime, [&] { (void)readCurves(reader, HistoryLevel::Day, year, 1); }, [&] { floor(year); });
    row("on a server: a year of a curve by days", ofYear[0], Unit::Seconds, figures::unbounded,
        figures::Floor{ofYear[1], rows});
    const auto ofMonth = timesOf(
        wallTime, [&] { (void)readCurves(reader, HistoryLevel::QuarterHour, month, 1); },
        [&] { floor(month); });
    row("on a server: a month of it by quarters of an hour", ofMonth[0], Unit::Seconds, figures::unbounded,
        figures::Floor{ofMonth[1], rows});
    const auto [first, last] = readBeside(path, connectionsHere());
    row("on a server: a year of twelve curves, the first is there", first, Unit::Seconds);
    row("on a server: a year of twelve curves, all of them", last, Unit::Seconds);
    GapsQuestion gaps{.range = year, .now = year.to, .hasOneKeeper = false};
    for (int station = 1; station <= seriesCount; ++station) {
        gaps.inputs.append({station, 9});
    }
    row("on a server: the gaps of twelve curves of a year", secondsOf([&] { (void)readGaps(reader, gaps); }),
        Unit::Seconds);
    for (const auto &[topic, name] :
         {std::pair(TimeMapTopic::Alarms, "alarms"), std::pair(TimeMapTopic::Silence, "silence")}) {
        for (const auto &[days, length] : {std::pair(365, "a year"), std::pair(30, "a month")}) {
            const QDate from = QDateTime::fromMSecsSinceEpoch(begin).date();
            const TimeMapQuestion question{topic, HourGrid(from, days), {}, year.to, false};
            row(std::string("on a server: a map of ") + length + " of " + name + ", 10,000 stations",
                secondsOf([&] { (void)readTimeMap(reader, question); }), Unit::Seconds);
        }
    }
}

void measureDrawing(const QString &path)
{
    RecordReader reader(path);
    std::vector<ReadCurve> curves = readCurves(reader, HistoryLevel::Day, year, seriesCount);
    CurvesCanvas canvas(nullptr, {[](const CurveRange &) {}, [] {}});
    constexpr QSize size(1400, 700);
    canvas.resize(size);
    canvas.QWidget::show();
    const auto draw = [&] {
        CurvesShown shown;
        QList<CurveSeries> series;
        for (std::size_t i = 0; i < curves.size(); ++i) {
            series += CurveSeries{{QString::number(i), 9},
                                  static_cast<int>(i) + 1,
                                  QStringLiteral("Station"),
                                  QStringLiteral("Level"),
                                  i % 2 == 0 ? QStringLiteral("m") : QStringLiteral("l/s")};
            shown.curves += ShownCurve{series.last(), std::make_shared<CurvePoints>(curves[i].curve)};
        }
        shown.axes = axesOf(series);
        canvas.show(shown, year);
        canvas.replot(QCustomPlot::rpImmediateRefresh);
    };
    row("twelve curves of a year drawn, each day's mean", secondsOf(draw), Unit::Seconds, most);
    curves = readCurves(reader, HistoryLevel::Day, year, 1);
    row("one curve of a year drawn, each day's least, mean and greatest value", secondsOf(draw),
        Unit::Seconds, most);
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    applyAppearance(*qApp, Appearance::Light);
    const QTemporaryDir folder;
    MRegistry::setRegistryFile(folder.filePath(QStringLiteral("registry.json")));
    const QString path = folder.filePath(QStringLiteral("record.sqlite"));
    fill(path, true);
    measureFile(path);
    measureDrawing(path);
    measureServer();
    return figures::exitCode();
}

// The curves of several stations: a year of values each quarter of an hour read from the record at its level,
// beside the database library reading the same rows, and drawn.

#include "bare_database.h"
#include "figures.h"
#include "look/style.h"
#include "opmode/curves/curve_reading.h"
#include "opmode/window/curves/curves_canvas.h"
#include "platform/registry.h"
#include "record/record_file.h"
#include "record/record_writer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>

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

template <class Work> double secondsOf(const Work &work)
{
    constexpr int runs = 15;
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer clock;
        clock.start();
        work();
        times.push_back(static_cast<double>(clock.nsecsElapsed()) * 1e-9);
    }
    std::ranges::nth_element(times, times.begin() + runs / 2);
    return times[runs / 2];
}

void fill(const QString &path)
{
    EventLoopTimers timers;
    const OpenedRecord opened = openRecord(path);
    if (!opened.status) {
        std::exit(1);
    }
    RecordWriter writer(path, opened, timers, [](const QString &) { std::exit(1); });
    for (int station = 1; station <= seriesCount; ++station) {
        for (int i = 0; i < valuesOfAYear; ++i) {
            const double value = 2 + std::sin(i * 0.01 + station) + (i % 7) * 0.01;
            writer.add(HistoryRow{station, 9, begin + i * quarter, QStringLiteral("9"),
                                  QString::number(value, 'f', 2)});
        }
        (void)writer.flushNow();
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    applyAppearance(*qApp, Appearance::Light);
    const QTemporaryDir folder;
    MRegistry::setRegistryFile(folder.filePath(QStringLiteral("registry.json")));
    const QString path = folder.filePath(QStringLiteral("record.sqlite"));
    fill(path);
    RecordReader reader(path);
    const BareDatabase bare(path);
    constexpr double mostTimes = 15; // several times the floor while programs are compiled beside it
    const auto floor = [&](qint64 from, qint64 to) {
        return secondsOf([&] {
            (void)bare.ask(
                "SELECT at, second FROM history WHERE station = 1 AND channel = 9 AND at >= ? AND at < ?",
                {from, to});
        });
    };
    std::vector<ReadCurve> curves;
    const auto read = [&](HistoryLevel level, const CurveRange &range, int count) {
        curves.clear();
        for (int station = 1; station <= count; ++station) {
            curves.push_back(readCurve(reader, station, 9, range, level));
        }
    };
    const double wholeYear = floor(year.from, year.to);
    const char *const library = "the library reading the same rows";
    row("a year of a curve (35,040 values) read by days",
        secondsOf([&] { read(HistoryLevel::Day, year, 1); }), Unit::Seconds, most,
        figures::Floor{wholeYear, library, mostTimes});
    const CurveRange month{year.to - 30 * 96 * quarter, year.to};
    row("a month of it by quarters of an hour", secondsOf([&] { read(HistoryLevel::QuarterHour, month, 1); }),
        Unit::Seconds, most, figures::Floor{floor(month.from, month.to), library});
    row("a year of twelve curves by days", secondsOf([&] { read(HistoryLevel::Day, year, seriesCount); }),
        Unit::Seconds, figures::unbounded, figures::Floor{seriesCount * wholeYear, library, mostTimes});

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
    read(HistoryLevel::Day, year, 1);
    row("one curve of a year drawn, each day's least, mean and greatest value", secondsOf(draw),
        Unit::Seconds, most);
    return figures::exitCode();
}

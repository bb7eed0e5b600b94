// The operational mode with many stations and long lists: schedules of 10,000 stations, a list of a million
// entries read and written beside what the parser alone needs for the same document.

#include "opmode/nodes_file.h"
#include "opmode/nodes_journal.h"
#include "opmode/station_tree.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

using namespace ktr;

namespace {

constexpr int stations = 1000;
constexpr int entries = 1'000'000;

StationCaptions captions()
{
    return {QStringLiteral("Notifications"), QStringLiteral("History"), QStringLiteral("IP")};
}

void fill(StationTree &tree, int count)
{
    QList<QString> names;
    for (int station = 0; station < stations; ++station) {
        names.append(QStringLiteral("Station %1").arg(station));
        tree.addStation(names.last());
    }
    for (int entry = 0; entry < count; ++entry) {
        const QString text = QStringLiteral("15.11.2009 14:05 : IP%1 = 12.5").arg(entry);
        tree.take(names[entry % stations], HistoryMessage{{{text, text}}, {}}, {});
    }
}

const QByteArray &document()
{
    static const QByteArray written = [] {
        StationTree tree(captions());
        fill(tree, entries);
        return writeNodes(tree.nodes(), [](const QString &) { return StationAttributes(); });
    }();
    return written;
}

void evaluatingTheSchedulesOf10000Stations(benchmark::State &state)
{
    std::vector<ExclusiveSchedule> schedules;
    for (int station = 0; station < 10'000; ++station) {
        schedules.push_back({QStringLiteral("%1:%2").arg(station % 24).arg(station % 60), station % 11,
                             QStringLiteral("%1:%2").arg(station % 23).arg(station % 59), station / 11 % 11});
    }
    const WallMinute now = WallMinute::of(QDateTime(QDate(2009, 11, 15), QTime(14, 5)));
    for (auto _ : state) {
        for (const ExclusiveSchedule &schedule : schedules) {
            benchmark::DoNotOptimize(switchedTo(schedule, now.plus(-WallMinute::minutesOfAWeek), now));
        }
    }
}
BENCHMARK(evaluatingTheSchedulesOf10000Stations)->Unit(benchmark::kMillisecond);

void appendingAMillionEntries(benchmark::State &state)
{
    for (auto _ : state) {
        StationTree tree(captions());
        fill(tree, entries);
        state.counters["bytes of text"] = static_cast<double>(tree.nodes().arenaSize());
    }
}
BENCHMARK(appendingAMillionEntries)->Unit(benchmark::kMillisecond);

void parsingAMillionEntriesWithTheParserAlone(benchmark::State &state)
{
    document();
    for (auto _ : state) {
        pugi::xml_document parsed;
        benchmark::DoNotOptimize(
            parsed.load_buffer(document().constData(), static_cast<std::size_t>(document().size())));
    }
}
BENCHMARK(parsingAMillionEntriesWithTheParserAlone)->Unit(benchmark::kMillisecond);

void readingAMillionEntries(benchmark::State &state)
{
    document();
    for (auto _ : state) {
        StationTree tree(captions());
        tree.beginLoading();
        const Status read = readNodes(document(), [&tree](const NodeElement &element) {
            tree.load(element.key, element.text, element.colour);
        });
        tree.endLoading();
        if (!read) {
            state.SkipWithError("not read");
        }
    }
}
BENCHMARK(readingAMillionEntries)->Unit(benchmark::kMillisecond);

void savingAMillionEntriesWithTheParserAlone(benchmark::State &state)
{
    struct Count : pugi::xml_writer
    {
        void write(const void *, std::size_t size) override { bytes += size; }
        std::size_t bytes = 0;
    };
    pugi::xml_document parsed;
    parsed.load_buffer(document().constData(), static_cast<std::size_t>(document().size()));
    for (auto _ : state) {
        Count count;
        parsed.save(count, "", pugi::format_raw | pugi::format_no_declaration);
        benchmark::DoNotOptimize(count.bytes);
    }
}
BENCHMARK(savingAMillionEntriesWithTheParserAlone)->Unit(benchmark::kMillisecond);

void writingAMillionEntries(benchmark::State &state)
{
    StationTree tree(captions());
    fill(tree, entries);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            writeNodes(tree.nodes(), [](const QString &) { return StationAttributes(); }));
    }
}
BENCHMARK(writingAMillionEntries)->Unit(benchmark::kMillisecond);

void keepingAnAlarmInTheJournal(benchmark::State &state)
{
    const QTemporaryDir folder;
    EventLoopTimers timers;
    NodesJournal journal(folder.filePath(QStringLiteral("nodes.journal")), timers, [](const QString &) {});
    if (!journal.restart(0)) {
        state.SkipWithError("no journal");
    }
    for (auto _ : state) {
        journal.add({NodeChange::What::Added, "Station 1/meldung/+4917012345 --> M,Alarm DI1 fail",
                     "+4917012345 --> M,Alarm DI1 fail", StationTree::alarmColour});
        journal.flush();
    }
}
BENCHMARK(keepingAnAlarmInTheJournal)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv); // the journal's timer needs it
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

// The operational mode with many stations and long lists: schedules of 10,000 stations, a list of a million
// entries read and written beside what the parser alone needs for the same document.

#include "figures.h"
#include "measured_runs.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/station_tree_loader.h"
#include "process_cost.h"

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

QStringList fill(StationTree &tree, int count)
{
    QStringList names;
    for (int station = 0; station < stations; ++station) {
        names.append(QStringLiteral("Station %1").arg(station));
        tree.addStation(names.last());
    }
    for (int entry = 0; entry < count; ++entry) {
        const QString text = QStringLiteral("15.11.2009 14:05 : IP%1 = 12.5").arg(entry);
        tree.apply(names[entry % stations], HistoryMessage{{{text, text}}, {}}, {});
    }
    return names;
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
        state.counters["bytes an entry"] = static_cast<double>(tree.nodes().overhead()) / entries;
    }
}
BENCHMARK(appendingAMillionEntries)->Unit(benchmark::kMillisecond);

void readingAMillionEntriesBesideTheParserAlone(benchmark::State &state)
{
    document();
    const auto parser = [] {
        pugi::xml_document parsed;
        benchmark::DoNotOptimize(
            parsed.load_buffer(document().constData(), static_cast<std::size_t>(document().size())));
    };
    const auto own = [&state] {
        StationTree tree(captions());
        std::optional<StationTreeLoader> loader(std::in_place, tree);
        QStringList remarks;
        const Status read = readNodes(
            document(), remarks, [&loader](const StoredNode &element) { loader->load(element); },
            [&loader](std::size_t nodes, std::size_t bytes) { loader->reserve(nodes, bytes); });
        loader.reset();
        if (!read) {
            state.SkipWithError("not read");
        }
        state.counters["bytes an entry"] = static_cast<double>(tree.nodes().overhead()) / entries;
    };
    compare(state, own, parser, releaseFreedMemory);
}
BENCHMARK(readingAMillionEntriesBesideTheParserAlone)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(7);

/// The document of a tree, element by element, as whoever has only the parser would make it.
void build(pugi::xml_document &document, const NodeStore &nodes)
{
    pugi::xml_node root = document.append_child("KTR");
    std::string name;
    std::string text;
    std::size_t index = 0;
    for (NodeStore::Id id = NodeStore::root + 1; id < nodes.end(); ++id) {
        pugi::xml_node element = root.append_child(("item" + std::to_string(++index)).c_str());
        nodes.getKeyInNextRun(id, name);
        text = nodes.text(id);
        element.append_attribute("key").set_value(name.c_str());
        element.append_attribute("text").set_value(text.c_str());
        element.append_attribute("ForeColor").set_value(nodes.colour(id));
    }
}

QByteArray saved(const pugi::xml_document &parsed)
{
    struct Writer : pugi::xml_writer
    {
        void write(const void *data, std::size_t size) override
        {
            bytes.append(static_cast<const char *>(data), static_cast<qsizetype>(size));
        }
        QByteArray bytes;
    } writer;
    writer.bytes.reserve(document().size());
    parsed.save(writer, "", pugi::format_raw | pugi::format_no_declaration);
    return writer.bytes;
}

StationTree &filledTree()
{
    static StationTree tree(captions());
    if (tree.rowCount() == 0) {
        fill(tree, entries);
    }
    return tree;
}

QByteArray written()
{
    return writeNodes(filledTree().nodes(), [](const QString &) { return StationAttributes(); });
}

void writingAMillionEntriesBesideTheParserAlone(benchmark::State &state)
{
    compare(
        state, [] { benchmark::DoNotOptimize(written()); },
        [] {
            pugi::xml_document built;
            build(built, filledTree().nodes());
            benchmark::DoNotOptimize(saved(built));
        },
        releaseFreedMemory);
}
BENCHMARK(writingAMillionEntriesBesideTheParserAlone)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(7);

void writingAMillionEntriesBesideTheSaveOfABuiltDocument(benchmark::State &state)
{
    pugi::xml_document built;
    built.load_buffer(document().constData(), static_cast<std::size_t>(document().size()));
    compare(
        state, [] { benchmark::DoNotOptimize(written()); },
        [&built] { benchmark::DoNotOptimize(saved(built)); }, releaseFreedMemory);
}
BENCHMARK(writingAMillionEntriesBesideTheSaveOfABuiltDocument)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(7);

/// Alarms that arrive all at once, beside a million entries.
void adding100000Notifications(benchmark::State &state)
{
    constexpr int notifications = 100'000;
    constexpr int batch = 5'000;
    for (auto _ : state) {
        StationTree tree(captions());
        const QStringList names = fill(tree, entries);
        const QDateTime now = QDateTime::currentDateTime();
        double longest = 0;
        double all = 0;
        std::vector<NotificationMessage> messages;
        for (int number = 0; number < notifications; ++number) {
            const QString text = QStringLiteral("+4917012345 --> M,Alarm %1 fail").arg(number);
            messages.push_back({{text, text}, true});
        }
        const auto turn = [&](int first) { // of the event loop, with what came in one piece
            for (int number = first; number < first + batch; ++number) {
                tree.apply(names[number % stations], messages[static_cast<std::size_t>(number)], now);
            }
            QCoreApplication::processEvents();
        };
        for (int first = 0; first < notifications; first += batch) {
            const double taken = secondsOf([&] { turn(first); });
            longest = std::max(longest, taken);
            all += taken;
        }
        state.SetIterationTime(all);
        state.counters["longest piece, ms"] = longest * 1000;
    }
}
BENCHMARK(adding100000Notifications)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

void printRows(const MeasuredRuns &runs)
{
    using figures::row;
    using figures::Unit;
    const auto beside = [&runs](const char *what, const std::string &name, const char *floor, double most) {
        row(what, runs.ownSeconds(name), Unit::Seconds, figures::unbounded,
            figures::Floor{runs.otherSeconds(name), floor, most});
    };
    beside("a `nodes.xml` of a million entries read into the tree",
           "readingAMillionEntriesBesideTheParserAlone", "pugixml parsing it", 2.5);
    beside("the same written", "writingAMillionEntriesBesideTheParserAlone", "pugixml building and saving it",
           1.5);
    beside("the same written, beside the shorter way", "writingAMillionEntriesBesideTheSaveOfABuiltDocument",
           "pugixml saving it when it is built already", figures::unbounded);
    constexpr double mostAnEntry = 120;
    row("memory of an entry of the history beside its text, read",
        runs.counter("readingAMillionEntriesBesideTheParserAlone", "bytes an entry"), Unit::Bytes,
        mostAnEntry);
    row("the same, appended", runs.counter("appendingAMillionEntries", "bytes an entry"), Unit::Bytes,
        mostAnEntry);
    row("the schedules of 10,000 stations", runs.seconds("evaluatingTheSchedulesOf10000Stations"),
        Unit::Seconds, 0.05);
    row("100,000 notifications put into a tree of a million entries",
        runs.seconds("adding100000Notifications"), Unit::Seconds);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    MeasuredRuns runs;
    benchmark::RunSpecifiedBenchmarks(&runs);
    printRows(runs);
    return figures::exitCode();
}

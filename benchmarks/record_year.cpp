// A record of full size: a year at a thousand stations, played in fast motion, and what it costs to open its
// list, to find something in it and to go on writing it, beside the database library alone.
//
//     record_year make FOLDER [STATIONS DAYS]      1000 and 365 unless told otherwise; 3 GB of the disk
//     record_year compare FOLDER [STATIONS DAYS [CSV]]  whether the record tells of each alarm what it was;
//                                                  writes what an export must have
//     record_year measure FOLDER [SMALLER]         with the memory it takes beside one of a tenth of the days
//     record_year open FOLDER                      opens the list; prints seconds, those of the processor and
//     bytes

#include "bare_database.h"
#include "figures.h"
#include "measured_runs.h"
#include "opmode/operational_mode.h"
#include "process_cost.h"
#include "record/record_reader.h"
#include "support/recorded_line.h"
#include "year/play.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>

using namespace ktr;
using namespace Qt::StringLiterals;
using figures::row;
using figures::Unit;

namespace {

constexpr int aPage = 100;
constexpr double mostForAPage = 0.1;

QString recordOf(const QString &folder)
{
    return ListRecord::pathFor(year::listOf(folder));
}

Status open(const QString &folder)
{
    EventLoopTimers timers;
    Environment environment;
    OperationalMode mode({.environment = environment,
                          .timers = timers,
                          .createLine = [] { return std::make_unique<test::RecordedLine>(); }},
                         {u"Notifications"_s, u"History"_s, u"IP"_s});
    const double before = processorTime();
    QElapsedTimer time;
    time.start();
    const Status opened = mode.open(year::listOf(folder), OperationalMode::Use::Keep);
    const double seconds = double(time.nsecsElapsed()) * 1e-9;
    const double work = processorTime() - before;
    for (int i = 0; i < 100; ++i) { // what is done right after it
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    std::printf("%.3f %.3f %.0f\n", seconds, work, residentMemory());
    return opened ? mode.close() : opened;
}

struct Opening
{
    double seconds;
    double processorSeconds;
    double memory;
};

/// The same in a process of its own.
Opening openedElsewhere(const QString &folder)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {u"open"_s, folder});
    process.waitForFinished(600'000);
    const QByteArrayList numbers = process.readAllStandardOutput().trimmed().split(' ');
    return {numbers.value(0).toDouble(), numbers.value(1).toDouble(), numbers.value(2).toDouble()};
}

void opening(const QString &folder, const QString &smaller)
{
    std::vector<double> waited;
    std::vector<double> worked;
    std::vector<double> memory;
    for (int i = 0; i < 3; ++i) {
        const Opening run = openedElsewhere(folder);
        waited.push_back(run.seconds);
        worked.push_back(run.processorSeconds);
        memory.push_back(run.memory);
    }
    const double before = processorTime();
    {
        const BareDatabase bare(recordOf(folder));
        (void)bare.ask("SELECT * FROM station");
        (void)bare.ask("SELECT * FROM notification WHERE listed = 1");
        (void)bare.ask("SELECT * FROM alarm WHERE acknowledged IS NULL OR over IS NULL");
        QFile file(year::listOf(folder));
        (void)(file.open(QIODevice::ReadOnly) && !file.readAll().isEmpty());
    }
    row("a list of a thousand stations opened, with the record of a year", median(waited), Unit::Seconds, 2);
    row("processor time of it", median(worked), Unit::Seconds, 2,
        figures::Floor{processorTime() - before,
                       "the library reading what the list needs, and its file read"});
    if (!smaller.isEmpty()) {
        const Opening other = openedElsewhere(smaller);
        row("memory of the process then", median(memory), Unit::Bytes, figures::unbounded,
            figures::Floor{other.memory, "with the record of five weeks", 1.05});
    }
}

/// Until the indices behind the rows hold all of them.
void settle(const QString &folder)
{
    EventLoopTimers timers;
    QElapsedTimer time;
    time.start();
    const OpenedRecord opened = openRecord(recordOf(folder));
    std::fprintf(stderr, "the record opened, and brought forward, in %.2f s %s\n",
                 double(time.restart()) / 1000, qPrintable(opened.status.message()));
    const RecordWriter writer(recordOf(folder), opened, timers, [](const QString &) {});
    while (!writer.isAtRest()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    std::fprintf(stderr, "its indices filled in %.1f s\n", double(time.elapsed()) / 1000);
}

/// The slowest of some first pages, and of what the library alone needs for them.
template <class Find, class Floor>
void page(const char *what, Find find, Floor floor, bool isSomewhere = true)
{
    constexpr int times = 9;
    double own = 0;
    double bare = 0;
    qsizetype rows = 0;
    for (int i = 0; i < times; ++i) {
        const auto measureFloor = [&] { bare = std::max(bare, secondsOf([&] { floor(i); })); };
        if (i % 2 == 0) {
            measureFloor();
        }
        own = std::max(own, secondsOf([&] { rows += find(i); }));
        if (i % 2 != 0) {
            measureFloor();
        }
    }
    if ((rows > 0) != isSomewhere) {
        std::fprintf(stderr, "%s: %lld rows\n", what, static_cast<long long>(rows));
        row(what, "not as it should be", "", false);
        return;
    }
    row(what, own, Unit::Seconds, mostForAPage, figures::Floor{bare, "the library, by the best index"});
}

void pages(const QString &folder)
{
    RecordReader reader(recordOf(folder));
    const BareDatabase bare(recordOf(folder));
    const auto events = [&](const auto &filterOf) {
        return [&reader, filterOf](int i) {
            const EventPage found = reader.findEvents(filterOf(i), {}, aPage);
            if (!found.status) {
                std::fprintf(stderr, "%s\n", qPrintable(found.status.message()));
            }
            return found.rows.size();
        };
    };
    const auto alarms = [&](const auto &filterOf) {
        return [&reader, filterOf](int i) { return reader.findAlarms(filterOf(i), {}, aPage).rows.size(); };
    };
    const auto library = [&](const char *statement, const auto &valueOf) {
        return [&bare, statement, valueOf](int i) { (void)bare.ask(statement, valueOf(i)); };
    };
    const auto none = [](int) { return QVariantList(); };
    const auto dayOf = [](int i) { return year::firstDay + (10 + 39 * i) * year::aDay; };
    const auto ofKinds = [](const QList<EventKind> &kinds) {
        return [kinds](int) { return EventFilter{.kinds = kinds}; };
    };
    const auto inOrder = "SELECT event.* FROM event_kind CROSS JOIN event USING(id) WHERE event_kind.kind = ?"
                         " ORDER BY event_kind.at DESC, event_kind.id DESC LIMIT 100";
    const auto byText = "SELECT event.* FROM event_text CROSS JOIN event ON event.id = event_text.rowid"
                        " WHERE event_text MATCH ? ORDER BY event_text.rowid DESC LIMIT 100";
    const auto textOf = [](const QString &text) { return [text](int) { return EventFilter{.text = text}; }; };
    const auto match = [](const char *parts) {
        return [parts](int) { return QVariantList{QString::fromLatin1(parts)}; };
    };
    constexpr auto pump = R"("pum" AND "ump")";
    constexpr auto door = R"("Doo" AND " 65" AND "65 " AND "ail")";
    constexpr auto gate = R"("d g" AND "flo" AND "gat")";
    page("the first page of all", events([](int) { return EventFilter(); }),
         library("SELECT * FROM event ORDER BY at DESC, id DESC LIMIT 100", none));
    page("of a day",
         events([&](int i) { return EventFilter{.from = dayOf(i), .to = dayOf(i) + year::aDay}; }),
         library("SELECT * FROM event WHERE at < ? ORDER BY at DESC, id DESC LIMIT 100",
                 [&](int i) { return QVariantList{dayOf(i) + year::aDay}; }));
    page("of a station", events([](int i) { return EventFilter{.stations = {1 + 100 * i}}; }),
         library("SELECT * FROM event WHERE station = ? ORDER BY at DESC, id DESC LIMIT 100",
                 [](int i) { return QVariantList{1 + 100 * i}; }));
    page("of a kind: comments", events(ofKinds({EventKind::Commented})),
         library(inOrder, [](int) { return QVariantList{int(EventKind::Commented)}; }));
    page("of two kinds, of a station: silent, alive", events([](int i) {
             return EventFilter{.stations = {1 + 100 * i}, .kinds = {EventKind::Silent, EventKind::Alive}};
         }),
         library("SELECT * FROM event WHERE station = ? AND kind IN (10, 11) ORDER BY at DESC LIMIT 100",
                 [](int i) { return QVariantList{1 + 100 * i}; }));
    page("of a kind that nothing is of", events(ofKinds({EventKind::Shelved, EventKind::OtherMessage})),
         library(inOrder, [](int) { return QVariantList{int(EventKind::Shelved)}; }), false);
    page("of alarms", events([](int) { return EventFilter{.ofAlarms = true}; }),
         library(inOrder, [](int) { return QVariantList{0}; }));
    const auto byOperator = "SELECT * FROM event WHERE operator = ? ORDER BY at DESC, id DESC LIMIT 100";
    page("of an operator", events([](int i) { return EventFilter{.operatorName = year::operatorOf(i)}; }),
         library(byOperator, [](int i) { return QVariantList{year::operatorOf(i)}; }));
    page("of an operator who did nothing",
         events([](int) { return EventFilter{.operatorName = u"nobody"_s}; }),
         library(byOperator, [](int) { return QVariantList{u"nobody"_s}; }), false);
    page("of an operator, of a station, of a kind", events([](int i) {
             return EventFilter{.stations = {1 + 100 * i},
                                .kinds = {EventKind::Acknowledged},
                                .operatorName = year::operatorOf(i)};
         }),
         library("SELECT * FROM event WHERE operator = ? AND station = ? AND kind = 30 ORDER BY at DESC",
                 [](int i) {
                     return QVariantList{year::operatorOf(i), 1 + 100 * i};
                 }));
    page("with a text that many have", events(textOf(u"pump"_s)), library(byText, match(pump)));
    page("with a text that few have", events(textOf(u"Door 65 fail"_s)), library(byText, match(door)));
    page("with a text that nobody wrote", events(textOf(u"flood gate"_s)), library(byText, match(gate)),
         false);
    page("with a text that many have, of a kind that none of these is of",
         events([](int) { return EventFilter{.kinds = {EventKind::Sent}, .text = u"pump"_s}; }),
         library(byText, match(gate)), false);
    page("with a text, of a day", events([&](int i) {
             return EventFilter{.from = dayOf(i), .to = dayOf(i) + year::aDay, .text = u"pump"_s};
         }),
         library(byText, match(pump)));
    page("with a text, of the first half of the year",
         events([&](int) { return EventFilter{.to = dayOf(4), .text = u"pump"_s}; }),
         library(byText, match(pump)));
    page("alarms of a station", alarms([](int i) { return AlarmFilter{.stations = {1 + 100 * i}}; }),
         library("SELECT * FROM alarm WHERE station = ? ORDER BY first DESC LIMIT 100",
                 [](int i) { return QVariantList{1 + 100 * i}; }));
    page("alarms that stand", alarms([](int) { return AlarmFilter{.state = AlarmFilter::State::Open}; }),
         library(
             "SELECT * FROM alarm WHERE acknowledged IS NULL OR over IS NULL ORDER BY first DESC LIMIT 100",
             none));
    page("alarms with a text that none has", alarms([](int) { return AlarmFilter{.text = u"flood gate"_s}; }),
         library("SELECT * FROM alarm WHERE text LIKE '%flood gate%' OR comment LIKE '%flood gate%'", none),
         false);
    page("alarms that nobody of this name acknowledged",
         alarms([](int) { return AlarmFilter{.acknowledgedBy = u"nobody"_s}; }),
         library("SELECT * FROM alarm WHERE acknowledged_by = 'nobody'", none), false);
}

void longTimes(const QString &folder)
{
    RecordReader reader(recordOf(folder));
    const BareDatabase bare(recordOf(folder));
    constexpr qint64 end = year::firstDay + 400 * year::aDay;
    const auto curve = [&](HistoryLevel level) {
        return [&reader, level](int i) {
            qsizetype points = 0;
            (void)reader.curve(1 + 100 * i, 9, year::firstDay, end, level,
                               [&](const HistoryPoint &) { ++points; });
            return points;
        };
    };
    const auto floor = [&](int i) {
        (void)bare.ask("SELECT at, first, second FROM history WHERE station = ? AND channel = 9",
                       {1 + 100 * i});
    };
    page("the archive of a station, a year by days", curve(HistoryLevel::Day), floor);
    page("by hours", curve(HistoryLevel::Hour), floor);
    AlarmFigures figures;
    const double seconds = secondsOf([&] { (void)reader.alarmFigures(year::firstDay, end, end, figures); });
    row("the figures of a year's alarms", seconds, Unit::Seconds, figures::unbounded,
        figures::Floor{secondsOf([&] {
                           (void)bare.ask("SELECT station, text, count(*), sum(count) FROM alarm"
                                          " GROUP BY station, text");
                       }),
                       "the library counting them"});
}

/// Ten thousand events a second for some seconds, behind all that is there; they are removed again.
void writing(const QString &folder)
{
    constexpr int commits = 300;
    constexpr int eventsOfACommit = 100;
    constexpr double count = commits * eventsOfACommit;
    const QString path = recordOf(folder);
    const qint64 last = openRecord(path).lastEvent;
    const auto eventNumber = [](qint64 id) {
        return EventRow{.id = id,
                        .at = year::firstDay + 366 * year::aDay + id,
                        .station = 1 + id * 7919 % 1000,
                        .kind = EventKind::Values,
                        .text = u"+49170%1 --> R,%2,12.5"_s.arg(id % 1000).arg(1 + id % 18)};
    };
    const auto remove = [&] {
        RecordDatabase database;
        if (!database.open(path, RecordDatabase::Use::Write) ||
            !database.execute(u"DELETE FROM event WHERE id > %1"_s.arg(last))) {
            row("an event written", "not removed again", "", false);
        }
    };
    std::vector<double> own;
    std::vector<double> floor;
    for (int round = 0; round < 3; ++round) {
        {
            const BareDatabase bare(path, true);
            qint64 id = last;
            const double before = processorTime();
            for (int i = 0; i < commits; ++i) {
                bare.insert(eventsOfACommit, [&] { return eventNumber(++id); });
            }
            floor.push_back((processorTime() - before) / count);
        }
        remove();
        {
            EventLoopTimers timers;
            RecordWriter writer(path, openRecord(path), timers, [](const QString &) {});
            qint64 id = last;
            const double before = processorTime();
            for (int i = 0; i < commits; ++i) {
                for (int event = 0; event < eventsOfACommit; ++event) {
                    writer.add(eventNumber(++id));
                }
                (void)writer.flushNow();
            }
            own.push_back((processorTime() - before) / count);
        }
        remove();
    }
    row("an event written behind a year, commits of 100, processor time", median(own), Unit::Seconds,
        figures::unbounded, figures::Floor{median(floor), "the library's inserts and commits alone", 2});
}

void count(const QString &folder)
{
    RecordReader reader(recordOf(folder));
    qint64 all = 0;
    for (const QString &table : {u"event"_s, u"history"_s, u"value"_s, u"alarm"_s, u"notification"_s}) {
        qint64 rows = 0;
        (void)reader.count(table, rows);
        std::fprintf(stderr, "%s: %lld\n", qPrintable(table), static_cast<long long>(rows));
        all += rows;
    }
    row("rows of the record", std::to_string(all), "", all > 0);
}

int measure(const QString &folder, const QString &smaller)
{
    settle(folder);
    count(folder);
    if (!smaller.isEmpty()) {
        settle(smaller);
    }
    opening(folder, smaller);
    pages(folder);
    longTimes(folder);
    writing(folder);
    return figures::exitCode();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const QString what = arguments.value(1);
    const QString folder = arguments.value(2);
    const int stations = arguments.value(3, u"1000"_s).toInt();
    const int days = arguments.value(4, u"365"_s).toInt();
    Status done = Status::failed(u"record_year make|compare|measure|open FOLDER ..."_s);
    if (what == u"make"_s) {
        QDir().mkpath(folder);
        done = year::play(folder, stations, days);
    } else if (what == u"compare"_s) {
        qint64 alarms = 0;
        done = year::compare(folder, stations, days, alarms);
        if (done && arguments.size() > 5) {
            done = year::writeExpected(arguments.at(5), stations, days);
        }
        if (done) {
            row("alarms that the record tells otherwise than they were",
                u"0 of %1"_s.arg(alarms).toStdString(), "0", true);
        }
    } else if (what == u"measure"_s) {
        return measure(folder, arguments.value(3));
    } else if (what == u"open"_s) {
        done = open(folder);
    }
    if (!done) {
        std::fprintf(stderr, "record_year: %s\n", qPrintable(done.message()));
    }
    return done ? 0 : 1;
}

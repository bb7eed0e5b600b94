// The record: what an event costs to write, beside the database library inserting the same rows into the same
// tables, and how long it takes until it is on the disk; then a record of millions of events, its first
// pages.
//
//     record_benchmark [events]        5,000,000 unless told otherwise; a fifth of a KiB of the disk for each

#include "bare_database.h"
#include "figures.h"
#include "measured_runs.h"
#include "process_cost.h"
#include "record/record_care.h"
#include "record/record_queries.h"
#include "record/record_writer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

using namespace ktr;
using figures::row;
using figures::Unit;

namespace {

constexpr int stationCount = 1000;
constexpr qint64 start = 1'600'000'000'000;
constexpr qint64 apart = 6'000; ///< ms between two events: 5 million are nearly a year

[[noreturn]] void endBenchmark(const char *what)
{
    std::fprintf(stderr, "record_benchmark: %s\n", what);
    std::exit(1);
}

/// Mostly values, as stations report them, and every tenth a notification.
EventRow eventNumber(qint64 id)
{
    EventRow event;
    event.id = id;
    event.at = start + id * apart;
    event.station = 1 + id * 7919 % stationCount;
    if (id % 10 == 0) {
        event.kind = EventKind::Notification;
        event.text = QStringLiteral("+49170%1 --> M,Pump %2 fail, level %3")
                         .arg(event.station)
                         .arg(id / 10 % 50)
                         .arg(id % 997);
    } else {
        event.kind = EventKind::Values;
        event.text = QStringLiteral("+49170%1 --> W,IP1=%2,IP2=%3,IP3=12.5")
                         .arg(event.station)
                         .arg(id % 100)
                         .arg(id % 77);
    }
    return event;
}

std::unique_ptr<RecordWriter> openWriter(const QString &path)
{
    static EventLoopTimers timers;
    const OpenedRecord opened = openRecord(path);
    if (!opened.status) {
        endBenchmark(qPrintable(opened.status.message()));
    }
    return std::make_unique<RecordWriter>(path, opened, timers,
                                          [](const QString &reason) { endBenchmark(qPrintable(reason)); });
}

/// Ten thousand events in each second of some seconds, as they come, in commits of 10 ms.
void writing(const QString &folder)
{
    constexpr int seconds = 3;
    constexpr int eventsOfACommit = 100;
    constexpr int commits = seconds * 100;
    std::vector<std::vector<EventRow>> pieces(commits);
    qint64 id = 0;
    for (std::vector<EventRow> &piece : pieces) {
        for (int i = 0; i < eventsOfACommit; ++i) {
            piece.push_back(eventNumber(++id));
        }
    }
    std::vector<double> own;
    std::vector<double> bare;
    for (int round = 0; round < 3; ++round) {
        {
            const QString path = folder + QStringLiteral("/bare%1").arg(round);
            if (!openRecord(path).status) {
                endBenchmark("the bare database does not open");
            }
            const BareDatabase library(path, true);
            const double before = processorTime();
            for (const std::vector<EventRow> &piece : pieces) {
                auto event = piece.cbegin();
                library.insert(eventsOfACommit, [&event]() -> const EventRow & { return *event++; });
            }
            bare.push_back((processorTime() - before) / double(id));
        }
        const auto writer = openWriter(folder + QStringLiteral("/own%1").arg(round));
        const double before = processorTime();
        for (const std::vector<EventRow> &piece : pieces) {
            for (const EventRow &event : piece) {
                writer->add(event);
            }
            if (!writer->flushNow()) {
                endBenchmark("what was added is not on the disk");
            }
        }
        own.push_back((processorTime() - before) / double(id));
    }
    row("an event written, commits of 100, processor time", median(own), Unit::Seconds, figures::unbounded,
        figures::Floor{median(bare), "the library's inserts and commits alone", 2});
}

void alarms(const QString &folder)
{
    constexpr int count = 2000;
    std::vector<double> waits;
    const auto writer = openWriter(folder + QStringLiteral("/alarms"));
    for (int i = 0; i < count; ++i) {
        waits.push_back(secondsOf([&] {
            writer->add(eventNumber(writer->nextEventId()));
            AlarmRow alarm;
            alarm.id = writer->nextAlarmId();
            alarm.text = QStringLiteral("M,Pump fail");
            alarm.first = alarm.last = start;
            writer->add(alarm);
            (void)writer->flushNow();
        }));
    }
    std::ranges::sort(waits);
    row("an alarm on the disk, median", waits[count / 2], Unit::Seconds, 0.01);
    row("an alarm on the disk, 99 of 100", waits[count * 99 / 100], Unit::Seconds, 0.01);
}

/// The first time that something is asked, and the median of some more.
template <class Ask> void page(const std::string &what, double most, Ask ask)
{
    std::vector<double> times;
    bool isThere = true;
    for (int i = 0; i < 9; ++i) {
        times.push_back(secondsOf([&] { isThere = ask(i) && isThere; }));
    }
    if (!isThere) {
        row(what, "nothing found", "", false);
        return;
    }
    row(what, *std::ranges::max_element(times), Unit::Seconds, most);
}

void pages(const QString &folder, qint64 events)
{
    const QString path = folder + QStringLiteral("/large");
    {
        const auto writer = openWriter(path);
        QElapsedTimer time;
        time.start();
        while (writer->addedCount() < quint64(events)) {
            writer->add(eventNumber(writer->nextEventId()));
            if (writer->addedCount() % 20'000 == 0) {
                (void)writer->flushNow();
            }
        }
        (void)writer->flushNow();
        std::fprintf(stderr, "%lld events written in %.1f s\n", static_cast<long long>(events),
                     double(time.restart()) / 1000);
        while (!writer->isAtRest()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        std::fprintf(stderr, "their texts put into the index in %.1f s\n", double(time.restart()) / 1000);
        const qint64 bytes = QFileInfo(path).size();
        row("the file, an event with its share of the indices", double(bytes) / double(events), Unit::Bytes);
    }
    RecordReader reader(path);
    constexpr int aPage = 100;
    constexpr double most = 0.1;
    const auto asks = [&](const auto &filterOf) {
        return [&reader, filterOf](int i) {
            const EventPage found = reader.findEvents(filterOf(i), {}, aPage);
            return found.status && !found.rows.isEmpty();
        };
    };
    const std::string among = " among " + std::to_string(events) + " events";
    constexpr qint64 aDay = 86'400'000;
    page("the first page of all" + among, most, asks([](int) { return EventFilter{}; }));
    page("of a day" + among, most, asks([&](int i) {
             EventFilter filter;
             filter.from = start + events * apart * i / 10;
             filter.to = filter.from + aDay;
             return filter;
         }));
    page("of a station" + among, most, asks([](int i) {
             EventFilter filter;
             filter.stations = {100 * i + 7};
             return filter;
         }));
    page("of a hundred stations" + among, most, asks([](int i) {
             EventFilter filter;
             for (qint64 station = 1; station <= 100; ++station) {
                 filter.stations += station + 50 * i;
             }
             return filter;
         }));
    page("with a text that is in every tenth" + among, most, asks([](int) {
             EventFilter filter;
             filter.text = QStringLiteral("pump");
             return filter;
         }));
    page("with a text that few have" + among, most, asks([events](int i) {
             EventFilter filter;
             filter.text =
                 QStringLiteral("Pump %1 fail, level %2").arg(i).arg((10 * i + 500 * (1 + i)) % 997);
             filter.text = eventNumber(events / 20 * (2 * i + 1) / 10 * 10).text;
             return filter;
         }));
    page("with a text, of a station" + among, most, asks([](int i) {
             EventFilter filter;
             filter.stations = {100 * i + 11};
             filter.text = QStringLiteral("fail");
             return filter;
         }));
    page("with a text, of a day" + among, most, asks([&](int i) {
             EventFilter filter;
             filter.from = start + events * apart * i / 10;
             filter.to = filter.from + aDay;
             filter.text = QStringLiteral("pump");
             return filter;
         }));
    page("a text that nobody wrote" + among, most, [&](int i) {
        EventFilter filter;
        filter.text = QStringLiteral("level x%1").arg(i);
        const EventPage found = reader.findEvents(filter, {}, aPage);
        return found.status && found.rows.isEmpty() && !found.next;
    });
    row("the check after a bad end" + among, secondsOf([&] {
            RecordDatabase database;
            QSqlQuery *query = database.open(path, RecordDatabase::Use::Read)
                                   ? database.prepared(QStringLiteral("PRAGMA quick_check(1)"))
                                   : nullptr;
            if (query == nullptr || !database.run(*query) || !query->next()) {
                endBenchmark("the check cannot be carried out");
            }
        }),
        Unit::Seconds);
    row("a backup" + among, secondsOf([&] {
            if (!backUpRecord(path, folder + QStringLiteral("/copy"))) {
                endBenchmark("the backup fails");
            }
        }),
        Unit::Seconds);
}

void curves(const QString &folder)
{
    const QString path = folder + QStringLiteral("/curves");
    constexpr int channels = 18;
    constexpr int stations = 100;
    constexpr int days = 30;
    constexpr int recordsOfADay = 4 * 24; // a quarter of an hour apart
    constexpr double count = double(stations) * channels * days * recordsOfADay;
    {
        const auto writer = openWriter(path);
        const double before = processorTime();
        for (int i = 0; i < days * stations; ++i) { // each day each station reports it
            const qint64 day = start + i / stations * qint64{86'400'000};
            for (int record = 0; record < recordsOfADay * channels; ++record) {
                writer->add(HistoryRow{1 + i % stations, 1 + record % channels,
                                       day + record / channels * qint64{900'000},
                                       QString::number(record % 97), QString::number(i % 50)});
            }
            if (i % 10 == 9) {
                (void)writer->flushNow();
            }
        }
        row("a record of the archive written, processor time", (processorTime() - before) / count,
            Unit::Seconds);
    }
    row("its room in the file", double(QFileInfo(path).size()) / count, Unit::Bytes);
    RecordReader reader(path);
    const auto curve = [&](HistoryLevel level) {
        return [&reader, level](int i) {
            qint64 points = 0;
            return reader.curve(1 + 10 * i, 1 + i, start, start + days * qint64{86'400'000}, level,
                                [&](const HistoryPoint &) { ++points; }) &&
                   points > 0;
        };
    };
    page("the curve of a channel, a month, raw", 0.1, curve(HistoryLevel::Raw));
    page("the same by hours", 0.1, curve(HistoryLevel::Hour));
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const qint64 events = argc > 1 ? std::atoll(argv[1]) : 5'000'000;
    const QTemporaryDir folder;
    writing(folder.path());
    alarms(folder.path());
    curves(folder.path());
    pages(folder.path(), events);
    return figures::exitCode();
}

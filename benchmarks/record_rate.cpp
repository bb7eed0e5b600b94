// How long the record's writer takes for events, a thousand a commit, in a file or on a server:
//
//     record_rate RECORD EVENTS
//
// Prints the seconds.

#include "platform/timers.h"
#include "record/record_file.h"
#include "record/record_writer.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>

#include <cstdio>

using namespace ktr;

namespace {

constexpr int ofACommit = 1'000;
constexpr int stations = 1'000;

EventRow eventOf(int number)
{
    return {.at = QDateTime::currentMSecsSinceEpoch(),
            .station = 1 + number % stations,
            .kind = EventKind::Values,
            .text = QStringLiteral("+491701234567 --> R,%1,%2").arg(1 + number % 18).arg(number)};
}

int giveUp(const QString &why)
{
    std::fprintf(stderr, "record_rate: %s\n", qPrintable(why));
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const int events = argc == 3 ? std::atoi(argv[2]) : 0;
    if (events < 1) {
        std::fprintf(stderr, "record_rate RECORD EVENTS\n");
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    const OpenedRecord opened = openRecord(path);
    if (!opened.status) {
        return giveUp(opened.status.message());
    }
    EventLoopTimers timers;
    RecordWriter writer(path, opened, timers, [](const QString &) {});
    QElapsedTimer time;
    time.start();
    for (int number = 0; number < events; ++number) {
        writer.add(eventOf(number));
        if ((number + 1) % ofACommit == 0 || number + 1 == events) {
            if (const Status written = writer.flushNow(); !written) {
                return giveUp(written.message());
            }
        }
    }
    std::printf("%.3f\n", double(time.nsecsElapsed()) * 1e-9);
    return 0;
}

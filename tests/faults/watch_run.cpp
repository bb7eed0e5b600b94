// The operational mode over a list, as a program of its own that a test can kill at any moment. Shows what
// happens, a line each: the time in milliseconds, a tab, the text. Writes its files all the time, for its
// minute is always nearly over, and once more when its input ends. Argument: the folder of nodes.xml.

#include "link/io_thread.h"
#include "opmode/operational_mode.h"
#include "opmode/station/station_sockets.h"
#include "support/environment.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>

using namespace ktr;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    Environment environment = test::fixedEnvironment();
    environment.now = [] { return QDateTime({2026, 11, 20}, {9, 59, 59, 950}); };
    EventLoopTimers timers;
    IoThread io;
    StationSockets sockets(io);
    OperationalMode mode({environment,
                          timers,
                          [&sockets] { return sockets.createLine(); },
                          [] {},
                          &systemCallbackTimers,
                          [] { return 0; },
                          {2000, 0, 0}},
                         {QStringLiteral("Notifications"), QStringLiteral("History"), QStringLiteral("IP")});
    const auto show = [](const QString &text) {
        std::printf("%lld\t%s\n", static_cast<long long>(QDateTime::currentMSecsSinceEpoch()),
                    qPrintable(text));
        std::fflush(stdout);
    };
    QObject::connect(&mode, &OperationalMode::statusMessage, &mode,
                     [&](const QString &line) { show(QLatin1String("told ") + line); });
    QObject::connect(&mode, &OperationalMode::happened, &mode,
                     [&](const StationEvent &event) { show(event.text); });
    if (!mode.open(QString::fromLocal8Bit(argv[1]) + QLatin1String("/nodes.xml"),
                   OperationalMode::Use::Keep)) {
        return 1;
    }
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &mode, &QCoreApplication::quit);
    (void)QCoreApplication::exec();
    return mode.close() ? 0 : 1;
}

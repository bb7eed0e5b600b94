#include "cli/simulate_fleet.h"

#include "cli/console.h"
#include "cli/interruption.h"
#include "config/address.h"
#include "opmode/keeping/nodes_file.h"
#include "opmode/tree/station_tree.h"
#include "platform/file_lock.h"
#include "platform/files.h"
#include "simulator/fleet.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QHash>

namespace ktr::cli {

namespace {

const QString fleetOption = QStringLiteral("fleet");
const QString networkOption = QStringLiteral("network");
const QString portOption = QStringLiteral("port");
const QString nodesOption = QStringLiteral("nodes");
const QString everyOption = QStringLiteral("every");
const QString silentOption = QStringLiteral("silent");
const QString seedOption = QStringLiteral("seed");
const QString ledgerOption = QStringLiteral("ledger");

/// The list of stations that has all modules of the fleet. Only the stations: the program makes what is under
/// them, in its own language.
QByteArray nodesOf(const Fleet &fleet, const FleetOptions &options)
{
    NodeStore nodes;
    QHash<QString, QString> addresses;
    for (int module = 0; module < options.modules; ++module) {
        const QString name = Fleet::name(module);
        const std::string text = storedText(name);
        nodes.add(NodeStore::root, text, text, StationTree::normalColour);
        const bool isUsualPort = options.port == FleetOptions().port;
        const QString port = isUsualPort ? QString() : u':' + QString::number(fleet.port(module));
        addresses.insert(name, Fleet::address(module, options.network) + port);
    }
    return writeNodes(nodes, [&addresses, &options](const QString &kennung) {
        StationAttributes station;
        station.hostAddress = addresses.value(kennung);
        station.online = true;
        station.exclusiveMode = bool(options.ledger); // its texts are answered
        return station;
    });
}

std::optional<FleetOptions> fleetOptions(const Arguments &arguments)
{
    FleetOptions options;
    bool usable = true;
    const auto take = [&](const QString &option, int lowest, int highest, const auto &use) {
        if (arguments.isSet(option)) {
            const std::optional<int> number = arguments.number(option, lowest, highest);
            usable = usable && number.has_value();
            if (number) {
                use(*number);
            }
        }
    };
    take(fleetOption, 1, FleetOptions::mostModules, [&](int modules) { options.modules = modules; });
    options.every = Fleet::livelyInterval(options.modules);
    if (arguments.isSet(networkOption)) {
        options.network = arguments.value(networkOption);
        if (addressDefect(options.network + QLatin1String(".1.1")) != AddressDefect::None) {
            (void)arguments.wrong(
                QStringLiteral("--network: \"%1\" are no two numbers of an address, such as "
                               "10.1")
                    .arg(options.network));
            usable = false;
        }
    }
    take(portOption, 0, 65'535, [&](int port) { options.port = static_cast<quint16>(port); });
    take(everyOption, 1, 3'600, [&](int seconds) { options.every = std::chrono::seconds(seconds); });
    take(silentOption, 0, options.modules, [&](int modules) { options.silent = modules; });
    take(seedOption, 0, 200'000, [&](int seed) { options.seed = static_cast<quint32>(seed); });
    return usable ? std::optional(options) : std::nullopt;
}

} // namespace

void addFleetOptions(Arguments &arguments)
{
    arguments.addOption({fleetOption,
                         QStringLiteral("Plays COUNT modules in operation instead, at 127.0.1.1, 127.0.1.2, "
                                        "...: changing values, notifications, history."),
                         QStringLiteral("COUNT")});
    arguments.addOption({networkOption,
                         QStringLiteral("With these two numbers the addresses of a fleet begin, 127.0 unless "
                                        "named; they must be this machine's."),
                         QStringLiteral("A.B")});
    arguments.addOption({portOption,
                         QStringLiteral("UDP port of every module of a fleet, 49111 unless named; 0 takes "
                                        "free ones."),
                         QStringLiteral("PORT")});
    arguments.addOption({nodesOption, QStringLiteral("Writes a list of stations with the fleet's modules."),
                         QStringLiteral("FILE")});
    arguments.addOption({everyOption,
                         QStringLiteral("Mean time from one message of a module of the fleet to its next."),
                         QStringLiteral("SECONDS")});
    arguments.addOption({silentOption, QStringLiteral("So many modules of the fleet never answer."),
                         QStringLiteral("COUNT")});
    arguments.addOption({seedOption, QStringLiteral("Chooses the values and what happens in a fleet."),
                         QStringLiteral("SEED")});
    arguments.addOption(
        {ledgerOption,
         QStringLiteral("Writes what each module of a fleet sent, and what was answered; they "
                        "number their texts, and repeat those that nobody answers."),
         QStringLiteral("FILE")});
}

bool wantsFleet(const Arguments &arguments)
{
    return arguments.isSet(fleetOption);
}

QString fleetOptionInUse(const Arguments &arguments)
{
    for (const QString &option : {fleetOption, networkOption, portOption, nodesOption, everyOption,
                                  silentOption, seedOption, ledgerOption}) {
        if (arguments.isSet(option)) {
            return option;
        }
    }
    return {};
}

bool isFleetUsable(const Arguments &arguments)
{
    return fleetOptions(arguments).has_value();
}

int simulateFleet(const Arguments &arguments, const DatagramFaults &network)
{
    std::optional<FleetOptions> options = fleetOptions(arguments);
    options->faults = network;
    QFile ledger(arguments.value(ledgerOption));
    if (arguments.isSet(ledgerOption)) {
        if (!ledger.open(QIODevice::WriteOnly)) {
            return fail(fileFailure(ledger.fileName(), ledger.errorString()).message());
        }
        options->ledger = [&ledger](int module, QLatin1String what, const QString &text) {
            const QStringList line{QString::number(QDateTime::currentMSecsSinceEpoch()), Fleet::name(module),
                                   what, text};
            ledger.write((line.join(u'\t') + u'\n').toUtf8());
        };
    }
    EventLoopTimers timers;
    IoThread io;
    Interruption interruption(io, [] { QCoreApplication::quit(); });
    Fleet fleet(io, timers, *options);
    if (const Status opened = fleet.open(); !opened) {
        return fail(opened.message());
    }
    if (arguments.isSet(nodesOption)) {
        const QString nodes = arguments.value(nodesOption);
        FileLock lock;
        if (lock.take(listLockPath(nodes)) == FileLock::Outcome::Held) { // it would be written over
            return fail(nodes + QStringLiteral(": the list is in use by ") + lock.holder());
        }
        const Status written = replaceFile(nodes, nodesOf(fleet, *options));
        if (!written) {
            return fail(written.message());
        }
    }
    print(QStringLiteral("listening at %1:%2 and %3 more")
              .arg(Fleet::address(0, options->network))
              .arg(fleet.port(0))
              .arg(options->modules - 1));
    showNow();
    const int code = QCoreApplication::exec() == 0 ? done : failed;
    print(QStringLiteral("%1 SMS sent, %2 commands taken").arg(fleet.smsSent()).arg(fleet.commandsTaken()));
    return code;
}

} // namespace ktr::cli

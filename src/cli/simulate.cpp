#include "cli/commands.h"
#include "cli/console.h"
#include "cli/interruption.h"
#include "cli/loading.h"
#include "cli/replay.h"
#include "cli/simulate_fleet.h"
#include "cli/simulate_modules.h"
#include "config/configuration_file.h"
#include "link/conversation_log.h"
#include "platform/files.h"
#include "simulator/module_on_terminal.h"
#include "simulator/module_on_udp.h"

#include <QCoreApplication>

#include <algorithm>

namespace ktr::cli {

namespace {

const QString holdOption = QStringLiteral("hold");
const QString replayOption = QStringLiteral("replay");
const QString slowOption = QStringLiteral("slow");
const QString silentAfterOption = QStringLiteral("silent-after");
const QString splitOption = QStringLiteral("split");
const QString mergeOption = QStringLiteral("merge");
const QString garbageOption = QStringLiteral("garbage");
const QString hangUpOption = QStringLiteral("hang-up-at");
const QString loseOption = QStringLiteral("lose");
const QString doubleOption = QStringLiteral("double");
const QString overtakeOption = QStringLiteral("overtake");

constexpr int aDay = 24 * 60 * 60 * 1000;
constexpr int many = 1'000'000'000;

void addFaults(Arguments &arguments)
{
    arguments.addOption(
        {slowOption, QStringLiteral("Waits so long before each line."), QStringLiteral("MS")});
    arguments.addOption(
        {silentAfterOption, QStringLiteral("Falls silent after so many lines."), QStringLiteral("LINES")});
    arguments.addOption(
        {splitOption, QStringLiteral("Sends so many bytes at a time."), QStringLiteral("BYTES")});
    arguments.addOption({mergeOption, QStringLiteral("Sends a status line in one piece with each line.")});
    arguments.addOption({garbageOption,
                         QStringLiteral("Sends random bytes between the lines; SEED chooses them."),
                         QStringLiteral("SEED")});
    arguments.addOption(
        {hangUpOption, QStringLiteral("Hangs up when it has sent so many bytes."), QStringLiteral("BYTE")});
    const QString percent = QStringLiteral("PERCENT");
    arguments.addOption({loseOption, QStringLiteral("The network loses so many datagrams."), percent});
    arguments.addOption({doubleOption, QStringLiteral("The network doubles so many datagrams."), percent});
    arguments.addOption(
        {overtakeOption, QStringLiteral("So many datagrams are overtaken by the next."), percent});
}

struct Faults
{
    ModuleFaults module;
    DatagramFaults network;
};

/// The faults to play; nothing, after a complaint, when an option is wrong.
std::optional<Faults> faults(const Arguments &arguments)
{
    Faults all;
    ModuleFaults &faults = all.module;
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
    take(slowOption, 0, aDay, [&](int ms) { faults.delayBeforeLine = Milliseconds(ms); });
    take(silentAfterOption, 0, many, [&](int lines) { faults.silentAfterLines = lines; });
    take(splitOption, 1, many, [&](int bytes) {
        faults.chunkSize = bytes;
        faults.chunkPause = Milliseconds(1);
    });
    take(garbageOption, 0, many, [&](int seed) {
        faults.garbageInFront = true;
        faults.garbageLines = true;
        faults.seed = static_cast<quint32>(seed);
    });
    take(hangUpOption, 0, many, [&](int byte) { faults.hangUpAtByte = byte; });
    take(loseOption, 0, 100, [&](int percent) { all.network.lost = percent; });
    take(doubleOption, 0, 100, [&](int percent) { all.network.doubled = percent; });
    take(overtakeOption, 0, 100, [&](int percent) { all.network.overtaken = percent; });
    faults.mergesStatus = arguments.isSet(mergeOption);
    return usable ? std::optional(all) : std::nullopt;
}

/// Empty when none of them is set.
QString firstSet(const Arguments &arguments, const QStringList &options)
{
    const auto set = std::ranges::find_if(
        options, [&arguments](const QString &option) { return arguments.isSet(option); });
    return set == options.end() ? QString() : *set;
}

void report(const QString &event)
{
    print(event);
    showNow(); // for a program that is waiting for this event
}

} // namespace

void describeSimulate(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Plays a module: it starts its modem, takes commands, keeps the configuration "
                       "it is given and answers. Runs until it is asked to terminate."));
    arguments.addOption({serialOption,
                         QStringLiteral("Opens a pseudo-terminal and links it at LINK, to be opened like "
                                        "a serial port."),
                         QStringLiteral("LINK")});
    arguments.addOption({ethernetOption,
                         QStringLiteral("Plays the module at UDP port PORT of this machine, or of the "
                                        "address ADDRESS:PORT; port 0 takes a free one."),
                         QStringLiteral("PORT")});
    arguments.addOption({saveOption,
                         QStringLiteral("Saves the configuration it was given when the closing command "
                                        "has come, and what it holds when it hangs up."),
                         QStringLiteral("FILE")});
    arguments.addOption({holdOption, QStringLiteral("Holds from the start what it saved as FILE before."),
                         QStringLiteral("FILE")});
    arguments.addOption(
        {replayOption,
         QStringLiteral("Plays the module's part of the conversation LOG instead, tells where "
                        "the program differs from it, and ends with it."),
         QStringLiteral("LOG")});
    addFaults(arguments);
    addFleetOptions(arguments);
    addModulesOption(arguments);
}

std::optional<int> checkSimulate(const Arguments &arguments)
{
    const auto usable = [](bool isUsable) { return isUsable ? std::nullopt : std::optional(wrongUsage); };
    if (wantsFleet(arguments)) {
        // Of the faults, a fleet knows those of the network.
        const QString option =
            firstSet(arguments, {serialOption, ethernetOption, saveOption, holdOption, replayOption,
                                 slowOption, silentAfterOption, splitOption, mergeOption, garbageOption,
                                 hangUpOption, overtakeOption});
        if (!option.isEmpty()) {
            return arguments.wrong(QStringLiteral("--fleet does not go together with --") + option);
        }
        return usable(faults(arguments) && isFleetUsable(arguments));
    }
    if (const QString option = fleetOptionInUse(arguments); !option.isEmpty()) {
        return arguments.wrong(QStringLiteral("--%1 needs --fleet").arg(option));
    }
    if (wantsModules(arguments)) {
        const QString option = firstSet(arguments, {serialOption, replayOption, hangUpOption});
        return option.isEmpty() ? usable(faults(arguments) && areModulesUsable(arguments))
                                : std::optional(arguments.wrong(
                                      QStringLiteral("--modules does not go together with --") + option));
    }
    if (arguments.isSet(serialOption) == arguments.isSet(ethernetOption)) {
        return arguments.wrong(QStringLiteral("either --serial or --ethernet is needed"));
    }
    if (arguments.isSet(serialOption) && arguments.value(serialOption).isEmpty()) {
        return arguments.wrong(QStringLiteral("--serial names no link"));
    }
    if (arguments.isSet(ethernetOption) && !ModuleOnUdp::isAddress(arguments.value(ethernetOption))) {
        return arguments.wrong(
            QStringLiteral("\"%1\" is neither PORT nor ADDRESS:PORT").arg(arguments.value(ethernetOption)));
    }
    if (arguments.isSet(replayOption)) {
        const QString option = firstSet(
            arguments, {ethernetOption, saveOption, holdOption, slowOption, silentAfterOption, splitOption,
                        mergeOption, garbageOption, hangUpOption, loseOption, doubleOption, overtakeOption});
        return option.isEmpty() ? std::nullopt
                                : std::optional(arguments.wrong(
                                      QStringLiteral("--replay does not go together with --") + option));
    }
    return usable(faults(arguments).has_value());
}

int simulate(const Arguments &arguments)
{
    const DatagramFaults network = faults(arguments)->network;
    if (wantsFleet(arguments)) {
        return simulateFleet(arguments, network);
    }
    if (arguments.isSet(replayOption)) {
        return replay(arguments.value(replayOption), arguments.value(serialOption));
    }
    const Environment environment = systemEnvironment();
    ModuleOptions options;
    options.faults = faults(arguments)->module;
    if (arguments.isSet(holdOption)) {
        Document held(environment);
        held.restore(options.memory.configuration, false); // without the values of "new"
        if (!load(held, arguments.value(holdOption))) {
            return failed;
        }
        options.memory.configuration = held.configuration();
    }
    if (wantsModules(arguments)) {
        return simulateModules(arguments, options, network);
    }
    if (arguments.isSet(saveOption)) {
        if (const Status usable = FileReplacement().open(arguments.value(saveOption)); !usable) {
            return fail(usable.message()); // before anybody gives it a configuration
        }
    }
    EventLoopTimers timers;
    IoThread io;
    Interruption interruption(io, [] { QCoreApplication::quit(); });
    ModuleOnTerminal onTerminal(timers, options);
    ModuleOnUdp onUdp(timers, options, network);
    const bool isSerial = arguments.isSet(serialOption);
    VirtualModule &module = isSerial ? onTerminal.module() : onUdp.module();
    module.onCommand([](const QString &command, const Understood &understood) {
        if (!understood.accepted) {
            complain(QStringLiteral("not understood: %1: %2")
                         .arg(logText(command), logText(understood.answerText)));
        }
    });
    const auto save = [&](const ModuleMemory &memory) {
        if (!arguments.isSet(saveOption)) {
            return;
        }
        const QString path = arguments.value(saveOption);
        const Status saved = writeConfigurationFile(path, memory.configuration, environment);
        if (saved) {
            report(QLatin1String("saved ") + path);
        } else {
            complain(saved.message());
        }
    };
    module.onConfigured([&](const ModuleMemory &memory) {
        report(QStringLiteral("configured: %1 commands taken, %2 not understood")
                   .arg(memory.accepted)
                   .arg(memory.refused));
        save(memory);
    });
    module.onFirmware([](qint64 bytes) { report(QStringLiteral("%1 bytes of firmware taken").arg(bytes)); });
    module.onHangUp([&] {
        report(QStringLiteral("hung up"));
        save(module.memory());
        onTerminal.terminal().hangUp();
        onUdp.close();
    });
    QObject::connect(&onTerminal.terminal(), &PseudoTerminal::statusMessage, &onTerminal.terminal(),
                     &complain);
    const QString place = arguments.value(isSerial ? serialOption : ethernetOption);
    if (const Status opened = isSerial ? onTerminal.open(place) : onUdp.open(place); !opened) {
        return fail(opened.message());
    }
    report(isSerial ? QStringLiteral("listening at %1 (%2)").arg(place, onTerminal.path())
                    : QLatin1String("listening at ") + onUdp.address());
    return QCoreApplication::exec() == 0 ? done : failed;
}

} // namespace ktr::cli

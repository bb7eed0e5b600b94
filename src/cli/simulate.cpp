#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/console.h"
#include "cli/interruption.h"
#include "cli/loading.h"
#include "cli/replay.h"
#include "config/configuration_file.h"
#include "link/conversation_log.h"
#include "platform/files.h"
#include "simulator/module_on_terminal.h"

#include <QCoreApplication>

namespace ktr::cli {

namespace {

const QString serialOption = QStringLiteral("serial");
const QString ethernetOption = QStringLiteral("ethernet");
const QString saveOption = QStringLiteral("save");
const QString holdOption = QStringLiteral("hold");
const QString replayOption = QStringLiteral("replay");
const QString slowOption = QStringLiteral("slow");
const QString silentOption = QStringLiteral("silent-after");
const QString splitOption = QStringLiteral("split");
const QString mergeOption = QStringLiteral("merge");
const QString garbageOption = QStringLiteral("garbage");
const QString hangUpOption = QStringLiteral("hang-up-at");

constexpr int aDay = 24 * 60 * 60 * 1000;
constexpr int many = 1'000'000'000;

void addFaults(Arguments &arguments)
{
    arguments.addOption(
        {slowOption, QStringLiteral("Waits so long before each line."), QStringLiteral("MS")});
    arguments.addOption(
        {silentOption, QStringLiteral("Falls silent after so many lines."), QStringLiteral("LINES")});
    arguments.addOption(
        {splitOption, QStringLiteral("Sends so many bytes at a time."), QStringLiteral("BYTES")});
    arguments.addOption({mergeOption, QStringLiteral("Sends a status line in one piece with each line.")});
    arguments.addOption({garbageOption,
                         QStringLiteral("Sends random bytes between the lines; SEED chooses them."),
                         QStringLiteral("SEED")});
    arguments.addOption(
        {hangUpOption, QStringLiteral("Hangs up when it has sent so many bytes."), QStringLiteral("BYTE")});
}

/// The faults asked for, nothing after a complaint.
std::optional<ModuleFaults> faults(const Arguments &arguments)
{
    ModuleFaults faults;
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
    take(silentOption, 0, many, [&](int lines) { faults.silentAfterLines = lines; });
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
    faults.mergesStatus = arguments.isSet(mergeOption);
    return usable ? std::optional(faults) : std::nullopt;
}

void report(const QString &event)
{
    print(event);
    showNow(); // a program that waits for an event reads it at once
}

} // namespace

int simulate(const QStringList &words)
{
    Arguments arguments(
        QStringLiteral("simulate"),
        QStringLiteral("Plays a module: it starts its modem, takes commands, keeps the configuration "
                       "it is given and answers. Runs until it is asked to terminate."),
        {});
    arguments.addOption({serialOption,
                         QStringLiteral("Opens a pseudo-terminal and links it at LINK, to be opened like "
                                        "a serial port."),
                         QStringLiteral("LINK")});
    arguments.addOption({ethernetOption, QStringLiteral("Plays the module at a network address."),
                         QStringLiteral("ADDRESS")});
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
    if (const auto end = arguments.parse(words)) {
        return *end;
    }
    if (arguments.isSet(serialOption) == arguments.isSet(ethernetOption)) {
        return arguments.wrong(QStringLiteral("either --serial or --ethernet is needed"));
    }
    if (arguments.isSet(replayOption)) {
        for (const QString &option : {saveOption, holdOption, slowOption, silentOption, splitOption,
                                      mergeOption, garbageOption, hangUpOption}) {
            if (arguments.isSet(option)) {
                return arguments.wrong(QStringLiteral("--replay does not go together with --") + option);
            }
        }
    }
    const std::optional<ModuleFaults> wanted = faults(arguments);
    if (!wanted) {
        return wrongUsage;
    }
    if (arguments.isSet(ethernetOption)) {
        return fail(QStringLiteral("the Ethernet link is not available in this version; use --serial"));
    }
    if (arguments.isSet(replayOption)) {
        return replay(arguments.value(replayOption), arguments.value(serialOption));
    }

    const Environment environment = systemEnvironment();
    ModuleOptions options;
    options.faults = *wanted;
    if (arguments.isSet(holdOption)) {
        Document held(environment);
        held.restore(options.memory.configuration, false); // without the values of "new"
        if (load(held, arguments.value(holdOption)) != Loaded::Whole) {
            return failed;
        }
        options.memory.configuration = held.configuration();
    }
    EventLoopTimers timers;
    IoThread io;
    Interruption interruption(io, [] { QCoreApplication::quit(); });
    ModuleOnTerminal module(timers, options);
    module.module().onCommand([](const QString &command, const Understood &understood) {
        if (!understood.accepted) {
            complain(QStringLiteral("not understood: %1: %2").arg(logText(command), understood.answerText));
        }
    });
    const auto save = [&](const ModuleMemory &memory) {
        if (!arguments.isSet(saveOption)) {
            return;
        }
        const QString path = arguments.value(saveOption);
        const Status saved = replaceFile(path, writeConfiguration(memory.configuration, environment));
        if (saved) {
            report(QLatin1String("saved ") + path);
        } else {
            complain(saved.message());
        }
    };
    module.module().onConfigured([&](const ModuleMemory &memory) {
        report(QStringLiteral("configured: %1 commands taken, %2 not understood")
                   .arg(memory.accepted)
                   .arg(memory.refused));
        save(memory);
    });
    module.module().onHangUp([&] {
        report(QStringLiteral("hung up"));
        save(module.module().memory());
        module.terminal().hangUp();
    });
    QObject::connect(&module.terminal(), &PseudoTerminal::statusMessage, &module.terminal(), &complain);
    if (const Status opened = module.open(arguments.value(serialOption)); !opened) {
        return fail(opened.message());
    }
    report(QStringLiteral("listening at %1 (%2)").arg(arguments.value(serialOption), module.path()));
    return QCoreApplication::exec() == 0 ? done : failed;
}

} // namespace ktr::cli

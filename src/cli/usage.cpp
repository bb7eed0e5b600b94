#include "cli/usage.h"

#include "cli/commands.h"
#include "cli/console.h"
#include "cli/patient_job.h"
#include "cli/receipts.h"
#include "config/configuration_file.h"

#include <algorithm>
#include <array>

namespace ktr::cli {

namespace {

std::unique_ptr<QCoreApplication> plainApplication(int &argc, char **argv)
{
    return std::make_unique<QCoreApplication>(argc, argv);
}

struct Command
{
    const char *name;
    const char *arguments;
    const char *summary;
    void (*describe)(Arguments &arguments);
    int (*run)(const Arguments &arguments);
    std::optional<int> (*check)(const Arguments &arguments) =
        nullptr; ///< returns the exit code for wrong usage
    std::unique_ptr<QCoreApplication> (*application)(int &argc, char **argv) = plainApplication;
    bool talks = false; ///< with a module, which is not to wait until somebody reads what is printed
};

constexpr bool talks = true;

constexpr std::array table = {
    Command{"new", "FILE", "writes a new configuration", describeNewFile, newFile},
    Command{"convert", "IN OUT", "reads a configuration and saves it as another file", describeConvert,
            convert},
    Command{"commands", "FILE", "shows the commands that a transmission sends", describeCommands, commands},
    Command{"check", "FILE", "tells what is wrong, without effect or dangerous in it", describeCheck, check},
    Command{"print", "FILE OUT.pdf", "prints a configuration into a PDF", describePrintFile, printFile,
            checkPrintFile, drawingApplication},
    Command{"compare", "FILE OTHER", "tells in which fields they differ, or what a module lacks of FILE",
            describeCompare, compare, checkCompare},
    Command{"foretell", "FILE", "tells what it will switch and whom it notifies in the next days",
            describeForetell, foretellFile, checkForetell},
    Command{"fields", "", "tells all fields with meaning, values and place, as Markdown", describeFields,
            fields, checkFields},
    Command{"get", "[FILE] [FIELD...]", "tells the values of fields", describeGet, get, checkGet},
    Command{"set", "FILE FIELD=VALUE...", "sets fields, in several files if wanted", describeSet, set,
            checkSet},
    Command{"series", "TEMPLATE TABLE", "makes a configuration of each row of a table", describeSeries,
            series, checkSeries},
    Command{"transmit", "[FILE]", "transmits a configuration to a module, or to many at once",
            describeTransmit, transmit, checkTransmit, applicationForReceipts, talks},
    Command{"transmissions", "[ACTION] [N] [FILE]", "tells what was transmitted to which module",
            describeTransmissions, transmissions, checkTransmissions, applicationForReceipts},
    Command{"send", "COMMAND", "sends one command and prints the module's answer", describeSend, send,
            checkSend, plainApplication, talks},
    Command{"history", "[LOG]", "fetches a module's archive as CSV, or takes it out of a log",
            describeHistory, history, checkHistory, plainApplication, talks},
    Command{"firmware", "", "sends a firmware image to a module", describeFirmware, firmware, checkFirmware,
            plainApplication, talks},
    Command{"simulate", "", "plays a module", describeSimulate, simulate, checkSimulate, plainApplication,
            talks},
    Command{"monitor", "[NODES.xml]", "watches stations and prints what they say", describeMonitor, monitor,
            checkMonitor},
    Command{"keep", "[NODES.xml]", "watches the stations of a list day and night, as its keeper",
            describeKeep, keep, checkKeep},
    Command{"record", "ACTION RECORD [TO]", "backs up, checks or exports what a list's record holds",
            describeRecord, record, checkRecord},
    Command{"ports", "", "lists the serial ports found", describePorts, ports},
};

const Command *find(const QString &name)
{
    const auto command = std::ranges::find_if(
        table, [&name](const Command &each) { return name == QLatin1String(each.name); });
    return command == table.end() ? nullptr : &*command;
}

void printHelp()
{
    print(QStringLiteral("Usage: ktrcli COMMAND [options] ...\n\n"
                         "Configures telemetry modules from the command line.\n\nCommands:"));
    for (const Command &command : table) {
        const QString call =
            QStringLiteral("%1 %2").arg(QLatin1String(command.name), QLatin1String(command.arguments));
        print(QStringLiteral("  %1 %2").arg(call.leftJustified(20), QLatin1String(command.summary)));
    }
    print(QStringLiteral("\nktrcli COMMAND --help tells a command's options; ktrcli --version the version.\n"
                         "Exit codes: 0 done, 1 the job failed, 2 wrong usage, 3 all went over a network\n"
                         "and nothing confirms it (transmit --unconfirmed, send with a lower-case letter,\n"
                         "history, firmware)."));
}

} // namespace

Call understand(const QStringList &words)
{
    const QString name = words.value(0);
    if (QStringList{QStringLiteral("--help"), QStringLiteral("-help"), QStringLiteral("-h")}.contains(name)) {
        printHelp();
        return {done};
    }
    if (name == QLatin1String("--version") || name == QLatin1String("-version")) {
        print(QLatin1String("ktrcli ") + programVersion());
        return {done};
    }
    const Command *const command = find(name);
    if (command == nullptr) {
        complain(name.isEmpty() ? QStringLiteral("a command is missing (see ktrcli --help)")
                                : QStringLiteral("\"%1\" is no command (see ktrcli --help)").arg(name));
        return {wrongUsage};
    }
    const QString names = QLatin1String(command->arguments);
    auto arguments = std::make_unique<Arguments>(name, names.split(u' ', Qt::SkipEmptyParts));
    command->describe(*arguments);
    std::optional<int> code = arguments->parse(words.mid(1));
    if (!code && command->check != nullptr) {
        code = command->check(*arguments);
    }
    // The records of a log have no module that waits, and more of them may come than a queue holds.
    const bool isOfLog = !arguments->positional(0).isEmpty() && command->run == history;
    return {code, command->run, std::move(arguments), command->talks && !isOfLog};
}

int Call::run() const
{
    if (code) {
        return *code;
    }
    return isPatient ? patiently([this] { return command(*arguments); }) : command(*arguments);
}

std::unique_ptr<QCoreApplication> applicationFor(int &argc, char **argv)
{
    const Command *const command = argc > 1 ? find(QString::fromLocal8Bit(argv[1])) : nullptr;
    return (command != nullptr ? command->application : plainApplication)(argc, argv);
}

} // namespace ktr::cli

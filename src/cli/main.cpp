#include "cli/commands.h"
#include "cli/console.h"
#include "config/configuration_file.h"
#include "platform/terminal.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

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
    int (*run)(const QStringList &words);
    std::unique_ptr<QCoreApplication> (*application)(int &argc, char **argv) = plainApplication;
};

using namespace ktr::cli;

constexpr std::array table = {
    Command{"new", "FILE", "writes a new configuration", newFile},
    Command{"convert", "IN OUT", "reads a configuration and saves it as another file", convert},
    Command{"commands", "FILE", "shows the commands that a transmission sends", commands},
    Command{"check", "FILE", "tells what the module would choke on", check},
    Command{"print", "FILE OUT.pdf", "prints a configuration into a PDF", printFile, drawingApplication},
    Command{"compare", "FILE HELD", "tells whether a module that holds HELD has what FILE means", compare},
    Command{"transmit", "FILE", "transmits a configuration to a module", transmit},
    Command{"send", "COMMAND", "sends one command and prints the module's answer", send},
    Command{"simulate", "", "plays a module", simulate},
    Command{"monitor", "NODES.xml", "watches stations and prints what they say", monitor},
    Command{"ports", "", "lists the serial ports found", ports},
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
                         "Exit codes: 0 done, 1 the job failed, 2 wrong usage."));
}

int run(const QStringList &words)
{
    const QString name = words.value(0);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        printHelp();
        return done;
    }
    if (name == QLatin1String("--version")) {
        print(QLatin1String("ktrcli ") + ktr::programVersion());
        return done;
    }
    if (const Command *command = find(name)) {
        return command->run(words.mid(1));
    }
    complain(name.isEmpty() ? QStringLiteral("a command is missing (see ktrcli --help)")
                            : QStringLiteral("\"%1\" is no command (see ktrcli --help)").arg(name));
    return wrongUsage;
}

} // namespace

int main(int argc, char **argv)
{
    // Errors are told in this program's own words, one line each.
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &message) {
        if (type == QtFatalMsg) {
            std::_Exit(fail(message)); // the toolkit would abort
        }
    });
    ktr::prepareConsole();
    const Command *command = argc > 1 ? find(QString::fromLocal8Bit(argv[1])) : nullptr;
    const auto application = (command != nullptr ? command->application : plainApplication)(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KTRconfig"));
    const int code = run(QCoreApplication::arguments().mid(1));
    return flushOutput() ? code : std::max(code, failed);
}

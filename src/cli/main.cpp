#include "cli/commands.h"
#include "cli/console.h"
#include "config/configuration_file.h"

#include <QCoreApplication>

#include <array>

namespace {

struct Command
{
    const char *name;
    const char *arguments;
    const char *summary;
    int (*run)(const QStringList &words);
};

using namespace ktr::cli;

constexpr std::array table = {
    Command{"new", "FILE", "writes a new configuration", newFile},
    Command{"convert", "IN OUT", "reads a configuration and saves it as another file", convert},
    Command{"commands", "FILE", "shows the commands that a transmission sends", commands},
    Command{"check", "FILE", "tells what the module would choke on", check},
    Command{"compare", "FILE HELD", "tells whether a module that holds HELD has what FILE means", compare},
    Command{"transmit", "FILE", "transmits a configuration to a module", transmit},
    Command{"send", "COMMAND", "sends one command and prints the module's answer", send},
    Command{"simulate", "", "plays a module", simulate},
    Command{"ports", "", "lists the serial ports found", ports},
};

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
    for (const Command &command : table) {
        if (name == QLatin1String(command.name)) {
            return command.run(words.mid(1));
        }
    }
    complain(name.isEmpty() ? QStringLiteral("a command is missing (see ktrcli --help)")
                            : QStringLiteral("\"%1\" is no command (see ktrcli --help)").arg(name));
    return wrongUsage;
}

} // namespace

int main(int argc, char **argv)
{
    // Errors are told in this program's own words, one line each.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("KTRconfig"));
    const int code = run(QCoreApplication::arguments().mid(1));
    return flushOutput() ? code : std::max(code, failed);
}

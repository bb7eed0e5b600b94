#include "cli/commands.h"
#include "cli/console.h"
#include "cli/known_fields.h"
#include "cli/loading.h"
#include "config/neighbours.h"
#include "link/command_sequence.h"
#include "link/conversation_log.h"
#include "link/problems.h"
#include "platform/serial_device.h"
#include "platform/text_rules.h"

namespace ktr::cli {

void describeNewFile(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral("Writes a new configuration to FILE."));
}

int newFile(const Arguments &arguments)
{
    Document document(systemEnvironment());
    document.setFileName(arguments.positional(0));
    const Status saved = document.save();
    return saved ? done : fail(saved.message());
}

void describeConvert(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Opens the configuration IN and saves it as OUT. What IN lacks takes its "
        "fall-back; what cannot be used is told. A file that is no configuration is refused."));
}

int convert(const Arguments &arguments)
{
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }
    document.setFileName(arguments.positional(1));
    const Status saved = document.save();
    return saved ? done : fail(saved.message());
}

void describeCommands(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Shows the commands that a transmission of the configuration FILE sends, a line "
                       "each: the step, a tab, the command."));
    arguments.addOption({QStringLiteral("answer"), QStringLiteral("The module is to answer each command.")});
}

int commands(const Arguments &arguments)
{
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }
    const Environment &environment = document.environment();
    Configuration configuration = document.configuration();
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, {arguments.isSet(QStringLiteral("answer")),
                                                           environment.locale, environment.now()})) {
        if (next->command.size() > longestCommand) {
            complainTooLong(next->step, next->command);
        } else {
            print(QString::number(next->step) + u'\t' + next->command);
        }
    }
    return done;
}

void describeCheck(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Tells what the file or the module would choke on in the configuration FILE, what has "
        "no effect and what a dangerous one, also beside the other configurations of its "
        "folder, a line each: the place as on the pages, a tab, what is wrong there. \"Once\" and holidays "
        "are compared with this machine's clock."));
}

int check(const Arguments &arguments)
{
    Document document(systemEnvironment());
    if (!load(document, arguments.positional(0))) {
        return failed;
    }
    const Environment &environment = document.environment();
    const QList<Problem> problems =
        findProblems(document.configuration(), {false, environment.locale, environment.now()},
                     Neighbours().of(document.fileName()));
    for (const Problem &problem : problems) {
        print(fieldNames().onPages(problem.place) + u'\t' + onOneLine(problem.message));
    }
    return problems.isEmpty()
               ? done
               : fail(problems.size() == 1 ? QStringLiteral("1 problem")
                                           : QStringLiteral("%1 problems").arg(problems.size()));
}

void describePorts(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral("Lists the serial ports found, a line each."));
}

int ports(const Arguments &)
{
    for (const QString &port : serialPorts()) {
        print(port);
    }
    return done;
}

} // namespace ktr::cli

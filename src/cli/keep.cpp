#include "cli/commands.h"
#include "cli/console.h"
#include "cli/keeper.h"
#include "cli/patient_job.h"

#include <QFileInfo>

namespace ktr::cli {

namespace {

const QString statusOption = QStringLiteral("status");
const QString jsonOption = QStringLiteral("json");

} // namespace

void describeKeep(Arguments &arguments)
{
    arguments.setSummary(
        QStringLiteral("Watches the stations of a list day and night, as the operational mode does, until "
                       "it is asked to terminate. What happens is kept in the record beside the list, and "
                       "in the list at the end; what operators should know is logged on stderr. Windows "
                       "and monitors join it."));
    arguments.addOption(
        {statusOption, QStringLiteral("Tells whether anybody watches the list, who, and how its "
                                      "stations are; ends with 1 when nobody does.")});
    arguments.addOption({jsonOption, QStringLiteral("Tells the status as a JSON object.")});
    describePassingOn(arguments);
}

std::optional<int> checkKeep(const Arguments &arguments)
{
    const bool isSound = arguments.isSet(statusOption) || !arguments.isSet(jsonOption);
    return isSound ? std::nullopt
                   : std::optional(arguments.wrong(QStringLiteral("--json belongs to --status")));
}

int keep(const Arguments &arguments)
{
    KeepOptions options{arguments.positional(0)};
    if (!QFileInfo::exists(options.list)) {
        return fail(options.list + QStringLiteral(": there is no such file"));
    }
    if (arguments.isSet(statusOption)) {
        return tellKeeper(options.list, arguments.isSet(jsonOption));
    }
    if (const std::optional<int> code = readPassingOn(arguments, options.passOn)) {
        return *code;
    }
    return patiently([&] { return Keeper(std::move(options), systemEnvironment()).run(); },
                     {.waitsForReader = false});
}

} // namespace ktr::cli

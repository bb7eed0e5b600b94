#include "cli/commands.h"
#include "cli/console.h"
#include "cli/keeper.h"
#include "cli/patient_job.h"
#include "cli/shared_record.h"

#include <QFileInfo>

namespace ktr::cli {

namespace {

const QString statusOption = QStringLiteral("status");
const QString spoolOption = QStringLiteral("spool");

} // namespace

void describeKeep(Arguments &arguments)
{
    arguments.setSummary(QStringLiteral(
        "Watches the stations of a list day and night, as the operational mode does, until "
        "it is asked to terminate. What happens is kept in the record beside the list, and "
        "in the list at the end; what operators should know is logged on stderr. Windows "
        "and monitors join it.\n\nWith --record, or with an address in the variable KTR_RECORD and "
        "no list, the stations are those of a record on a database server, which this keeper shares "
        "with all others that watch it: each station is watched by one of them, and by "
        "another within 15 s when that one is gone."));
    addRecordOption(arguments);
    arguments.addOption(
        {spoolOption,
         QStringLiteral("Where what the server does not take waits, in a file that the keeper "
                        "hands over as soon as it can; otherwise the service's folder for its "
                        "state, or the user's for data."),
         QStringLiteral("FOLDER")});
    arguments.addOption(
        {statusOption, QStringLiteral("Tells whether anybody watches the list, who, and how its "
                                      "stations are; ends with 1 when nobody does.")});
    arguments.addOption({jsonOption, QStringLiteral("Tells the status as a JSON object.")});
    describePassingOn(arguments);
}

std::optional<int> checkKeep(const Arguments &arguments)
{
    if (!arguments.isSet(statusOption) && arguments.isSet(jsonOption)) {
        return arguments.wrong(QStringLiteral("--json belongs to --status"));
    }
    if (arguments.isSet(spoolOption) && sharedRecord(arguments).isEmpty()) {
        return arguments.wrong(QStringLiteral("--spool belongs to a record on a server"));
    }
    PassingOnOptions passOn;
    const std::optional<int> code = readPassingOn(arguments, passOn);
    return code ? code : checkSharedRecord(arguments);
}

int keep(const Arguments &arguments)
{
    const QString record = sharedRecord(arguments);
    KeepOptions options{record.isEmpty() ? arguments.positional(0) : record};
    if (record.isEmpty() && !QFileInfo::exists(options.list)) {
        return fail(options.list + QStringLiteral(": there is no such file"));
    }
    if (arguments.isSet(statusOption)) {
        return record.isEmpty() ? tellKeeper(options.list, arguments.isSet(jsonOption))
                                : tellKeepers(record, arguments.isSet(jsonOption));
    }
    if (const std::optional<int> code = readPassingOn(arguments, options.passOn)) {
        return *code;
    }
    options.spoolFolder = arguments.value(spoolOption);
    return patiently([&] { return Keeper(std::move(options), systemEnvironment()).run(); },
                     {.waitsForReader = false});
}

} // namespace ktr::cli

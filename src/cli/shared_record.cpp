#include "cli/shared_record.h"

#include "record/record_address.h"

namespace ktr::cli {

const QString recordOption = QStringLiteral("record");

void addRecordOption(Arguments &arguments)
{
    arguments.addOption({recordOption,
                         QStringLiteral("The record on a server: postgresql://[USER@][HOST[:PORT]]/DATABASE; "
                                        "the password comes from PostgreSQL's password file."),
                         QStringLiteral("ADDRESS")});
}

void addMemoryOption(Arguments &arguments)
{
    arguments.addOption({recordOption,
                         QStringLiteral("The record on a server that remembers transmissions, in place of "
                                        "KTR_RECORD, and of a file of this user's: "
                                        "postgresql://[USER@][HOST[:PORT]]/DATABASE."),
                         QStringLiteral("ADDRESS")});
}

QString sharedRecord(const Arguments &arguments)
{
    return arguments.isSet(recordOption)       ? arguments.value(recordOption)
           : arguments.positional(0).isEmpty() ? qEnvironmentVariable(recordVariable)
                                               : QString();
}

std::optional<int> checkSharedRecord(const Arguments &arguments)
{
    const QString record = sharedRecord(arguments);
    if (record.isEmpty() == arguments.positional(0).isEmpty()) {
        return arguments.wrong(
            record.isEmpty() ? QStringLiteral("the list is missing, or --record")
                             : QStringLiteral("--record has the stations; a list beside it is too much"));
    }
    return checkRecordAddress(arguments, record);
}

std::optional<int> checkRecordAddress(const Arguments &arguments, const QString &record)
{
    if (!record.isEmpty() && !isServerAddress(record)) {
        return arguments.wrong(QStringLiteral("--record: ") + serverAddress(record).status.message());
    }
    return std::nullopt;
}

} // namespace ktr::cli

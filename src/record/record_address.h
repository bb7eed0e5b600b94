#pragma once

#include "platform/status.h"

#include <QString>

namespace ktr {

/// The environment's variable that has a record's address for those who give none.
inline constexpr const char *recordVariable = "KTR_RECORD";

/// Whether a record is meant that stands in a PostgreSQL database, "postgresql://HOST/DATABASE", and not one
/// in a file.
bool isServerAddress(const QString &record);

/// Where a database server is, as its library takes it.
struct ServerAddress
{
    Status status = Status::done(); ///< why the address cannot be used
    /// "host='…' dbname='…' sslmode='…'": all that the address says, every value in quotes.
    QString connection{};
};

/// Of "postgresql://[USER@][HOST[:PORT]][/DATABASE][?NAME=VALUE&…]", with the names that libpq documents for
/// connections (sslmode, service, passfile, …); what does not begin like that is refused, too. A password in
/// it is refused: it would be seen in lists of processes and stand in settings.
ServerAddress serverAddress(const QString &record);

} // namespace ktr

#pragma once

#include "platform/status.h"

#include <QStringList>

namespace ktr {

/// What could be taken out of a damaged record.
struct Salvaged
{
    Status status = Status::done(); ///< why the new record could not be made
    qint64 rows = 0;
    QStringList lost{}; ///< a line for each table of which not all could be read
};

/// Copies each row that can be read from a damaged record into a new one, past what cannot.
Salvaged salvage(const QString &damaged, const QString &fresh);

} // namespace ktr

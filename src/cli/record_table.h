#pragma once

#include "platform/status.h"

namespace ktr::cli {

/// What of a record is wanted; what is empty or 0 wants all.
struct RecordChoice
{
    qint64 from = 0; ///< this time and later, in ms since 1970, UTC
    qint64 to = 0;   ///< before this time
    QString text{};  ///< in the texts of events and alarms
    QString station{};
};

/// Writes a table as CSV, page by page: "events", "alarms", "history" or "values". `rows` is how many it has.
Status writeRecordTable(const QString &path, const QString &kind, const RecordChoice &choice,
                        const QString &to, qint64 &rows);

} // namespace ktr::cli

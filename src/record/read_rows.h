#pragma once

// Rows as statements give them.

#include "record/json_text.h"
#include "record/record_rows.h"

#include <QSqlQuery>
#include <QVariant>

namespace ktr {

// In milliseconds, as all times of the record.
inline constexpr qint64 anHour = 3'600'000;
inline constexpr qint64 aDay = 24 * anHour;

inline const QString eventColumns =
    QStringLiteral("event.id, event.at, event.station, event.kind, event.text, detail, operator, alarm");
inline const QString alarmColumns =
    QStringLiteral("id, station, kind, text, priority, first, last, count, recipients, acknowledged,"
                   " acknowledged_by, comment, over, over_why, shelved_until, shelved_by, shelved_why");

inline EventRow eventOf(const QSqlQuery &query)
{
    return {query.value(0).toLongLong(), query.value(1).toLongLong(),
            query.value(2).toLongLong(), static_cast<EventKind>(query.value(3).toInt()),
            query.value(4).toString(),   query.value(5).toString(),
            query.value(6).toString(),   query.value(7).toLongLong()};
}

inline AlarmRow alarmOf(const QSqlQuery &query)
{
    AlarmRow row;
    row.id = query.value(0).toLongLong();
    row.station = query.value(1).toLongLong();
    row.kind = static_cast<AlarmKind>(query.value(2).toInt());
    row.text = query.value(3).toString();
    row.priority = query.value(4).toInt();
    row.first = query.value(5).toLongLong();
    row.last = query.value(6).toLongLong();
    row.count = query.value(7).toLongLong();
    for (const auto &name : jsonOf(query.value(8).toString()).array()) {
        row.recipients += name.toString();
    }
    row.acknowledged = query.value(9).toLongLong();
    row.acknowledgedBy = query.value(10).toString();
    row.comment = query.value(11).toString();
    row.over = query.value(12).toLongLong();
    row.overWhy = query.value(13).toString();
    row.shelvedUntil = query.value(14).toLongLong();
    row.shelvedBy = query.value(15).toString();
    row.shelvedWhy = query.value(16).toString();
    return row;
}

} // namespace ktr

#pragma once

#include <QDateTime>

namespace ktr {

/// How users see times, in every language; fields that show one have the same form.
inline const QString shownMinuteForm = QStringLiteral("dd.MM.yyyy HH:mm");

/// A moment, in ms since 1970, UTC, on the wall clock: "15.11.2026 14:05:35".
inline QString wallClockText(qint64 moment)
{
    return QDateTime::fromMSecsSinceEpoch(moment).toString(shownMinuteForm + QLatin1String(":ss"));
}

} // namespace ktr

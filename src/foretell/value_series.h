#pragma once

#include "foretell/module_time.h"
#include "platform/status.h"

#include <QList>
#include <QStringList>

namespace ktr {

/// From then on a channel has this value.
struct SeriesValue
{
    ModuleMs at = 0;
    int channel = 0; ///< 1..18
    double value = 0;

    bool operator==(const SeriesValue &) const = default;
};

struct ValueSeries
{
    QList<SeriesValue> values; ///< by time; at equal times as they stood
    QStringList remarks;       ///< about lines that could not be used
    bool isOfArchive = false;  ///< of two values of each record the second was taken

    bool isEmpty() const { return values.isEmpty(); }
};

/// Reads a table whose cells are separated by tabs, ";" or ",":
/// - lines of time, channel and value, the first two in either order;
/// - the exported archive of a module: channel, time and two values;
/// - the exports of the operational mode, what `ktrcli record export` writes of values and history, or any
///   table whose first line names its columns "time", "channel" or "input", and "value"; of several stations
///   the one that is wanted.
/// Times are the module's ("15.11.2026 14:00", "2026-11-15 14:00:30"); one with an offset from UTC becomes
/// the time here.
Status readValueSeries(const QString &text, const QString &station, ValueSeries &series);

} // namespace ktr

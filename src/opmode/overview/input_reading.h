#pragma once

#include "opmode/station/value_trends.h"
#include "opmode/station_configurations.h"

#include <optional>

namespace ktr {

class OperationalMode;

/// What is known of an input of a station: its last value, and those before.
struct InputReading
{
    QString value; ///< as received; empty when there is none
    QString unit;
    std::optional<bool> state; ///< on or off, where the values are states
    QList<ValueTrends::Point> trend;
    QList<InputLimit> limits;         ///< as configured
    std::optional<InputLimit> beyond; ///< the first of them that the value is beyond
};

/// Of a channel 1 to 18.
InputReading readingOf(const OperationalMode &mode, const QString &kennung, int channel,
                       const StationConfiguration &configuration);

/// The channels that are shown of a station where there is room for `most`: those of `chosen` or, where it is
/// empty, the first that have a name, or else the first that reported a value.
QList<int> shownChannels(const OperationalMode &mode, const QString &kennung, const ChannelNames &names,
                         const QList<int> &chosen, int most);

} // namespace ktr

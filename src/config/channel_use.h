#pragma once

#include "config/configuration.h"

namespace ktr {

// What a configuration makes of the module's channels 1..18. Which record describes a channel: null where
// none does.

/// Digital inputs 1 to 4.
const DigitalInput *countingInputOf(const Configuration &configuration, int channel);
/// The operating-hours counters of the digital outputs, 15 and 16.
const OutputHours *outputHoursOf(const Configuration &configuration, int channel);
/// Analog inputs 9 and 10, analog outputs 13 and 14.
const Scaling *scalingOf(const Configuration &configuration, int channel);

/// What a channel's numbers mean.
enum class Measure {
    None,   ///< no channel
    Binary, ///< 0 or 1
    Pulses, ///< counted by digital input 1 or 2
    Hours,
    Scaled, ///< in the unit of scalingOf()
    Temperature,
};
/// What holds with every configuration; None where that decides.
Measure fixedMeasure(int channel);
Measure channelMeasure(const Configuration &configuration, int channel);

// What a module is given of a switch point where its fields leave something open.

/// YYMMDDhhmm; without a start one that is long past.
QString startSent(const SwitchPoint &point);
/// "1" where the period is a year or more.
QString valueSent(const SwitchPoint &point);

} // namespace ktr

#pragma once

#include "config/configuration.h"
#include "platform/environment.h"
#include "record/transmission_table.h"

#include <optional>

namespace ktr {

/// A transmission whose program ended in its middle, without a word about how far it came.
struct BrokenOff
{
    int step;              ///< where it can go on: the module confirmed all commands before it
    QString versionBefore; ///< what the module tells while it has none of its end
};

/// The newest transmission over a line to the station of a configuration, if it was of the same commands,
/// from their first one on, and did not end; nothing where something else may have changed the module since.
std::optional<BrokenOff> brokenOffBefore(TransmissionTable &table, const Configuration &configuration,
                                         const QString &line, const Environment &environment);

} // namespace ktr

#pragma once

#include "config/configuration.h"
#include "config/neighbours.h"
#include "link/command_sequence.h"
#include "link/problem.h"

#include <QList>

namespace ktr {

/// What is wrong with a configuration: texts that do not suit their fields, in the order of the file; fields
/// that together have no effect or a dangerous one (link/effect_problems.h); holidays; commands that are too
/// long, or hold what the module's code page lacks or what it takes for a service command; what it must not
/// share with its neighbours (link/neighbour_problems.h). A new configuration has no problems.
QList<Problem> findProblems(const Configuration &configuration, const CommandContext &context,
                            const QList<Neighbour> &neighbours);

/// Why a command cannot be sent: it is too long for an SMS, or has a letter that the line does not carry.
/// Empty when it can.
QString commandFault(const QString &command);

} // namespace ktr

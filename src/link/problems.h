#pragma once

#include "config/configuration.h"
#include "link/command_sequence.h"

#include <QList>
#include <QString>

namespace ktr {

/// Something wrong with a configuration: the file or the module would choke on it, it has no effect, or a
/// dangerous one.
struct Problem
{
    QString place;   ///< the file's element and field, or the transmission's step
    QString control; ///< the control that shows it; empty when there is no single one
    int entry = 0;   ///< of its record in the array of records
    QString message; ///< for the user, after the place

    bool operator==(const Problem &) const = default;
};

/// What is wrong with a configuration: texts that do not suit their fields, in the order of the file; fields
/// that together have no effect or a dangerous one (link/effect_problems.h); holidays; commands that are too
/// long, or hold what the module's code page lacks or what it takes for a service command. A new
/// configuration has no problems.
QList<Problem> findProblems(const Configuration &configuration, const CommandContext &context);

/// Why a command cannot be sent: it is too long for an SMS, or has a letter that the line does not carry.
/// Empty when it can.
QString commandFault(const QString &command);

} // namespace ktr

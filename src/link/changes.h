#pragma once

#include "link/command_sequence.h"

#include <QList>

#include <functional>

namespace ktr {

/// A step whose commands differ in two configurations; nothing where a configuration sends none.
struct CommandDifference
{
    int step;
    std::optional<QString> mine;
    std::optional<QString> theirs;
};

/// What whole transmissions of two configurations at the same moment send differently, by step.
QList<CommandDifference> commandDifferences(const Configuration &mine, const Configuration &theirs,
                                            const CommandContext &context);

/// What need not be sent to a module that holds one configuration and is to hold another.
struct Changes
{
    StepSet leftOut;
    int commands = 0; ///< that differ; what each transmission sends (version, clock, closing) not counted
};

/// The module then holds what a transmission of all of `wanted` would have made of it. What it counted and
/// switched by itself meanwhile stays, unless a command that differs sets it.
///
/// `held` is what it was given, as it was sent: all of it, and nothing since.
Changes changesSince(const Configuration &held, const Configuration &wanted, const CommandContext &context);

/// The same for what is known by other means: `isHeld` tells whether the module holds a step's command.
Changes changesSince(const std::function<bool(int step, const QString &command)> &isHeld,
                     const Configuration &wanted, const CommandContext &context);

/// Whether a module that tells this version text was given this configuration last. A text that is empty, or
/// too long to be told in full, proves nothing.
bool isProvedBy(const Configuration &held, const QString &toldVersion);

} // namespace ktr

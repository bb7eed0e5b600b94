#include "link/changes.h"

#include "platform/text_rules.h"

namespace ktr {

namespace {

constexpr int clockStep = 77;

/// Those of every transmission, whatever the module holds: its version, its clock, and the closing command,
/// after which the version fits.
bool isAlwaysSent(int step)
{
    return step == steps::first || step == clockStep || step == steps::last;
}

} // namespace

QList<CommandDifference> commandDifferences(const Configuration &mine, const Configuration &theirs,
                                            const CommandContext &context)
{
    const StepCommands my = commandsOf(mine, context);
    const StepCommands their = commandsOf(theirs, context);
    QList<CommandDifference> differences;
    for (int step = steps::first; step <= steps::last; ++step) {
        const auto at = static_cast<std::size_t>(step);
        if (my[at] != their[at]) {
            differences.append({step, my[at], their[at]});
        }
    }
    return differences;
}

Changes changesSince(const Configuration &held, const Configuration &wanted, const CommandContext &context)
{
    const StepCommands there = commandsOf(held, context);
    return changesSince(
        [&there](int step, const QString &command) {
            const std::optional<QString> &given = there[static_cast<std::size_t>(step)];
            return given && toWindows1252(*given) == toWindows1252(command);
        },
        wanted, context);
}

Changes changesSince(const std::function<bool(int step, const QString &command)> &isHeld,
                     const Configuration &wanted, const CommandContext &context)
{
    const StepCommands meant = commandsOf(wanted, context);
    Changes changes;
    for (int step = steps::first; step <= steps::last; ++step) {
        const auto at = static_cast<std::size_t>(step);
        // One that is too long is kept, so that it is refused in the same words.
        if (isAlwaysSent(step) || !meant[at]) {
            continue;
        }
        if (isHeld(step, *meant[at])) {
            changes.leftOut.set(at);
        } else {
            ++changes.commands;
        }
    }
    return changes;
}

bool isProvedBy(const Configuration &held, const QString &toldVersion)
{
    const QString stamp = fromWindows1252(toWindows1252(asOneLine(held.versionText)));
    constexpr qsizetype surelyTold = 100; // of the 160 characters of the SMS that also tells the firmware
    return !stamp.isEmpty() && stamp.size() <= surelyTold && stamp == toldVersion;
}

} // namespace ktr

#pragma once

#include "config/configuration.h"

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <array>
#include <bitset>
#include <optional>

namespace ktr {

/// What a command depends on besides the configuration.
struct CommandContext
{
    bool answer = false; ///< the module is to answer: command letters in upper case
    QLocale locale = QLocale::c();
    QDateTime now; ///< the module's clock is set to its date and its time two seconds later
};

/// A command longer than this does not fit an SMS and is not sent.
inline constexpr int longestCommand = 160;

/// Makes a text fit for a command: control characters other than tabs, which a file may bring in, become
/// blanks. A line end inside a command would end the SMS for the module, and the rest could mean anything.
QString asOneLine(QString text);

/// The program's clock as the module's clock command: date, time two seconds on, weekday (Monday 1).
/// The date is not carried over at midnight, as the module expects from this program.
QString clockFields(const QDateTime &now);

/// The steps of a transmission, from first to last a command each; the user sees these numbers as progress,
/// and where a transmission broke off. The last one closes the configuration.
namespace steps {
inline constexpr int first = 0;
inline constexpr int last = 78;
inline constexpr int idle = 999;
} // namespace steps

/// A set of steps.
using StepSet = std::bitset<steps::last + 1>;

/// Where the user edits what a step of a transmission sends; empty where there is no such place
/// (the clock) or more than one.
struct StepPlace
{
    QString control;
    int entry = 0;
};
StepPlace placeOfStep(int step);

/// What one entry of a page is sent with.
enum class EntryKind { LimitValue, SwitchPoint, Channel };
/// The steps that send an entry with this number, counted from 1; of a channel its settings, its value and
/// its archiving.
StepSet stepsOfEntry(EntryKind kind, int number);

struct StepCommand
{
    int step;
    QString command;
};

/// Builds the commands that transmit a configuration, one with each call of next().
class CommandSequence
{
public:
    /// Starts at a step, steps::first to steps::last.
    void start(int step = steps::first) { m_step = static_cast<qint16>(step); }

    void stop() { m_step = steps::idle; }

    /// From now on these steps are passed over.
    void leaveOut(const StepSet &steps) { m_leftOut = steps; }

    /// The step whose command comes next; steps::idle when no transmission runs.
    int step() const { return m_step; }
    bool isRunning() const { return m_step >= 0 && m_step < steps::idle; }

    /// Builds the command of the present step and goes on to the next; after the last one the sequence is
    /// idle. Nothing when no transmission runs. A switch point whose period reaches a year has its value set
    /// to "1" in the configuration before it is sent.
    std::optional<StepCommand> next(Configuration &configuration, const CommandContext &context);

private:
    void passOver(const Configuration &configuration);

    qint16 m_step = steps::idle;
    StepSet m_leftOut;
};

/// The commands of a whole transmission by their steps; nothing for a step that sends none, since its values
/// are not to be sent or the command would be too long.
using StepCommands = std::array<std::optional<QString>, steps::last + 1>;
StepCommands commandsOf(Configuration configuration, const CommandContext &context);

} // namespace ktr

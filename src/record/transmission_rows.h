#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace ktr {

/// What became of a transmission, as far as it is known.
enum class TransmissionVerdict {
    NotEnded, ///< it runs, or its program was ended in the middle
    Whole,
    Unknown, ///< all was sent, and nothing confirms it
    InPart,
    BrokenOff,
    Alone, ///< no transmission: one command that the user sent, and that may have changed the module
};

/// What became of a command.
enum class StepOutcome {
    Sent, ///< handed over; without answers nothing more is known than that the module read on
    Confirmed,
    Refused, ///< too long to be sent
    Failed,  ///< the module answered so
    Unconfirmed,
};

/// The words that stand in the tables and in exports.
QString wordOf(TransmissionVerdict verdict);
QString wordOf(StepOutcome outcome);

struct TransmissionStepRow
{
    int step = 0;
    QString command{}; ///< without the PIN
    StepOutcome outcome = StepOutcome::Sent;
    int attempts = 0; ///< times that it was handed over
    qint64 at = 0;    ///< the last time, in ms since 1970, UTC

    bool operator==(const TransmissionStepRow &) const = default;
};

/// What was transmitted to a module: its configuration, when, by whom, and what became of it.
struct TransmissionRow
{
    qint64 id = 0; ///< given by the record
    QString uid{}; ///< tells it from all others before it has a number; never empty
    qint64 begun = 0;
    qint64 ended = 0;       ///< 0: not yet, or its program was ended
    QString user{};         ///< the name in the system
    QString operatorName{}; ///< who was on duty; empty where that is not known
    QString file{};         ///< absolute; empty for a configuration that was never saved
    QString line{};         ///< the serial port, or the module's address
    QString station{};      ///< the identifier in the configuration
    /// The version text that the module told before it was given a command; nothing when it did not.
    std::optional<QString> versionBefore{};
    QString versionSent{}; ///< what the closing command says
    QString program{};     ///< version of this one
    int firstStep = 0;     ///< above the first where one that had broken off went on
    bool answers = false;  ///< the module was asked to answer each command
    TransmissionVerdict verdict = TransmissionVerdict::NotEnded;
    static constexpr int closingStep = 78;
    std::optional<int> lastStep{};   ///< the highest that was handed over
    std::optional<int> resumeStep{}; ///< after BrokenOff, and as long as it runs
    static constexpr qint64 onNothingKnown = -1;
    /// Only what differs from this transmission was sent, which the module had proved to hold; onNothingKnown
    /// where a part was sent that proves nothing about the rest, or where it is forgotten what was sent
    /// since.
    qint64 basedOn = 0;
    bool hasPin = false;     ///< what was sent had one; a record of this user's own alone keeps it
    QString configuration{}; ///< the file's text; left out in lists

    bool operator==(const TransmissionRow &) const = default;
};

/// Which transmissions are wanted; what is empty or 0 wants all.
struct TransmissionFilter
{
    QString station{};
    qint64 since = 0; ///< begun then or later
    QString line{};
    std::optional<QString> versionSent{};
    qint64 limit = 0;
};

} // namespace ktr

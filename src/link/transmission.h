#pragma once

#include "link/command_sequence.h"
#include "link/module_dialogue.h"

#include <QList>
#include <QString>

#include <bitset>
#include <optional>
#include <vector>

namespace ktr {

/// How a module is connected: as a modem's device at a serial port, or over the network.
enum class LineKind { Serial, Ethernet };

/// What became of a transmission.
struct TransmissionReport
{
    int sent = 0;             ///< commands handed over, each counted once
    QList<int> refused;       ///< steps whose commands were too long to be sent
    int answered = 0;         ///< commands, in answer mode
    QList<int> confirmed;     ///< steps that the module answered, or restarted behind where that is asked for
    QList<int> failed;        ///< steps that the module answered with a failure
    QList<int> unconfirmed;   ///< steps whose commands may be lost
    bool isUnwatched = false; ///< over a network without answers: nobody notices a lost command
    std::optional<int> brokenAt; ///< the first step not sent, if it ended early
    /// It ended before its first change: the module tells this version instead of the one that was expected;
    /// empty when it tells none.
    std::optional<QString> otherVersion{};
    bool isPartAlone = false; ///< without the closing command, so that the module's version no longer fits

    enum class Verdict {
        Whole,     ///< the module has all of it
        Unknown,   ///< all was sent, but the network may have lost some of it unnoticed
        InPart,    ///< some commands were refused, failed or not confirmed
        BrokenOff, ///< it ended early
    };
    Verdict verdict() const;

    /// Something that went wrong, in words for the user, and the steps concerned.
    struct Finding
    {
        QString text;
        QList<int> steps;
    };
    // For the user: the verdict, the numbers of commands, and what went wrong.
    QString title() const;
    QString counts() const;
    std::vector<Finding> findings() const;
};

/// Whether a text of the module answers this command, which has an upper-case letter: "OK: G,3" or "fail:
/// G,3" answers "G,3,...", but neither "OK: Z,1" nor the alarm "M,Pump 1 fail" does.
bool isAnswerTo(const QString &command, const ModuleDialogue::Reply &reply);

/// Keeps the books of one transmission: which command comes next, and what became of the earlier ones. It is
/// informed of what the module does (moduleReads() and so on) and has neither line nor clock.
///
/// When is a command taken? Without answers: when the module goes on, that is reads or sends its next SMS
/// without a restart in between. In answer mode: when its answer comes. On a serial line a command that was
/// not confirmed is noted, and the next one follows. Over a network it is handed over again, a few times; the
/// closing command, which is never answered, counts as taken when the module restarts right after it.
///
/// Example, over a network in answer mode; the network loses the command of step 2:
///
///     next() gives step 2, "G,1,1"; handOver(2, "G,1,1")
///     moduleReads(): it goes on, but 2 was not answered
///     next() gives step 2 again; handOver(2, "G,1,1"); moduleSays("OK: G,1"): answered
///     moduleReads(); next() gives step 3
class Transmission
{
public:
    /// An unconfirmed command is handed over at most so often.
    static constexpr int mostAttempts = 10;

    /// Nothing to transmit.
    Transmission() = default;
    /// The configuration must outlive the transmission. `answer` asks the module to answer each command;
    /// `step` is where an earlier transmission broke off.
    Transmission(Configuration &configuration, bool answer, int step = steps::first);

    /// Leaves out these steps. Without the closing command the module keeps the version text it had.
    void leaveOut(const StepSet &steps);
    /// Whether it sends a part of the configuration alone.
    bool isPart() const { return m_leftOut.any(); }
    /// Nothing but the question for its version is handed over to a module that does not tell this one.
    void expectVersion(const QString &version) { m_expectedVersion = version; }
    /// The number of the transmission that was remembered of what the module holds; 0 for none.
    void setBasis(qint64 basis) { m_basis = basis; }
    qint64 basis() const { return m_basis; }
    /// Whether it ends with the closing command, by which the module takes the configuration's version text.
    bool isClosing() const { return !m_leftOut.test(steps::last); }

    /// Whether the module is to answer, from the next command on.
    void setAnswer(bool answer) { m_answer = answer; }
    bool isAnswering() const { return m_answer; }

    /// Begins, or goes on where it broke off, over a line of this kind.
    void run(LineKind kind);
    /// Ends it early.
    void breakOff();
    /// The line broke while the closing command, handed over last, had not left yet.
    void loseLast() { m_report.brokenAt = steps::last; }

    bool isRunning() const { return m_sequence.isRunning() || m_awaitsEnd || awaitsLastAnswer(); }
    /// The step whose command comes next; the last one while its confirmation is awaited, steps::idle when
    /// the transmission does not run.
    int step() const
    {
        return m_awaitsEnd ? steps::last : awaitsLastAnswer() ? *m_unanswered : m_sequence.step();
    }
    /// Where it would go on if it broke off now: the first step that may not have reached the module.
    int resumeStep() const;
    const TransmissionReport &report() const { return m_report; }
    /// Grows with every step forward: a command is handed over, confirmed or given up.
    int progress() const { return m_progress; }

    /// The closing command was handed over, and the module's restart is to confirm it.
    bool awaitsEnd() const { return m_awaitsEnd; }
    /// After something went wrong, late datagrams may still arrive and be taken for answers to what comes
    /// next. Nothing is handed over until the owner calls settle(), a while later.
    bool isUnsettled() const;
    void settle() { m_isDisturbed = false; }

    /// The command to hand over, now that the module reads; nothing when there is none.
    std::optional<StepCommand> next(const QLocale &locale, const QDateTime &now);
    void handOver(int step, const QString &command);
    void refuse(int step);

    // What the module does, in the order in which it happens.
    void moduleReads();
    void moduleSends() { m_open.reset(); }
    /// It starts its modem, or says that it leaves configuration mode. `isPrompt`: so soon after the closing
    /// command that it cannot be for want of an answer.
    void moduleStarts(bool isPrompt);
    void moduleSays(const ModuleDialogue::Reply &reply);

private:
    bool isRepeated() const { return m_kind == LineKind::Ethernet; }
    bool isConfirmed() const { return m_kind == LineKind::Ethernet && m_answer; }
    /// Without a closing command the last one is one that is answered.
    bool awaitsLastAnswer() const
    {
        return !isClosing() && !m_sequence.isRunning() && m_unanswered.has_value();
    }
    void hearVersion(const ModuleDialogue::Reply &reply);
    bool isProofMissing() const;
    void endUnproved(const QString &version);
    bool mayRepeat() const { return m_attempts < (m_isDeaf ? 1 : mostAttempts); }
    void giveUp(int step);
    void noteConfirmed(int step);
    void noteUnconfirmed(int step);

    Configuration *m_configuration = nullptr;
    bool m_answer = false;
    int m_firstStep = steps::first;
    StepSet m_leftOut;
    std::optional<QString> m_expectedVersion;
    qint64 m_basis = 0;
    bool m_isProved = false; ///< the module told the expected version
    LineKind m_kind = LineKind::Serial;
    CommandSequence m_sequence;
    TransmissionReport m_report;
    std::bitset<steps::last + 1> m_handedOver;
    std::optional<int> m_open;       ///< step whose command was handed over, and the module has not gone on
    std::optional<int> m_unanswered; ///< in answer mode, step whose answer is awaited
    QString m_command;               ///< the command handed over last
    int m_lastStep = steps::idle;    ///< its step
    int m_attempts = 0;              ///< times that it was handed over
    bool m_isDeaf = false;           ///< nothing was answered since a command was given up
    bool m_isAnswerDoubtful = false; ///< the next answer may belong to the previous command
    bool m_isDoubtReported = false;  ///< that m_open may be lost
    bool m_awaitsEnd = false;
    bool m_isDisturbed = false;  ///< datagrams older than the last command may still arrive
    bool m_namesNothing = false; ///< this module's answers do not name their command
    int m_progress = 0;
};

} // namespace ktr

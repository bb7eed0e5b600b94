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
    int sent = 0;                ///< commands handed over, each counted once
    QList<int> refused;          ///< steps whose commands were too long to be sent
    int answered = 0;            ///< in answer mode
    QList<int> failed;           ///< steps that the module answered as failed
    QList<int> unconfirmed;      ///< steps whose commands may not have arrived
    bool isUnwatched = false;    ///< over a network and without answers: a command lost there is not noticed
    std::optional<int> brokenAt; ///< the first step that was not sent, when it did not get to its end

    enum class Verdict {
        Whole,     ///< the module has all of it
        Unknown,   ///< all was sent, but nothing tells whether the network lost some of it
        InPart,    ///< some commands were refused, failed or not confirmed
        BrokenOff, ///< it did not get to its end
    };
    Verdict verdict() const;

    /// Something that went wrong, in the user's words, and the steps that it is about.
    struct Finding
    {
        QString text;
        QList<int> steps;
    };
    /// The verdict, how many commands met what, and what went wrong, in the user's words.
    QString title() const;
    QString counts() const;
    std::vector<Finding> findings() const;
};

/// The bookkeeping of one transmission: which command comes next, and what became of those before. It is told
/// what the module does and knows neither line nor clock.
///
/// Without answers a command counts as taken when the module has gone on: read or sent its next SMS without
/// having started anew in between. In answer mode its answer confirms it. Over a network a command that was
/// not confirmed is handed over again, a few times; the closing command, which nobody answers, is confirmed
/// there by the module's starting anew at once. On a serial line it is told, and the next one follows.
class Transmission
{
public:
    /// A command that is not confirmed is handed over so often at most.
    static constexpr int mostAttempts = 10;

    /// Nothing to transmit.
    Transmission() = default;
    /// The configuration must outlive the transmission. `answer` asks the module to answer each command; a
    /// step other than the first goes on with one that broke off there.
    Transmission(Configuration &configuration, bool answer, int step = steps::first);

    /// Whether the module is asked to answer the commands from the next one on.
    void setAnswer(bool answer) { m_answer = answer; }

    /// Begins over such a line; where it broke off, goes on there.
    void run(LineKind kind);
    /// Ends it before its end.
    void breakOff();
    /// The closing command was handed over last, and the line broke before it had carried it.
    void loseLast() { m_report.brokenAt = steps::last; }

    bool isRunning() const { return m_sequence.isRunning() || m_awaitsEnd; }
    /// The step whose command comes next, or is waited for at the end; steps::idle when none does.
    int step() const { return m_awaitsEnd ? steps::last : m_sequence.step(); }
    /// Where it would go on if it broke off now: the first step that the module is not known to have taken.
    int resumeStep() const;
    const TransmissionReport &report() const { return m_report; }
    /// Grows whenever it gets on: a command is handed over, confirmed or given up.
    int progress() const { return m_progress; }

    /// The closing command was handed over, and the module's starting anew is to confirm it.
    bool awaitsEnd() const { return m_awaitsEnd; }
    /// Datagrams from before something went wrong may still be on their way and be taken for what comes next:
    /// nothing is handed over until settle() is called, a while later.
    bool isUnsettled() const;
    void settle() { m_isDisturbed = false; }

    /// The command for the module's reading; nothing when it is to find none.
    std::optional<StepCommand> next(const QLocale &locale, const QDateTime &now);
    void handOver(int step, const QString &command);
    void refuse(int step);

    // What the module does.
    void moduleReads();
    void moduleSends() { m_open.reset(); }
    /// It starts its modem, or says that it leaves configuration mode. `isPrompt`: right after the closing
    /// command, too soon for a module that waited in vain.
    void moduleStarts(bool isPrompt);
    void moduleSays(const ModuleDialogue::Reply &reply);

private:
    bool isRepeated() const { return m_kind == LineKind::Ethernet; }
    bool isConfirmed() const { return m_kind == LineKind::Ethernet && m_answer; }
    bool mayRepeat() const { return m_attempts < (m_isDeaf ? 1 : mostAttempts); }
    void giveUp(int step);
    void noteUnconfirmed(int step);

    Configuration *m_configuration = nullptr;
    bool m_answer = false;
    int m_firstStep = steps::first;
    LineKind m_kind = LineKind::Serial;
    CommandSequence m_sequence;
    TransmissionReport m_report;
    std::bitset<steps::last + 1> m_handedOver;
    std::optional<int> m_open;       ///< the module did not go on since it was handed this step's command
    std::optional<int> m_unanswered; ///< in answer mode, its command was handed over last
    QString m_command;               ///< the command handed over last
    int m_lastStep = steps::idle;    ///< its step
    int m_attempts = 0;              ///< times that it was handed over
    bool m_isDeaf = false;           ///< nothing was answered since a command was given up
    bool m_isAnswerDoubtful = false; ///< the next answer may belong to the previous command
    bool m_isDoubtReported = false;  ///< that m_open may be lost
    bool m_awaitsEnd = false;
    bool m_isDisturbed = false;  ///< what is on its way may be older than what was handed over last
    bool m_namesNothing = false; ///< the module's answers do not tell to what
    int m_progress = 0;
};

} // namespace ktr

#pragma once

#include "config/configuration.h"
#include "link/line_assembler.h"
#include "link/modem_dialogue.h"
#include "link/paced_sender.h"
#include "link/transmission.h"
#include "link/transport.h"
#include "platform/environment.h"
#include "platform/timers.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

namespace ktr {

/// The conversation with one module over a line: lines are assembled and answered, commands handed over,
/// the module's texts told. The line may also be opened and closed by others, as a search for ports does.
class ModuleSession : public QObject
{
    Q_OBJECT

public:
    ModuleSession(Transport &transport, Timers &timers, Environment environment,
                  LineKind kind = LineKind::Serial, QObject *parent = nullptr);

    /// Opens the line at an address; a module behind Ethernet is told that the program is there.
    Status open(const QString &address);
    void close();

    /// A network delivers a datagram within this time or hardly ever: so long nothing is handed over after
    /// something went wrong.
    static constexpr Milliseconds settlingTime{1000};
    /// A module that starts anew within this time after the closing command has taken it; one that it did not
    /// reach waits longer for an answer.
    static constexpr Milliseconds promptStart{2000};
    /// A module behind Ethernet that was not heard yet is told again that the program is there: at first
    /// after this time, then each time after twice as long, up to the longest.
    static constexpr Milliseconds shortestCall{2000};
    static constexpr Milliseconds longestCall{20'000};

    /// Transmits a configuration, which must outlive the transmission: the module gets a command each time
    /// it reads an SMS. `answer` asks it to answer each one; a step other than the first resumes one that
    /// broke off there.
    void startTransmission(Configuration &configuration, bool answer, int step = steps::first)
    {
        startTransmission(Transmission(configuration, answer, step));
    }
    /// Begins with one, or goes on with one that broke off.
    void startTransmission(const Transmission &transmission);
    /// Breaks it off.
    void stopTransmission();

    /// Whether the module is asked to answer, from the next step on.
    void setAnswer(bool answer) { m_transmission.setAnswer(answer); }

    /// The one that runs, or the last one.
    const Transmission &transmission() const { return m_transmission; }
    /// The line broke before it had carried the closing command.
    void loseLastCommand() { m_transmission.loseLast(); }

    /// Places one command; the module gets it when it next reads an SMS.
    void place(const QString &command) { m_dialogue->place(command); }
    /// The same with the command that sets the module's clock, to the time at which the module gets it.
    void placeClock();
    /// The command that waits for that, empty when none does.
    const QString &waiting() const { return m_dialogue->outgoing(); }

    /// Over Ethernet a module that starts its modem is caught while something waits for it; an exclusive
    /// session catches it always.
    void setExclusive(bool exclusive) { m_isExclusive = exclusive; }

    /// A quiet session sends nothing: what the module says meanwhile is only logged. Ends with the line.
    void setQuiet(bool quiet) { m_isQuiet = quiet; }

    /// The step whose command comes next; steps::idle when no transmission runs.
    int step() const { return m_transmission.isRunning() ? m_transmission.step() : steps::idle; }

    /// Where a transmission that broke off goes on: the first step that the module is not known to have
    /// taken.
    int resumeStep() const { return m_transmission.resumeStep(); }

    /// Calls stalled() when nothing of what is done here got on for so long, whatever was heard; zero for
    /// never. The time begins anew now.
    void setTimeout(Milliseconds timeout);
    /// Something was heard since the time began.
    bool wasHeard() const { return m_heardBytes > 0; }
    /// Why nothing got on, in the user's words.
    QString stallReason() const;

    /// Calls back once everything sent so far, and what the line just heard leads to, has left the machine.
    void whenDrained(std::function<void()> drained);

Q_SIGNALS:
    void logged(const QString &line);
    void caught();
    /// The module read an SMS and there was none for it.
    void nothingToRead();
    void commandSent(std::optional<int> step, const QString &command);
    void commandRefused(std::optional<int> step, const QString &command);
    void replied(const ktr::ModemDialogue::Reply &reply);
    void serviceConfirmed(const QString &text);
    /// The module was told to expect a firmware image.
    void firmwareAnnounced();
    /// The transmission came to its end: the last step's command was handed to the line, and confirmed where
    /// that is asked for, or given up.
    void transmitted();
    /// Nothing got on for the time given to setTimeout().
    void stalled();

private:
    void receive(const QByteArray &bytes);
    void take(const QByteArray &line);
    void perform(const std::vector<ModuleDialogue::Action> &actions);
    void perform(const ModuleDialogue::Action &action);
    void noteSent(std::optional<int> step, const QString &command);
    void noteActs(const QByteArray &line);
    void noteProgress();
    void followTransmission();
    void send(const QString &line);
    void call(Milliseconds pause);
    void forgetLine();
    std::unique_ptr<ModuleDialogue> makeDialogue(LineKind kind);
    std::optional<StepCommand> nextCommand();

    Transport &m_transport;
    Environment m_environment;
    std::unique_ptr<OneShotTimer> m_patience;
    std::unique_ptr<OneShotTimer> m_settling;
    std::unique_ptr<OneShotTimer> m_closing; ///< the closing command was handed over
    std::unique_ptr<OneShotTimer> m_calling; ///< nothing was heard yet on this connection
    Milliseconds m_timeout{0};
    qint64 m_heardBytes = 0; ///< since the last progress
    qint64 m_heardLines = 0;
    LineAssembler m_lines;
    QByteArray m_output; ///< what one line leads to leaves a serial port in one piece
    bool m_isPerforming = false;
    std::vector<std::function<void()>> m_whenPerformed;
    std::unique_ptr<PacedSender> m_paced; ///< over Ethernet
    QByteArray m_lastLine;
    Transmission m_transmission;
    bool m_isTransmitting = false;
    int m_progress = 0; ///< of the transmission, when it was last looked at
    std::unique_ptr<ModuleDialogue> m_dialogue;
    bool m_isExclusive = false;
    bool m_isQuiet = false;
};

} // namespace ktr

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

/// The conversation with one module over a line: assembles its lines, carries out what the dialogue answers,
/// hands commands over and reports the module's texts. A search for ports may open and close the line itself.
class ModuleSession : public QObject
{
    Q_OBJECT

public:
    ModuleSession(Transport &transport, Timers &timers, Environment environment,
                  LineKind kind = LineKind::Serial, QObject *parent = nullptr);

    /// Opens the line to an address; to a module behind Ethernet the program announces itself.
    Status open(const QString &address);
    void close();

    /// A datagram that has not arrived after this time is most likely lost. After something went wrong
    /// nothing is handed over for so long.
    static constexpr Milliseconds settlingTime{1000};
    /// A module that restarts within this time after the closing command has taken it. One that the command
    /// did not reach waits longer before it restarts.
    static constexpr Milliseconds promptStart{2000};
    /// Until a module behind Ethernet is heard, the program announces itself again: first after this time,
    /// then after twice the time before, up to the longest.
    static constexpr Milliseconds firstAnnouncementPause{2000};
    static constexpr Milliseconds longestAnnouncementPause{20'000};

    /// Transmits a configuration, which must outlive the transmission: the module gets a command each time it
    /// reads an SMS. `answer` asks it to answer each one; `step` is where an earlier transmission broke off.
    void startTransmission(Configuration &configuration, bool answer, int step = steps::first)
    {
        startTransmission(Transmission(configuration, answer, step));
    }
    /// Begins a transmission, or goes on with one that broke off.
    void startTransmission(const Transmission &transmission);
    /// Breaks it off.
    void stopTransmission();

    /// Whether the module is to answer, from the next step on.
    void setAnswer(bool answer) { m_transmission.setAnswer(answer); }

    /// The one that runs, or the last one.
    const Transmission &transmission() const { return m_transmission; }
    /// The line broke while the closing command had not left yet.
    void loseLastCommand() { m_transmission.loseLast(); }

    /// Places one command; the module gets it when it next reads an SMS.
    void place(const QString &command) { m_dialogue->place(command); }
    /// The same with the command that sets the module's clock, to the time at which the module gets it.
    void placeClock();
    /// The command that is waiting for that; empty when none is.
    const QString &waiting() const { return m_dialogue->outgoing(); }

    /// Over Ethernet a module that starts its modem is caught if something is waiting for it; by an exclusive
    /// session in any case.
    void setExclusive(bool exclusive) { m_isExclusive = exclusive; }

    /// Another module may be at the line from now on: forgets what the one before left unfinished.
    void forgetPieces();

    /// A quiet session sends nothing and only logs what the module says. Closing the line ends that.
    void setQuiet(bool quiet) { m_isQuiet = quiet; }

    /// The step whose command comes next; steps::idle when no transmission runs.
    int step() const { return m_transmission.isRunning() ? m_transmission.step() : steps::idle; }

    /// Where a transmission that broke off goes on: the first step that may not have reached the module.
    int resumeStep() const { return m_transmission.resumeStep(); }

    /// Emits stalled() when there was no progress for so long, whatever the module says; zero for never. The
    /// time starts now, and again with each command handed over or refused and each answer to a transmission.
    /// What else gets a job on, only its owner knows: it calls this again.
    void setTimeout(Milliseconds timeout);
    /// Whether anything was heard since that time started.
    bool wasHeard() const { return m_heardBytes > 0; }
    /// Why there was no progress, in words for the user.
    QString stallReason() const;

    /// Calls back once everything sent so far, with the answers to the line just heard, has left the machine.
    void whenDrained(std::function<void()> drained);

Q_SIGNALS:
    void logged(const QString &line);
    void caught();
    /// The module asked for an SMS, and no command was waiting.
    void nothingToRead();
    void commandSent(std::optional<int> step, const QString &command);
    void commandRefused(std::optional<int> step, const QString &command);
    void replied(const ktr::ModemDialogue::Reply &reply);
    void serviceConfirmed(const QString &text);
    /// The module was told to expect a firmware image.
    void firmwareAnnounced();
    /// The transmission is complete: the last step's command was handed over, and confirmed (where that is
    /// asked for) or given up.
    void transmitted();
    /// There was no progress for the time given to setTimeout().
    void stalled();

private:
    void receive(const QByteArray &bytes);
    void handleLine(const QByteArray &line);
    void perform(const std::vector<ModuleDialogue::Action> &actions);
    void perform(const ModuleDialogue::Action &action);
    void noteSent(std::optional<int> step, const QString &command);
    void informTransmission(const QByteArray &line);
    void noteProgress();
    void followTransmission();
    void send(const QString &line);
    void announce(Milliseconds pause);
    void forgetLine();
    std::unique_ptr<ModuleDialogue> makeDialogue(LineKind kind);
    std::optional<StepCommand> nextCommand();

    Transport &m_transport;
    Environment m_environment;
    std::unique_ptr<OneShotTimer> m_stallTimer;
    std::unique_ptr<OneShotTimer> m_settlingTimer;
    std::unique_ptr<OneShotTimer> m_promptTimer;   ///< runs for promptStart after the closing command
    std::unique_ptr<OneShotTimer> m_announceTimer; ///< runs until the module is heard
    Milliseconds m_timeout{0};
    qint64 m_heardBytes = 0; ///< since the last progress
    qint64 m_heardLines = 0;
    LineAssembler m_lines;
    QByteArray m_output; ///< all answers to one line, which leave a serial port in one piece
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

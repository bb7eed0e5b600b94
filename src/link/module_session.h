#pragma once

#include "config/configuration.h"
#include "link/command_sequence.h"
#include "link/line_assembler.h"
#include "link/modem_dialogue.h"
#include "link/paced_sender.h"
#include "link/transport.h"
#include "platform/environment.h"
#include "platform/timers.h"

#include <QObject>
#include <QString>

#include <algorithm>
#include <memory>

namespace ktr {

/// How a module is connected: as a modem's device at a serial port, or over the network.
enum class LineKind { Serial, Ethernet };

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

    /// Transmits a configuration, which must outlive the transmission: the module gets a command each time
    /// it reads an SMS. `answer` asks it to answer each one; a step other than the first resumes one that
    /// broke off there.
    void startTransmission(Configuration &configuration, bool answer, int step = steps::first);

    void stopTransmission();

    /// Places one command; the module gets it when it next reads an SMS.
    void place(const QString &command) { m_dialogue->place(command); }

    /// Over Ethernet a module that starts its modem is caught while something waits for it; an exclusive
    /// session catches it always.
    void setExclusive(bool exclusive) { m_isExclusive = exclusive; }

    /// A quiet session sends nothing: what the module says meanwhile is only logged. Ends with the line.
    void setQuiet(bool quiet) { m_isQuiet = quiet; }

    /// The step whose command comes next; steps::idle when no transmission runs.
    int step() const { return m_sequence.step(); }

    /// Where a transmission that broke off goes on: the first step that the module is not known to have
    /// taken. A command counts as taken when the module then reads or sends its next SMS.
    int resumeStep() const { return m_unconfirmedStep.value_or(std::min(step(), steps::last)); }

    /// Calls silent() when nothing was heard from the module for so long; zero for never.
    void setTimeout(Milliseconds timeout);

    /// Calls back once everything sent so far has left the machine.
    void whenDrained(std::function<void()> drained);

Q_SIGNALS:
    void logged(const QString &line);
    void caught();
    /// The module read an SMS and there was none for it.
    void nothingToRead();
    void commandSent(std::optional<int> step, const QString &command);
    void commandRefused(std::optional<int> step, const QString &command);
    /// This step's command was handed over, but whether it arrived is not known: the module started anew
    /// before it went on, or did not answer although it was asked to. The transmission goes on.
    void unconfirmed(int step);
    void replied(const ktr::ModemDialogue::Reply &reply);
    void serviceConfirmed(const QString &text);
    /// The module was told to expect a firmware image.
    void firmwareAnnounced();
    /// The last step's command was handed to the line.
    void transmitted();
    void silent();

private:
    void receive(const QByteArray &bytes);
    void take(const QByteArray &line);
    void perform(const std::vector<ModuleDialogue::Action> &actions);
    void perform(const ModuleDialogue::Action &action);
    void tellSent(std::optional<int> step, const QString &command);
    void noteStart();
    void send(const QString &line);
    void forgetLine();
    std::unique_ptr<ModuleDialogue> makeDialogue(LineKind kind);
    std::optional<StepCommand> nextCommand();

    Transport &m_transport;
    Environment m_environment;
    std::unique_ptr<OneShotTimer> m_silence;
    Milliseconds m_timeout{0};
    LineAssembler m_lines;
    QByteArray m_output;                  ///< what one line leads to leaves a serial port in one piece
    std::unique_ptr<PacedSender> m_paced; ///< over Ethernet
    QByteArray m_lastLine;
    CommandSequence m_sequence;
    std::unique_ptr<ModuleDialogue> m_dialogue;
    bool m_isExclusive = false;
    bool m_isQuiet = false;
    Configuration *m_configuration = nullptr;
    std::optional<int>
        m_unconfirmedStep;               ///< the module did not go on since it was handed this step's command
    std::optional<int> m_unansweredStep; ///< in answer mode, its command was handed over last
    bool m_isDoubtTold = false;          ///< that m_unconfirmedStep may not have arrived
    bool m_isAnswerDoubtful = false;     ///< the next answer may be that of the command before
    bool m_answer = false;
};

} // namespace ktr

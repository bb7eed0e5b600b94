#pragma once

#include "config/configuration.h"
#include "link/command_sequence.h"
#include "link/line_assembler.h"
#include "link/modem_dialogue.h"
#include "link/transport.h"
#include "platform/environment.h"
#include "platform/timers.h"

#include <QObject>
#include <QString>

#include <memory>

namespace ktr {

/// The conversation with one module over a line that others open and close: lines are assembled and
/// answered, commands handed over, the module's texts told.
class ModuleSession : public QObject
{
    Q_OBJECT

public:
    ModuleSession(Transport &transport, Timers &timers, Environment environment, QObject *parent = nullptr);

    /// Transmits a configuration, which must outlive the transmission: the module gets a command each time
    /// it reads an SMS. `answer` asks it to answer each one; a step other than the first resumes one that
    /// broke off there.
    void startTransmission(Configuration &configuration, bool answer, int step = steps::first);

    void stopTransmission();

    /// Places one command; the module gets it when it next reads an SMS.
    void place(const QString &command) { m_dialogue.place(command); }

    /// The step whose command comes next; steps::idle when no transmission runs.
    int step() const { return m_sequence.step(); }

    /// Where a transmission that broke off goes on: the first step that the module is not known to have
    /// taken. A command counts as taken when the module then reads or sends its next SMS.
    int resumeStep() const { return m_resumeStep; }

    /// Calls silent() when nothing was heard from the module for so long; zero for never.
    void setTimeout(Milliseconds timeout);

Q_SIGNALS:
    void logged(const QString &line);
    void caught();
    /// The module read an SMS and there was none for it.
    void nothingToRead();
    void commandSent(std::optional<int> step, const QString &command);
    void commandRefused(std::optional<int> step, const QString &command);
    void replied(const ktr::ModemDialogue::Reply &reply);
    void serviceConfirmed(const QString &text);
    /// The last step's command was handed to the line.
    void transmitted();
    void silent();

private:
    void receive(const QByteArray &bytes);
    void perform(const ModemDialogue::Action &action);

    Transport &m_transport;
    Environment m_environment;
    std::unique_ptr<OneShotTimer> m_silence;
    Milliseconds m_timeout{0};
    LineAssembler m_lines;
    QByteArray m_output; ///< what one line leads to leaves in one piece
    CommandSequence m_sequence;
    ModemDialogue m_dialogue;
    Configuration *m_configuration = nullptr;
    bool m_answer = false;
    int m_resumeStep = steps::first;
};

} // namespace ktr

#pragma once

#include "link/waiting_command.h"

namespace ktr {

/// Transmits a configuration over the line in use, and keeps it and how far it got, so that a transmission
/// that broke off can go on:
///
///     transmit() --> started --> stepDone, a command each --> ended, report().brokenAt empty
///                                     |                        '--> configured, once all has left the
///                                     machine
///                                     '-- line lost, cancel() --> ended, brokenAt 17 --resume()--> started
class Transmitter : public QObject
{
    Q_OBJECT

public:
    /// A module that was heard and says nothing for so long during a transmission is gone.
    static constexpr Milliseconds longestSilence{60'000};

    /// Both must outlive this.
    Transmitter(ModuleLine &line, WaitingCommand &waiting, QObject *parent = nullptr);

    /// Transmits a configuration as it is now: later edits do not get into it. `answer` asks the module to
    /// answer each command.
    void transmit(const Configuration &configuration, bool answer);
    /// Leaves out what the module holds already, if it tells the expected version: that of the configuration
    /// which it was given (`basis` is the number of that transmission). To one that tells another, nothing is
    /// handed over but the question for it.
    void transmitChanges(const Configuration &configuration, const StepSet &leftOut,
                         const QString &expectedVersion, qint64 basis, bool answer);
    /// Transmits these steps alone; the module keeps the version text it had.
    void transmitSteps(const Configuration &configuration, const StepSet &steps, bool answer);
    /// The same for its next steps, and for those of one that is resumed.
    void setAnswer(bool answer) { m_session->setAnswer(answer); }
    /// Ends it before its next step.
    void cancel();

    /// The step whose command comes next; steps::idle when nothing is transmitted.
    int step() const { return m_line.session().step(); }
    bool isTransmitting() const { return step() != steps::idle; }
    /// Commands of a transmission have left the machine, and not all of them.
    bool isSending() const { return m_isLastLeaving || (isTransmitting() && report().sent > 0); }

    /// Of the transmission that runs, or of the last one.
    const TransmissionReport &report() const { return m_session->transmission().report(); }
    /// What is or was transmitted last, with what the command sequence changed in it.
    const Configuration &transmitted() const { return m_configuration; }

    /// Whether the last transmission broke off and may go on at its step: it must be the same configuration,
    /// and the same line to the module.
    bool canResume(const Configuration &configuration) const;
    void resume();

    // What became of a step's command.
    void noteSent(int step, const QString &command);
    void noteRefused(int step, const QString &command) { Q_EMIT stepDone(step, command); }

    /// A configuration's version text as the module is told it.
    static QString versionOnLine(const Configuration &configuration);

Q_SIGNALS:
    void started();
    /// A command was handed to the module, or refused because it is too long.
    void stepDone(int step, const QString &command);
    /// Nothing got on for `longestSilence`, for this reason; it goes on waiting.
    void stalled(const QString &reason, bool wasHeard);
    /// The closing command has left: the module holds a configuration of this version.
    void configured(const QString &version);
    /// All commands were handed over, or the transmission was broken off: see report().
    void ended();

private:
    void prepare(const Configuration &configuration);
    void start(const Transmission &transmission);
    void finish();
    void awaitLastCommand();
    void noteStall();

    ModuleLine &m_line;
    WaitingCommand &m_waiting;
    ModuleSession *m_session;      ///< has the last transmission
    Configuration m_configuration; ///< what is transmitted
    Configuration m_asGiven;       ///< the same before the command sequence changed anything in it
    QString m_transmittedOver;     ///< the name of the line that was used
    bool m_isLastLeaving = false;  ///< the closing command was handed over and may still be in the machine
};

} // namespace ktr

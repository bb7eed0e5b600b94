#pragma once

#include "link/transmitter.h"

namespace ktr {

/// The main window's link to one module: whether it is looked for, was caught or is lost. What it is made of
/// has classes of its own: line() is the way to the module, waitingCommand() the user's single command,
/// transmitter() sends it a configuration.
///
///     offline --connectSerial----> searching --the module asks for its SIM or reads--> caught
///        ^      connectEthernet       |  ^---------serial port lost--------------------'
///        '-----goOffline, gave up-----'
class ModuleLink : public QObject
{
    Q_OBJECT

public:
    enum class State { Offline, Searching, Caught };

    /// `ports` gives the names of the machine's serial ports.
    ModuleLink(Transport &serial, Transport &ethernet, Timers &timers, const Environment &environment,
               std::function<QStringList()> ports, QObject *parent = nullptr);

    /// Opens the first port that can be opened and listens there, without going on to others.
    void searchOnce();

    /// Looks for the module at one port, at all of them in turn when the name is empty.
    void connectSerial(const QString &port);

    /// Talks to the module at a network address; an exclusive link catches it whenever it starts its modem.
    /// A failure gives refused().
    void connectEthernet(const QString &address, bool exclusive);

    /// Closes the line and ends a transmission that runs.
    void goOffline();

    State state() const { return m_state; }
    /// Something was heard from the module since the line was opened.
    bool isConnected() const { return m_connected; }

    ModuleLine &line() { return m_line; }
    const ModuleLine &line() const { return m_line; }
    WaitingCommand &waitingCommand() { return m_waiting; }
    Transmitter &transmitter() { return m_transmitter; }
    const Transmitter &transmitter() const { return m_transmitter; }

Q_SIGNALS:
    /// State, port or connection changed.
    void changed();
    /// A line for the status bar, of the link or of what it is made of.
    void statusMessage(const QString &line);
    /// No line to the address could be opened, for this reason.
    void refused(const Status &why);
    /// A module that was heard is gone.
    void interrupted();
    void logged(const QString &line);
    void replied(const ktr::ModemDialogue::Reply &reply);
    void serviceConfirmed(const QString &text);
    /// A command does not fit an SMS and was not sent.
    void commandTooLong(const QString &command);
    /// The module talks, but the transmission does not get on, for this reason.
    void stalled(const QString &reason);

private:
    void connectLine();
    void connectSession(const ModuleSession &session);
    void commandSent(std::optional<int> step, const QString &command);
    void commandRefused(std::optional<int> step, const QString &command);
    void closeLine();
    void setState(State state);
    void serialLost(const QString &reason);
    void ethernetLost(const QString &reason);
    void leaveModule(const QString &reason);
    void transmissionStalled(const QString &reason, bool wasHeard);

    ModuleLine m_line;
    WaitingCommand m_waiting;
    Transmitter m_transmitter;
    State m_state = State::Offline;
    bool m_connected = false;
};

} // namespace ktr

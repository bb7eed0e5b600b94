#pragma once

#include "link/module_session.h"
#include "link/port_search.h"
#include "link/self_programming.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace ktr {

/// The link of the main window to one module: on which line it is looked for, whether it was heard, and
/// what is being transmitted to it.
///
///     offline --connectSerial----> searching --the module asks for its SIM or reads--> caught
///        ^      connectEthernet       |  ^---------serial port lost--------------------'
///        '-----goOffline, gave up-----'
class ModuleLink : public QObject
{
    Q_OBJECT

public:
    enum class State { Offline, Searching, Caught };
    enum class Line { Offline, Serial, Ethernet, EthernetExclusive };

    /// A module that was heard and says nothing for so long during a transmission is gone; one that talks
    /// and does not get on is told of.
    static constexpr Milliseconds longestSilence{60'000};

    /// `ports` gives the names of the machine's serial ports.
    ModuleLink(Transport &serial, Transport &ethernet, Timers &timers, const Environment &environment,
               std::function<QStringList()> ports, QObject *parent = nullptr);

    QStringList ports() const { return m_ports(); }

    /// Opens the first port that can be opened and listens there, without going on to others.
    void searchOnce();

    /// Looks for the module at one port, at all of them in turn when the name is empty.
    void connectSerial(const QString &port);

    /// Talks to the module at a network address; an exclusive link catches it whenever it starts its modem.
    /// A failure is told.
    void connectEthernet(const QString &address, bool exclusive);

    /// Closes the line and ends a transmission that runs.
    void goOffline();

    State state() const { return m_state; }
    Line line() const { return m_line; }
    /// Something was heard from the module since the line was opened.
    bool isConnected() const { return m_connected; }
    /// The port that is open, or the module's address; empty when there is none.
    const QString &port() const { return m_path == &m_ethernet ? m_address : m_search.port(); }
    /// The port that connectSerial() was given.
    const QString &wantedPort() const { return m_wanted; }

    /// Transmits a configuration as it is now: later edits do not get into it. `answer` asks the module to
    /// answer each command.
    void transmit(const Configuration &configuration, bool answer);
    /// The same for its next steps, and for those of one that is resumed.
    void setAnswer(bool answer) { m_transmitter->setAnswer(answer); }
    bool isTransmitting() const { return step() != steps::idle; }
    int step() const { return m_path->session.step(); }
    /// Commands of a transmission have left the machine, and not all of them.
    bool isSending() const { return m_isLastLeaving || (isTransmitting() && report().sent > 0); }
    /// Firmware goes to the module, or is about to.
    bool isUploading() const { return m_path->programming.isRunning(); }
    /// Ends it before its next step.
    void cancelTransmission() { endTransmission(); }

    /// Of the transmission that runs, or of the last one.
    const TransmissionReport &report() const { return m_transmitter->transmission().report(); }

    /// Whether the last transmission broke off and may go on at its step: it must be the same configuration,
    /// and the same line to the module.
    bool canResume(const Configuration &configuration) const;
    void resume();

    /// Where the firmware image is taken from: "upgrade.bin" in the program folder unless told otherwise.
    const QString &firmwareFile() const { return m_firmware; }
    void setFirmwareFile(const QString &path) { m_firmware = path; }

    /// A configuration's version text as the module is told it.
    static QString versionOnLine(const Configuration &configuration);

    /// What is or was transmitted last, with what the command sequence changed in it.
    const Configuration &transmitted() const { return m_configuration; }

    /// What becomes of a command that the user wants to send.
    enum class Placing {
        Waits,        ///< until the module next reads an SMS
        NoConnection, ///< refused
        Transmitting, ///< refused: the steps of the transmission go first
    };
    /// Places one command in the slot that all lines share, instead of what waits there.
    Placing place(const QString &command);
    /// The same with the one that sets the module's clock, which carries the time at which it is handed over.
    Placing placeClock();
    /// The command that waits, empty when none does. It waits for one module: the slot is emptied when the
    /// line is closed, and when a transmission begins.
    const QString &waiting() const { return m_path->session.waiting(); }
    /// Gives up what waits, if anything does, and tells so.
    void takeBack();

Q_SIGNALS:
    /// State, port or connection changed.
    void changed();
    /// What happened, in a line for the user.
    void statusMessage(const QString &line);
    /// No line to the address could be opened, for this reason.
    void refused(const Status &why);
    /// A module that was heard is gone.
    void interrupted();
    void logged(const QString &line);
    void replied(const ktr::ModemDialogue::Reply &reply);
    void serviceConfirmed(const QString &text);
    void transmissionStarted();
    /// A command was handed to the module, or refused because it is too long.
    void stepDone(int step, const QString &command);
    /// A command does not fit an SMS and was not sent.
    void commandTooLong(const QString &command);
    /// A command began to wait, or does so no longer: see waiting().
    void waitingChanged();
    /// A single command was handed to the module.
    void commandLeft(const QString &command);
    /// The transmission does not get on, for this reason; it goes on waiting.
    void stalled(const QString &reason);
    /// The closing command has left: the module holds a configuration of this version.
    void configured(const QString &version);
    /// All commands were handed over, or the transmission was broken off: see report().
    void transmissionEnded();
    /// A firmware image goes to the module, which was told to expect it.
    void uploadProgressed(qint64 sent, qint64 total);
    void uploadEnded(bool complete);

private:
    /// A kind of line with what goes over it.
    struct Path
    {
        Transport &transport;
        ModuleSession session;
        SelfProgramming programming;
    };

    QStringList candidates() const;
    void connectPath(Path &path);
    void commandSent(std::optional<int> step, const QString &command);
    void commandRefused(std::optional<int> step, const QString &command);
    Placing mayPlace() const;
    void closeLine();
    void setState(State state);
    void setUsed(Path &path, Line line);
    void serialLost(const QString &reason);
    void ethernetLost(const QString &reason);
    void leaveModule(const QString &reason);
    void awaitLastCommand();
    void transmissionStalled();
    void endTransmission();
    void start(const Transmission &transmission);
    QString lineName() const { return m_wanted.isEmpty() ? port() : m_wanted; }

    std::function<QStringList()> m_ports;
    QString m_wanted;
    QString m_address;
    Path m_serial;
    Path m_ethernet;
    Path *m_path = &m_serial;                         ///< the one in use
    ModuleSession *m_transmitter = &m_serial.session; ///< has the last transmission
    PortSearch m_search;
    QString m_firmware; ///< the image file
    Line m_line = Line::Offline;
    State m_state = State::Offline;
    bool m_connected = false;
    bool m_isPortMissing = false;  ///< told, while the search goes on
    Configuration m_configuration; ///< what is transmitted
    Configuration m_asGiven;       ///< the same before the command sequence changed anything in it
    QString m_transmittedOver;     ///< the line that was used
    bool m_isLastLeaving = false;  ///< the closing command was handed over and may still be in the machine
};

} // namespace ktr

#pragma once

#include "link/firmware_upload.h"
#include "link/module_session.h"
#include "link/port_search.h"

#include <QObject>
#include <QStringList>

#include <functional>

namespace ktr {

/// The link of the main window to one module: on which line it is looked for, whether it was heard, and
/// what is being transmitted to it.
///
///     offline --connectSerial--> searching --"at+cpin" of the module--> caught
///        ^                          |  ^-----------line lost------------'
///        '---goOffline, gave up-----'
class ModuleLink : public QObject
{
    Q_OBJECT

public:
    enum class State { Offline, Searching, Caught };

    /// `ports` gives the names of the machine's serial ports.
    ModuleLink(Transport &serial, Timers &timers, const Environment &environment,
               std::function<QStringList()> ports, QObject *parent = nullptr);

    QStringList ports() const { return m_ports(); }

    /// Opens the first port that can be opened and listens there, without going on to others.
    void searchOnce();

    /// Looks for the module at one port, at all of them in turn when the name is empty.
    void connectSerial(const QString &port);

    /// Closes the line and ends a transmission that runs.
    void goOffline();

    State state() const { return m_state; }
    /// Something was heard from the module since the line was opened.
    bool isConnected() const { return m_connected; }
    /// The port that is open, empty when none is.
    const QString &port() const { return m_search.port(); }
    /// The port that connectSerial() was given.
    const QString &wantedPort() const { return m_wanted; }

    /// Transmits a configuration as it is now: later edits do not get into it. `answer` asks the module to
    /// answer each command.
    void transmit(const Configuration &configuration, bool answer);
    bool isTransmitting() const { return m_session.step() != steps::idle; }
    int step() const { return m_session.step(); }

    /// Between the command that announces a firmware image and its first byte.
    static constexpr Milliseconds uploadDelay{1000};

    /// What is or was transmitted last, with what the command sequence changed in it.
    const Configuration &transmitted() const { return m_configuration; }

    /// Places one command; the module gets it when it next reads an SMS.
    void place(const QString &command) { m_session.place(command); }

Q_SIGNALS:
    /// State, port or connection changed.
    void changed();
    /// What happened, in a line for the user.
    void told(const QString &line);
    void logged(const QString &line);
    void replied(const ktr::ModemDialogue::Reply &reply);
    void serviceConfirmed(const QString &text);
    void stepSent(int step);
    /// A single command was handed to the module.
    void commandLeft(const QString &command);
    void transmissionEnded(int sent, int refused);
    /// A firmware image goes to the module, which was told to expect it.
    void uploadProgressed(qint64 sent, qint64 total);
    void uploadEnded(bool complete);
    /// The link broke while a transmission ran, before this step was sent.
    void transmissionBroke(int step);

private:
    void setState(State state);
    void lineLost(const QString &reason);
    void endTransmission();
    void startUpload();

    std::function<QStringList()> m_ports;
    QString m_wanted;
    Transport &m_serial;
    PortSearch m_search;
    ModuleSession m_session;
    QString m_firmware;                          ///< the image file
    std::unique_ptr<OneShotTimer> m_selfProgram; ///< Timer_selfProgram
    FirmwareUpload m_upload;
    State m_state = State::Offline;
    bool m_connected = false;
    Configuration m_configuration;
    int m_sent = 0;
    int m_refused = 0;
};

} // namespace ktr

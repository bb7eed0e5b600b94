#pragma once

#include "link/module_session.h"
#include "link/port_search.h"
#include "link/self_programming.h"

#include <QObject>
#include <QStringList>

#include <array>
#include <functional>

namespace ktr {

/// Which line to the module is in use: a serial port, chosen by name or searched for, or a network address.
/// Each kind of line has a session and a firmware upload of its own; session() is that of the one in use.
class ModuleLine : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Offline, Serial, Ethernet, EthernetExclusive };

    /// `ports` gives the names of the machine's serial ports.
    ModuleLine(Transport &serial, Transport &ethernet, Timers &timers, const Environment &environment,
               std::function<QStringList()> ports, QObject *parent = nullptr);

    QStringList ports() const { return m_ports(); }

    /// Opens the first port that can be opened and stays there. False when there is none.
    bool openFirstPort();

    /// Takes the serial line; searchPorts() then looks for the module at this port, at all of them in turn
    /// when the name is empty.
    void chooseSerial(const QString &port);
    void searchPorts() { m_search.start(); }
    void stopSearch() { m_search.stop(); }

    /// Opens the line to a network address; an exclusive one catches the module whenever it starts its modem.
    Status openEthernet(const QString &address, bool exclusive);

    void close();

    Kind kind() const { return m_kind; }
    /// The port that is open, or the module's address; empty when there is none.
    const QString &port() const { return m_path == &m_ethernet ? m_address : m_search.port(); }
    /// The port that chooseSerial() was given.
    const QString &wantedPort() const { return m_wanted; }
    /// What the user asked for, or else what was found: the same name is the same line to a module.
    QString name() const { return m_wanted.isEmpty() ? port() : m_wanted; }

    /// Where the module is looked for, in a sentence; empty offline.
    QString searchText() const;

    ModuleSession &session() { return m_path->session; }
    const ModuleSession &session() const { return m_path->session; }
    /// Of all kinds of line.
    std::array<ModuleSession *, 2> sessions() { return {&m_serial.session, &m_ethernet.session}; }

    /// Where the firmware image is taken from: "upgrade.bin" in the program folder by default.
    const QString &firmwareFile() const { return m_firmware; }
    void setFirmwareFile(const QString &path) { m_firmware = path; }
    /// Firmware goes to the module, or is about to.
    bool isUploading() const { return m_path->programming.isRunning(); }
    void cancelUpload() { m_path->programming.cancel(); }

Q_SIGNALS:
    /// A line for the status bar.
    void statusMessage(const QString &line);
    /// A serial port was opened; another module may be behind it.
    void portOpened();
    /// The search went through all ports, and no module was heard.
    void searchGaveUp();
    /// Bytes of the module arrived.
    void heard();
    void serialLost(const QString &reason);
    void ethernetLost(const QString &reason);
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
    void connectPath(const Path &path);
    void use(Path &path, Kind kind);

    std::function<QStringList()> m_ports;
    QString m_wanted;
    QString m_address;
    QString m_firmware;
    Path m_serial;
    Path m_ethernet;
    Path *m_path = &m_serial; ///< the one in use
    PortSearch m_search;
    Kind m_kind = Kind::Offline;
    bool m_isPortMissing = false; ///< the user was told so, and the search goes on
};

} // namespace ktr

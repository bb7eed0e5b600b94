#include "link/module_line.h"

#include "platform/text_rules.h"

#include <QFileInfo>

namespace ktr {

ModuleLine::ModuleLine(Transport &serial, Transport &ethernet, Timers &timers, const Environment &environment,
                       std::function<QStringList()> ports, QObject *parent)
    : QObject(parent),
      m_ports(std::move(ports)),
      m_firmware(joinPath(environment.programFolder, QStringLiteral("upgrade.bin"))),
      m_serial{serial,
               {serial, timers, environment},
               {m_serial.session, serial, timers, serialPace, [this] { return m_firmware; }}},
      m_ethernet{ethernet,
                 {ethernet, timers, environment, LineKind::Ethernet},
                 {m_ethernet.session, ethernet, timers, datagramPace, [this] { return m_firmware; }}},
      m_search(serial, timers, [this] { return candidates(); })
{
    connectPath(m_serial);
    connectPath(m_ethernet);
    connect(&serial, &Transport::lost, this, &ModuleLine::serialLost);
    connect(&ethernet, &Transport::lost, this, &ModuleLine::ethernetLost);
    connect(&m_search, &PortSearch::opened, this, [this] {
        m_serial.session.forgetPieces();
        Q_EMIT portOpened();
        if (std::exchange(m_isPortMissing, false)) {
            Q_EMIT statusMessage(tr("Looking for the module at %1").arg(m_search.port()));
        }
    });
    connect(&m_search, &PortSearch::refused, this, [this](const QString &reason) {
        m_isPortMissing = m_isPortMissing || !m_wanted.isEmpty();
        Q_EMIT statusMessage(reason);
    });
    connect(&m_search, &PortSearch::gaveUp, this, &ModuleLine::searchGaveUp);
}

QStringList ModuleLine::candidates() const
{
    if (m_wanted.isEmpty()) {
        return m_ports();
    }
    // Any device can be named, a pseudo-terminal too.
    return QFileInfo::exists(m_wanted) || m_ports().contains(m_wanted) ? QStringList{m_wanted}
                                                                       : QStringList();
}

void ModuleLine::connectPath(const Path &path)
{
    connect(&path.transport, &Transport::received, this, &ModuleLine::heard);
    connect(&path.transport, &Transport::statusMessage, this, &ModuleLine::statusMessage);
    const SelfProgramming *programming = &path.programming;
    connect(programming, &SelfProgramming::refused, this, [this](const QString &reason) {
        Q_EMIT statusMessage(tr("No firmware is sent: %1").arg(reason));
    });
    connect(programming, &SelfProgramming::statusMessage, this, &ModuleLine::statusMessage);
    connect(programming, &SelfProgramming::progressed, this, &ModuleLine::uploadProgressed);
    connect(programming, &SelfProgramming::ended, this, &ModuleLine::uploadEnded);
}

void ModuleLine::use(Path &path, Kind kind)
{
    m_path = &path;
    m_kind = kind;
}

bool ModuleLine::openFirstPort()
{
    m_search.tick();
    if (m_search.port().isEmpty()) {
        return false;
    }
    use(m_serial, Kind::Serial);
    return true;
}

void ModuleLine::chooseSerial(const QString &port)
{
    m_wanted = port;
    use(m_serial, Kind::Serial);
    m_isPortMissing = candidates().isEmpty();
    Q_EMIT statusMessage(searchText());
}

QString ModuleLine::searchText() const
{
    switch (m_kind) {
    case Kind::Offline:
        return {};
    case Kind::Ethernet:
    case Kind::EthernetExclusive:
        return tr("Looking for the module at %1").arg(m_address);
    case Kind::Serial:
        break;
    }
    return m_isPortMissing      ? m_wanted.isEmpty()
                                      ? tr("There is no serial port yet; the search goes on")
                                      : tr("There is no port %1 yet; the search goes on").arg(m_wanted)
                : m_wanted.isEmpty() ? tr("Looking for the module at all serial ports")
                                : tr("Looking for the module at %1").arg(m_wanted);
}

Status ModuleLine::openEthernet(const QString &address, bool exclusive)
{
    m_ethernet.session.setExclusive(exclusive);
    Status opened = m_ethernet.session.open(address);
    if (opened) {
        m_address = address;
        use(m_ethernet, exclusive ? Kind::EthernetExclusive : Kind::Ethernet);
        Q_EMIT statusMessage(searchText());
    }
    return opened;
}

void ModuleLine::close()
{
    m_serial.session.close();
    m_search.forgetPort();
    m_ethernet.session.close();
    m_isPortMissing = false;
    m_wanted.clear();
    m_address.clear();
    use(m_serial, Kind::Offline);
}

} // namespace ktr

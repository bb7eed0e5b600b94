#include "link/module_link.h"

#include "link/conversation_log.h"
#include "platform/text_rules.h"

#include <QFileInfo>

namespace ktr {

ModuleLink::ModuleLink(Transport &serial, Transport &ethernet, Timers &timers, const Environment &environment,
                       std::function<QStringList()> ports, QObject *parent)
    : QObject(parent),
      m_ports(std::move(ports)),
      m_serial{serial,
               {serial, timers, environment},
               {m_serial.session, serial, timers, serialPace, [this] { return m_firmware; }}},
      m_ethernet{ethernet,
                 {ethernet, timers, environment, LineKind::Ethernet},
                 {m_ethernet.session, ethernet, timers, datagramPace, [this] { return m_firmware; }}},
      m_search(serial, timers, [this] { return candidates(); }),
      m_firmware(joinPath(environment.programFolder, QStringLiteral("upgrade.bin")))
{
    connectPath(m_serial);
    connectPath(m_ethernet);
    connect(&serial, &Transport::lost, this, &ModuleLink::serialLost);
    connect(&ethernet, &Transport::lost, this, &ModuleLink::ethernetLost);
    connect(&m_search, &PortSearch::opened, this, [this] {
        takeBack();
        m_connected = false;
        if (std::exchange(m_isPortMissing, false)) {
            Q_EMIT statusMessage(tr("Looking for the module at %1").arg(m_search.port()));
        }
        Q_EMIT changed();
    });
    connect(&m_search, &PortSearch::refused, this, [this](const QString &reason) {
        m_isPortMissing = m_isPortMissing || !m_wanted.isEmpty();
        Q_EMIT statusMessage(reason);
    });
    connect(&m_search, &PortSearch::gaveUp, this, [this] {
        closeLine();
        Q_EMIT statusMessage(tr("No module was heard at any serial port"));
    });
}

QStringList ModuleLink::candidates() const
{
    if (m_wanted.isEmpty()) {
        return m_ports();
    }
    // Any device can be named, a pseudo-terminal too.
    return QFileInfo::exists(m_wanted) || m_ports().contains(m_wanted) ? QStringList{m_wanted}
                                                                       : QStringList();
}

void ModuleLink::connectPath(Path &path)
{
    connect(&path.transport, &Transport::received, this, [this] {
        if (!m_connected) {
            m_connected = true;
            Q_EMIT changed();
        }
    });
    connect(&path.transport, &Transport::statusMessage, this, &ModuleLink::statusMessage);
    const ModuleSession *session = &path.session;
    connect(session, &ModuleSession::logged, this, &ModuleLink::logged);
    connect(session, &ModuleSession::caught, this, [this] {
        m_search.stop();
        setState(State::Caught);
        Q_EMIT statusMessage(tr("The module is in configuration mode"));
    });
    connect(session, &ModuleSession::replied, this, &ModuleLink::replied);
    connect(session, &ModuleSession::serviceConfirmed, this, &ModuleLink::serviceConfirmed);
    connect(session, &ModuleSession::commandSent, this, &ModuleLink::commandSent);
    connect(session, &ModuleSession::commandRefused, this, &ModuleLink::commandRefused);
    connect(session, &ModuleSession::transmitted, this, [this] {
        m_path->session.setTimeout(Milliseconds{0});
        awaitLastCommand();
        Q_EMIT transmissionEnded();
    });
    connect(session, &ModuleSession::stalled, this, &ModuleLink::transmissionStalled);
    const SelfProgramming *programming = &path.programming;
    connect(programming, &SelfProgramming::refused, this, [this](const QString &reason) {
        Q_EMIT statusMessage(tr("No firmware is sent: %1").arg(reason));
    });
    connect(programming, &SelfProgramming::statusMessage, this, &ModuleLink::statusMessage);
    connect(programming, &SelfProgramming::progressed, this, &ModuleLink::uploadProgressed);
    connect(programming, &SelfProgramming::ended, this, &ModuleLink::uploadEnded);
}

void ModuleLink::commandSent(std::optional<int> step, const QString &command)
{
    m_search.stop(); // a module that reads its SMS is found
    setState(State::Caught);
    if (step) {
        m_transmittedOver = lineName();
        Q_EMIT stepDone(*step, command);
    } else {
        Q_EMIT statusMessage(tr("%1 was handed to the module").arg(logText(command)));
        Q_EMIT commandLeft(command);
        Q_EMIT waitingChanged();
    }
}

void ModuleLink::commandRefused(std::optional<int> step, const QString &command)
{
    Q_EMIT commandTooLong(command);
    if (step) {
        Q_EMIT stepDone(*step, command);
    } else {
        Q_EMIT statusMessage(tr("The command is too long and was not sent"));
        Q_EMIT waitingChanged();
    }
}

ModuleLink::Placing ModuleLink::mayPlace() const
{
    return port().isEmpty()   ? Placing::NoConnection
           : isTransmitting() ? Placing::Transmitting
                              : Placing::Waits;
}

ModuleLink::Placing ModuleLink::place(const QString &command)
{
    const Placing placing = mayPlace();
    if (placing == Placing::Waits) {
        m_path->session.place(command);
        Q_EMIT waitingChanged();
    }
    return placing;
}

ModuleLink::Placing ModuleLink::placeClock()
{
    const Placing placing = mayPlace();
    if (placing == Placing::Waits) {
        m_path->session.placeClock();
        Q_EMIT waitingChanged();
    }
    return placing;
}

/// Also where the line is closed: what waits is meant for the module that it was placed for.
void ModuleLink::takeBack()
{
    if (const QString command = waiting(); !command.isEmpty()) {
        m_path->session.place(QString());
        Q_EMIT waitingChanged();
        Q_EMIT statusMessage(tr("%1 was not sent and waits no longer").arg(logText(command)));
    }
}

/// A line may break before it has carried what it was given.
void ModuleLink::awaitLastCommand()
{
    m_isLastLeaving = true;
    m_path->session.whenDrained([this] {
        const TransmissionReport &told = report();
        if (std::exchange(m_isLastLeaving, false) && !told.refused.contains(steps::last) &&
            !told.unconfirmed.contains(steps::last)) {
            Q_EMIT configured(versionOnLine(m_configuration));
        }
    });
}

QString ModuleLink::versionOnLine(const Configuration &configuration)
{
    return fromWindows1252(toWindows1252(asOneLine(configuration.versionText)));
}

void ModuleLink::setState(State state)
{
    if (state != m_state) {
        m_state = state;
        Q_EMIT changed();
    }
}

void ModuleLink::setUsed(Path &path, Line line)
{
    m_path = &path;
    m_line = line;
}

void ModuleLink::searchOnce()
{
    m_search.tick();
    if (!m_search.port().isEmpty()) {
        setUsed(m_serial, Line::Serial);
        setState(State::Searching);
    }
}

void ModuleLink::connectSerial(const QString &port)
{
    closeLine();
    m_wanted = port;
    setUsed(m_serial, Line::Serial);
    setState(State::Searching);
    m_isPortMissing = candidates().isEmpty();
    Q_EMIT statusMessage(!m_isPortMissing ? port.isEmpty() ? tr("Looking for the module at all serial ports")
                                                           : tr("Looking for the module at %1").arg(port)
                         : port.isEmpty() ? tr("There is no serial port yet; the search goes on")
                                          : tr("There is no port %1 yet; the search goes on").arg(port));
    m_search.start();
    Q_EMIT changed();
}

void ModuleLink::connectEthernet(const QString &address, bool exclusive)
{
    closeLine();
    m_ethernet.session.setExclusive(exclusive);
    if (const Status opened = m_ethernet.session.open(address); !opened) {
        Q_EMIT refused(opened);
        return;
    }
    m_address = address;
    setUsed(m_ethernet, exclusive ? Line::EthernetExclusive : Line::Ethernet);
    Q_EMIT statusMessage(tr("Looking for the module at %1").arg(address));
    setState(State::Searching);
}

void ModuleLink::goOffline()
{
    const bool wasUsed = !port().isEmpty() || m_line != Line::Offline;
    closeLine();
    if (wasUsed) {
        Q_EMIT statusMessage(tr("The line was closed"));
    }
}

void ModuleLink::closeLine()
{
    m_search.stop();
    m_path->programming.cancel();
    endTransmission();
    takeBack();
    m_serial.transport.close();
    m_search.forgetPort();
    m_ethernet.session.close();
    m_connected = m_isPortMissing = false;
    m_wanted.clear();
    m_address.clear();
    setUsed(m_serial, Line::Offline);
    m_state = State::Offline;
    Q_EMIT changed();
}

void ModuleLink::leaveModule(const QString &reason)
{
    const bool heard = std::exchange(m_connected, false);
    m_path->programming.cancel();
    endTransmission();
    takeBack();
    Q_EMIT statusMessage(tr("The connection is lost: %1").arg(reason));
    if (heard) {
        Q_EMIT interrupted();
    }
}

void ModuleLink::serialLost(const QString &reason)
{
    leaveModule(reason);
    if (m_state == State::Caught) {
        // It comes back where it was, or wherever it is plugged in again.
        m_state = State::Searching;
        m_search.start();
    }
    Q_EMIT changed();
}

void ModuleLink::ethernetLost(const QString &reason)
{
    leaveModule(reason);
    closeLine();
}

void ModuleLink::transmissionStalled()
{
    const QString reason = m_path->session.stallReason();
    const bool wasHeard = m_path->session.wasHeard();
    m_path->session.setTimeout(longestSilence);
    if (!m_connected) {
        return; // it was not heard yet: it may be switched on later
    }
    if (wasHeard) {
        Q_EMIT statusMessage(reason);
        Q_EMIT stalled(reason);
        return;
    }
    leaveModule(reason);
    Q_EMIT changed();
}

void ModuleLink::endTransmission()
{
    if (isTransmitting()) {
        m_path->session.stopTransmission();
        m_path->session.setTimeout(Milliseconds{0});
        Q_EMIT transmissionEnded();
    } else if (std::exchange(m_isLastLeaving, false)) {
        m_transmitter->loseLastCommand();
        Q_EMIT transmissionEnded();
    }
}

void ModuleLink::transmit(const Configuration &configuration, bool answer)
{
    endTransmission();
    m_configuration = configuration;
    m_asGiven = configuration;
    m_transmittedOver.clear();
    start(Transmission(m_configuration, answer));
}

void ModuleLink::start(const Transmission &transmission)
{
    m_isLastLeaving = false;
    takeBack();
    m_path->session.startTransmission(transmission);
    m_transmitter = &m_path->session;
    m_path->session.setTimeout(longestSilence);
    Q_EMIT transmissionStarted();
}

bool ModuleLink::canResume(const Configuration &configuration) const
{
    // The module may have reported its station type meanwhile, which no command carries.
    Configuration compared = configuration;
    compared.gsm.stationType = m_configuration.gsm.stationType;
    const bool same = compared == m_configuration || compared == m_asGiven;
    const bool sameLine = m_transmittedOver.isEmpty() || m_transmittedOver == lineName();
    return report().brokenAt && !isTransmitting() && m_state != State::Offline && same && sameLine;
}

void ModuleLink::resume()
{
    if (report().brokenAt) {
        start(Transmission(m_transmitter->transmission()));
    }
}

} // namespace ktr

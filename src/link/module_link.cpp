#include "link/module_link.h"

namespace ktr {

ModuleLink::ModuleLink(Transport &serial, Transport &ethernet, Timers &timers, const Environment &environment,
                       std::function<QStringList()> ports, QObject *parent)
    : QObject(parent),
      m_line(serial, ethernet, timers, environment, std::move(ports)),
      m_waiting(m_line),
      m_transmitter(m_line, m_waiting)
{
    connectLine();
    for (const ModuleSession *session : m_line.sessions()) {
        connectSession(*session);
    }
    connect(&m_waiting, &WaitingCommand::statusMessage, this, &ModuleLink::statusMessage);
    connect(&m_transmitter, &Transmitter::stalled, this, &ModuleLink::transmissionStalled);
}

void ModuleLink::connectLine()
{
    connect(&m_line, &ModuleLine::statusMessage, this, &ModuleLink::statusMessage);
    connect(&m_line, &ModuleLine::heard, this, [this] {
        if (!m_connected) {
            m_connected = true;
            Q_EMIT changed();
        }
    });
    connect(&m_line, &ModuleLine::portOpened, this, [this] {
        m_waiting.takeBack();
        m_connected = false;
        Q_EMIT changed();
    });
    connect(&m_line, &ModuleLine::searchGaveUp, this, [this] {
        closeLine();
        Q_EMIT statusMessage(tr("No module was heard at any serial port"));
    });
    connect(&m_line, &ModuleLine::serialLost, this, &ModuleLink::serialLost);
    connect(&m_line, &ModuleLine::ethernetLost, this, &ModuleLink::ethernetLost);
}

void ModuleLink::connectSession(const ModuleSession &session)
{
    connect(&session, &ModuleSession::logged, this, &ModuleLink::logged);
    connect(&session, &ModuleSession::caught, this, [this] {
        m_line.stopSearch();
        setState(State::Caught);
        Q_EMIT statusMessage(tr("The module is in configuration mode"));
    });
    connect(&session, &ModuleSession::replied, this, &ModuleLink::replied);
    connect(&session, &ModuleSession::serviceConfirmed, this, &ModuleLink::serviceConfirmed);
    connect(&session, &ModuleSession::commandSent, this, &ModuleLink::commandSent);
    connect(&session, &ModuleSession::commandRefused, this, &ModuleLink::commandRefused);
}

void ModuleLink::commandSent(std::optional<int> step, const QString &command)
{
    m_line.stopSearch(); // a module that reads its SMS is found
    setState(State::Caught);
    if (step) {
        m_transmitter.noteSent(*step, command);
    } else {
        m_waiting.noteSent(command);
    }
}

void ModuleLink::commandRefused(std::optional<int> step, const QString &command)
{
    Q_EMIT commandTooLong(command);
    if (step) {
        m_transmitter.noteRefused(*step, command);
    } else {
        m_waiting.noteRefused();
    }
}

void ModuleLink::setState(State state)
{
    if (state != m_state) {
        m_state = state;
        Q_EMIT changed();
    }
}

void ModuleLink::searchOnce()
{
    if (m_line.openFirstPort()) {
        setState(State::Searching);
    }
}

void ModuleLink::connectSerial(const QString &port)
{
    closeLine();
    m_line.chooseSerial(port);
    setState(State::Searching);
    m_line.searchPorts();
    Q_EMIT changed();
}

void ModuleLink::connectEthernet(const QString &address, bool exclusive)
{
    closeLine();
    if (const Status opened = m_line.openEthernet(address, exclusive); !opened) {
        Q_EMIT refused(opened);
        return;
    }
    setState(State::Searching);
}

void ModuleLink::goOffline()
{
    const bool wasUsed = !m_line.port().isEmpty() || m_line.kind() != ModuleLine::Kind::Offline;
    closeLine();
    if (wasUsed) {
        Q_EMIT statusMessage(tr("The line was closed"));
    }
}

void ModuleLink::closeLine()
{
    m_line.stopSearch();
    m_line.cancelUpload();
    m_transmitter.cancel();
    m_waiting.takeBack();
    m_line.close();
    m_connected = false;
    m_state = State::Offline;
    Q_EMIT changed();
}

void ModuleLink::leaveModule(const QString &reason)
{
    const bool heard = std::exchange(m_connected, false);
    m_line.cancelUpload();
    m_transmitter.cancel();
    m_waiting.takeBack();
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
        m_line.searchPorts();
    }
    Q_EMIT changed();
}

void ModuleLink::ethernetLost(const QString &reason)
{
    leaveModule(reason);
    closeLine();
}

void ModuleLink::transmissionStalled(const QString &reason, bool wasHeard)
{
    if (!m_connected) {
        return; // not heard yet: it may be switched on later
    }
    if (wasHeard) {
        Q_EMIT statusMessage(reason);
        Q_EMIT stalled(reason);
        return;
    }
    leaveModule(reason);
    Q_EMIT changed();
}

} // namespace ktr

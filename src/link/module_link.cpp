#include "link/module_link.h"

#include <QFileInfo>

namespace ktr {

ModuleLink::ModuleLink(Transport &serial, Timers &timers, const Environment &environment,
                       std::function<QStringList()> ports, QObject *parent)
    : QObject(parent),
      m_ports(std::move(ports)),
      m_serial(serial),
      m_search(serial, timers,
               [this]() -> QStringList {
                   if (m_wanted.isEmpty()) {
                       return m_ports();
                   }
                   return QFileInfo::exists(m_wanted) || m_ports().contains(m_wanted) ? QStringList{m_wanted}
                                                                                      : QStringList();
               }),
      m_session(serial, timers, environment),
      m_firmware(joinPath(environment.programFolder, QStringLiteral("upgrade.bin"))),
      m_selfProgram(timers.create()),
      m_upload(serial, timers, serialPace)
{
    connect(&serial, &Transport::received, this, [this] {
        if (!m_connected) {
            m_connected = true;
            Q_EMIT changed();
        }
    });
    connect(&serial, &Transport::lost, this, &ModuleLink::lineLost);
    connect(&m_search, &PortSearch::opened, this, [this] {
        m_connected = false;
        Q_EMIT changed();
    });
    connect(&m_search, &PortSearch::refused, this, &ModuleLink::told);
    connect(&m_search, &PortSearch::gaveUp, this, [this] {
        goOffline();
        Q_EMIT told(tr("No module was heard at any serial port"));
    });
    connect(&m_session, &ModuleSession::logged, this, &ModuleLink::logged);
    connect(&m_session, &ModuleSession::caught, this, [this] {
        m_search.stop();
        setState(State::Caught);
        Q_EMIT told(tr("The module is in configuration mode"));
    });
    connect(&m_session, &ModuleSession::replied, this, &ModuleLink::replied);
    connect(&m_session, &ModuleSession::serviceConfirmed, this, &ModuleLink::serviceConfirmed);
    connect(&m_session, &ModuleSession::commandSent, this,
            [this](std::optional<int> step, const QString &command) {
                m_search.stop(); // a module that reads its SMS is found
                setState(State::Caught);
                if (step) {
                    ++m_sent;
                    Q_EMIT stepSent(*step);
                } else {
                    Q_EMIT commandLeft(command);
                }
            });
    connect(&m_session, &ModuleSession::commandRefused, this,
            [this](std::optional<int> step, const QString &) {
                ++m_refused;
                Q_EMIT told(step ? tr("Step %1: the command is too long and was not sent").arg(*step)
                                 : tr("The command is too long and was not sent"));
            });
    connect(&m_session, &ModuleSession::transmitted, this,
            [this] { Q_EMIT transmissionEnded(m_sent, m_refused); });
    connect(&m_session, &ModuleSession::firmwareAnnounced, this,
            [this] { m_selfProgram->start(uploadDelay, [this] { startUpload(); }); });
    connect(&m_upload, &FirmwareUpload::told, this, &ModuleLink::told);
    connect(&m_upload, &FirmwareUpload::progressed, this, &ModuleLink::uploadProgressed);
    connect(&m_upload, &FirmwareUpload::ended, this, &ModuleLink::uploadEnded);
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
    m_search.tick();
    setState(m_search.port().isEmpty() ? State::Offline : State::Searching);
}

void ModuleLink::connectSerial(const QString &port)
{
    goOffline();
    m_wanted = port;
    setState(State::Searching);
    m_search.start();
    Q_EMIT changed();
}

void ModuleLink::goOffline()
{
    m_search.stop();
    m_selfProgram->stop();
    m_upload.cancel();
    m_serial.close();
    m_search.forgetPort();
    endTransmission();
    m_connected = false;
    m_wanted.clear();
    m_state = State::Offline;
    Q_EMIT changed();
}

void ModuleLink::lineLost(const QString &reason)
{
    Q_EMIT told(tr("The connection is lost: %1").arg(reason));
    m_connected = false;
    m_selfProgram->stop();
    endTransmission();
    if (m_state == State::Caught) {
        // It comes back where it was, or wherever it is plugged in again.
        m_state = State::Searching;
        m_search.start();
    }
    Q_EMIT changed();
}

void ModuleLink::endTransmission()
{
    if (isTransmitting()) {
        const int step = m_session.step();
        m_session.stopTransmission();
        Q_EMIT transmissionBroke(step);
    }
}

void ModuleLink::startUpload()
{
    if (const Status started = m_upload.start(m_firmware); !started) {
        Q_EMIT told(tr("No firmware is sent: %1").arg(started.message()));
    }
}

void ModuleLink::transmit(const Configuration &configuration, bool answer)
{
    m_configuration = configuration;
    m_sent = 0;
    m_refused = 0;
    m_session.startTransmission(m_configuration, answer);
}

} // namespace ktr

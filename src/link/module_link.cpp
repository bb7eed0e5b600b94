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
    connect(&m_session, &ModuleSession::replied, this, [this](const ModemDialogue::Reply &reply) {
        noteAnswer(reply);
        Q_EMIT replied(reply);
    });
    connect(&m_session, &ModuleSession::serviceConfirmed, this, &ModuleLink::serviceConfirmed);
    connect(&m_session, &ModuleSession::commandSent, this,
            [this](std::optional<int> step, const QString &command) {
                m_search.stop(); // a module that reads its SMS is found
                setState(State::Caught);
                m_lastStep = step;
                if (step) {
                    ++m_report.sent;
                    m_transmittedOver = line();
                    Q_EMIT stepDone(*step, command);
                } else {
                    Q_EMIT commandLeft(command);
                }
            });
    connect(&m_session, &ModuleSession::commandRefused, this,
            [this](std::optional<int> step, const QString &command) {
                if (step) {
                    m_report.refused += *step;
                    Q_EMIT stepDone(*step, command);
                } else {
                    Q_EMIT told(tr("The command is too long and was not sent"));
                }
            });
    connect(&m_session, &ModuleSession::transmitted, this, &ModuleLink::transmissionEnded);
    connect(&m_session, &ModuleSession::firmwareAnnounced, this,
            [this] { m_selfProgram->start(uploadDelay, [this] { startUpload(); }); });
    connect(&m_upload, &FirmwareUpload::told, this, &ModuleLink::told);
    connect(&m_upload, &FirmwareUpload::progressed, this, &ModuleLink::uploadProgressed);
    connect(&m_upload, &FirmwareUpload::ended, this, &ModuleLink::uploadEnded);
}

/// In answer mode the module answers each command by an SMS before it reads the next.
void ModuleLink::noteAnswer(const ModemDialogue::Reply &reply)
{
    if (!m_answer || !m_lastStep || reply.kind != ModemDialogue::ReplyKind::Sms) {
        return;
    }
    ++m_report.answered;
    if (reply.text.contains(QLatin1String("fail"), Qt::CaseInsensitive)) {
        m_report.failed += *m_lastStep;
    }
    m_lastStep.reset();
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
        m_report.brokenAt = m_session.step();
        m_session.stopTransmission();
        Q_EMIT transmissionEnded();
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
    endTransmission();
    m_configuration = configuration;
    m_asGiven = configuration;
    m_answer = answer;
    m_report = {};
    m_transmittedOver.clear();
    start(steps::first);
}

void ModuleLink::start(int step)
{
    m_lastStep.reset();
    m_report.brokenAt.reset();
    m_session.startTransmission(m_configuration, m_answer, step);
    Q_EMIT transmissionStarted();
}

bool ModuleLink::canResume(const Configuration &configuration) const
{
    // The module may have reported its station type meanwhile, which no command carries.
    Configuration compared = configuration;
    compared.gsm.stationType = m_configuration.gsm.stationType;
    const bool same = compared == m_configuration || compared == m_asGiven;
    const bool sameLine = m_transmittedOver.isEmpty() || m_transmittedOver == line();
    return m_report.brokenAt && !isTransmitting() && m_state != State::Offline && same && sameLine;
}

void ModuleLink::resume()
{
    if (m_report.brokenAt) {
        start(*m_report.brokenAt);
    }
}

} // namespace ktr

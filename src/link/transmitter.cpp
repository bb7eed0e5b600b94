#include "link/transmitter.h"

#include "platform/text_rules.h"

#include <QPointer>

namespace ktr {

Transmitter::Transmitter(ModuleLine &line, WaitingCommand &waiting, QObject *parent)
    : QObject(parent), m_line(line), m_waiting(waiting), m_session(&line.session())
{
    for (const ModuleSession *session : m_line.sessions()) {
        connect(session, &ModuleSession::transmitted, this, &Transmitter::finish);
        connect(session, &ModuleSession::stalled, this, &Transmitter::noteStall);
    }
}

void Transmitter::transmit(const Configuration &configuration, bool answer)
{
    prepare(configuration);
    start(Transmission(m_configuration, answer));
}

void Transmitter::transmitChanges(const Configuration &configuration, const StepSet &leftOut,
                                  const QString &expectedVersion, qint64 basis, bool answer)
{
    prepare(configuration);
    Transmission transmission(m_configuration, answer);
    transmission.leaveOut(leftOut);
    transmission.expectVersion(expectedVersion);
    transmission.setBasis(basis);
    start(transmission);
}

void Transmitter::transmitSteps(const Configuration &configuration, const StepSet &steps, bool answer)
{
    prepare(configuration);
    Transmission transmission(m_configuration, answer);
    transmission.leaveOut(~steps);
    start(transmission);
}

void Transmitter::prepare(const Configuration &configuration)
{
    cancel();
    m_configuration = configuration;
    m_asGiven = configuration;
    m_transmittedOver.clear();
}

void Transmitter::start(const Transmission &transmission)
{
    m_isLastLeaving = false;
    m_waiting.takeBack();
    m_session = &m_line.session();
    m_session->startTransmission(transmission);
    m_session->setTimeout(longestSilence);
    Q_EMIT started();
}

void Transmitter::cancel()
{
    if (isTransmitting()) {
        m_line.session().stopTransmission();
        m_line.session().setTimeout(Milliseconds{0});
        Q_EMIT ended();
    } else if (std::exchange(m_isLastLeaving, false)) {
        m_session->loseLastCommand();
        Q_EMIT ended();
    }
}

void Transmitter::finish()
{
    m_line.session().setTimeout(Milliseconds{0});
    if (!report().brokenAt) {
        awaitLastCommand();
    }
    Q_EMIT ended();
}

/// The line may still break before the closing command has left.
void Transmitter::awaitLastCommand()
{
    m_isLastLeaving = true;
    m_line.session().whenDrained([self = QPointer(this)] {
        if (self == nullptr || !std::exchange(self->m_isLastLeaving, false)) {
            return;
        }
        const TransmissionReport &last = self->report();
        if (self->m_session->transmission().isClosing() && !last.refused.contains(steps::last) &&
            !last.unconfirmed.contains(steps::last)) {
            Q_EMIT self->configured(versionOnLine(self->m_configuration));
        }
    });
}

void Transmitter::noteStall()
{
    const QString reason = m_line.session().stallReason();
    const bool wasHeard = m_line.session().wasHeard();
    m_line.session().setTimeout(longestSilence);
    Q_EMIT stalled(reason, wasHeard);
}

void Transmitter::noteSent(int step, const QString &command)
{
    m_transmittedOver = m_line.name();
    Q_EMIT stepDone(step, command);
}

bool Transmitter::canResume(const Configuration &configuration) const
{
    // The module may have reported its station type meanwhile, which no command sends.
    Configuration compared = configuration;
    compared.gsm.stationType = m_configuration.gsm.stationType;
    compared.names = m_configuration.names; // nor does any send these
    const bool same = compared == m_configuration || compared == m_asGiven;
    const bool sameLine = m_transmittedOver.isEmpty() || m_transmittedOver == m_line.name();
    const bool isOffline = m_line.kind() == ModuleLine::Kind::Offline;
    return report().brokenAt && !isTransmitting() && !isOffline && same && sameLine;
}

void Transmitter::resume()
{
    if (report().brokenAt) {
        start(Transmission(m_session->transmission()));
    }
}

QString Transmitter::versionOnLine(const Configuration &configuration)
{
    return fromWindows1252(toWindows1252(asOneLine(configuration.versionText)));
}

} // namespace ktr

#include "link/module_session.h"

#include "platform/overloaded.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

namespace ktr {

ModuleSession::ModuleSession(Transport &transport, Timers &timers, Environment environment, QObject *parent)
    : QObject(parent),
      m_transport(transport),
      m_environment(std::move(environment)),
      m_silence(timers.create()),
      m_dialogue([this]() -> std::optional<StepCommand> {
          if (m_configuration == nullptr) {
              return std::nullopt;
          }
          return m_sequence.next(*m_configuration, {m_answer, m_environment.locale, m_environment.now()});
      })
{
    connect(&m_transport, &Transport::received, this, &ModuleSession::receive);
    connect(&m_transport, &Transport::lost, this, [this] {
        m_lines.reset(); // half a line is not continued on another connection
        m_silence->stop();
    });
}

void ModuleSession::startTransmission(Configuration &configuration, bool answer, int step)
{
    m_configuration = &configuration;
    m_answer = answer;
    m_sequence.start(step);
    m_resumeStep = step;
}

void ModuleSession::stopTransmission()
{
    m_sequence.stop();
    m_configuration = nullptr;
}

void ModuleSession::setTimeout(Milliseconds timeout)
{
    m_timeout = timeout;
    if (m_timeout.count() > 0) {
        m_silence->start(m_timeout, [this] { Q_EMIT silent(); });
    } else {
        m_silence->stop();
    }
}

void ModuleSession::receive(const QByteArray &bytes)
{
    setTimeout(m_timeout);
    const qint64 dropped = m_lines.dropped();
    const std::optional<QByteArray> line = m_lines.push(bytes);
    if (m_lines.dropped() != dropped) {
        Q_EMIT logged(QCoreApplication::translate("Files", "%1 bytes without a line end dropped")
                          .arg(m_lines.dropped() - dropped));
    }
    if (line) {
        if (m_sequence.isRunning() && line->contains("at+cmg")) {
            m_resumeStep = m_sequence.step();
        }
        for (const ModemDialogue::Action &action : m_dialogue.lineReceived(fromWindows1252(*line))) {
            perform(action);
        }
        m_transport.send(std::exchange(m_output, QByteArray()));
        if (m_configuration != nullptr && !m_sequence.isRunning()) {
            m_configuration = nullptr;
            Q_EMIT transmitted();
        }
    }
}

void ModuleSession::perform(const ModemDialogue::Action &action)
{
    std::visit(
        Overloaded{
            [this](const ModemDialogue::Send &send) { m_output += toWindows1252(send.line) + "\r\n"; },
            [this](const ModemDialogue::Log &log) { Q_EMIT logged(log.line); },
            [this](const ModemDialogue::Caught &) { Q_EMIT caught(); },
            [this](const ModemDialogue::Reply &reply) { Q_EMIT replied(reply); },
            [this](const ModemDialogue::NothingToRead &) { Q_EMIT nothingToRead(); },
            [this](const ModemDialogue::CommandSent &sent) { Q_EMIT commandSent(sent.step, sent.command); },
            [this](const ModemDialogue::CommandRefused &refused) {
                Q_EMIT commandRefused(refused.step, refused.command);
            },
            [](const ModemDialogue::FirmwareAnnounced &) {},
            [this](const ModemDialogue::ServiceConfirmed &done) { Q_EMIT serviceConfirmed(done.text); }},
        action);
}

} // namespace ktr

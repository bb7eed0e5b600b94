#include "link/module_session.h"

#include "link/ethernet_dialogue.h"
#include "platform/overloaded.h"
#include "platform/text_rules.h"

#include <QCoreApplication>

namespace ktr {

ModuleSession::ModuleSession(Transport &transport, Timers &timers, Environment environment, LineKind kind,
                             QObject *parent)
    : QObject(parent),
      m_transport(transport),
      m_environment(std::move(environment)),
      m_silence(timers.create()),
      m_dialogue(makeDialogue(kind))
{
    if (kind == LineKind::Ethernet) {
        m_paced =
            std::make_unique<PacedSender>(timers, [this](const QByteArray &line) { m_transport.send(line); });
    }
    connect(&m_transport, &Transport::received, this, &ModuleSession::receive);
    connect(&m_transport, &Transport::lost, this, &ModuleSession::forgetLine);
}

std::unique_ptr<ModuleDialogue> ModuleSession::makeDialogue(LineKind kind)
{
    const auto next = [this] { return nextCommand(); };
    if (kind == LineKind::Serial) {
        return std::make_unique<ModemDialogue>(next);
    }
    return std::make_unique<EthernetDialogue>(next, [this] {
        return m_isExclusive || m_sequence.isRunning() || !m_dialogue->outgoing().isEmpty();
    });
}

std::optional<StepCommand> ModuleSession::nextCommand()
{
    if (m_configuration == nullptr) {
        return std::nullopt;
    }
    return m_sequence.next(*m_configuration, {m_answer, m_environment.locale, m_environment.now()});
}

Status ModuleSession::open(const QString &address)
{
    close();
    Status opened = m_transport.open(address);
    if (opened) {
        perform(m_dialogue->connected());
    }
    return opened;
}

void ModuleSession::close()
{
    m_transport.close();
    forgetLine();
}

/// What was begun on one connection is not continued on another.
void ModuleSession::forgetLine()
{
    m_isQuiet = false;
    m_lines.reset();
    m_lastLine.clear();
    m_silence->stop();
    if (m_paced) {
        m_paced->clear();
    }
}

void ModuleSession::startTransmission(Configuration &configuration, bool answer, int step)
{
    m_configuration = &configuration;
    m_answer = answer;
    m_unconfirmedStep.reset();
    m_unansweredStep.reset();
    m_isAnswerDoubtful = false;
    m_sequence.start(step);
}

void ModuleSession::stopTransmission()
{
    m_sequence.stop();
    m_configuration = nullptr;
    m_dialogue->transmissionEnded();
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

void ModuleSession::whenDrained(std::function<void()> drained)
{
    if (m_paced) {
        m_paced->whenSent([this, drained = std::move(drained)] { m_transport.whenDrained(drained); });
    } else {
        m_transport.whenDrained(std::move(drained));
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
        take(*line);
    }
}

void ModuleSession::take(const QByteArray &line)
{
    if (m_isQuiet) {
        perform(m_dialogue->lineOverheard(fromWindows1252(line)));
        return;
    }
    const bool reads = line.contains("at+cmgr=");
    const bool isRepeated = line == std::exchange(m_lastLine, line);
    if (reads && isRepeated && m_paced && m_paced->isWaiting()) {
        // A module waits for its answer before it reads again: the network doubled the datagram, and a
        // command handed over twice as fast would be missed.
        Q_EMIT logged(QCoreApplication::translate("Files", "a doubled datagram dropped"));
        return;
    }
    if (reads || line.contains("at+cmgs")) {
        m_unconfirmedStep.reset();
    }
    if (reads && m_unansweredStep && m_sequence.isRunning()) {
        m_isAnswerDoubtful = true;
        Q_EMIT unconfirmed(*std::exchange(m_unansweredStep, std::nullopt));
    }
    perform(m_dialogue->lineReceived(fromWindows1252(line)));
    if (m_configuration != nullptr && !m_sequence.isRunning()) {
        m_configuration = nullptr;
        m_dialogue->transmissionEnded();
        Q_EMIT transmitted();
    }
}

void ModuleSession::perform(const std::vector<ModuleDialogue::Action> &actions)
{
    for (const ModuleDialogue::Action &action : actions) {
        perform(action);
    }
    if (!m_output.isEmpty()) {
        m_transport.send(std::exchange(m_output, QByteArray()));
    }
}

void ModuleSession::send(const QString &line)
{
    if (!m_paced) {
        m_output += toWindows1252(line) + "\r\n";
    } else if (!m_paced->send(toWindows1252(line))) {
        Q_EMIT logged(QCoreApplication::translate("Files", "a line dropped: too many wait to be sent"));
    }
}

void ModuleSession::tellSent(std::optional<int> step, const QString &command)
{
    m_unconfirmedStep = step;
    m_isDoubtTold = false;
    Q_EMIT commandSent(step, command);
    if (m_answer && step && step != steps::last) { // nobody answers the closing command
        m_unansweredStep = step;
    }
    if (step && std::exchange(m_isAnswerDoubtful, false)) {
        Q_EMIT unconfirmed(*step);
    }
}

/// The module starts its modem: at the beginning, or anew in the middle of a transmission.
void ModuleSession::noteStart()
{
    const std::optional<int> doubtful = m_unconfirmedStep ? m_unconfirmedStep : m_unansweredStep;
    if (!doubtful || !m_sequence.isRunning()) {
        return;
    }
    if (m_paced) {
        m_sequence.start(*doubtful); // a network may have lost this command
        m_unansweredStep.reset();
    } else if (m_unconfirmedStep && !std::exchange(m_isDoubtTold, true)) {
        m_unansweredStep.reset(); // told already
        Q_EMIT unconfirmed(*m_unconfirmedStep);
    }
}

void ModuleSession::perform(const ModuleDialogue::Action &action)
{
    std::visit(
        Overloaded{
            [this](const ModuleDialogue::Send &line) { send(line.line); },
            [this](const ModuleDialogue::Log &log) { Q_EMIT logged(log.line); },
            [this](const ModuleDialogue::Caught &) {
                noteStart();
                Q_EMIT caught();
            },
            [this](const ModuleDialogue::Reply &reply) {
                if (reply.kind == ModuleDialogue::ReplyKind::Sms) {
                    m_unansweredStep.reset();
                }
                Q_EMIT replied(reply);
            },
            [this](const ModuleDialogue::NothingToRead &) { Q_EMIT nothingToRead(); },
            [this](const ModuleDialogue::CommandSent &sent) { tellSent(sent.step, sent.command); },
            [this](const ModuleDialogue::CommandRefused &refused) {
                Q_EMIT commandRefused(refused.step, refused.command);
            },
            [this](const ModuleDialogue::FirmwareAnnounced &) { Q_EMIT firmwareAnnounced(); },
            [this](const ModuleDialogue::ServiceConfirmed &done) { Q_EMIT serviceConfirmed(done.text); }},
        action);
}

} // namespace ktr

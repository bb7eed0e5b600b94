#include "link/module_session.h"

#include "link/conversation_log.h"
#include "link/ethernet_dialogue.h"
#include "link/modem_words.h"
#include "platform/overloaded.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>

namespace ktr {

ModuleSession::ModuleSession(Transport &transport, Timers &timers, Environment environment, LineKind kind,
                             QObject *parent)
    : QObject(parent),
      m_transport(transport),
      m_environment(std::move(environment)),
      m_stallTimer(timers.create()),
      m_settlingTimer(timers.create()),
      m_promptTimer(timers.create()),
      m_announceTimer(timers.create()),
      m_dialogue(makeDialogue(kind))
{
    if (kind == LineKind::Ethernet) {
        m_paced =
            std::make_unique<PacedSender>(timers, [this](const QByteArray &line, std::function<void()> left) {
                m_transport.send(line);
                m_transport.whenDrained([self = QPointer(this), left = std::move(left)] {
                    if (self != nullptr) {
                        left();
                    }
                });
            });
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
        return m_isExclusive || m_transmission.isRunning() || !m_dialogue->outgoing().isEmpty();
    });
}

std::optional<StepCommand> ModuleSession::nextCommand()
{
    return m_transmission.next(m_environment.locale, m_environment.now());
}

Status ModuleSession::open(const QString &address)
{
    close();
    Status opened = m_transport.open(address);
    if (opened && m_paced) {
        announce(firstAnnouncementPause);
    }
    return opened;
}

/// The network may lose the announcement, and a module that did not get one says nothing.
void ModuleSession::announce(Milliseconds pause)
{
    perform(m_dialogue->connected());
    m_announceTimer->start(pause, [this, pause] { announce(std::min(2 * pause, longestAnnouncementPause)); });
}

void ModuleSession::close()
{
    m_transport.close();
    forgetLine();
}

/// Nothing that was begun on one connection goes on with another.
void ModuleSession::forgetLine()
{
    m_isQuiet = false;
    forgetPieces();
    m_stallTimer->stop();
    m_settlingTimer->stop();
    m_promptTimer->stop();
    m_announceTimer->stop();
    m_whenPerformed.clear();
    if (m_paced) {
        m_paced->clear();
    }
}

void ModuleSession::forgetPieces()
{
    m_lines.reset();
    m_lastLine.clear();
    for (const ModuleDialogue::Action &action : m_dialogue->lineClosed()) {
        perform(action);
    }
}

void ModuleSession::placeClock()
{
    m_dialogue->place(QStringLiteral("T,…"),
                      [this]() -> QString { return QLatin1String("T,") + clockFields(m_environment.now()); });
}

void ModuleSession::startTransmission(const Transmission &transmission)
{
    m_transmission = transmission;
    m_transmission.run(m_paced ? LineKind::Ethernet : LineKind::Serial);
    m_isTransmitting = true;
    m_promptTimer->stop();
    noteProgress();
    followTransmission();
}

void ModuleSession::stopTransmission()
{
    m_transmission.breakOff();
    m_isTransmitting = false;
    m_dialogue->transmissionEnded();
}

void ModuleSession::setTimeout(Milliseconds timeout)
{
    m_timeout = timeout;
    m_heardBytes = 0;
    m_heardLines = 0;
    if (m_timeout.count() > 0) {
        m_stallTimer->start(m_timeout, [this] { Q_EMIT stalled(); });
    } else {
        m_stallTimer->stop();
    }
}

QString ModuleSession::stallReason() const
{
    const qint64 seconds = m_timeout.count() / 1000;
    if (m_heardBytes == 0) {
        return QCoreApplication::translate("Files", "nothing was heard from the module for %1 s")
            .arg(seconds);
    }
    if (m_heardLines == 0) {
        return QCoreApplication::translate("Files",
                                           "no progress for %1 s; heard: %2 bytes without a line end")
            .arg(seconds)
            .arg(m_heardBytes);
    }
    constexpr qsizetype enough = 60;
    return QCoreApplication::translate("Files", "no progress for %1 s; heard: %2 lines, the last one \"%3\"")
        .arg(seconds)
        .arg(m_heardLines)
        .arg(logText(fromWindows1252(m_lastLine)).left(enough));
}

/// There was progress: the time for setTimeout() starts again.
void ModuleSession::noteProgress()
{
    m_progress = m_transmission.progress();
    setTimeout(m_timeout);
}

void ModuleSession::whenDrained(std::function<void()> drained)
{
    if (m_isPerforming) {
        m_whenPerformed.push_back(std::move(drained));
    } else if (m_paced) {
        m_paced->whenSent([this, drained = std::move(drained)] { m_transport.whenDrained(drained); });
    } else {
        m_transport.whenDrained(std::move(drained));
    }
}

void ModuleSession::receive(const QByteArray &bytes)
{
    m_announceTimer->stop();
    m_heardBytes += bytes.size();
    const qint64 dropped = m_lines.dropped();
    const std::optional<QByteArray> line = m_lines.push(bytes);
    if (m_lines.dropped() != dropped) {
        Q_EMIT logged(QCoreApplication::translate("Files", "%1 bytes without a line end dropped")
                          .arg(m_lines.dropped() - dropped));
    }
    if (line) {
        handleLine(*line);
    }
}

void ModuleSession::handleLine(const QByteArray &line)
{
    if (m_isQuiet) {
        perform(m_dialogue->lineOverheard(fromWindows1252(line)));
        return;
    }
    ++m_heardLines;
    const bool isRepeated = line == std::exchange(m_lastLine, line);
    if (isRepeated && line.contains(modem_words::readSms) && m_paced && m_paced->isWaiting()) {
        // A module does not read again before it is answered, so the network doubled the datagram. A second
        // command in answer to it would be lost.
        Q_EMIT logged(QCoreApplication::translate("Files", "a doubled datagram dropped"));
        return;
    }
    informTransmission(line);
    perform(m_dialogue->lineReceived(fromWindows1252(line)));
    followTransmission();
}

/// Informs the transmission of what the module does, before that is answered.
void ModuleSession::informTransmission(const QByteArray &line)
{
    if (line.contains(modem_words::readSms)) {
        m_transmission.moduleReads();
    } else if (line.contains(modem_words::sendSms)) {
        m_transmission.moduleSends();
    } else if (line.contains(modem_words::askPin) || (m_paced && line.contains("donE"))) {
        m_settlingTimer->stop();
        m_transmission.moduleStarts(m_promptTimer->isRunning());
    }
}

/// To be called after anything that may have advanced or ended the transmission.
void ModuleSession::followTransmission()
{
    if (m_transmission.isUnsettled() && !m_settlingTimer->isRunning()) {
        m_settlingTimer->start(settlingTime, [this] { m_transmission.settle(); });
    }
    if (m_transmission.progress() != m_progress) {
        noteProgress();
    }
    if (m_isTransmitting && !m_transmission.isRunning()) {
        m_isTransmitting = false;
        m_dialogue->transmissionEnded();
        Q_EMIT transmitted();
    }
}

void ModuleSession::perform(const std::vector<ModuleDialogue::Action> &actions)
{
    m_isPerforming = true;
    for (const ModuleDialogue::Action &action : actions) {
        perform(action);
    }
    m_isPerforming = false;
    if (!m_output.isEmpty()) {
        m_transport.send(std::exchange(m_output, QByteArray()));
    }
    for (auto &drained : std::exchange(m_whenPerformed, {})) {
        whenDrained(std::move(drained));
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

void ModuleSession::noteSent(std::optional<int> step, const QString &command)
{
    if (!step) {
        noteProgress();
    } else {
        m_transmission.handOver(*step, command);
        if (m_transmission.awaitsEnd()) {
            m_promptTimer->start(promptStart, [] {});
        }
    }
    Q_EMIT commandSent(step, command);
}

void ModuleSession::perform(const ModuleDialogue::Action &action)
{
    std::visit(
        Overloaded{
            [this](const ModuleDialogue::Send &line) { send(line.line); },
            [this](const ModuleDialogue::Log &log) { Q_EMIT logged(log.line); },
            [this](const ModuleDialogue::Caught &) { Q_EMIT caught(); },
            [this](const ModuleDialogue::Reply &reply) {
                if (m_isTransmitting) {
                    m_transmission.moduleSays(reply);
                }
                Q_EMIT replied(reply);
            },
            [this](const ModuleDialogue::NothingToRead &) { Q_EMIT nothingToRead(); },
            [this](const ModuleDialogue::CommandSent &sent) { noteSent(sent.step, sent.command); },
            [this](const ModuleDialogue::CommandRefused &refused) {
                if (refused.step) {
                    m_transmission.refuse(*refused.step);
                }
                Q_EMIT commandRefused(refused.step, refused.command);
            },
            [this](const ModuleDialogue::FirmwareAnnounced &) { Q_EMIT firmwareAnnounced(); },
            [this](const ModuleDialogue::ServiceConfirmed &done) { Q_EMIT serviceConfirmed(done.text); }},
        action);
}

} // namespace ktr

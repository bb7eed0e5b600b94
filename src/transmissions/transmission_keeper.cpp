#include "transmissions/transmission_keeper.h"

#include "config/configuration_file.h"
#include "link/conversation_log.h"
#include "link/reply_interpreter.h"
#include "link/transmitter.h"

#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <utility>

namespace ktr {

namespace {

StepOutcome outcomeOf(int step, const TransmissionReport &report)
{
    return report.refused.contains(step)       ? StepOutcome::Refused
           : report.failed.contains(step)      ? StepOutcome::Failed
           : report.unconfirmed.contains(step) ? StepOutcome::Unconfirmed
           : report.confirmed.contains(step)   ? StepOutcome::Confirmed
                                               : StepOutcome::Sent;
}

} // namespace

TransmissionVerdict verdictOf(const TransmissionReport &report)
{
    switch (report.verdict()) {
    case TransmissionReport::Verdict::Whole:
        return TransmissionVerdict::Whole;
    case TransmissionReport::Verdict::Unknown:
        return TransmissionVerdict::Unknown;
    case TransmissionReport::Verdict::InPart:
        return TransmissionVerdict::InPart;
    case TransmissionReport::Verdict::BrokenOff:
        break;
    }
    return TransmissionVerdict::BrokenOff;
}

TransmissionKeeper::TransmissionKeeper(TransmissionMemory &memory, Environment environment, QObject *parent)
    : QObject(parent), m_memory(memory), m_environment(std::move(environment))
{
    connect(&m_memory, &TransmissionMemory::kept, this, [this](const QString &uid, qint64 id) {
        if (uid == m_transmission.row.uid) {
            m_transmission.row.id = id;
        }
    });
}

void TransmissionKeeper::begin(const ModuleSession &session, const Configuration &configuration,
                               const About &about)
{
    if (m_session != nullptr) {
        m_session->disconnect(this);
    }
    m_session = &session;
    m_configuration = &configuration;
    m_begun = m_environment.now();
    m_isRunning = true;
    m_transmission = {};
    TransmissionRow &row = m_transmission.row;
    row.uid = QUuid::createUuid().toString(QUuid::WithoutBraces);
    row.begun = m_begun.toMSecsSinceEpoch();
    row.user = userName();
    row.operatorName = about.operatorName;
    row.file = about.file.isEmpty() ? QString() : QFileInfo(about.file).absoluteFilePath();
    row.line = about.line;
    row.station = configuration.gsm.stationId;
    row.versionBefore = about.versionBefore;
    row.versionSent = Transmitter::versionOnLine(configuration);
    row.program = programVersion();
    row.firstStep = about.firstStep;
    row.answers = about.answers;
    row.basedOn = about.basedOn == 0 && session.transmission().isPart() ? TransmissionRow::onNothingKnown
                                                                        : about.basedOn;
    row.hasPin = !configuration.gsm.pin.isEmpty();
    connect(m_session, &ModuleSession::commandSent, this,
            [this](std::optional<int> step, const QString &command) {
                if (step && m_isRunning) {
                    noteStep(*step, command, true);
                }
            });
    connect(m_session, &ModuleSession::commandRefused, this,
            [this](std::optional<int> step, const QString &command) {
                if (step && m_isRunning) {
                    noteStep(*step, command, false);
                }
            });
    connect(m_session, &ModuleSession::replied, this, &TransmissionKeeper::noteReply);
    noteConfiguration();
    m_memory.keep(m_transmission);
}

void TransmissionKeeper::goOn()
{
    if (m_session != nullptr) {
        m_isRunning = true;
        m_transmission.row.ended = 0;
        m_transmission.row.verdict = TransmissionVerdict::NotEnded;
        keep();
    }
}

void TransmissionKeeper::end()
{
    if (m_session == nullptr) {
        return;
    }
    m_isRunning = false;
    const TransmissionReport &report = m_session->transmission().report();
    m_transmission.row.ended = m_environment.now().toMSecsSinceEpoch();
    m_transmission.row.verdict = verdictOf(report);
    m_transmission.row.resumeStep = report.brokenAt;
    noteConfiguration(); // a command may have changed it
    keep();
}

void TransmissionKeeper::noteStep(int step, const QString &command, bool isSent)
{
    QList<TransmissionStepRow> &rows = m_transmission.steps;
    auto place = std::ranges::lower_bound(rows, step, {}, &TransmissionStepRow::step);
    if (place == rows.end() || place->step != step) {
        place = rows.insert(place, {.step = step});
    }
    place->command = logText(command);
    if (isSent) {
        ++place->attempts;
        m_transmission.row.lastStep = std::max(step, m_transmission.row.lastStep.value_or(step));
    }
    place->at = m_environment.now().toMSecsSinceEpoch();
    keep();
}

/// The module tells the version of what it holds before it is given another one by the closing command.
void TransmissionKeeper::noteReply(const ModemDialogue::Reply &reply)
{
    if (!m_isRunning) {
        return;
    }
    const bool isClosed = !m_transmission.steps.isEmpty() && m_transmission.steps.last().step == steps::last;
    for (const ReplyEvent &event : interpretReply(reply)) {
        const auto *version = std::get_if<VersionReply>(&event);
        if (version != nullptr && !isClosed) {
            m_transmission.row.versionBefore = version->configuration;
        }
    }
    keep();
}

/// The file's date and time stay those of the beginning.
void TransmissionKeeper::noteConfiguration()
{
    Environment atBegin = m_environment;
    atBegin.now = [now = m_begun] { return now; };
    m_transmission.row.configuration = QString::fromUtf8(writeConfiguration(*m_configuration, atBegin));
}

void TransmissionKeeper::keep()
{
    const TransmissionReport &report = m_session->transmission().report();
    for (TransmissionStepRow &step : m_transmission.steps) {
        step.outcome = outcomeOf(step.step, report);
    }
    if (m_isRunning) {
        m_transmission.row.resumeStep = m_session->resumeStep();
    }
    m_memory.keep(m_transmission);
}

} // namespace ktr

#include "transmissions/single_commands.h"

#include "config/configuration_file.h"
#include "link/conversation_log.h"
#include "link/service_commands.h"

#include <QUuid>

#include <utility>

namespace ktr {

namespace {

const QString versionLetter = QStringLiteral("v");

} // namespace

bool mayChangeConfiguration(const QString &command)
{
    if (command.isEmpty()) {
        return false;
    }
    const QChar letter = command.front().toUpper();
    const bool isQuestion = command == serviceCommands::version || command == serviceCommands::archive;
    const bool isClock = letter == u'T';
    const bool isDeletion = letter == u'K';                                       // of notifications
    const bool isArchive = letter == u'H' && command.section(u',', 1, 1) == u"0"; // as a whole
    const bool isCalibration = letter == u'§' && command != serviceCommands::firmware;
    return !(isQuestion || isClock || isDeletion || isArchive || isCalibration);
}

SingleCommandKeeper::SingleCommandKeeper(TransmissionMemory &memory, Environment environment, QObject *parent)
    : QObject(parent), m_memory(memory), m_environment(std::move(environment))
{}

void SingleCommandKeeper::watch(const ModuleSession &session, std::function<About()> about)
{
    connect(&session, &ModuleSession::commandSent, this,
            [this, &session, about = std::move(about)](std::optional<int> step, const QString &command) {
                if (!step && mayChangeConfiguration(command)) {
                    note(session, command, about());
                } else if (m_session == &session) {
                    m_command.clear(); // an answer to it could be that of the newer one
                }
            });
    connect(&session, &ModuleSession::replied, this,
            [this, &session](const ModemDialogue::Reply &reply) { noteReply(session, reply); });
}

/// The version text that the module tells stays, unless the command gives it another one.
void SingleCommandKeeper::note(const ModuleSession &session, const QString &command, const About &about)
{
    constexpr int someChange = 1;
    const bool isVersion = command.startsWith(versionLetter) && command.size() > 1;
    m_session = &session;
    m_command = command.front().isLower() ? QString() : command; // that is not answered
    const qint64 now = m_environment.now().toMSecsSinceEpoch();
    m_noted = {};
    m_noted.row = {.uid = QUuid::createUuid().toString(QUuid::WithoutBraces),
                   .begun = now,
                   .ended = now,
                   .user = userName(),
                   .operatorName = about.operatorName,
                   .line = about.line,
                   .versionBefore = about.version,
                   .versionSent = isVersion ? command.mid(2) : QString(),
                   .program = programVersion(),
                   .verdict = TransmissionVerdict::Alone,
                   .lastStep = isVersion ? steps::last : someChange,
                   .basedOn = TransmissionRow::onNothingKnown};
    m_noted.steps = {{.step = *m_noted.row.lastStep, .command = logText(command), .attempts = 1, .at = now}};
    m_memory.keep(m_noted);
}

void SingleCommandKeeper::noteReply(const ModuleSession &session, const ModemDialogue::Reply &reply)
{
    if (&session != m_session || m_command.isEmpty() || !isAnswerTo(m_command, reply)) {
        return;
    }
    m_command.clear();
    m_noted.steps.first().outcome = reply.refuses() ? StepOutcome::Failed : StepOutcome::Confirmed;
    if (reply.refuses()) {
        m_noted.row.lastStep.reset(); // nothing was changed
    }
    m_memory.keep(m_noted);
}

} // namespace ktr

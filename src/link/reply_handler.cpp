#include "link/reply_handler.h"

#include "link/conversation_log.h"
#include "platform/overloaded.h"

namespace ktr {

ReplyHandler::ReplyHandler(Timers &timers, std::function<QString()> exportPath, QObject *parent)
    : QObject(parent), m_exportPath(std::move(exportPath)), m_fastExport(timers)
{}

void ReplyHandler::disconnected()
{
    m_fastExport.end();
    m_isIgnoringReported = false;
}

void ReplyHandler::handle(const ModemDialogue::Reply &reply)
{
    for (const ReplyEvent &event : interpretReply(reply)) {
        std::visit(
            Overloaded{[this](const VersionReply &version) { Q_EMIT versionReported(version); },
                       [this](const HistoryReply &history) { exportLine(history); },
                       [](const OtherReply &) {},
                       [this](const UnusableReply &unusable) {
                           Q_EMIT statusMessage(
                               tr("A version reply that lacks fields: %1").arg(logText(unusable.text)));
                       }},
            event);
    }
}

void ReplyHandler::exportLine(const HistoryReply &reply)
{
    m_fastExport.lineArrived();
    if (reply.direction == Direction::Answer && !m_fastExport.isRunning()) {
        if (!std::exchange(m_isIgnoringReported, true)) {
            Q_EMIT statusMessage(tr("Lines of the archive that no fast export asked for are not exported"));
        }
        return;
    }
    const QStringList remarks = historyRemarks(reply.line);
    for (const QString &remark : remarks) {
        Q_EMIT statusMessage(remark);
    }
    const QString trouble = m_export.append(m_exportPath(), historyCsv(reply.line));
    if (!trouble.isEmpty()) {
        Q_EMIT statusMessage(trouble);
    }
}

} // namespace ktr

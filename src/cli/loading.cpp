#include "cli/loading.h"

#include "cli/console.h"
#include "lang/text_table.h"
#include "link/conversation_log.h"
#include "platform/files.h"

#include <QFile>

namespace ktr::cli {

bool load(Document &document, const QString &fileName)
{
    const ReadReport report = document.load(fileName);
    for (const QString &remark : report.remarks) {
        complain(remark);
    }
    if (!report.document) {
        complain(report.document.message());
    }
    return report.document && report.isConfiguration;
}

Status saveKeeping(Document &document)
{
    QString backup;
    if (Status kept = document.backUp(backup); !kept) {
        return kept;
    }
    if (!backup.isEmpty()) {
        print(QStringLiteral("what stood in %1 is kept as %2").arg(document.fileName(), backup));
    }
    return document.save();
}

Status loadLog(const QString &fileName, RecordedConversation &conversation)
{
    QFile log(fileName);
    if (!log.open(QIODevice::ReadOnly)) {
        return fileFailure(fileName, log.errorString());
    }
    Status read = readConversation(log.readAll(), conversation);
    return read ? read : fileFailure(fileName, read.message());
}

void complainTooLong(std::optional<int> step, const QString &command)
{
    const QString place = step ? QStringLiteral("step %1: ").arg(*step) : QString();
    complain(place + TextTable().text(Text::MessageTooLong) + u' ' + logText(command));
}

} // namespace ktr::cli

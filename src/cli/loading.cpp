#include "cli/loading.h"

#include "cli/console.h"
#include "lang/text_table.h"
#include "link/conversation_log.h"

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

void complainTooLong(std::optional<int> step, const QString &command)
{
    const QString place = step ? QStringLiteral("step %1: ").arg(*step) : QString();
    complain(place + TextTable().text(Text::MessageTooLong) + u' ' + logText(command));
}

} // namespace ktr::cli

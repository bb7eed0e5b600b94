#include "opmode/window/overview/numbers_text.h"

#include <QCoreApplication>

namespace ktr {

QString inAlarmText(const OverviewModel::Numbers &numbers)
{
    return numbers.waiting == 0
               ? QString()
               : QCoreApplication::translate("StationNumbers", "in alarm %L1").arg(numbers.waiting);
}

QString silentText(const OverviewModel::Numbers &numbers)
{
    return numbers.silent == 0
               ? QString()
               : QCoreApplication::translate("StationNumbers", "silent %L1").arg(numbers.silent);
}

QString numbersText(const OverviewModel::Numbers &numbers)
{
    QString text = QStringLiteral("%L1").arg(numbers.stations);
    for (const QString &part : {inAlarmText(numbers), silentText(numbers)}) {
        text += part.isEmpty() ? QString() : QLatin1String(", ") + part;
    }
    return text;
}

} // namespace ktr

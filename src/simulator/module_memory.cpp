#include "simulator/module_memory.h"

#include "platform/module_minutes.h"

namespace ktr {

namespace {

constexpr std::array archivedChannels = {1, 9, 17};
constexpr int recordsPerLine = 6;
constexpr int minutesBetweenRecords = 15;

QString recordValues(int channel, int record)
{
    return QStringLiteral(",%1,%2").arg(QString::number(100 * channel + record),
                                        QString::number(channel + 0.5 * record, 'f', 1));
}

} // namespace

QStringList archiveLines(const ModuleMemory &memory)
{
    const QDateTime earliest(firstModuleDay, QTime(0, 0), Qt::UTC); // a stamp knows this century only
    const QDateTime last = memory.clock.isValid() ? memory.clock : earliest;
    const QDateTime first =
        qMax(last.addSecs(qint64{-60} * minutesBetweenRecords * (recordsPerLine - 1)), earliest);
    QStringList lines;
    for (const int channel : archivedChannels) {
        QString line =
            QStringLiteral("H,%1,%2").arg(channel).arg(first.toString(QStringLiteral("yyMMddhhmm")));
        for (int record = 0; record < recordsPerLine; ++record) {
            if (record > 0) {
                line += QStringLiteral(",%1").arg(minutesBetweenRecords);
            }
            line += recordValues(channel, record);
        }
        lines += line;
    }
    return lines;
}

} // namespace ktr

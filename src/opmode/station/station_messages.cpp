#include "opmode/station/station_messages.h"

#include "config/alarm_word.h"
#include "config/channels.h"
#include "link/history_decoder.h"
#include "link/module_text.h"

namespace ktr {

namespace {

/// Whether the message holds a report of a kind; drops the ">" that may stand in front of the kind.
bool takeKind(QString &message, QChar kind)
{
    const QString plain = QStringLiteral("--> %1,").arg(kind);
    const QString marked = QStringLiteral("--> >%1,").arg(kind);
    const qsizetype at = message.indexOf(marked);
    if (at >= 0) {
        message.replace(at, marked.size(), plain);
        return true;
    }
    return message.contains(plain);
}

/// Behind the first comma; empty when there is none.
QStringView behindComma(QStringView text)
{
    const qsizetype comma = text.indexOf(u',');
    return comma < 0 ? QStringView() : text.sliced(comma + 1);
}

QStringView beforeComma(QStringView text)
{
    const qsizetype comma = text.indexOf(u',');
    return comma < 0 ? text : text.first(comma);
}

StationMessage notification(const QString &message)
{
    return NotificationMessage{{message, message}, isAlarmText(message)};
}

StationMessage inputValues(const QString &message)
{
    // Longer reports carry all values, counted from behind the arrow's first character.
    constexpr qsizetype lengthOfAllValues = 21;
    QStringView rest = behindComma(message);
    InputValuesMessage report;
    if (message.size() - message.indexOf(QLatin1String("-->")) - 1 < lengthOfAllValues) {
        bool isNumber = false;
        const int channel = beforeComma(rest).toInt(&isNumber);
        if (!isNumber || channel < 1 || channel > channelCount || !rest.contains(u',')) {
            return UnusableMessage{message};
        }
        report.values.append({channel, behindComma(rest).toString()});
        return report;
    }
    for (int channel = 1; channel <= channelCount; ++channel) {
        report.values.append({channel, beforeComma(rest).toString()});
        rest = behindComma(rest);
    }
    return report;
}

StationMessage history(const QString &message)
{
    const ArchiveLine line = decodeArchiveLine(behindComma(message));
    HistoryMessage report;
    for (const ArchiveRecord &record : line.records) {
        QString value = record.second;
        value.replace(u',', u'.'); // as received, like all values in the tree
        const QString time = record.stamp.isEmpty() ? QStringLiteral("?") : record.stamp;
        const QString text = time + QLatin1String(" : IP") + record.first + QLatin1String(" = ") + value;
        report.entries.append({line.key + u',' + text, text});
        if (!record.stamp.isEmpty()) {
            report.records.append({line.key.toInt(), record.stamp, record.first, value});
        }
    }
    if (!line.badTime.isEmpty() || !line.incomplete.isEmpty() || line.records.isEmpty()) {
        report.unusable = !line.badTime.isEmpty()      ? line.badTime
                          : !line.incomplete.isEmpty() ? line.incomplete
                                                       : message;
    }
    return report;
}

} // namespace

bool isAlarmText(const QString &notification)
{
    return notification.contains(alarmWord);
}

StationMessage interpretStationMessage(const QString &message)
{
    QString text = message;
    if (takeKind(text, u'M')) {
        return notification(text);
    }
    if (takeKind(text, u'R')) {
        return inputValues(text);
    }
    if (takeKind(text, u'H')) {
        return history(text);
    }
    return NoStationMessage{};
}

QString withoutMark(const QString &message)
{
    QString text = message;
    for (const QChar kind : reportLetters) {
        if (takeKind(text, kind)) {
            break;
        }
    }
    return text;
}

} // namespace ktr

#include "opmode/lists/nodes_export.h"

#include "opmode/station/station_messages.h"
#include "opmode/tree/history_entry_text.h"
#include "opmode/tree/notifications.h"
#include "platform/csv.h"
#include "platform/time_texts.h"

#include <QCoreApplication>

namespace ktr {

namespace {

QByteArray header(ExportChoice::Kind kind)
{
    if (kind == ExportChoice::Kind::History) {
        return csvLine({QCoreApplication::translate("Export", "Station"),
                        QCoreApplication::translate("Export", "Time"),
                        QCoreApplication::translate("Export", "Input"),
                        QCoreApplication::translate("Export", "Input name"),
                        QCoreApplication::translate("Export", "Value")});
    }
    return csvLine(
        {QCoreApplication::translate("Export", "Station"), QCoreApplication::translate("Export", "Received"),
         QCoreApplication::translate("Export", "Recipient"), QCoreApplication::translate("Export", "Text"),
         QCoreApplication::translate("Export", "Count"), QCoreApplication::translate("Export", "State"),
         QCoreApplication::translate("Export", "Acknowledged")});
}

/// Empty when it is not known.
QString timeText(qint64 msSinceEpoch)
{
    return msSinceEpoch == 0 ? QString() : wallClockText(msSinceEpoch);
}

QString stateText(const ExportEntry &entry, qint64 acknowledged)
{
    if (entry.node.data(StationTree::ColourRole).toInt() == StationTree::alarmColour) {
        return QCoreApplication::translate("Export", "not acknowledged");
    }
    const bool wasAlarm = acknowledged != 0 || isAlarmText(entry.text);
    return wasAlarm ? QCoreApplication::translate("Export", "acknowledged")
                    : QCoreApplication::translate("Export", "no alarm");
}

QByteArray notificationLine(const ExportEntry &entry)
{
    const qsizetype at = entry.text.indexOf(notificationArrow);
    const qint64 acknowledged = entry.node.data(StationTree::AcknowledgedRole).toLongLong();
    const int count = entry.node.data(StationTree::CountRole).toInt();
    return csvLine({entry.station, timeText(entry.node.data(StationTree::ReceivedRole).toLongLong()),
                    at < 0 ? QString() : entry.text.first(at),
                    at < 0 ? entry.text : entry.text.sliced(at + notificationArrow.size()),
                    QString::number(std::max(1, count)), stateText(entry, acknowledged),
                    timeText(acknowledged)});
}

QByteArray historyLine(const ExportEntry &entry)
{
    const std::optional<HistoryEntryText> read = splitHistoryEntry(entry.text);
    if (!read) {
        return csvLine({entry.station, {}, {}, {}, entry.text});
    }
    return csvLine({entry.station, read->minute ? read->time.toString() : QString(),
                    QString::number(read->input), channelCaption(read->input).trimmed(),
                    csvNumber(read->value)});
}

} // namespace

NodesExport::NodesExport(const StationTree &tree, ExportChoice choice) : m_entries(tree, std::move(choice)) {}

Status NodesExport::open(const QString &path)
{
    const Status opened = m_file.open(path, Readers::AsUsual);
    return opened ? m_file.write(csvMark + header(m_entries.choice().kind)) : opened;
}

Status NodesExport::step(int atMost)
{
    constexpr qsizetype piece = qsizetype{256} * 1024;
    const auto toLine =
        m_entries.choice().kind == ExportChoice::Kind::History ? historyLine : notificationLine;
    Status written = Status::done();
    QByteArray bytes;
    const bool more = m_entries.walk(atMost, [&](const ExportEntry &entry) {
        bytes += toLine(entry);
        if (bytes.size() >= piece && written) {
            written = m_file.write(bytes);
            bytes.clear();
        }
    });
    if (written) {
        written = m_file.write(bytes);
    }
    if (written && !more) {
        written = m_file.commit();
        m_isDone = bool(written);
    }
    return written;
}

} // namespace ktr

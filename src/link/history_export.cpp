#include "link/history_export.h"

#include "link/conversation_log.h"
#include "link/service_commands.h"
#include "platform/csv.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace ktr {

namespace {

Status failure(const QString &path, const QString &reason)
{
    return Status::failed(
        QCoreApplication::translate("Files", "The history is not exported: %1: %2").arg(path, reason));
}

Status openToAppend(QFile &file)
{
    const QString path = file.fileName();
    if (path.isEmpty()) {
        return Status::failed(
            QCoreApplication::translate("Files", "The history is not exported: no file is chosen for it"));
    }
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) { // a pipe would wait for its reader
        return failure(path, QCoreApplication::translate("Files", "is not a file"));
    }
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered)) {
        return failure(path, file.errorString());
    }
    return Status::done();
}

Status appendTo(const QString &path, const QByteArray &lines)
{
    QFile file(path);
    if (Status opened = openToAppend(file); !opened) {
        return opened;
    }
    const qint64 before = file.size();
    QByteArray bytes;
    if (before == 0) {
        bytes = csvMark;
    } else {
        char last = '\n';
        if (file.seek(before - 1) && file.getChar(&last) && last != '\n') {
            bytes = "\r\n"; // somebody edited the file: the last record keeps a line of its own
        }
    }
    bytes += lines;
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.error() == QFileDevice::NoError
                                   ? QCoreApplication::translate("Files", "there is no room for it")
                                   : file.errorString();
        file.resize(before); // no half record
        return failure(path, reason);
    }
    return Status::done();
}

} // namespace

QStringList historyRemarks(const ArchiveLine &line)
{
    QStringList remarks;
    if (!line.badTime.isEmpty()) {
        remarks +=
            QCoreApplication::translate(
                "Files", "Archive %1: \"%2\" is no time; the records from there on are exported without one")
                .arg(logText(line.key), logText(line.badTime));
    }
    if (!line.incomplete.isEmpty()) {
        remarks +=
            QCoreApplication::translate("Files", "Archive %1: \"%2\" is no whole record and is not exported")
                .arg(logText(line.key), logText(line.incomplete));
    } else if (line.records.isEmpty()) {
        remarks += QCoreApplication::translate("Files", "Archive %1: a line without a record")
                       .arg(logText(line.key));
    }
    return remarks;
}

QByteArray historyCsv(const ArchiveLine &line)
{
    const QString key = csvValue(line.key);
    QString text;
    for (const ArchiveRecord &record : line.records) {
        text += key + u';' + record.stamp + u';' + csvValue(record.first) + u';' + csvValue(record.second) +
                QLatin1String("\r\n");
    }
    return text.toUtf8();
}

Status HistoryExport::check(const QString &path)
{
    const bool isNew = !QFileInfo::exists(path);
    QFile file(path);
    Status opened = openToAppend(file);
    if (opened && isNew) {
        file.remove();
    }
    return opened;
}

QString HistoryExport::append(const QString &path, const QByteArray &lines)
{
    if (lines.isEmpty()) {
        return {};
    }
    const QString trouble = appendTo(path, lines).message();
    const QString before = std::exchange(m_trouble, trouble);
    if (trouble == before) {
        return {};
    }
    return trouble.isEmpty()
               ? QCoreApplication::translate("Files", "The history is exported again: %1").arg(path)
               : trouble;
}

void FastExport::commandLeft(const QString &sent)
{
    if (sent == serviceCommands::archive) {
        m_running = true;
        restart();
    }
}

void FastExport::lineArrived()
{
    if (m_running) {
        restart();
    }
}

void FastExport::end()
{
    m_running = false;
    m_timer->stop();
}

void FastExport::restart()
{
    m_timer->start(longestSilence, [this] { m_running = false; });
}

} // namespace ktr

#include "link/history_export.h"

#include "platform/csv.h"
#include "platform/status.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace ktr {

namespace {

constexpr char byteOrderMark[] = "\xEF\xBB\xBF";

Status failure(const QString &path, const QString &reason)
{
    return Status::failed(
        QCoreApplication::translate("Files", "The history is not exported: %1: %2").arg(path, reason));
}

Status appendTo(const QString &path, const QByteArray &lines)
{
    if (path.isEmpty()) {
        return Status::failed(
            QCoreApplication::translate("Files", "The history is not exported: no file is chosen for it"));
    }
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) { // a pipe would wait for its reader
        return failure(path, QCoreApplication::translate("Files", "is not a file"));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered)) {
        return failure(path, file.errorString());
    }
    const qint64 before = file.size();
    QByteArray bytes;
    if (before == 0) {
        bytes = byteOrderMark;
    } else {
        char last = '\n';
        if (file.seek(before - 1) && file.getChar(&last) && last != '\n') {
            bytes = "\r\n"; // edited by hand: the last record keeps its line
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

QByteArray historyCsv(const HistoryLine &line)
{
    const QString key = csvCell(line.key);
    QString text;
    for (const HistoryRecord &record : line.records) {
        text += key + u';' + record.stamp + u';' + csvCell(record.first) + u';' + csvCell(record.second) +
                QLatin1String("\r\n");
    }
    return text.toUtf8();
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
    if (sent == command) {
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

#include "opmode/station_links.h"

#include "platform/csv.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

namespace ktr {

namespace {

constexpr QChar separator = u';';

/// As it stands in a line.
QString keyOf(const QString &station)
{
    return onOneLine(station).trimmed();
}

QString cell(QString text)
{
    const bool isPlain =
        !text.contains(separator) && !text.contains(u'"') && !text.startsWith(u'#') && text == text.trimmed();
    return isPlain ? text : u'"' + text.replace(u'"', QLatin1String("\"\"")) + u'"';
}

/// Two, or none where it cannot be understood.
QStringList cellsOf(const QString &line)
{
    QStringList cells;
    const std::optional<int> unclosed = readCsv(line, separator, [&cells](const QStringList &each, int) {
        cells = each;
        return false;
    });
    return unclosed || cells.size() != 2 || cells.front().isEmpty() ? QStringList() : cells;
}

} // namespace

bool canBeLinked(const QString &file)
{
    return std::ranges::none_of(file, isLineBreak);
}

StationLinks StationLinks::parse(const QByteArray &text, const QString &folder, QStringList &remarks)
{
    StationLinks links;
    links.m_folder = folder;
    QString content = QString::fromUtf8(text);
    if (content.startsWith(QChar::ByteOrderMark)) {
        content.remove(0, 1);
    }
    QStringList lines = content.split(u'\n');
    if (lines.last().isEmpty()) {
        lines.removeLast();
    }
    for (qsizetype at = 0; at < lines.size(); ++at) {
        Line line{{}, lines[at]};
        const QString plain = line.text.trimmed();
        const QStringList cells = plain.isEmpty() || plain.startsWith(u'#') ? QStringList() : cellsOf(plain);
        const bool isUsable =
            !cells.isEmpty() && (cells[1].isEmpty() || !folder.isEmpty() || QDir::isAbsolutePath(cells[1]));
        if (isUsable && !links.m_files.contains(cells[0])) {
            line.station = cells[0];
            links.m_files.insert(cells[0], cells[1].isEmpty()
                                               ? QString()
                                               : QDir::cleanPath(QDir(folder).absoluteFilePath(cells[1])));
        } else if (!plain.isEmpty() && !plain.startsWith(u'#')) {
            remarks +=
                (isUsable ? QCoreApplication::translate("StationLinks", "Line %1: %2 has a file already")
                          : QCoreApplication::translate("StationLinks", "Line %1, %2, is not understood"))
                    .arg(QString::number(at + 1), quotedInRemark(isUsable ? cells[0] : plain).trimmed());
        }
        links.m_lines += line;
    }
    return links;
}

QByteArray StationLinks::text() const
{
    QString text;
    for (const Line &line : m_lines) {
        text += line.text + u'\n';
    }
    return text.toUtf8();
}

std::optional<QString> StationLinks::fileOf(const QString &station) const
{
    const auto found = m_files.constFind(keyOf(station));
    return found == m_files.cend() ? std::nullopt : std::optional(*found);
}

qsizetype StationLinks::lineOf(const QString &station) const
{
    const auto found = std::ranges::find(m_lines, station, &Line::station);
    return found == m_lines.end() ? -1 : found - m_lines.begin();
}

/// From the list's folder on where the file is in it, or in a folder beside it: both are moved together.
QString StationLinks::lineText(const QString &station, const QString &file) const
{
    QString written = file;
    if (!file.isEmpty() && !m_folder.isEmpty()) {
        const QString relative = QDir(m_folder).relativeFilePath(file);
        const bool isFar = relative.startsWith(QLatin1String("../..")) || QDir::isAbsolutePath(relative);
        written = isFar ? file : relative;
    }
    return cell(station) + separator + cell(written);
}

void StationLinks::set(const QString &station, const std::optional<QString> &file)
{
    const QString key = keyOf(station);
    const qsizetype at = lineOf(key);
    if (!file) {
        m_files.remove(key);
        if (at >= 0) {
            m_lines.remove(at);
        }
        return;
    }
    const QString path = file->isEmpty() ? QString() : QDir::cleanPath(*file);
    m_files.insert(key, path);
    const Line line{key, lineText(key, path)};
    if (at >= 0) {
        m_lines[at] = line;
    } else {
        m_lines += line;
    }
}

bool StationLinks::rename(const QString &before, const QString &now)
{
    const std::optional<QString> file = fileOf(before);
    if (!file || keyOf(before) == keyOf(now)) {
        return false;
    }
    set(before, std::nullopt);
    set(now, file);
    return true;
}

QStringList StationLinks::files() const
{
    QStringList files = m_files.values();
    files.removeAll(QString());
    return files;
}

} // namespace ktr

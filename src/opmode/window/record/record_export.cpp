#include "opmode/window/record/record_export.h"

#include "platform/csv.h"

namespace ktr {

namespace {

constexpr int linesOfAPiece = 1000;

} // namespace

RecordExport::RecordExport(const QString &recordPath, RecordSearch search, RecordStations stations,
                           QObject *parent)
    : QObject(parent), m_search(std::move(search)), m_stations(std::move(stations)), m_queries(recordPath)
{}

Status RecordExport::begin(const QString &path)
{
    Status status = m_file.open(path, Readers::AsUsual);
    if (status) {
        QStringList titles;
        for (int column = 0; column < recordColumns(m_search.view); ++column) {
            titles += recordTitle(m_search.view, column);
        }
        status = m_file.write(csvMark + csvLine(titles));
    }
    if (status) {
        goOn();
    }
    return status;
}

void RecordExport::goOn()
{
    m_queries.ask(
        this,
        [search = m_search, after = m_after](RecordReader &reader) {
            return findPage(reader, search, after, linesOfAPiece);
        },
        [this](const RecordPage &page) { write(page); });
}

void RecordExport::write(const RecordPage &page)
{
    Status status = page.status;
    if (status) {
        QByteArray bytes;
        for (const RecordLine &line : page.lines) {
            QStringList cells;
            for (int column = 0; column < recordColumns(m_search.view); ++column) {
                cells += recordCell(line, column, m_stations, TimeForm::WithZone);
            }
            bytes += csvLine(cells);
        }
        status = m_file.write(bytes);
        m_lineCount += static_cast<qint64>(page.lines.size());
        m_after = page.next;
    }
    if (status && m_after) {
        goOn();
        Q_EMIT progressed();
        return;
    }
    if (status) {
        status = m_file.commit();
    }
    Q_EMIT finished(status);
}

} // namespace ktr

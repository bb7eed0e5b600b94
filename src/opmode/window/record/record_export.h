#pragma once

#include "opmode/window/record/record_table.h"
#include "platform/files.h"
#include "record/record_queries.h"

#include <QObject>

namespace ktr {

/// Writes all that a search finds as a table for a spreadsheet: CSV with ";", a header line, CR LF; UTF-8
/// with a byte-order mark, times with their zone. The record is read by a thread, the file written piece by
/// piece; it is there whole or not at all.
class RecordExport : public QObject
{
    Q_OBJECT

public:
    RecordExport(const QString &recordPath, RecordSearch search, RecordStations stations,
                 QObject *parent = nullptr);

    /// Begins the file and goes on by itself. Fails with a message that names the file.
    Status begin(const QString &path);
    qint64 lines() const { return m_lineCount; }

Q_SIGNALS:
    void progressed();
    /// The file is there, or could not be written.
    void finished(const ktr::Status &status);

private:
    void goOn();
    void write(const RecordPage &page);

    RecordSearch m_search;
    RecordStations m_stations;
    FileReplacement m_file;
    std::optional<RecordKey> m_after;
    qint64 m_lineCount = 0;
    RecordQueries m_queries; // the last member: nothing arrives when the others are gone
};

} // namespace ktr

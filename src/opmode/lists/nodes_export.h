#pragma once

#include "opmode/lists/export_entries.h"
#include "platform/files.h"

namespace ktr {

/// Notifications or history as a table for a spreadsheet: CSV with ";", decimal commas, a header line, CR LF;
/// UTF-8 with a byte-order mark. The file is there whole or not at all; a folder is never made.
class NodesExport
{
public:
    /// The tree must outlive the export.
    NodesExport(const StationTree &tree, ExportChoice choice);

    /// Begins the file; one that is there is replaced at the end. Fails with a message that names the file.
    Status open(const QString &path);
    /// Writes what is chosen of up to `atMost` further entries. After a failure the file is as before.
    Status step(int atMost);
    bool isDone() const { return m_isDone; }

    qint64 lines() const { return m_entries.chosenCount(); } ///< without the header line
    qint64 withoutTime() const { return m_entries.withoutTime(); }

private:
    ExportEntries m_entries;
    FileReplacement m_file;
    bool m_isDone = false;
};

} // namespace ktr

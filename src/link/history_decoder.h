#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace ktr {

/// A record of the module's archive, as it is exported.
struct ArchiveRecord
{
    QString stamp;  ///< "DD.MM.YYYY HH:MM"; empty when the time in the line cannot be one
    QString first;  ///< as received
    QString second; ///< with a decimal comma

    bool operator==(const ArchiveRecord &) const = default;
};

/// What a line of the archive holds.
struct ArchiveLine
{
    QString key; ///< of the archive that the line belongs to
    QList<ArchiveRecord> records;
    QString badTime;    ///< the first time that cannot be one; it and all records from there on have no stamp
    QString incomplete; ///< what stands at the end and is no whole record, as received

    bool operator==(const ArchiveLine &) const = default;
};

/// Decodes the fields of a line, what follows "H,": the key, YYMMDDhhmm in this century, two values; for each
/// further record the minutes since the one before and two values.
///
/// Example: "9,2611151400,1,12.5,15,1,-3.25" is of archive 9 and has two records, "15.11.2026 14:00" with 1
/// and "12,5", "15.11.2026 14:15" with 1 and "-3,25".
ArchiveLine decodeArchiveLine(QStringView fields);

} // namespace ktr

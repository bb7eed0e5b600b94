#pragma once

#include <QList>
#include <QString>
#include <QStringView>

namespace ktr {

/// A record of the module's archive, as it is exported.
struct ArchiveRecord
{
    QString stamp;  ///< "DD.MM.YYYY HH:MM"; empty when the line does not tell the time
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

/// Decodes the fields of a line, what follows "H,": the key, YYMMDDhhmm in this century, two values, and for
/// each further record the minutes since the one before and two values. A stamp lies in this century.
ArchiveLine decodeArchiveLine(QStringView fields);

} // namespace ktr

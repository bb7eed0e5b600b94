#pragma once

#include "config/entries.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

namespace ktr {

/// Entries on their way from one place to another: over the clipboard, into another file or program.
struct EntryClip
{
    struct Row
    {
        int number = -1;                ///< the index where it stood; none of a spreadsheet's row
        QHash<QString, QString> values; ///< stored texts by the field's name in the file
    };

    EntryList list = EntryList::LimitValues;
    bool isWhole = true; ///< the rows have all fields; otherwise what they lack stays as it is
    QString cutBy;       ///< the mark of who cut them; empty when they were copied
    QList<Row> rows;
};

inline constexpr char entryMimeType[] = "application/x-ktrconfig-entries+json";

/// Entries of a configuration as they are stored.
EntryClip clipOf(const Configuration &configuration, EntryList list, const QList<int> &entries);

/// A clip as JSON, for programs of this kind.
QByteArray writeClip(const EntryClip &clip);
std::optional<EntryClip> readClip(const QByteArray &json);

/// Puts the rows in the place of as many entries from one on. A field's rule runs on each value as when it is
/// typed, but in a clip of this program, whose values are stored already. Fails, and nothing is changed, when
/// there is no room, an entry is of another kind, or a field cannot have a value.
Status pasteEntries(Configuration &configuration, const EntryClip &clip, int first,
                    const Environment &environment);

} // namespace ktr

#pragma once

#include "opmode/tree/node_change.h"
#include "opmode/tree/saved_keys.h"

#include <QByteArray>

#include <optional>

namespace ktr {

/// Appends the record of a change, under another key if need be: length, checksum, content.
void putRecord(QByteArray &records, const NodeChange &change, std::string_view key);
inline void putRecord(QByteArray &records, const NodeChange &change)
{
    putRecord(records, change, change.key);
}

/// The change that says that a file of this checksum was begun, and which keys of the journal's stations are
/// others there.
NodeChange savedMark(quint64 nodesChecksum, const StationKeys &renamings);
/// Whether a record's content is such a mark.
bool isMark(QByteArrayView content);

/// The records behind the last mark of this file, with the keys that it has; nothing when there is no mark.
std::optional<QByteArray> recordsBehindMark(QByteArrayView records, quint64 nodesChecksum);

/// The change of a record's content; nothing when it is none.
std::optional<NodeChange> changeOf(QByteArrayView content);

/// Bytes in front of a record's content: length and checksum.
inline constexpr qsizetype recordHeaderSize = 12;
/// Puts them there, when the record begins at `start` and its content is the rest.
void sealRecord(QByteArray &records, qsizetype start);

/// Walks over records. Where one is damaged, the search goes on byte by byte for the next that is not.
class RecordReader
{
public:
    explicit RecordReader(QByteArrayView records) : m_records(records) {}

    /// Goes to the next record that is not damaged; gives false when there is none.
    bool next();
    /// Bytes so far that were no whole record.
    qsizetype skipped() const { return m_skipped; }
    QByteArrayView content() const { return m_content; }
    qsizetype start() const { return m_start; } ///< of the record
    qsizetype size() const { return m_end - m_start; }

private:
    QByteArrayView m_records;
    QByteArrayView m_content;
    qsizetype m_start = 0;
    qsizetype m_end = 0;
    qsizetype m_skipped = 0;
};

/// Whether something in the middle of records, or a whole one at their end, is damaged: more than the tear
/// that the end of a program leaves.
bool isDamaged(QByteArrayView records);

/// What the record sets, when only the last one that sets it counts: a text, a colour, a station's attributes
/// or the arrivals of a notification. Empty for others.
QByteArrayView subjectOf(QByteArrayView content);

} // namespace ktr

#pragma once

#include "opmode/tree/node_change.h"

#include <QByteArray>

#include <map>
#include <optional>
#include <string>

namespace ktr {

/// Walks over records of the version before: length, checksum, content. Where one is damaged, the search goes
/// on byte by byte for the next that is not.
class JournalRecordReader
{
public:
    explicit JournalRecordReader(QByteArrayView records) : m_records(records) {}

    /// Goes to the next record that is not damaged; gives false when there is none.
    bool next();
    /// Bytes so far that were no whole record.
    qsizetype skipped() const { return m_skipped; }
    QByteArrayView content() const { return m_content; }
    qsizetype start() const { return m_start; } ///< of the record
    qsizetype end() const { return m_end; }

private:
    QByteArrayView m_records;
    QByteArrayView m_content;
    qsizetype m_start = 0;
    qsizetype m_end = 0;
    qsizetype m_skipped = 0;
};

/// The change of a journal's record; nothing when it is none.
std::optional<NodeChange> changeOf(QByteArrayView content);

/// What the keys of stations are to be replaced by: "A/ip" with {"A" -> "B"} becomes "B/ip".
using StationKeys = std::map<std::string, std::string, std::less<>>;
std::string withStationKey(std::string_view key, const StationKeys &keys);

/// The keys that a mark (NodeChange::What::Saved) carries in its text: "A/B/" for {"A" -> "B"}.
StationKeys keysOf(std::string_view markText);

} // namespace ktr

#include "opmode/keeping/earlier/journal_record.h"

#include "opmode/keeping/checksum.h"
#include "opmode/keeping/earlier/byte_fields.h"
#include "opmode/tree/node_texts.h"

#include <algorithm>

namespace ktr {

namespace {

enum StationFlag : quint8 { IsOnline = 1, IsExclusive = 2 };
constexpr qsizetype recordHeaderSize = 12; ///< length and checksum

StationAttributes takeStation(FieldReader &fields)
{
    StationAttributes station;
    const auto flags = fields.number<quint8>();
    station.online = (flags & IsOnline) != 0;
    station.exclusiveMode = (flags & IsExclusive) != 0;
    station.hostAddress = textOf(fields.text());
    station.schedule.hourOn = textOf(fields.text());
    station.schedule.dayOn = fields.number<qint32>();
    station.schedule.hourOff = textOf(fields.text());
    station.schedule.dayOff = fields.number<qint32>();
    return station;
}

} // namespace

std::optional<NodeChange> changeOf(QByteArrayView content)
{
    FieldReader fields(content);
    NodeChange change;
    change.colour = fields.number<qint32>();
    change.moment = fields.number<qint64>();
    change.count = fields.number<qint32>();
    const auto what = fields.number<quint8>();
    change.key = fields.text();
    change.text = fields.text();
    change.what = static_cast<NodeChange::What>(what);
    if (change.what == NodeChange::What::Station) {
        change.station = takeStation(fields);
    } else if (change.what == NodeChange::What::Repeated) {
        change.raised = fields.number<qint64>();
    }
    const bool isKnown = what >= static_cast<quint8>(NodeChange::What::Added) &&
                         what <= static_cast<quint8>(NodeChange::What::Saved);
    return isKnown && fields.isSound() && fields.atEnd() ? std::optional(change) : std::nullopt;
}

bool JournalRecordReader::next()
{
    // All records are longer than this; shorter ones could be found in the numbers of others.
    constexpr qsizetype shortest = 24;
    // Longer ones are not searched for, or all bytes would be looked at each time.
    constexpr qsizetype longest = qsizetype{1} << 20;
    for (qsizetype at = m_end; m_records.size() - at >= recordHeaderSize; ++at) {
        const char *const header = m_records.data() + at;
        const auto size = static_cast<qsizetype>(numberAt<quint32>(header));
        if (size < shortest || size > m_records.size() - at - recordHeaderSize ||
            (at != m_end && size > longest)) {
            continue;
        }
        const QByteArrayView content = m_records.sliced(at + recordHeaderSize, size);
        if (checksum(content) == numberAt<quint64>(header + 4)) {
            m_skipped += at - m_end;
            m_start = at;
            m_content = content;
            m_end = at + recordHeaderSize + size;
            return true;
        }
    }
    return false;
}

StationKeys keysOf(std::string_view text)
{
    StationKeys keys;
    const auto take = [&text] {
        const std::string_view key = text.substr(0, text.find('/'));
        text.remove_prefix(std::min(text.size(), key.size() + 1));
        return std::string(key);
    };
    while (!text.empty()) {
        const std::string before = take();
        keys.emplace(before, take());
    }
    return keys;
}

std::string withStationKey(std::string_view key, const StationKeys &keys)
{
    const std::string_view station = key.substr(0, key.find('/'));
    const auto found = keys.find(station);
    return found == keys.end() ? std::string(key) : found->second + std::string(key.substr(station.size()));
}

} // namespace ktr

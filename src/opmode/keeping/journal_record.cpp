#include "opmode/keeping/journal_record.h"

#include "opmode/keeping/byte_fields.h"
#include "opmode/keeping/checksum.h"
#include "opmode/tree/node_texts.h"

namespace ktr {

namespace {

constexpr qsizetype kindAt = 16; ///< in the content, behind colour, moment and count

enum StationFlag : quint8 { IsOnline = 1, IsExclusive = 2 };

void putStation(QByteArray &bytes, const StationAttributes &station)
{
    putNumber(bytes, static_cast<quint8>((station.online ? IsOnline : 0) |
                                         (station.exclusiveMode ? IsExclusive : 0)));
    putText(bytes, station.hostAddress.toStdString());
    putText(bytes, station.schedule.hourOn.toStdString());
    putNumber(bytes, static_cast<qint32>(station.schedule.dayOn));
    putText(bytes, station.schedule.hourOff.toStdString());
    putNumber(bytes, static_cast<qint32>(station.schedule.dayOff));
}

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

/// The keys that savedMark() put into a text.
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

} // namespace

void putRecord(QByteArray &records, const NodeChange &change, std::string_view key)
{
    const qsizetype start = records.size();
    records.resize(start + recordHeaderSize);
    putNumber(records, static_cast<qint32>(change.colour));
    putNumber(records, change.moment);
    putNumber(records, static_cast<qint32>(change.count));
    putNumber(records, static_cast<quint8>(change.what));
    putText(records, key);
    putText(records, change.text);
    if (change.what == NodeChange::What::Station) {
        putStation(records, change.station);
    } else if (change.what == NodeChange::What::Repeated) {
        putNumber(records, change.raised);
    }
    sealRecord(records, start);
}

void sealRecord(QByteArray &records, qsizetype start)
{
    const QByteArrayView content = QByteArrayView(records).sliced(start + recordHeaderSize);
    const auto size = static_cast<quint32>(content.size());
    const quint64 sum = checksum(content);
    qToLittleEndian(size, records.data() + start);
    qToLittleEndian(sum, records.data() + start + 4);
}

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

bool isMark(QByteArrayView content)
{
    return content.size() > kindAt && content[kindAt] == static_cast<char>(NodeChange::What::Saved);
}

NodeChange savedMark(quint64 nodesChecksum, const StationKeys &renamings)
{
    NodeChange mark;
    mark.what = NodeChange::What::Saved;
    mark.moment = static_cast<qint64>(nodesChecksum);
    for (const auto &[before, after] : renamings) { // no "/" stands in them
        mark.text.append(before).append(1, '/').append(after).append(1, '/');
    }
    return mark;
}

std::optional<QByteArray> recordsBehindMark(QByteArrayView records, quint64 nodesChecksum)
{
    qsizetype begin = -1;
    std::string text;
    for (RecordReader record(records); record.next();) {
        if (isMark(record.content())) {
            const std::optional<NodeChange> mark = changeOf(record.content());
            if (mark && static_cast<quint64>(mark->moment) == nodesChecksum) {
                begin = record.start() + record.size();
                text = mark->text;
            }
        }
    }
    if (begin < 0) {
        return std::nullopt;
    }
    StationKeys keys = keysOf(text);
    QByteArray result;
    for (RecordReader record(records.sliced(begin)); record.next();) {
        const std::optional<NodeChange> change = changeOf(record.content());
        if (change && change->what != NodeChange::What::Saved) { // what was begun later did not come about
            putRecord(result, *change, withStationKey(change->key, keys));
        }
        if (change && change->what == NodeChange::What::Removed) {
            keys.erase(change->key); // another station may take it up
        }
    }
    return result;
}

bool RecordReader::next()
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

bool isDamaged(QByteArrayView records)
{
    RecordReader record(records);
    while (record.next()) {
    }
    const QByteArrayView tail = records.sliced(record.start() + record.size());
    bool isTorn = tail.size() < recordHeaderSize;
    if (!isTorn) {
        const auto size = numberAt<quint32>(tail.data());
        isTorn = size > static_cast<quint64>(tail.size() - recordHeaderSize);
    }
    return record.skipped() > 0 || !isTorn;
}

QByteArrayView subjectOf(QByteArrayView content)
{
    FieldReader fields(content.sliced(std::min(kindAt, content.size())));
    switch (static_cast<NodeChange::What>(fields.number<quint8>())) {
    case NodeChange::What::Text:
    case NodeChange::What::Colour:
    case NodeChange::What::Station:
    case NodeChange::What::Repeated: {
        const std::string_view key = fields.text();
        const char *const kind = content.data() + kindAt;
        return fields.isSound() ? QByteArrayView(kind, key.data() + key.size() - kind) : QByteArrayView();
    }
    default:
        return {};
    }
}

} // namespace ktr

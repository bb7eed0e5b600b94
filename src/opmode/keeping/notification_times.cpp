#include "opmode/keeping/notification_times.h"

#include "opmode/keeping/byte_fields.h"
#include "opmode/keeping/checksum.h"
#include "opmode/keeping/journal_record.h"
#include "opmode/keeping/nodes_file.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace ktr {

namespace {

// The file: eight bytes that every one begins with, the number of the records, the records. The version
// before had a checksum of all records in the place of their number, and none of a single one.
constexpr quint64 mark = 0x3353'4D54'5254'4BFF;
constexpr quint64 markBefore = 0x3253'4D54'5254'4BFF;
constexpr qsizetype headerSize = 16;
constexpr qsizetype arrivalSize = 28; ///< of three moments and a count

/// What the keys of notifications begin with, in each file that there can be.
std::vector<std::string> beginningsOf(const StationTree &tree, NodeStore::Id branch)
{
    std::string next;
    tree.nodes().getKeyInNextRun(branch, next);
    std::vector<std::string> result = tree.savedKeys().inFiles(tree.nodes().key(branch));
    std::erase(result, next);
    result.push_back(next);
    for (std::string &beginning : result) {
        beginning += '/';
    }
    return result;
}

void putRecord(QByteArray &records, std::string_view beginning, std::string_view name, const Arrival &arrival)
{
    const qsizetype start = records.size();
    const std::size_t keySize = beginning.size() + name.size();
    records.resize(start + recordHeaderSize + static_cast<qsizetype>(4 + keySize) +
                   arrivalSize); // at once: there are many
    char *at = records.data() + start + recordHeaderSize;
    qToLittleEndian(static_cast<quint32>(keySize), at);
    at = std::ranges::copy(beginning, at + 4).out;
    at = std::ranges::copy(name, at).out;
    qToLittleEndian(arrival.received, at);
    qToLittleEndian(arrival.acknowledged, at + 8);
    qToLittleEndian(static_cast<qint32>(arrival.count), at + 16);
    qToLittleEndian(arrival.raised, at + 20);
    sealRecord(records, start);
}

/// The notification that a record is about, and its times; an empty key when it is no such record.
std::pair<std::string_view, Arrival> takeRecord(FieldReader &fields)
{
    std::pair<std::string_view, Arrival> record;
    record.first = fields.text();
    record.second.received = fields.number<qint64>();
    record.second.acknowledged = fields.number<qint64>();
    record.second.count = fields.number<qint32>();
    record.second.raised = fields.number<qint64>();
    return record;
}

} // namespace

NotificationTimes::NotificationTimes(const QString &nodesPath)
{
    const QFileInfo info(nodesPath);
    m_path = info.path() + u'/' + info.completeBaseName() + QLatin1String(".times");
}

Status NotificationTimes::load(StationTreeLoader &tree)
{
    m_keepAside = false;
    m_known = 0;
    m_fitting = 0;
    QByteArray bytes;
    if (!QFileInfo::exists(m_path)) {
        return Status::done();
    }
    m_keepAside = true;
    if (Status read = readFile(m_path, bytes); !read) {
        return read;
    }
    const QByteArrayView records = QByteArrayView(bytes).sliced(std::min(headerSize, bytes.size()));
    const auto header = [&](qsizetype at) {
        return bytes.size() < headerSize ? 0 : numberAt<quint64>(bytes.constData() + at);
    };
    const auto give = [&](std::string_view key, const Arrival &arrival) {
        ++m_known;
        if (tree.loadArrival(key, arrival)) {
            ++m_fitting;
        }
    };
    if (header(0) == markBefore && header(8) == checksum(records)) {
        // A node that has gone needs no times.
        for (FieldReader fields(records); !fields.atEnd() && fields.isSound();) {
            const auto [key, arrival] = takeRecord(fields);
            give(key, arrival);
        }
        m_keepAside = false;
        return Status::done();
    }
    RecordReader record(records);
    while (record.next()) {
        FieldReader fields(record.content());
        const auto [key, arrival] = takeRecord(fields);
        if (fields.isSound() && fields.atEnd()) {
            give(key, arrival);
        }
    }
    m_keepAside = header(0) != mark || header(8) != m_known || record.skipped() > 0;
    if (m_keepAside) {
        return fileFailure(m_path, QCoreApplication::translate(
                                       "Files", "is damaged; times of notifications that are known: %1")
                                       .arg(m_known));
    }
    return Status::done();
}

Status NotificationTimes::mustKeepAside()
{
    m_keepAside = true;
    return fileFailure(
        m_path, QCoreApplication::translate("Files", "fits no notification of the list of stations that is "
                                                     "there, and is kept aside; times in it: %1")
                    .arg(m_known));
}

/// Station by station: the beginnings of keys are made once, and memory is walked in its order.
QByteArray NotificationTimes::document(const StationTree &tree)
{
    constexpr qsizetype usualRecord = 128;
    const NodeStore &nodes = tree.nodes();
    std::vector<const Arrival *> arrivals(nodes.end()); // by node: many look-ups in a hash are slow
    for (auto arrival = tree.arrivals().cbegin(); arrival != tree.arrivals().cend(); ++arrival) {
        arrivals[arrival.key()] = &*arrival;
    }
    quint64 count = 0;
    QByteArray records;
    records.reserve(usualRecord * tree.arrivals().size());
    records.resize(headerSize);
    for (const NodeStore::Id station : nodes.children(NodeStore::root)) {
        const std::optional<NodeStore::Id> branch = nodes.child(station, branches::notifications);
        if (!branch) {
            continue;
        }
        const std::vector<std::string> beginnings = beginningsOf(tree, *branch);
        for (const NodeStore::Id id : nodes.children(*branch)) {
            if (const Arrival *const arrival = arrivals[id]) {
                for (const std::string &beginning : beginnings) {
                    putRecord(records, beginning, nodes.name(id), *arrival);
                    ++count;
                }
            }
        }
    }
    qToLittleEndian(mark, records.data());
    qToLittleEndian(count, records.data() + 8);
    return records;
}

Status NotificationTimes::save(const QByteArray &document)
{
    if (m_keepAside) {
        if (Status aside = keepAside({m_path}); !aside) {
            return aside;
        }
        m_keepAside = false;
    }
    return replaceFile(m_path, document);
}

} // namespace ktr

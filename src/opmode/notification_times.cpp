#include "opmode/notification_times.h"

#include "opmode/byte_fields.h"
#include "opmode/checksum.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace ktr {

namespace {

constexpr qint64 longestFile = qint64{1} << 30;
constexpr quint64 mark = 0x3253'4D54'5254'4BFF; ///< the first bytes of every such file
constexpr qsizetype headerSize = 16;            ///< mark and checksum of what follows
constexpr qsizetype arrivalSize = 28;           ///< of three moments and a count

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
    records.resize(start + static_cast<qsizetype>(4 + keySize) + arrivalSize); // at once: there are many
    char *at = records.data() + start;
    qToLittleEndian(static_cast<quint32>(keySize), at);
    at = std::ranges::copy(beginning, at + 4).out;
    at = std::ranges::copy(name, at).out;
    qToLittleEndian(arrival.received, at);
    qToLittleEndian(arrival.acknowledged, at + 8);
    qToLittleEndian(static_cast<qint32>(arrival.count), at + 16);
    qToLittleEndian(arrival.raised, at + 20);
}

} // namespace

NotificationTimes::NotificationTimes(const QString &nodesPath)
{
    const QFileInfo info(nodesPath);
    m_path = info.path() + u'/' + info.completeBaseName() + QLatin1String(".times");
}

Status NotificationTimes::load(StationTree &tree) const
{
    QByteArray bytes;
    if (!QFileInfo::exists(m_path)) {
        return Status::done();
    }
    if (Status read = readFile(m_path, bytes, longestFile); !read) {
        return read;
    }
    const QByteArrayView records = QByteArrayView(bytes).sliced(std::min(headerSize, bytes.size()));
    if (bytes.size() < headerSize || numberAt<quint64>(bytes.constData()) != mark ||
        numberAt<quint64>(bytes.constData() + 8) != checksum(records)) {
        return Status::failed(
            m_path + QLatin1String(": ") +
            QCoreApplication::translate("Files", "is damaged; the times of the notifications are not known"));
    }
    FieldReader fields(records);
    while (!fields.atEnd() && fields.isSound()) {
        const std::string_view key = fields.text();
        Arrival arrival;
        arrival.received = fields.number<qint64>();
        arrival.acknowledged = fields.number<qint64>();
        arrival.count = fields.number<qint32>();
        arrival.raised = fields.number<qint64>();
        tree.loadArrival(key, arrival); // a node that has gone needs none
    }
    return Status::done();
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
    QByteArray records;
    records.reserve(usualRecord * tree.arrivals().size());
    records.resize(headerSize);
    for (const NodeStore::Id station : nodes.children(NodeStore::root)) {
        const std::optional<NodeStore::Id> branch = nodes.child(station, "meldung");
        if (!branch) {
            continue;
        }
        const std::vector<std::string> beginnings = beginningsOf(tree, *branch);
        for (const NodeStore::Id id : nodes.children(*branch)) {
            if (const Arrival *const arrival = arrivals[id]) {
                for (const std::string &beginning : beginnings) {
                    putRecord(records, beginning, nodes.name(id), *arrival);
                }
            }
        }
    }
    const quint64 sum = checksum(QByteArrayView(records).sliced(headerSize));
    qToLittleEndian(mark, records.data());
    qToLittleEndian(sum, records.data() + 8);
    return records;
}

Status NotificationTimes::save(const QByteArray &document) const
{
    return replaceFile(m_path, document);
}

} // namespace ktr

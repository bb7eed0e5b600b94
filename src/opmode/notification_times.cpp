#include "opmode/notification_times.h"

#include "opmode/byte_fields.h"
#include "opmode/checksum.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace ktr {

namespace {

constexpr qint64 longestFile = qint64{1} << 30;
constexpr quint64 mark = 0x3253'4D54'5254'4BFF; ///< the first bytes of every such file
constexpr qsizetype headerSize = 16;            ///< mark and checksum of what follows

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

QByteArray NotificationTimes::document(const StationTree &tree)
{
    const SavedKeys &saved = tree.savedKeys();
    QByteArray records;
    std::string key;
    const auto put = [&records](std::string_view node, const Arrival &arrival) {
        putText(records, node);
        putNumber(records, arrival.received);
        putNumber(records, arrival.acknowledged);
        putNumber(records, static_cast<qint32>(arrival.count));
        putNumber(records, arrival.raised);
    };
    for (auto arrival = tree.arrivals().cbegin(); arrival != tree.arrivals().cend(); ++arrival) {
        tree.nodes().getKeyInNextRun(arrival.key(), key);
        put(key, *arrival);
        if (!saved.isEmpty()) {
            for (const std::string &other : saved.inFiles(tree.nodes().key(arrival.key()))) {
                if (other != key) {
                    put(other, *arrival);
                }
            }
        }
    }
    QByteArray header;
    putNumber(header, mark);
    putNumber(header, checksum(records));
    return header + records;
}

Status NotificationTimes::save(const QByteArray &document) const
{
    return replaceFile(m_path, document);
}

} // namespace ktr

#include "opmode/notification_times.h"

#include "opmode/byte_fields.h"
#include "opmode/checksum.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace ktr {

namespace {

constexpr qint64 longestFile = qint64{1} << 30;
constexpr quint64 mark = 0x3153'4D54'5254'4BFF; ///< the first bytes of every such file
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
        tree.loadArrival(key, arrival); // a node that has gone needs none
    }
    return Status::done();
}

Status NotificationTimes::save(const StationTree &tree) const
{
    QByteArray records;
    std::string key;
    for (auto arrival = tree.arrivals().cbegin(); arrival != tree.arrivals().cend(); ++arrival) {
        tree.nodes().getKeyInNextRun(arrival.key(), key);
        putText(records, key);
        putNumber(records, arrival->received);
        putNumber(records, arrival->acknowledged);
        putNumber(records, static_cast<qint32>(arrival->count));
    }
    QByteArray header;
    putNumber(header, mark);
    putNumber(header, checksum(records));
    return replaceFile(m_path, header + records);
}

} // namespace ktr

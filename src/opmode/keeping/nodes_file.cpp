#include "opmode/keeping/nodes_file.h"

#include "opmode/keeping/checksum.h"
#include "opmode/keeping/station_names.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace ktr {

Status NodesFile::load(const std::function<bool(const StoredNode &)> &take,
                       const std::function<void(std::size_t nodes, std::size_t bytes)> &expect)
{
    m_checksum = ktr::checksum({});
    m_size = 0;
    m_keepAside = false;
    m_remarks.clear();
    constexpr quint64 ofNoDocument = ~quint64{0};
    if (!QFileInfo::exists(m_path)) {
        return Status::done();
    }
    m_keepAside = true;
    m_checksum = ofNoDocument;
    QByteArray document;
    if (Status read = readFile(m_path, document); !read) {
        return read;
    }
    std::size_t loaded = 0;
    std::size_t leftOut = 0;
    StationNames ofLeftOut;
    Status read = readNodes(
        document, m_remarks,
        [&](const StoredNode &element) {
            if (take(element)) {
                ++loaded;
            } else {
                ++leftOut;
                ofLeftOut.add(element.key);
            }
        },
        expect);
    if (read && loaded == 0 && leftOut > 0) {
        read = Status::failed(
            QCoreApplication::translate("Files", "none of its %1 nodes belongs to a station of the list")
                .arg(leftOut));
    }
    if (!read) {
        m_remarks.clear();
        return fileFailure(m_path, read.message());
    }
    m_checksum = ktr::checksum(document);
    m_size = document.size();
    if (leftOut > 0) {
        m_remarks += QCoreApplication::translate("Files", "nodes that belong nowhere were left out: %1 (%2)")
                         .arg(QString::number(leftOut), ofLeftOut.text());
    }
    for (QString &remark : m_remarks) {
        remark = fileFailure(m_path, remark).message();
    }
    m_keepAside = !m_remarks.isEmpty();
    return Status::done();
}

Status NodesFile::save(const QByteArray &document)
{
    if (m_keepAside && QFileInfo::exists(m_path)) {
        if (Status aside = keepAside({m_path}); !aside) {
            return aside;
        }
    }
    m_keepAside = false;
    if (Status written = replaceFile(m_path, document); !written) {
        return written;
    }
    m_checksum = ktr::checksum(document);
    m_size = document.size();
    return Status::done();
}

/// Beside the file itself, whatever links lead to it.
QString listLockPath(const QString &nodesPath)
{
    const QFileInfo link(nodesPath);
    const QFileInfo info(link.exists() ? link.canonicalFilePath() : nodesPath);
    return info.absolutePath() + u'/' + info.completeBaseName() + QLatin1String(".lock");
}

} // namespace ktr

#include "opmode/nodes_file.h"

#include "opmode/checksum.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace ktr {

namespace {

constexpr qint64 longestFile = qint64{1} << 30;

} // namespace

Status NodesFile::load(const std::function<bool(const NodeElement &)> &take,
                       const std::function<void(std::size_t nodes, std::size_t bytes)> &expect)
{
    m_checksum = ktr::checksum({});
    m_keepAside = false;
    constexpr quint64 ofNoDocument = ~quint64{0};
    if (!QFileInfo::exists(m_path)) {
        return Status::done();
    }
    m_keepAside = true;
    m_checksum = ofNoDocument;
    QByteArray document;
    if (Status read = readFile(m_path, document, longestFile); !read) {
        return read;
    }
    qsizetype leftOut = 0;
    const Status read = readNodes(
        document, [&](const NodeElement &element) { leftOut += take(element) ? 0 : 1; }, expect);
    if (!read) {
        return Status::failed(m_path + QLatin1String(": ") + read.message());
    }
    m_checksum = ktr::checksum(document);
    if (leftOut > 0) {
        return Status::failed(
            m_path + QLatin1String(": ") +
            QCoreApplication::translate("Files", "nodes that belong nowhere were left out: %1").arg(leftOut));
    }
    m_keepAside = false;
    return Status::done();
}

Status NodesFile::save(const QByteArray &document)
{
    if (m_keepAside && QFileInfo::exists(m_path)) {
        if (Status aside = keepAside(m_path); !aside) {
            return aside;
        }
    }
    if (Status written = replaceFile(m_path, document); !written) {
        return written;
    }
    m_keepAside = false;
    m_checksum = ktr::checksum(document);
    return Status::done();
}

Status keepAside(const QString &path)
{
    const QFileInfo info(path);
    QString aside;
    int n = 1;
    do {
        aside = info.absolutePath() + u'/' + info.completeBaseName() + QStringLiteral(" (%1).").arg(n++) +
                info.suffix();
    } while (QFileInfo::exists(aside));
    QFile file(path);
    return file.rename(aside) ? Status::done()
                              : Status::failed(path + QLatin1String(": ") + file.errorString());
}

} // namespace ktr

#include "platform/file_mark.h"

#include "platform/files.h"

#include <QCryptographicHash>
#include <QFile>

#include <chrono>

namespace ktr {

namespace {

constexpr qint64 longestCompared = qint64{64} << 20;
constexpr std::chrono::seconds coarsestClock{3}; // some file systems count every other second
constexpr auto digestMethod = QCryptographicHash::Sha256;

} // namespace

FileMark markOf(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isFile()) {
        return {};
    }
    QFile file;
    QCryptographicHash digest(digestMethod);
    if (info.size() <= longestCompared && openToRead(file, path) && digest.addData(&file)) {
        return {file.pos(), digest.result()};
    }
    return {info.size(), info.lastModified().toString(Qt::ISODateWithMs).toLatin1()};
}

FileMark markOfContent(const QByteArray &content)
{
    return {content.size(), QCryptographicHash::hash(content, digestMethod)};
}

FileStamp::FileStamp(const QFileInfo &file)
    : m_size(file.size()),
      m_modified(file.lastModified()),
      m_isSettled(m_modified.addDuration(coarsestClock) < QDateTime::currentDateTime())
{}

bool FileStamp::stillHolds(const QFileInfo &file) const
{
    return m_isSettled && m_size == file.size() && m_modified == file.lastModified();
}

} // namespace ktr

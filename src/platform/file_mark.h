#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFileInfo>
#include <QString>

namespace ktr {

/// What stands in a file at one moment, told by its content: neither the clock's ticks nor equal lengths hide
/// a change, and a file that is merely touched is not changed.
struct FileMark
{
    qint64 size = -1; ///< -1: there is no such file
    QByteArray
        content; ///< a digest; of what is longer than anything that is edited, or cannot be read, its time

    bool operator==(const FileMark &) const = default;
};

FileMark markOf(const QString &path);
/// The mark of a file that holds this content.
FileMark markOfContent(const QByteArray &content);

/// A quick look at one of many files, taken before it is read, that tells later without reading whether it
/// still holds what was read then.
class FileStamp
{
public:
    FileStamp() = default;
    explicit FileStamp(const QFileInfo &file);

    const QDateTime &modified() const { return m_modified; }

    /// False also for what was written so shortly before the look that another write may have had the same
    /// time.
    bool stillHolds(const QFileInfo &file) const;

private:
    qint64 m_size = -1;
    QDateTime m_modified;
    bool m_isSettled = false;
};

} // namespace ktr

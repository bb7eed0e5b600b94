#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace ktr {

/// A file of "[section]" lines with "key=value" lines below them. Names go without regard to case, the first
/// section and the first key of a name count, lines that begin with ";" are comments, and a value loses the
/// blanks around it, then one pair of quotes, single or double. 8-bit files are Windows-1252; a byte-order
/// mark tells of UTF-8, UTF-16 or UTF-32.
class ProfileFile
{
public:
    static constexpr qint64 longestFile = qint64{16} * 1024 * 1024; ///< bytes

    /// Reads a file. After a failure nothing is in it.
    Status load(const QString &path);

    /// Takes the bytes of such a file; there are none that are of no use, but a system may have no room for
    /// them.
    Status parse(const QByteArray &bytes);

    /// At most `limit` characters of a value, whole ones; empty when there is no such section or key.
    QString value(const QString &section, const QString &key, qsizetype limit) const;

private:
    class Content;
    std::shared_ptr<const Content> m_content; ///< null when nothing is in it
};

} // namespace ktr

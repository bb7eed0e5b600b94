#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QFile>

namespace ktr {

/// A file that only grows, record by record, and whose records are to outlive a power cut.
class AppendFile
{
public:
    /// Opens a file for the owner alone, making it where it does not exist, and cuts it to `size` bytes.
    Status open(const QString &path, qint64 size);
    bool isOpen() const { return m_file.isOpen(); }
    void close() { m_file.close(); }

    /// Appends all bytes and waits until the disk has them. After a failure the file is as long as before.
    Status append(const QByteArray &bytes);

private:
    Status failure() const;
    Status systemFailure(bool written) const;

    QFile m_file;
    QString m_path; ///< which the file does not know of a descriptor
    qint64 m_size = 0;
};

} // namespace ktr

#include "platform/append_file.h"

#include "platform/files.h"

#include <QCoreApplication>

namespace ktr {

Status AppendFile::open(const QString &path, qint64 size)
{
    m_file.close();
    m_path = path;
    m_size = size;
    if (Status opened = openOwnersFile(m_file, path); !opened) {
        return opened;
    }
    if (!m_file.resize(size) || !m_file.seek(size)) {
        Status failed = failure();
        m_file.close();
        return failed;
    }
    return Status::done();
}

Status AppendFile::append(const QByteArray &bytes)
{
    m_file.unsetError();
    const bool written = m_file.write(bytes) == bytes.size();
    if (!written || !flushToDisk(m_file.handle())) {
        Status failed = m_file.error() != QFileDevice::NoError ? failure() : systemFailure(written);
        m_file.resize(m_size); // no half record before the next one
        m_file.seek(m_size);
        return failed;
    }
    m_size += bytes.size();
    return Status::done();
}

/// What the file's object does not know of: the synchronisation, and a write that was cut.
Status AppendFile::systemFailure(bool written) const
{
    const QString reason =
        written ? qt_error_string() : QCoreApplication::translate("Files", "there is no room for it");
    return fileFailure(m_path, reason);
}

Status AppendFile::failure() const
{
    return fileFailure(m_path, m_file.errorString());
}

} // namespace ktr

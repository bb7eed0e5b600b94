#include "platform/append_file.h"

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace ktr {

namespace {

bool toDisk(int descriptor)
{
#if defined(Q_OS_WIN)
    return FlushFileBuffers(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor))) != 0;
#elif defined(Q_OS_LINUX)
    return ::fdatasync(descriptor) == 0;
#else
    return ::fsync(descriptor) == 0;
#endif
}

} // namespace

Status AppendFile::open(const QString &path, qint64 size)
{
    m_file.close();
    m_file.setFileName(path);
    m_size = size;
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered,
                     QFileDevice::ReadOwner | QFileDevice::WriteOwner) ||
        !m_file.resize(size) || !m_file.seek(size)) {
        const Status failed = failure();
        m_file.close();
        return failed;
    }
    return Status::done();
}

Status AppendFile::append(const QByteArray &bytes)
{
    m_file.unsetError();
    if (m_file.write(bytes) != bytes.size() || !toDisk(m_file.handle())) {
        const Status failed = failure();
        m_file.resize(m_size); // no half record before the next one
        m_file.seek(m_size);
        return failed;
    }
    m_size += bytes.size();
    return Status::done();
}

Status AppendFile::failure() const
{
    return Status::failed(m_file.fileName() + QLatin1String(": ") + m_file.errorString());
}

} // namespace ktr

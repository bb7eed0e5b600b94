#include "platform/files.h"
#include "platform/temporary_name.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QThread>

#include <aclapi.h>
#include <algorithm>
#include <fcntl.h>
#include <io.h>
#include <sddl.h>
#include <windows.h>

namespace ktr {

namespace {

Status systemFailure(const QString &path)
{
    return fileFailure(path, qt_error_string(static_cast<int>(::GetLastError())));
}

const wchar_t *native(const QString &path)
{
    return reinterpret_cast<const wchar_t *>(path.utf16());
}

/// A security descriptor that the system made.
class Security
{
public:
    Security() = default;
    ~Security() { ::LocalFree(m_descriptor); }
    Q_DISABLE_COPY_MOVE(Security)

    /// The owner may do everything, and so may the system and its administrators, who could anyway.
    void ownersAlone()
    {
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;OW)(A;;FA;;;SY)(A;;FA;;;BA)",
                                                               SDDL_REVISION_1, &m_descriptor, nullptr);
    }
    void like(HANDLE file)
    {
        ::GetSecurityInfo(file, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, nullptr, nullptr,
                          &m_descriptor);
    }
    /// What a new file is to have; what its folder gives where nothing else is known.
    SECURITY_ATTRIBUTES attributes() const { return {sizeof(SECURITY_ATTRIBUTES), m_descriptor, FALSE}; }

private:
    PSECURITY_DESCRIPTOR m_descriptor = nullptr;
};

HANDLE createFile(const QString &path, DWORD access, DWORD share, SECURITY_ATTRIBUTES *security, DWORD how)
{
    return ::CreateFileW(native(path), access, share, security, how, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// A virus scanner or an indexer that looks at a file for a moment is no reason to fail.
bool moveOver(const QString &from, const QString &to)
{
    constexpr int tries = 25;
    for (int i = 1;; ++i) {
        if (::MoveFileExW(native(from), native(to), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) !=
            0) {
            return true;
        }
        const DWORD error = ::GetLastError();
        if (i == tries || (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION)) {
            ::SetLastError(error);
            return false;
        }
        QThread::msleep(10);
    }
}

/// Removes what programs that were killed had begun of this file. What is still open is not removed.
void removeAbandoned(const QFileInfo &file)
{
    QDirIterator entries(file.path(), QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (isTemporaryName(entries.fileName(), file)) {
            ::DeleteFileW(native(QDir::toNativeSeparators(path)));
        }
    }
}

} // namespace

QByteArray identityOf(const QString &path)
{
    const HANDLE file =
        createFile(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING);
    if (file == INVALID_HANDLE_VALUE) {
        return {};
    }
    BY_HANDLE_FILE_INFORMATION found = {};
    const bool isFound = ::GetFileInformationByHandle(file, &found) != 0;
    ::CloseHandle(file);
    return !isFound ? QByteArray()
                    : QByteArray::number(uint{found.dwVolumeSerialNumber}) + ':' +
                          QByteArray::number((quint64{found.nFileIndexHigh} << 32) | found.nFileIndexLow);
}

struct FileReplacement::Pending
{
    explicit Pending(QString givenPath) : path(std::move(givenPath)) {}
    ~Pending()
    {
        if (handle != INVALID_HANDLE_VALUE) {
            ::CloseHandle(handle);
        }
        if (!temporary.isEmpty()) {
            ::DeleteFileW(native(temporary));
        }
    }
    Q_DISABLE_COPY_MOVE(Pending)

    QString path;
    QString file;
    QString temporary; ///< empty: a device or a pipe, which is written to as it is
    HANDLE handle = INVALID_HANDLE_VALUE;
};

Status FileReplacement::open(const QString &path, Readers ofNew)
{
    m_pending = std::make_unique<Pending>(path);
    const QFileInfo info(path);
    if (info.isDir()) {
        return fileFailure(path, QCoreApplication::translate("Files", "is a folder"));
    }

    // Opened for writing, so that a write-protected file is not replaced behind its owner's back.
    Security security;
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE present = createFile(QDir::toNativeSeparators(path), GENERIC_WRITE | READ_CONTROL, shareAll,
                                      nullptr, OPEN_EXISTING);
    if (present == INVALID_HANDLE_VALUE) {
        if (::GetLastError() != ERROR_FILE_NOT_FOUND) {
            return systemFailure(path);
        }
        if (ofNew == Readers::Owner) {
            security.ownersAlone();
        }
    } else if (::GetFileType(present) != FILE_TYPE_DISK) {
        m_pending->handle = present;
        return Status::done();
    } else {
        security.like(present);
        ::CloseHandle(present);
    }

    const QString file = info.exists()      ? info.canonicalFilePath()
                         : info.isSymLink() ? info.symLinkTarget()
                                            : info.absoluteFilePath();
    m_pending->file = QDir::toNativeSeparators(file);
    removeAbandoned(QFileInfo(file));
    const QString temporary = QFileInfo(file).path() + u'/' + newTemporaryName(QFileInfo(file));
    SECURITY_ATTRIBUTES attributes = security.attributes();
    m_pending->handle = createFile(QDir::toNativeSeparators(temporary), GENERIC_WRITE, FILE_SHARE_READ,
                                   &attributes, CREATE_NEW);
    if (m_pending->handle == INVALID_HANDLE_VALUE) {
        return systemFailure(path);
    }
    m_pending->temporary = QDir::toNativeSeparators(temporary);
    return Status::done();
}

Status FileReplacement::write(const QByteArray &bytes)
{
    constexpr qsizetype largest = qsizetype{1} << 30;
    for (qsizetype written = 0; written < bytes.size();) {
        DWORD count = 0;
        if (::WriteFile(m_pending->handle, bytes.constData() + written,
                        static_cast<DWORD>(std::min(largest, bytes.size() - written)), &count,
                        nullptr) == 0 ||
            count == 0) {
            return systemFailure(m_pending->path);
        }
        written += static_cast<qsizetype>(count);
    }
    return Status::done();
}

Status FileReplacement::commit()
{
    const std::unique_ptr<Pending> pending = std::move(m_pending);
    if (pending->temporary.isEmpty()) {
        return Status::done();
    }
    if (::FlushFileBuffers(pending->handle) == 0) {
        return systemFailure(pending->path);
    }
    const bool closed = ::CloseHandle(std::exchange(pending->handle, INVALID_HANDLE_VALUE)) != 0;
    if (!closed || !moveOver(pending->temporary, pending->file)) {
        return systemFailure(pending->path);
    }
    pending->temporary.clear();
    return Status::done();
}

FileReplacement::FileReplacement() = default;
FileReplacement::~FileReplacement() = default;

void removeAbandoned(const QString &path)
{
    removeAbandoned(QFileInfo(path));
}

bool canMakeFiles(const QString &folder)
{
    QTemporaryFile probe(folder + QLatin1String("/.KTRconfig.XXXXXX")); // access lists tell only half
    return probe.open();
}

Status openToRead(QFile &file, const QString &path)
{
    if (QFileInfo(path).isDir()) {
        return notRegular(path);
    }
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE handle =
        createFile(QDir::toNativeSeparators(path), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING);
    if (handle == INVALID_HANDLE_VALUE) {
        return systemFailure(path);
    }
    if (::GetFileType(handle) != FILE_TYPE_DISK) {
        ::CloseHandle(handle);
        return notRegular(path);
    }
    file.setFileName(path);
    const int descriptor = ::_open_osfhandle(reinterpret_cast<intptr_t>(handle), _O_RDONLY | _O_BINARY);
    return file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)
               ? Status::done()
               : fileFailure(path, file.errorString());
}

Status openOwnersFile(QFile &file, const QString &path)
{
    // A file that the toolkit opens has no descriptor, which flushToDisk() needs.
    Security security;
    security.ownersAlone();
    SECURITY_ATTRIBUTES attributes = security.attributes();
    const HANDLE handle = createFile(QDir::toNativeSeparators(path), GENERIC_READ | GENERIC_WRITE,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE, &attributes, OPEN_ALWAYS);
    if (handle == INVALID_HANDLE_VALUE) {
        return systemFailure(path);
    }
    const int descriptor = ::_open_osfhandle(reinterpret_cast<intptr_t>(handle), 0);
    file.setFileName(path);
    return file.open(descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)
               ? Status::done()
               : fileFailure(path, file.errorString());
}

bool flushToDisk(int descriptor)
{
    return ::FlushFileBuffers(reinterpret_cast<HANDLE>(::_get_osfhandle(descriptor))) != 0;
}

} // namespace ktr

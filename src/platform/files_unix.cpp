#include "platform/files.h"
#include "platform/temporary_name.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ktr {

namespace {

Status systemFailure(const QString &path)
{
    return fileFailure(path, QString::fromLocal8Bit(std::strerror(errno)));
}

bool writeAll(int descriptor, const QByteArray &content)
{
    qsizetype written = 0;
    while (written < content.size()) {
        const ssize_t count = ::write(descriptor, content.constData() + written,
                                      static_cast<std::size_t>(content.size() - written));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        written += count;
    }
    return true;
}

/// Removes what programs that were killed had begun of this file. What is still written is locked.
void removeAbandoned(const QFileInfo &file)
{
    QDirIterator entries(file.absolutePath(), QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    while (entries.hasNext()) {
        const QByteArray path = QFile::encodeName(entries.next());
        if (!isTemporaryName(entries.fileName(), file)) {
            continue;
        }
        const int descriptor = ::open(path.constData(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
        if (descriptor >= 0) {
            if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
                ::unlink(path.constData());
            }
            ::close(descriptor);
        }
    }
}

/// Makes and locks a temporary file for this one; -1, with the reason in errno, when it cannot be made.
int makeTemporary(const QFileInfo &file, mode_t mode, QByteArray &path)
{
    constexpr int tries = 10;
    for (int i = 1;; ++i) {
        path = QFile::encodeName(file.absolutePath() + u'/' + newTemporaryName(file));
        const int descriptor = ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (descriptor < 0 && errno == EEXIST && i < tries) {
            continue;
        }
        if (descriptor < 0) {
            return descriptor;
        }
        // Where locks are not known nobody takes it for abandoned either.
        const bool isSeen = ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        struct stat made = {};
        if (i == tries || (!isSeen && ::fstat(descriptor, &made) == 0 && made.st_nlink > 0)) {
            return descriptor;
        }
        ::unlink(path.constData()); // somebody removed it, or is about to, before it was locked
        ::close(descriptor);
    }
}

/// A descriptor that was opened without waiting, should a pipe stand there since just now; a regular file
/// does not mind.
Status handOver(QFile &file, const QString &path, int descriptor, QIODevice::OpenMode mode)
{
    if (descriptor < 0) {
        return systemFailure(path);
    }
    struct stat found = {};
    if (::fstat(descriptor, &found) != 0 || !S_ISREG(found.st_mode)) {
        ::close(descriptor);
        return notRegular(path);
    }
    return file.open(descriptor, mode, QFileDevice::AutoCloseHandle) ? Status::done()
                                                                     : fileFailure(path, file.errorString());
}

/// What is to become of the file that is written.
struct Target
{
    QByteArray temporary; ///< empty: a device or a pipe, which is written to as it is
    QString file;
    std::optional<mode_t> mode{}; ///< of the file that is replaced
};

} // namespace

QByteArray identityOf(const QString &path)
{
    struct stat found = {};
    return ::stat(QFile::encodeName(path).constData(), &found) == 0
               ? QByteArray::number(qulonglong{found.st_dev}) + ':' +
                     QByteArray::number(qulonglong{found.st_ino})
               : QByteArray();
}

struct FileReplacement::Pending
{
    explicit Pending(QString givenPath) : path(std::move(givenPath)) {}
    ~Pending()
    {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        if (!target.temporary.isEmpty()) {
            ::unlink(target.temporary.constData());
        }
    }
    Q_DISABLE_COPY_MOVE(Pending)

    QString path;
    Target target;
    int descriptor = -1;
};

Status FileReplacement::open(const QString &path, Readers ofNew)
{
    m_pending = std::make_unique<Pending>(path);
    struct stat present = {};
    const QByteArray name = QFile::encodeName(path);
    const bool exists = ::stat(name.constData(), &present) == 0;
    if (exists && S_ISDIR(present.st_mode)) {
        return fileFailure(path, QCoreApplication::translate("Files", "is a folder"));
    }
    if (exists && !S_ISREG(present.st_mode)) {
        m_pending->descriptor = ::open(name.constData(), O_WRONLY | O_CLOEXEC);
        return m_pending->descriptor < 0 ? systemFailure(path) : Status::done();
    }
    if (exists && ::access(name.constData(), W_OK) != 0) {
        return systemFailure(path); // a write-protected file is not to be replaced behind its owner's back
    }

    const QFileInfo info(path);
    Target &target = m_pending->target;
    target.file = exists ? info.canonicalFilePath() : info.isSymLink() ? info.symLinkTarget() : path;
    const QFileInfo file(target.file);
    removeAbandoned(file);
    constexpr mode_t ownersAlone = S_IRUSR | S_IWUSR;
    constexpr mode_t usual = 0666; // the system takes away what the user does not want
    QByteArray temporary;
    m_pending->descriptor =
        makeTemporary(file, !exists && ofNew == Readers::AsUsual ? usual : ownersAlone, temporary);
    if (m_pending->descriptor < 0) {
        return systemFailure(path);
    }
    target.temporary = temporary;
    if (exists) {
        target.mode = present.st_mode & 07777U;
    }
    return Status::done();
}

Status FileReplacement::write(const QByteArray &bytes)
{
    return writeAll(m_pending->descriptor, bytes) ? Status::done() : systemFailure(m_pending->path);
}

Status FileReplacement::commit()
{
    const std::unique_ptr<Pending> pending = std::move(m_pending);
    Target &target = pending->target;
    if (target.temporary.isEmpty()) {
        return Status::done();
    }
    const int descriptor = pending->descriptor;
    bool ok = (!target.mode || ::fchmod(descriptor, *target.mode) == 0) && ::fsync(descriptor) == 0;
    if (ok) {
        pending->descriptor = -1;
        ok = ::close(descriptor) == 0;
    }
    if (!ok || ::rename(target.temporary.constData(), QFile::encodeName(target.file).constData()) != 0) {
        return systemFailure(pending->path);
    }
    target.temporary.clear();

    // The new name is safe only when the folder is, too. A folder that cannot be synchronised (a network
    // share) is no reason to report a failure: the file is there.
    const QByteArray folder = QFile::encodeName(QFileInfo(target.file).absolutePath());
    const int directory = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
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
    return QFileInfo(folder).isWritable();
}

Status openToRead(QFile &file, const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat found = {};
    if (::stat(name.constData(), &found) == 0 && !S_ISREG(found.st_mode)) {
        return notRegular(path); // opening alone moves some devices
    }
    const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    return handOver(file, path, descriptor, QIODevice::ReadOnly);
}

Status openOwnersFile(QFile &file, const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat found = {};
    if (::stat(name.constData(), &found) == 0 && !S_ISREG(found.st_mode)) {
        return notRegular(path);
    }
    const int descriptor =
        ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, S_IRUSR | S_IWUSR);
    return handOver(file, path, descriptor, QIODevice::ReadWrite | QIODevice::Unbuffered);
}

bool flushToDisk(int descriptor)
{
#ifdef Q_OS_LINUX
    return ::fdatasync(descriptor) == 0;
#else
    return ::fsync(descriptor) == 0;
#endif
}

} // namespace ktr

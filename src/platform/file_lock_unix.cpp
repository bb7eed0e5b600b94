#include "platform/file_lock.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ktr {

namespace {

/// Far behind what stands in the file: on some network shares nobody else can read a byte that is locked.
constexpr off_t lockedByte = 0x4000'0000;

struct flock lockOf(bool exclusive)
{
    struct flock lock = {};
    lock.l_type = exclusive ? F_WRLCK : F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = lockedByte;
    lock.l_len = 1;
    return lock;
}

/// Gives false, with the reason in errno. The lock is the descriptor's own where the system knows that.
bool lockDescriptor(int descriptor, bool exclusive)
{
    struct flock lock = lockOf(exclusive);
#ifdef F_OFD_SETLK
    return ::fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
#else
    return ::fcntl(descriptor, F_SETLK, &lock) == 0;
#endif
}

bool isLocked(int descriptor)
{
    struct flock lock = lockOf(true);
#ifdef F_OFD_GETLK
    const int asked = ::fcntl(descriptor, F_OFD_GETLK, &lock);
#else
    const int asked = ::fcntl(descriptor, F_GETLK, &lock);
#endif
    return asked == 0 && lock.l_type != F_UNLCK;
}

QString accountName()
{
    const struct passwd *user = ::getpwuid(::geteuid());
    return user != nullptr ? QString::fromLocal8Bit(user->pw_name) : QString::number(::geteuid());
}

/// Whether the path still names this file: its last holder may have removed it in between.
bool isStillThere(int descriptor, const QByteArray &path)
{
    struct stat held = {};
    struct stat named = {};
    return ::fstat(descriptor, &held) == 0 && ::lstat(path.constData(), &named) == 0 &&
           held.st_dev == named.st_dev && held.st_ino == named.st_ino;
}

QByteArray contentOf(int descriptor)
{
    char record[1024];
    const ssize_t size = ::pread(descriptor, record, sizeof record, 0);
    return {record, size < 0 ? 0 : size};
}

/// Whoever may make files in the folder may take the lock, also after another user was killed with it.
void giveModeOfFolder(int descriptor, const QByteArray &path)
{
    struct stat file = {};
    struct stat folder = {};
    const QByteArray folderPath = QFile::encodeName(QFileInfo(QFile::decodeName(path)).absolutePath());
    if (::fstat(descriptor, &file) == 0 && file.st_uid == ::geteuid() &&
        ::stat(folderPath.constData(), &folder) == 0) {
        ::fchmod(descriptor, (folder.st_mode & 0666U) | S_IRUSR | S_IWUSR);
    }
}

} // namespace

struct FileLock::Held
{
    Held(QByteArray lockPath, int lockDescriptor) : path(std::move(lockPath)), descriptor(lockDescriptor) {}
    ~Held()
    {
        if (isOwn) {
            ::unlink(path.constData());
        }
        ::close(descriptor);
    }
    Q_DISABLE_COPY_MOVE(Held)

    QByteArray path;
    int descriptor;
    bool isOwn = false; ///< and goes with the lock
};

FileLock::FileLock() = default;
FileLock::~FileLock() = default;

FileLock::Outcome FileLock::take(const QString &path)
{
    release();
    const QByteArray name = QFile::encodeName(path);
    while (true) {
        constexpr int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
        int descriptor = ::open(name.constData(), O_RDWR | O_CREAT | flags, S_IRUSR | S_IWUSR);
        const bool isWritable = descriptor >= 0;
        // Somebody else's file, or one on a disk that cannot be written: it is still possible to see whether
        // it is locked.
        if (const int reason = errno;
            !isWritable && (reason == EACCES || reason == EPERM || reason == EROFS)) {
            descriptor = ::open(name.constData(), O_RDONLY | flags);
            errno = reason;
        }
        if (descriptor < 0) {
            const int reason = errno;
            m_trouble = reason == EISDIR || reason == ENXIO ? notRegular(path)
                        : reason == ELOOP
                            ? fileFailure(path, QCoreApplication::translate("Files", "is a link"))
                            : fileFailure(path, QString::fromLocal8Bit(std::strerror(reason)));
            return Outcome::Impossible;
        }
        if (struct stat found = {}; ::fstat(descriptor, &found) != 0 || !S_ISREG(found.st_mode)) {
            ::close(descriptor);
            m_trouble = notRegular(path);
            return Outcome::Impossible;
        }
        auto held = std::make_unique<Held>(name, descriptor);
        if (!lockDescriptor(descriptor, isWritable)) {
            if (errno == EAGAIN || errno == EACCES) {
                m_holder = lockHolderText(contentOf(descriptor));
                return Outcome::Held;
            }
            m_trouble = fileFailure(path, QString::fromLocal8Bit(std::strerror(errno)));
            held->isOwn = isWritable;
            return Outcome::Impossible;
        }
        if (!isStillThere(descriptor, name)) {
            continue;
        }
        if (isWritable) {
            held->isOwn = true;
            giveModeOfFolder(descriptor, name);
            m_record = lockHolderRecord(accountName());
            // Without it the others cannot see the holder; the lock works all the same.
            (void)!::pwrite(descriptor, m_record.constData(), static_cast<std::size_t>(m_record.size()), 0);
            (void)!::ftruncate(descriptor, m_record.size());
        }
        m_held = std::move(held);
        return Outcome::Taken;
    }
}

std::optional<QByteArray> FileLock::heldBy(const QString &path)
{
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (descriptor < 0) {
        return std::nullopt;
    }
    std::optional<QByteArray> holder;
    if (isLocked(descriptor)) {
        holder = contentOf(descriptor);
    }
    ::close(descriptor);
    return holder;
}

void FileLock::release()
{
    m_held.reset();
}

} // namespace ktr

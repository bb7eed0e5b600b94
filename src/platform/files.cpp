#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <QScopeGuard>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace ktr {

namespace {

Status failure(const QString &path, const QString &reason)
{
    return Status::failed(path + QLatin1String(": ") + reason);
}

} // namespace

Status readFile(const QString &path, QByteArray &content, qint64 limit)
{
    if (path.isEmpty()) {
        return Status::failed(QCoreApplication::translate("Files", "there is no file name"));
    }
    QFile file(path);
    if (QFileInfo(path).isDir()) {
        return failure(path, QCoreApplication::translate("Files", "is a folder"));
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return failure(path, file.errorString());
    }
    // In pieces: what is asked for is reserved, however short the file is.
    constexpr qint64 piece = qint64{64} * 1024;
    content.clear();
    QByteArray read;
    do {
        read = file.read(piece);
        content += read;
    } while (!read.isEmpty() && content.size() <= limit);
    if (file.error() != QFileDevice::NoError) {
        return failure(path, file.errorString());
    }
    if (content.size() > limit) {
        content.clear();
        return failure(path, QCoreApplication::translate("Files", "is longer than %1 MiB").arg(limit >> 20));
    }
    return Status::done();
}

#ifdef Q_OS_UNIX

namespace {

Status systemFailure(const QString &path)
{
    return failure(path, QString::fromLocal8Bit(std::strerror(errno)));
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

Status writeToDevice(const QString &path, const QByteArray &content)
{
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return systemFailure(path);
    }
    const auto close = qScopeGuard([descriptor] { ::close(descriptor); });
    return writeAll(descriptor, content) ? Status::done() : systemFailure(path);
}

} // namespace

Status replaceFile(const QString &path, const QByteArray &content)
{
    struct stat present = {};
    const bool exists = ::stat(QFile::encodeName(path).constData(), &present) == 0;
    if (exists && S_ISDIR(present.st_mode)) {
        return failure(path, QCoreApplication::translate("Files", "is a folder"));
    }
    if (exists && !S_ISREG(present.st_mode)) {
        return writeToDevice(path, content);
    }
    if (exists && ::access(QFile::encodeName(path).constData(), W_OK) != 0) {
        return systemFailure(path); // a write-protected file is not to be replaced behind its owner's back
    }

    const QFileInfo info(path);
    const QString target = exists ? info.canonicalFilePath() : info.isSymLink() ? info.symLinkTarget() : path;
    const QString folder = QFileInfo(target).absolutePath();
    QByteArray temporary = QFile::encodeName(folder + QLatin1String("/.") + QFileInfo(target).fileName() +
                                             QLatin1String(".XXXXXX"));
    const int descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (descriptor < 0) {
        return systemFailure(path);
    }
    bool open = true;
    auto discard = qScopeGuard([&] {
        const int reason = errno; // the message is made after this
        if (open) {
            ::close(descriptor);
        }
        ::unlink(temporary.constData());
        errno = reason;
    });

    const mode_t mode = exists ? (present.st_mode & 07777U) : (S_IRUSR | S_IWUSR);
    bool ok = ::fchmod(descriptor, mode) == 0 && writeAll(descriptor, content) && ::fsync(descriptor) == 0;
    if (ok) {
        open = false;
        ok = ::close(descriptor) == 0;
    }
    if (!ok || ::rename(temporary.constData(), QFile::encodeName(target).constData()) != 0) {
        return systemFailure(path);
    }
    discard.dismiss();

    // The new name is safe only when the folder is, too. A folder that cannot be synchronised (a network
    // share) is no reason to report a failure: the file is there.
    const int directory = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return Status::done();
}

#else

Status replaceFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit()) {
        return failure(path, file.errorString());
    }
    return Status::done();
}

#endif

} // namespace ktr

#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
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

/// How the descriptor of a new file is made, and what is to become of it.
struct Target
{
    QByteArray temporary; ///< empty: a device or a pipe, which is written to as it is
    QString file;
    mode_t mode = S_IRUSR | S_IWUSR;
};

} // namespace

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

Status FileReplacement::open(const QString &path)
{
    m_pending = std::make_unique<Pending>(path);
    struct stat present = {};
    const QByteArray name = QFile::encodeName(path);
    const bool exists = ::stat(name.constData(), &present) == 0;
    if (exists && S_ISDIR(present.st_mode)) {
        return failure(path, QCoreApplication::translate("Files", "is a folder"));
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
    QByteArray temporary = QFile::encodeName(file.absolutePath() + QLatin1String("/.") + file.fileName() +
                                             QLatin1String(".XXXXXX"));
    m_pending->descriptor = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (m_pending->descriptor < 0) {
        return systemFailure(path);
    }
    target.temporary = temporary;
    target.mode = exists ? (present.st_mode & 07777U) : target.mode;
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
    bool ok = ::fchmod(descriptor, target.mode) == 0 && ::fsync(descriptor) == 0;
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

#else

struct FileReplacement::Pending
{
    explicit Pending(const QString &path) : file(path) {}
    Status done(bool ok) { return ok ? Status::done() : failure(file.fileName(), file.errorString()); }

    QSaveFile file;
};

Status FileReplacement::open(const QString &path)
{
    m_pending = std::make_unique<Pending>(path);
    return m_pending->done(m_pending->file.open(QIODevice::WriteOnly));
}

Status FileReplacement::write(const QByteArray &bytes)
{
    return m_pending->done(m_pending->file.write(bytes) == bytes.size());
}

Status FileReplacement::commit()
{
    const std::unique_ptr<Pending> pending = std::move(m_pending);
    return pending->done(pending->file.commit());
}

#endif

FileReplacement::FileReplacement() = default;
FileReplacement::~FileReplacement() = default;

Status replaceFile(const QString &path, const QByteArray &content)
{
    FileReplacement file;
    Status status = file.open(path);
    if (status) {
        status = file.write(content);
    }
    return status ? file.commit() : status;
}

} // namespace ktr

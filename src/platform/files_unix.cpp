#include "platform/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
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

FileReplacement::FileReplacement() = default;
FileReplacement::~FileReplacement() = default;

bool canMakeFiles(const QString &folder)
{
    return QFileInfo(folder).isWritable();
}

Status openOwnersFile(QFile &file, const QString &path)
{
    file.setFileName(path);
    const bool opened = file.open(QIODevice::ReadWrite | QIODevice::Unbuffered,
                                  QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    return opened ? Status::done() : fileFailure(path, file.errorString());
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

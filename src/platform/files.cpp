#include "platform/files.h"

#include "platform/file_mark.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <new>

namespace ktr {

bool isSameFile(const QString &a, const QString &b)
{
    const std::filesystem::path left(a.toStdU16String());
    const std::filesystem::path right(b.toStdU16String());
    std::error_code missing;
    if (std::filesystem::exists(left, missing) || std::filesystem::exists(right, missing)) {
        return std::filesystem::is_regular_file(left, missing) &&
               std::filesystem::equivalent(left, right, missing);
    }
    const auto place = [](const QString &path) -> QString {
        const QFileInfo file(path);
        return QFileInfo(file.absolutePath()).canonicalFilePath() + u'/' + file.fileName();
    };
    return !a.isEmpty() && !b.isEmpty() && place(a) == place(b); // neither is there yet
}

Status fileFailure(const QString &path, const QString &reason)
{
    return Status::failed(path + QLatin1String(": ") + reason);
}

Status notRegular(const QString &path)
{
    return fileFailure(
        path, QFileInfo(path).isDir()
                  ? QCoreApplication::translate("Files", "is a folder")
                  : QCoreApplication::translate("Files", "is no file, but a pipe, a device or the like"));
}

Status checkLockFile(const QString &path)
{
    for (const QString &name : {path, QString(path + QLatin1String(".rmlock"))}) {
        const QFileInfo found(name);
        if ((found.exists() || found.isSymLink()) && !found.isFile()) {
            return notRegular(name);
        }
    }
    return Status::done();
}

Status readFile(const QString &path, QByteArray &content, qint64 limit)
{
    if (path.isEmpty()) {
        return Status::failed(QCoreApplication::translate("Files", "there is no file name"));
    }
    QFile file;
    if (Status opened = openToRead(file, path); !opened) {
        return opened;
    }
    // In pieces: what is asked for is reserved, however little there is to read.
    constexpr qint64 piece = qint64{64} * 1024;
    content.clear();
    try {
        content.reserve(std::min(file.size(), limit));
    } catch (const std::bad_alloc &) {
        return fileFailure(path,
                           QCoreApplication::translate("Files", "is longer than the memory that is free"));
    }
    QByteArray read;
    do {
        read = file.read(piece);
        content += read;
    } while (!read.isEmpty() && content.size() <= limit);
    if (file.error() != QFileDevice::NoError) {
        return fileFailure(path, file.errorString());
    }
    if (content.size() > limit) {
        content.clear();
        return fileFailure(path,
                           QCoreApplication::translate("Files", "is longer than %1 MiB").arg(limit >> 20));
    }
    return Status::done();
}

Status readFile(const QString &path, QByteArray &content)
{
    return readFile(path, content, std::numeric_limits<qint64>::max());
}

Status copyFile(const QString &from, const QString &to)
{
    QFile source;
    if (Status opened = openToRead(source, from); !opened) {
        return opened;
    }
    FileReplacement copy;
    Status status = copy.open(to);
    constexpr qint64 piece = qint64{64} * 1024;
    for (QByteArray read = source.read(piece); status && !read.isEmpty(); read = source.read(piece)) {
        status = copy.write(read);
    }
    if (status && source.error() != QFileDevice::NoError) {
        return fileFailure(from, source.errorString());
    }
    return status ? copy.commit() : status;
}

Status keepBeside(const QString &path, QString &copy)
{
    const FileMark content = markOf(path);
    copy = path + u'~';
    for (int number = 2; QFileInfo(copy).isFile() && markOf(copy) != content; ++number) {
        copy = path + u'~' + QString::number(number);
    }
    return QFileInfo(copy).isFile() ? Status::done() : copyFile(path, copy);
}

Status replaceFile(const QString &path, const QByteArray &content, Readers ofNew)
{
    FileReplacement file;
    Status status = file.open(path, ofNew);
    if (status) {
        status = file.write(content);
    }
    return status ? file.commit() : status;
}

namespace {

QString numbered(const QString &path, int n)
{
    const QFileInfo info(path);
    return info.absolutePath() + u'/' + info.completeBaseName() + QStringLiteral(" (%1).").arg(n) +
           info.suffix();
}

/// The first number that is free for all of them.
int freeNumber(const QStringList &paths)
{
    int n = 1;
    while (std::ranges::any_of(paths,
                               [&](const QString &path) { return QFileInfo::exists(numbered(path, n)); })) {
        ++n;
    }
    return n;
}

} // namespace

QString asideName(const QStringList &paths)
{
    return numbered(paths.last(), freeNumber(paths));
}

Status keepAside(const QStringList &paths, QString *newNameOfLast)
{
    const int n = freeNumber(paths);
    if (newNameOfLast != nullptr) {
        *newNameOfLast = numbered(paths.last(), n);
    }
    for (const QString &path : paths) {
        QFile file(path);
        if (file.exists() && !file.rename(numbered(path, n))) {
            return fileFailure(path, file.errorString());
        }
    }
    return Status::done();
}

} // namespace ktr

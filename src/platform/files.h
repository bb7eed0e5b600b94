#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QString>

#include <memory>

class QFile;

namespace ktr {

/// Reads a whole file of at most `limit` bytes into `content`.
Status readFile(const QString &path, QByteArray &content, qint64 limit);

/// A failure that names its file.
Status fileFailure(const QString &path, const QString &reason);

/// Whether this user can make files in a folder.
bool canMakeFiles(const QString &folder);

/// Opens a file to read and write without a buffer, making it for its owner alone where it does not exist.
Status openOwnersFile(QFile &file, const QString &path);

/// Waits until the disk has what was written to an open file; false when it cannot be known to.
bool flushToDisk(int descriptor);

/// Replaces a file whole or not at all, and so that it outlives a power cut: what stood there before
/// stays untouched until the new content is on the disk. A new file is readable for its owner only
/// (a configuration holds the SIM's PIN); an existing one keeps its permissions, a link its target.
/// A device or a pipe is simply written to.
Status replaceFile(const QString &path, const QByteArray &content);

/// The same for content that comes piece by piece. What is not committed is discarded.
class FileReplacement
{
public:
    FileReplacement();
    ~FileReplacement();
    Q_DISABLE_COPY_MOVE(FileReplacement)

    /// Each fails with a message that names the file; after a failure nothing but open() is of use.
    Status open(const QString &path);
    Status write(const QByteArray &bytes);
    Status commit();

private:
    struct Pending;
    std::unique_ptr<Pending> m_pending;
};

/// Copies a file of any length as replaceFile() writes one.
Status copyFile(const QString &from, const QString &to);

} // namespace ktr

#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

class QFile;

namespace ktr {

/// Opens a file to read. Only a regular one: a pipe would keep the program waiting for its writer, a device
/// for ever, and what is opened by a fixed name, or one from outside, may be any of them.
Status openToRead(QFile &file, const QString &path);

/// Reads a whole regular file of at most `limit` bytes into `content`. For what comes from outside: what the
/// program writes itself, it must be able to read at any length.
Status readFile(const QString &path, QByteArray &content, qint64 limit);
Status readFile(const QString &path, QByteArray &content);

/// A failure that names its file.
Status fileFailure(const QString &path, const QString &reason);

/// The failure of what is no regular file.
Status notRegular(const QString &path);

/// Whether two paths lead to one file, whatever links are between. Devices and pipes are no files here.
bool isSameFile(const QString &a, const QString &b);

/// Which file stands at a path: another text once it was replaced, as long as somebody has the one before
/// open. Empty where there is none. Fit for what must not be opened.
QByteArray identityOf(const QString &path);

/// Whether this user can make files in a folder.
bool canMakeFiles(const QString &folder);

/// Whether a QLockFile can be tried here: it reads what stands in its place, and would wait at a pipe for
/// ever. The failure names what is in the way.
Status checkLockFile(const QString &path);

/// Opens a regular file to read and write without a buffer, making it for its owner alone where it does not
/// exist.
Status openOwnersFile(QFile &file, const QString &path);

/// Waits until the disk has what was written to an open file; false when it cannot be known to.
bool flushToDisk(int descriptor);

/// Who may read a file that is new.
enum class Readers {
    Owner,  ///< what may hold a secret, such as a configuration the SIM's PIN
    AsUsual ///< as the user wants it of all files
};

/// Replaces a file whole or not at all, and so that it outlives a power cut: what stood there before
/// stays untouched until the new content is on the disk. An existing file keeps its permissions, a link its
/// target. A device or a pipe is simply written to. What a program that was killed had begun of this file,
/// hidden beside it, is removed.
Status replaceFile(const QString &path, const QByteArray &content, Readers ofNew = Readers::Owner);

/// Removes what programs that were killed had begun of a file that is not going to be replaced.
void removeAbandoned(const QString &path);

/// Replaces a file in the same way by content that comes piece by piece. What is not committed is discarded.
class FileReplacement
{
public:
    FileReplacement();
    ~FileReplacement();
    Q_DISABLE_COPY_MOVE(FileReplacement)

    /// Each fails with a message that names the file; after a failure nothing but open() is of use.
    Status open(const QString &path, Readers ofNew = Readers::Owner);
    Status write(const QByteArray &bytes);
    Status commit();

private:
    struct Pending;
    std::unique_ptr<Pending> m_pending;
};

/// Copies a file of any length as replaceFile() writes one.
Status copyFile(const QString &from, const QString &to);

/// Keeps what stands in a file as a copy beside it, with "~" behind its name. A copy of something else is
/// left alone: the new one is then called "~2", or the next number that is free. Nothing is copied when one
/// of them holds the same. Tells which copy does.
Status keepBeside(const QString &path, QString &copy);

/// Renames files so that others can take their places: "nodes.xml" to "nodes (1).xml" or the next number that
/// is free for all of them. Those that do not exist are passed over. Tells what the last one is called now.
Status keepAside(const QStringList &paths, QString *newNameOfLast = nullptr);
/// What keepAside() would call the last one now.
QString asideName(const QStringList &paths);

} // namespace ktr

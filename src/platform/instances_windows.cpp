#include "platform/instances.h"
#include "platform/private_folder.h"

#include <QDir>
#include <QFileInfo>

#include <windows.h>

namespace ktr {

/// Folders for what is temporary are each user's own here.
bool isPrivateFolder(const QString &path)
{
    const QFileInfo found(path);
    return found.isDir() && !found.isSymLink() && !found.isJunction();
}

QString socketNameIn(const QString &folder, const QString &name)
{
    return QDir(folder).dirName() + u'-' + name;
}

QString privateSocketName(const QString &name)
{
    return name; // a pipe, and no file
}

QString newSocketName(const QString &name)
{
    return name; // any number of programs can listen at a pipe
}

QStringList socketNames(const QString &name)
{
    return {name};
}

void allowToFront(qint64 processId)
{
    ::AllowSetForegroundWindow(static_cast<DWORD>(processId));
}

} // namespace ktr

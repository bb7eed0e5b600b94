#include "platform/instances.h"
#include "platform/private_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <sys/stat.h>
#include <unistd.h>

namespace ktr {

bool isPrivateFolder(const QString &path)
{
    struct stat found = {};
    return !path.isEmpty() && ::lstat(QFile::encodeName(path).constData(), &found) == 0 &&
           S_ISDIR(found.st_mode) && found.st_uid == ::geteuid() &&
           (found.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

QString privateFolder()
{
    QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!isPrivateFolder(folder)) {
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                 QLatin1String("/KTRconfig");
        QDir().mkpath(folder);
        ::chmod(QFile::encodeName(folder).constData(), S_IRWXU);
    }
    return isPrivateFolder(folder) ? folder : QString();
}

QString privateSocketName(const QString &name)
{
    const QString folder = privateFolder();
    return folder.isEmpty() ? QString() : QString(folder + u'/' + name);
}

QString socketNameIn(const QString &folder, const QString &name)
{
    return folder + u'/' + name;
}

QString newSocketName(const QString &name)
{
    return name + u'-' + QString::number(QRandomGenerator::system()->generate(), 16);
}

/// Also what listens under the name itself.
QStringList socketNames(const QString &name)
{
    const QFileInfo meeting(QDir(QDir::tempPath()), name);
    QStringList names;
    for (const QString &file :
         meeting.dir().entryList({meeting.fileName() + QLatin1String("-*")}, QDir::System)) {
        names += meeting.dir().filePath(file);
    }
    if (meeting.exists()) {
        names += meeting.filePath();
    }
    return names;
}

void allowToFront(qint64) {} // the window manager's business here

} // namespace ktr

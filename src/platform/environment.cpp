#include "platform/environment.h"

#include "platform/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>

namespace ktr {

namespace {

QString userFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QLatin1String("/KTRconfig");
}

/// Where an installation keeps what the programs only read, beside the folder of its programs. Empty for
/// programs that stand in a folder of their own.
QString installedFolder()
{
    const QString folder =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1String("/../share/ktrconfig"));
    return QFileInfo(folder).isDir() ? folder : QString();
}

} // namespace

QString programFolder()
{
    const QString beside = QCoreApplication::applicationDirPath();
    // Even who may write beside the programs of a system, as its administrator, keeps nothing there.
    if (installedFolder().isEmpty() && canMakeFiles(beside)) {
        return QDir::toNativeSeparators(beside);
    }
    const QString folder = userFolder();
    QDir().mkpath(folder); // a new user has none yet
    return QDir::toNativeSeparators(folder);
}

QString userName()
{
    QString name;
    for (const char *variable : {"USER", "LOGNAME", "USERNAME"}) { // the last is that of Windows
        name = name.isEmpty() ? qEnvironmentVariable(variable) : name;
    }
    return name;
}

QString deliveredFile(const QString &name)
{
    QString own = joinPath(programFolder(), name);
    if (QFileInfo::exists(own)) {
        return own;
    }
    const QString installed = installedFolder();
    return joinPath(installed.isEmpty() ? QCoreApplication::applicationDirPath() : installed, name);
}

QString joinPath(const QString &folder, const QString &name)
{
    return folder + QDir::separator() + name;
}

Environment systemEnvironment()
{
    Environment environment;
    environment.locale = QLocale::system();
    environment.random = [] { return QRandomGenerator::global()->generateDouble(); };
    environment.programFolder = programFolder();
    environment.dataFolder = QDir::toNativeSeparators(userFolder());
    return environment;
}

} // namespace ktr

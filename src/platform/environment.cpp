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

} // namespace

QString programFolder()
{
    const QString beside = QCoreApplication::applicationDirPath();
    if (canMakeFiles(beside)) {
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
    const QString own = joinPath(programFolder(), name);
    return QFileInfo::exists(own) ? own : joinPath(QCoreApplication::applicationDirPath(), name);
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

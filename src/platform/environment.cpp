#include "platform/environment.h"

#include "platform/files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QStandardPaths>

namespace ktr {

QString programFolder()
{
    const QString beside = QCoreApplication::applicationDirPath();
    if (canMakeFiles(beside)) {
        return QDir::toNativeSeparators(beside);
    }
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString folder = data + QLatin1String("/KTRconfig");
    QDir().mkpath(folder); // a new user has none yet
    return QDir::toNativeSeparators(folder);
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
    return environment;
}

} // namespace ktr

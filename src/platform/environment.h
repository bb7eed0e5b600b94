#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

#include <functional>

namespace ktr {

/// What the system asks of the world around it when it fills in a value. Handed in, so that tests and
/// replays decide about locale, time and chance.
struct Environment
{
    QLocale locale = QLocale::c();
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
    std::function<double()> random = [] { return 0.0; }; ///< in [0, 1)
    QString programFolder;                               ///< without a separator at its end
    QString dataFolder; ///< the user's, which may not exist yet; empty where nothing is to be left there
};

/// The environment of this process: the user's locale, the clock, seeded chance and the program folder.
Environment systemEnvironment();

/// The name that the user has in the system; empty when it is not known.
QString userName();
/// The user's name as people write it; empty where the system does not know it.
QString fullUserName();

/// The folder of the executable where it can be written and is not that of an installation with its data
/// in ../share/ktrconfig; otherwise the user's data folder for this program, made where it is missing.
QString programFolder();

/// Where a file that is delivered with the program stands: in the program folder, in the ../share/ktrconfig
/// of an installation, or beside the executable.
QString deliveredFile(const QString &name);

/// A file of the program folder, joined with the platform's separator.
QString joinPath(const QString &folder, const QString &name);

} // namespace ktr

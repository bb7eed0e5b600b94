#include "platform/helper_program.h"

#include "platform/environment.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

namespace ktr {

namespace {

#ifdef Q_OS_WIN

const QLatin1String programSuffix(".exe");

void minimise(QProcess &process)
{
    process.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments *arguments) {
        arguments->startupInfo->dwFlags |= STARTF_USESHOWWINDOW;
        arguments->startupInfo->wShowWindow = SW_SHOWMINIMIZED;
    });
}

#else

const QLatin1String programSuffix("");

/// The window manager's business here.
void minimise(QProcess &) {}

#endif

} // namespace

QString findHelper(const QString &programFolder, const QString &name)
{
    for (const QString &folder : {programFolder, QCoreApplication::applicationDirPath()}) {
        const QString path = joinPath(folder, name + programSuffix);
        if (const QFileInfo file(path); file.isFile() && file.isExecutable()) {
            return path;
        }
    }
    return {};
}

Status startProgram(const QString &path, const QStringList &arguments, ProgramWindow window)
{
    QProcess process;
    process.setProgram(path);
    process.setArguments(arguments);
    if (window == ProgramWindow::Minimised) {
        minimise(process);
    }
    return process.startDetached() ? Status::done()
                                   : Status::failed(path + QLatin1String(": ") + process.errorString());
}

} // namespace ktr

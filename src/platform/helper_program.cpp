#include "platform/helper_program.h"

#include "platform/environment.h"
#include "platform/files.h"

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

/// Both take the focus.
void setWindow(QProcess &process, ProgramWindow window)
{
    process.setCreateProcessArgumentsModifier([window](QProcess::CreateProcessArguments *arguments) {
        arguments->startupInfo->dwFlags |= STARTF_USESHOWWINDOW;
        arguments->startupInfo->wShowWindow =
            window == ProgramWindow::Minimised ? SW_SHOWMINIMIZED : SW_SHOWNORMAL;
    });
}

#else

const QLatin1String programSuffix("");

/// The window manager's business here.
void setWindow(QProcess &, ProgramWindow) {}

#endif

} // namespace

QString findHelper(const QString &programFolder, const QString &name)
{
    for (const QString &folder : {programFolder, QCoreApplication::applicationDirPath()}) {
        QString path = joinPath(folder, name + programSuffix);
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
    setWindow(process, window);
    return process.startDetached() ? Status::done() : fileFailure(path, process.errorString());
}

} // namespace ktr

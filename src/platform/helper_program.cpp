#include "platform/helper_program.h"

#include "platform/environment.h"
#include "platform/files.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <csignal>
#include <unistd.h>
#ifdef Q_OS_LINUX
#include <linux/close_range.h>
#endif
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

void separate(QProcess &) {} // nothing is inherited there but what is named

void killGroup(qint64) {}

#else

const QLatin1String programSuffix("");

/// The child calls what is safe between fork and exec alone.
void separate(QProcess &process)
{
    process.setChildProcessModifier([] {
        ::setpgid(0, 0);
#ifdef Q_OS_LINUX
        ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
#endif
    });
}

void killGroup(qint64 process)
{
    ::kill(-static_cast<pid_t>(process), SIGKILL);
}

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

void standApart(QProcess &process)
{
    separate(process);
}

void killWithItsOwn(QProcess &process)
{
    if (process.processId() != 0) {
        killGroup(process.processId());
    }
    process.kill();
}

} // namespace ktr

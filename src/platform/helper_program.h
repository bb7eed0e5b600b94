#pragma once

#include "platform/status.h"

#include <QString>
#include <QStringList>

class QProcess;

namespace ktr {

/// How a program's window is to come up, where the system lets the one who starts it decide.
enum class ProgramWindow { Normal, Minimised };

/// The path of a program that stands in the program folder or beside the executable, given its name without
/// the system's suffix for programs. Empty when there is none, or none that may be executed.
QString findHelper(const QString &programFolder, const QString &name);

/// Starts a program that goes on without being waited for.
Status startProgram(const QString &path, const QStringList &arguments = {},
                    ProgramWindow window = ProgramWindow::Normal);

/// Lets a process that is about to be started have none of this program's descriptors but its own three, so
/// that ports and locks are free when this program ends before it.
void standApart(QProcess &process);
/// Kills such a process, with those that it started where the system can tell.
void killWithItsOwn(QProcess &process);

} // namespace ktr

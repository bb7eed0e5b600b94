#include "platform/instances.h"

#include <windows.h>

namespace ktr {

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

#include "platform/instances.h"

#include <windows.h>

namespace ktr {

QString privateSocketName(const QString &name)
{
    return name; // a pipe, and no file
}

void allowToFront(qint64 processId)
{
    ::AllowSetForegroundWindow(static_cast<DWORD>(processId));
}

} // namespace ktr

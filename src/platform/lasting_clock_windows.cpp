#include "platform/lasting_clock.h"

#include <windows.h>

namespace ktr {

Milliseconds lastingTime()
{
    return Milliseconds(GetTickCount64());
}

} // namespace ktr

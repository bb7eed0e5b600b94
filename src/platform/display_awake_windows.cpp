#include "platform/display_awake.h"

#include <windows.h>

namespace ktr {

void setDisplayAwake(bool isAwake)
{
    SetThreadExecutionState(isAwake ? ES_CONTINUOUS | ES_DISPLAY_REQUIRED | ES_SYSTEM_REQUIRED
                                    : ES_CONTINUOUS);
}

} // namespace ktr

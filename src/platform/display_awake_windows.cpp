#include "platform/display_awake.h"

#include <windows.h>

namespace ktr {

DisplayAwake::DisplayAwake()
{
    SetThreadExecutionState(ES_CONTINUOUS | ES_DISPLAY_REQUIRED | ES_SYSTEM_REQUIRED);
}

DisplayAwake::~DisplayAwake()
{
    SetThreadExecutionState(ES_CONTINUOUS);
}

} // namespace ktr

#include "platform/callback_timers.h"

namespace ktr {

std::unique_ptr<CallbackTimers> systemCallbackTimers(Timers &timers)
{
    return std::make_unique<QueuedCallbackTimers>(timers);
}

} // namespace ktr

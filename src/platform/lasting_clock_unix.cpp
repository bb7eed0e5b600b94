#include "platform/lasting_clock.h"

#include <ctime>

namespace ktr {

Milliseconds lastingTime()
{
#ifdef CLOCK_BOOTTIME
    constexpr clockid_t clock = CLOCK_BOOTTIME;
#else
    constexpr clockid_t clock = CLOCK_MONOTONIC;
#endif
    timespec time{};
    clock_gettime(clock, &time);
    return std::chrono::duration_cast<Milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                    std::chrono::nanoseconds(time.tv_nsec));
}

} // namespace ktr

#include "platform/exclusive_port.h"

#include <sys/resource.h>

namespace ktr {

void claimPortExclusively(SocketHandle) {}

void raiseDescriptorLimit()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

bool leavesDescriptors(SocketHandle socket, quint64 count)
{
    // A new descriptor is the lowest that is free: all below are in use.
    rlimit limit{};
    return ::getrlimit(RLIMIT_NOFILE, &limit) != 0 || static_cast<quint64>(socket) + count < limit.rlim_cur;
}

} // namespace ktr

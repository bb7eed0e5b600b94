#include "platform/exclusive_port.h"

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/resource.h>
#endif

namespace ktr {

void claimPortExclusively([[maybe_unused]] SocketHandle socket)
{
#ifdef Q_OS_WIN
    const BOOL exclusive = TRUE;
    ::setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char *>(&exclusive),
                 sizeof exclusive);
#endif
}

void raiseDescriptorLimit()
{
#ifndef Q_OS_WIN
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
#endif
}

bool leavesDescriptors([[maybe_unused]] SocketHandle socket, [[maybe_unused]] quint64 count)
{
#ifdef Q_OS_WIN
    return true; // only memory bounds them
#else
    // A new descriptor is the lowest that is free: all below are in use.
    rlimit limit{};
    return ::getrlimit(RLIMIT_NOFILE, &limit) != 0 || static_cast<quint64>(socket) + count < limit.rlim_cur;
#endif
}

} // namespace ktr

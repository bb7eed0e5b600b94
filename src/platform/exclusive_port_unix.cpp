#include "platform/exclusive_port.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>

#ifdef SO_MEMINFO
#include <array>
#include <linux/sock_diag.h>
#endif

namespace ktr {

void claimPortExclusively(SocketHandle) {}

void setReceiveBuffer(SocketHandle socket, int bytes)
{
#ifdef SO_RCVBUFFORCE
    if (::setsockopt(socket, SOL_SOCKET, SO_RCVBUFFORCE, &bytes, sizeof bytes) == 0) {
        return;
    }
#endif
    ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &bytes, sizeof bytes);
}

std::optional<quint32> droppedDatagrams([[maybe_unused]] SocketHandle socket)
{
#ifdef SO_MEMINFO
    std::array<quint32, SK_MEMINFO_VARS> values{};
    socklen_t size = sizeof values;
    if (::getsockopt(socket, SOL_SOCKET, SO_MEMINFO, values.data(), &size) == 0 && size == sizeof values) {
        return values[SK_MEMINFO_DROPS];
    }
#endif
    return std::nullopt;
}

std::optional<SocketHandle> duplicateSocket(SocketHandle socket)
{
    const int duplicate = ::fcntl(socket, F_DUPFD_CLOEXEC, 0);
    return duplicate >= 0 ? std::optional(duplicate) : std::nullopt;
}

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

#include "platform/exclusive_port.h"

#include <array>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <vector>

#ifdef SO_MEMINFO
#include <linux/sock_diag.h>
#endif
#ifdef SO_ATTACH_FILTER
#include <linux/filter.h>
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

bool admitOnlyFrom([[maybe_unused]] SocketHandle socket,
                   [[maybe_unused]] std::span<const unsigned char> address)
{
#ifdef SO_ATTACH_FILTER
    const bool isV4 = address.size() == 4;
    const auto header = static_cast<quint32>(SKF_NET_OFF);
    // A program for the system: the version in the header's first byte, then the sender word by word. What
    // differs goes on at the last line.
    std::vector<sock_filter> program = {
        {BPF_LD | BPF_B | BPF_ABS, 0, 0, header},
        {BPF_ALU | BPF_RSH | BPF_K, 0, 0, 4},
    };
    const auto linesLeft = static_cast<quint8>(address.size() / 4 * 2 + 1);
    program.push_back({BPF_JMP | BPF_JEQ | BPF_K, 0, linesLeft, isV4 ? 4U : 6U});
    const quint32 sender = isV4 ? 12 : 8;
    for (std::size_t at = 0; at + 4 <= address.size(); at += 4) {
        const quint32 word = quint32{address[at]} << 24U | quint32{address[at + 1]} << 16U |
                             quint32{address[at + 2]} << 8U | address[at + 3];
        program.push_back({BPF_LD | BPF_W | BPF_ABS, 0, 0, header + sender + static_cast<quint32>(at)});
        program.push_back(
            {BPF_JMP | BPF_JEQ | BPF_K, 0, static_cast<quint8>(linesLeft - at / 4 * 2 - 2), word});
    }
    program.push_back({BPF_RET | BPF_K, 0, 0, 0xFFFFFFFF});
    program.push_back({BPF_RET | BPF_K, 0, 0, 0});
    const sock_fprog whole{static_cast<unsigned short>(program.size()), program.data()};
    return ::setsockopt(socket, SOL_SOCKET, SO_ATTACH_FILTER, &whole, sizeof whole) == 0;
#else
    return false;
#endif
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

bool areDescriptorsScarce(SocketHandle socket)
{
    rlimit limit{};
    return ::getrlimit(RLIMIT_NOFILE, &limit) == 0 && static_cast<quint64>(socket) > limit.rlim_cur / 2;
}

} // namespace ktr

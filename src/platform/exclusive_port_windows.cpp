#include "platform/exclusive_port.h"

#include <winsock2.h>

namespace ktr {

void claimPortExclusively(SocketHandle socket)
{
    const BOOL exclusive = TRUE;
    ::setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char *>(&exclusive),
                 sizeof exclusive);
}

void setReceiveBuffer(SocketHandle socket, int bytes)
{
    ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, reinterpret_cast<const char *>(&bytes), sizeof bytes);
}

bool admitOnlyFrom(SocketHandle, std::span<const unsigned char>)
{
    return false;
}

std::optional<quint32> droppedDatagrams(SocketHandle)
{
    return std::nullopt;
}

std::optional<SocketHandle> duplicateSocket(SocketHandle socket)
{
    WSAPROTOCOL_INFOW information{};
    if (::WSADuplicateSocketW(socket, ::GetCurrentProcessId(), &information) != 0) {
        return std::nullopt;
    }
    const SOCKET duplicate = ::WSASocketW(FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO, FROM_PROTOCOL_INFO,
                                          &information, 0, WSA_FLAG_OVERLAPPED);
    return duplicate != INVALID_SOCKET ? std::optional<SocketHandle>(duplicate) : std::nullopt;
}

void raiseDescriptorLimit() {}

bool leavesDescriptors(SocketHandle, quint64)
{
    return true; // only memory bounds them
}

bool areDescriptorsScarce(SocketHandle)
{
    return false;
}

} // namespace ktr

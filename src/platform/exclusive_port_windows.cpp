#include "platform/exclusive_port.h"

#include <winsock2.h>

namespace ktr {

void claimPortExclusively(SocketHandle socket)
{
    const BOOL exclusive = TRUE;
    ::setsockopt(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, reinterpret_cast<const char *>(&exclusive),
                 sizeof exclusive);
}

std::optional<quint32> droppedDatagrams(SocketHandle)
{
    return std::nullopt;
}

void raiseDescriptorLimit() {}

bool leavesDescriptors(SocketHandle, quint64)
{
    return true; // only memory bounds them
}

} // namespace ktr

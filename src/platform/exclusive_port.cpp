#include "platform/exclusive_port.h"

#ifdef Q_OS_WIN
#include <winsock2.h>
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

} // namespace ktr

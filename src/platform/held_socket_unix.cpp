#include "platform/held_socket.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ktr {

void HeldSocket::hold(int descriptor)
{
    release();
    if (descriptor >= 0) {
        m_descriptor = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    }
}

void HeldSocket::release()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
        m_descriptor = -1;
    }
}

void HeldSocket::end() const
{
    if (m_descriptor >= 0) {
        (void)::shutdown(m_descriptor, SHUT_RDWR);
    }
}

} // namespace ktr

#include "platform/held_socket.h"

namespace ktr {

void HeldSocket::hold(int) {}

void HeldSocket::release() {}

void HeldSocket::end() const {}

} // namespace ktr

#pragma once

#include <QtGlobal>

namespace ktr {

#ifdef Q_OS_WIN
using SocketHandle = quintptr;
#else
using SocketHandle = int;
#endif

/// Keeps other programs from sharing the port that a socket is going to be bound to. Systems that share
/// ports only when both ask for it need nothing done.
void claimPortExclusively(SocketHandle socket);

} // namespace ktr

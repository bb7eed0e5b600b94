#pragma once

#include <QtGlobal>

#include <optional>
#include <span>

namespace ktr {

#ifdef Q_OS_WIN
using SocketHandle = quintptr;
#else
using SocketHandle = int;
#endif

/// Keeps other programs from sharing the port that a socket is going to be bound to. Systems that share
/// ports only when both ask for it need nothing done.
void claimPortExclusively(SocketHandle socket);

/// Gives a socket a buffer of so many bytes for what arrives: beyond what the system allows everybody where
/// this process may, otherwise as far as that goes.
void setReceiveBuffer(SocketHandle socket, int bytes);

/// From now on the system drops at a socket what does not come from this address, of 4 bytes or 16, before it
/// takes any of the buffer's room; droppedDatagrams() counts that, too. False where the system cannot do it.
bool admitOnlyFrom(SocketHandle socket, std::span<const unsigned char> address);

/// How many datagrams the system has dropped at a socket so far, because its buffer was full or else; it goes
/// on from 0 after its largest value. Nothing where the system does not tell.
std::optional<quint32> droppedDatagrams(SocketHandle socket);

/// Another handle of the same socket; nothing when the system has none left.
std::optional<SocketHandle> duplicateSocket(SocketHandle socket);

/// Lets the process have as many sockets and files as the system allows it; to be called at its start.
void raiseDescriptorLimit();

/// Whether so many more sockets or files can be opened beside a socket that was just opened.
bool leavesDescriptors(SocketHandle socket, quint64 count);

/// Whether more than half of the sockets and files that the process may have are open, as a socket that was
/// just opened tells.
bool areDescriptorsScarce(SocketHandle socket);

} // namespace ktr

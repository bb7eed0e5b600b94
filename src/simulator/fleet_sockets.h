#pragma once

#include "platform/status.h"

#include <QByteArray>

#include <functional>
#include <memory>

namespace ktr {

class IoThread;

/// The UDP sockets of many modules, all behind the I/O thread. Each answers whoever spoke to it last, at the
/// port after the one that it was spoken to from.
class FleetSockets
{
public:
    /// Where a datagram came from.
    struct Program
    {
        quint32 address = 0; ///< IPv4, 127.0.0.1 as 0x7f000001
        quint16 port = 0;
        bool operator==(const Program &) const = default;
    };
    using Received =
        std::function<void(std::size_t socket, const QByteArray &datagram, const Program &program)>;

    /// `received` is called on the thread that made this object. Raises the limit of descriptors.
    FleetSockets(IoThread &io, Received received);
    ~FleetSockets();
    Q_DISABLE_COPY_MOVE(FleetSockets)

    /// Opens one more socket at an address and port of this machine; port 0 takes any that is free. Sockets
    /// count from 0.
    Status open(const QString &address, quint16 port);
    /// Begins to hear; no socket is opened after that.
    void start();
    /// Nothing is sent to a program that was not heard.
    void send(std::size_t socket, const QByteArray &datagram);

    quint16 port(std::size_t socket) const;

private:
    class Shared;
    std::shared_ptr<Shared> m_shared;
    IoThread &m_io;
};

} // namespace ktr

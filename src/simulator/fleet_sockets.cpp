#include "simulator/fleet_sockets.h"

#include "link/io_thread.h"
#include "platform/exclusive_port.h"

#include <QObject>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <asio/post.hpp>

#include <deque>
#include <mutex>
#include <utility>

namespace ktr {

using asio::ip::udp;

namespace {

constexpr int datagramsInARow = 64;

struct Datagram
{
    std::size_t socket;
    QByteArray bytes;
    FleetSockets::Program from{};
};

/// What one thread hands over to another; the receiver is called once for all that waits.
class Handover
{
public:
    /// Whether the other thread must be called.
    bool add(Datagram datagram)
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(datagram));
        return m_waiting.size() == 1;
    }
    std::vector<Datagram> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_waiting, {});
    }

private:
    std::mutex m_mutex;
    std::vector<Datagram> m_waiting;
};

} // namespace

/// Sockets belong to the I/O thread from start() on; the receiver to the thread that made it.
class FleetSockets::Shared : public std::enable_shared_from_this<Shared>
{
public:
    Shared(asio::io_context &context, Received received) : m_context(context), m_received(std::move(received))
    {}

    Status open(const QString &address, quint16 port)
    {
        asio::error_code error;
        const asio::ip::address_v4 local = asio::ip::make_address_v4(address.toStdString(), error);
        Socket opened{udp::socket(m_context), {}};
        if (!error) {
            opened.socket.open(udp::v4(), error);
        }
        if (!error) {
            claimPortExclusively(opened.socket.native_handle());
            opened.socket.bind({local, port}, error);
        }
        if (!error) {
            opened.socket.non_blocking(true, error);
        }
        if (error) {
            return Status::failed(QStringLiteral("%1:%2: %3")
                                      .arg(address)
                                      .arg(port)
                                      .arg(QString::fromStdString(error.message())));
        }
        m_sockets.push_back(std::move(opened));
        return Status::done();
    }

    void start()
    {
        for (std::size_t i = 0; i < m_sockets.size(); ++i) {
            wait(i);
        }
    }

    void close()
    {
        for (Socket &each : m_sockets) {
            asio::error_code ignored;
            each.socket.close(ignored);
        }
    }

    void send(std::size_t socket, const QByteArray &bytes)
    {
        if (m_out.add({socket, bytes})) {
            asio::post(m_context, [self = shared_from_this()] { self->transmit(); });
        }
    }

    quint16 port(std::size_t socket) const { return m_sockets[socket].socket.local_endpoint().port(); }

private:
    struct Socket
    {
        udp::socket socket;
        udp::endpoint program; ///< where it is answered; port 0 before it was heard
    };

    void wait(std::size_t index)
    {
        m_sockets[index].socket.async_wait(udp::socket::wait_read,
                                           [self = shared_from_this(), index](const asio::error_code &error) {
                                               if (!error) {
                                                   self->read(index);
                                                   self->wait(index);
                                               }
                                           });
    }

    void read(std::size_t index)
    {
        Socket &from = m_sockets[index];
        for (int i = 0; i < datagramsInARow; ++i) { // others have their turn too; the next wait ends at once
            udp::endpoint sender;
            asio::error_code error;
            const std::size_t count = from.socket.receive_from(asio::buffer(m_input), sender, 0, error);
            if (error == asio::error::would_block || error == asio::error::try_again ||
                error == asio::error::bad_descriptor) {
                return;
            }
            if (error) {
                continue; // what was sent before had nobody to reach
            }
            from.program = {sender.address(), static_cast<quint16>(sender.port() + 1)};
            const Program program{sender.address().to_v4().to_uint(), sender.port()};
            if (m_in.add({index, QByteArray(m_input.data(), qsizetype(count)), program})) {
                QMetaObject::invokeMethod(
                    &m_receiver, [this] { deliver(); }, Qt::QueuedConnection);
            }
        }
    }

    void deliver()
    {
        for (const Datagram &each : m_in.take()) {
            m_received(each.socket, each.bytes, each.from);
        }
    }

    void transmit()
    {
        for (const Datagram &each : m_out.take()) {
            Socket &to = m_sockets[each.socket];
            if (to.program.port() != 0) {
                asio::error_code lost; // like any other datagram
                to.socket.send_to(asio::buffer(each.bytes.constData(), std::size_t(each.bytes.size())),
                                  to.program, 0, lost);
            }
        }
    }

    asio::io_context &m_context;
    Received m_received;
    QObject m_receiver;
    std::vector<Socket> m_sockets;
    std::array<char, 65'536> m_input;
    Handover m_in;
    Handover m_out;
};

FleetSockets::FleetSockets(IoThread &io, Received received)
    : m_shared(std::make_shared<Shared>(io.context(), std::move(received))), m_io(io)
{
    raiseDescriptorLimit();
}

FleetSockets::~FleetSockets()
{
    m_io.run([this] { m_shared->close(); });
    m_io.run([] {}); // the waits that were broken off have let go
}

Status FleetSockets::open(const QString &address, quint16 port)
{
    return m_shared->open(address, port);
}

void FleetSockets::start()
{
    m_io.run([this] { m_shared->start(); });
}

void FleetSockets::send(std::size_t socket, const QByteArray &datagram)
{
    m_shared->send(socket, datagram);
}

quint16 FleetSockets::port(std::size_t socket) const
{
    return m_shared->port(socket);
}

} // namespace ktr

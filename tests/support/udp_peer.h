#pragma once

#include <QByteArray>
#include <QTest>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>

#include <array>

namespace ktr::test {

/// A socket of somebody else, at any free port unless one is named.
class Peer
{
public:
    explicit Peer(const char *address, quint16 port = 0)
        : m_socket(m_context, asio::ip::udp::endpoint(asio::ip::make_address(address), port))
    {
        m_socket.non_blocking(true);
    }

    quint16 port() const { return m_socket.local_endpoint().port(); }
    void send(const QByteArray &bytes, quint16 port, const char *address = "127.0.0.1")
    {
        m_socket.send_to(asio::buffer(bytes.constData(), std::size_t(bytes.size())),
                         {asio::ip::make_address(address), port});
    }
    /// Waits for a datagram; empty when none comes.
    QByteArray await()
    {
        QByteArray datagram;
        const bool came = QTest::qWaitFor([&] { return !(datagram = receive()).isEmpty(); }, 60000);
        return came ? datagram : QByteArray();
    }
    auto handle() { return m_socket.native_handle(); }
    quint16 senderPort() const { return m_sender.port(); }
    asio::ip::address senderAddress() const { return m_sender.address(); }

private:
    QByteArray receive()
    {
        std::array<char, 65536> input;
        asio::error_code error;
        const std::size_t count = m_socket.receive_from(asio::buffer(input), m_sender, 0, error);
        return error ? QByteArray() : QByteArray(input.data(), qsizetype(count));
    }

    asio::io_context m_context;
    asio::ip::udp::socket m_socket;
    asio::ip::udp::endpoint m_sender;
};

/// Whether what is sent from one of this machine's loopback addresses comes from it; Wine gives all of them
/// the same.
inline bool loopbackAddressesDiffer()
{
    const auto address = asio::ip::make_address("127.0.0.2");
    Peer from("127.0.0.2");
    Peer to("127.0.0.1");
    from.send("x", to.port());
    return to.await() == "x" && to.senderAddress() == address;
}

} // namespace ktr::test

#pragma once

#include "link/io_thread.h"
#include "link/transport.h"
#include "link/udp_pair.h"

#include <atomic>

namespace ktr {

/// A line to one module over a pair of UDP ports.
class UdpTransport : public Transport
{
    Q_OBJECT

public:
    static constexpr quint16 modulePort = UdpPair::modulePort;

    explicit UdpTransport(IoThread &io, QObject *parent = nullptr, PortRange ports = {});
    ~UdpTransport() override;

    /// Opens a pair for "host", "host:port" or "[host]:port", where the host is an IPv4 or IPv6 address or a
    /// name. A name is looked up meanwhile, and what is sent waits for that; one that is unknown, or not
    /// found within 2 s, is told by lost(). Fails at once when the address is none or no pair is free.
    Status open(const QString &address) override;
    void close() override;
    bool isOpen() const override { return m_pair.isOpen(); }
    /// Sends one datagram.
    void send(const QByteArray &bytes) override;
    /// Calls back once all datagrams are with the system.
    void whenDrained(std::function<void()> drained) override;

    /// The even port of the pair, 0 while closed.
    quint16 sendPort() const { return m_pair.sendPort(); }

    /// Datagrams dropped because they came from elsewhere.
    qint64 foreignDatagrams() const { return m_foreign; }

private:
    void notify(std::function<void()> message);

    UdpPair m_pair;
    quint64 m_connection = 0;      ///< counts what was opened and closed
    bool m_isLossReported = false; ///< on the I/O thread while open
    std::atomic<qint64> m_foreign = 0;
};

} // namespace ktr

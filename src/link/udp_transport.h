#pragma once

#include "link/io_thread.h"
#include "link/transport.h"

#include <atomic>
#include <memory>

namespace ktr {

/// The ports that pairs are taken from: below the system's own range, which runs out of free neighbours, and
/// enough for the stations of the largest systems.
struct PortRange
{
    quint16 first = 12'000;
    quint16 last = 32'767;
};

/// A pair of UDP ports to one module: it sends from an even port and receives on the next one, where the
/// module answers. Only datagrams from the address that it was opened for are taken, whatever port they
/// come from.
class UdpTransport : public Transport
{
    Q_OBJECT

public:
    static constexpr quint16 modulePort = 49111;

    /// The message of open() when no pair of ports is free.
    static QString portInUse();

    explicit UdpTransport(IoThread &io, QObject *parent = nullptr, PortRange ports = {});
    ~UdpTransport() override;

    /// Opens a pair for "host", "host:port" or "[host]:port", where the host is an IPv4 or IPv6 address or a
    /// name. A name is looked up meanwhile, and what is sent waits for that; one that is unknown, or not
    /// found within 2 s, is told by lost(). Fails at once when the address is none or no pair is free.
    Status open(const QString &address) override;
    void close() override;
    bool isOpen() const override { return m_pair != nullptr; }
    /// Sends one datagram.
    void send(const QByteArray &bytes) override;
    /// Calls back once all datagrams are with the system.
    void whenDrained(std::function<void()> drained) override;

    /// The even port of the pair, 0 while closed.
    quint16 sendPort() const { return m_sendPort; }

    /// Datagrams dropped because they came from elsewhere, and those that could not be sent.
    qint64 foreignDatagrams() const { return m_foreign; }
    qint64 unsentDatagrams() const { return m_unsent; }

private:
    class Pair;

    IoThread &m_io;
    PortRange m_ports;
    std::shared_ptr<Pair> m_pair;
    quint16 m_sendPort = 0;
    std::atomic<qint64> m_foreign = 0;
    std::atomic<qint64> m_unsent = 0;
};

} // namespace ktr

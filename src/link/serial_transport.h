#pragma once

#include "link/io_thread.h"
#include "link/transport.h"

#include <memory>

namespace ktr {

/// A serial port: 9600 baud, 8 data bits, no parity, one stop bit, for this program alone.
class SerialTransport : public Transport
{
    Q_OBJECT

public:
    explicit SerialTransport(IoThread &io, QObject *parent = nullptr);
    ~SerialTransport() override;

    Status open(const QString &address) override;
    void close() override;
    bool isOpen() const override { return m_port != nullptr; }
    void send(const QByteArray &bytes) override;
    void whenDrained(std::function<void()> drained) override;

private:
    class Port;

    IoThread &m_io;
    std::shared_ptr<Port> m_port;
};

} // namespace ktr

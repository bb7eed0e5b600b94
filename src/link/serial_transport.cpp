#include "link/serial_transport.h"

#include "platform/serial_device.h"

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/serial_port.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include <array>
#include <vector>

namespace ktr {

/// The part of a port that lives on the I/O thread. Everything below but the constructor runs there.
class SerialTransport::Port : public std::enable_shared_from_this<Port>
{
public:
    Port(asio::io_context &context, SerialTransport &transport, SerialHandle handle)
        : m_port(context), m_poll(context), m_transport(&transport)
    {
        m_port.assign(handle);
    }

    void read()
    {
        m_port.async_read_some(asio::buffer(m_input), [self = shared_from_this()](
                                                          const asio::error_code &error, std::size_t count) {
            if (error) {
                self->fail(error);
                return;
            }
            self->notify([bytes = QByteArray(self->m_input.data(), qsizetype(count))](
                             SerialTransport &transport) { Q_EMIT transport.received(bytes); });
            self->read();
        });
    }

    void write(const QByteArray &bytes)
    {
        if (m_transport == nullptr) {
            return;
        }
        m_waiting += bytes;
        m_left = false;
        if (m_writing.isEmpty()) {
            writeNext();
        }
    }

    void whenDrained(std::function<void()> drained)
    {
        m_drained.push_back(std::move(drained));
        checkDrained();
    }

    void close()
    {
        m_transport = nullptr; // no more signals
        releaseSerialDevice(m_port.native_handle());
        asio::error_code ignored;
        m_port.close(ignored);
        m_poll.cancel();
    }

private:
    void writeNext()
    {
        m_writing = std::exchange(m_waiting, QByteArray());
        asio::async_write(m_port, asio::buffer(m_writing.constData(), std::size_t(m_writing.size())),
                          [self = shared_from_this()](const asio::error_code &error, std::size_t) {
                              self->m_writing.clear();
                              self->m_left = !error && bytesNotYetSent(self->m_port.native_handle()) == 0;
                              if (error) {
                                  self->fail(error);
                              } else if (!self->m_waiting.isEmpty()) {
                                  self->writeNext();
                              } else {
                                  self->checkDrained();
                              }
                          });
    }

    /// The system keeps what was written in a queue that empties at the line's speed.
    void checkDrained()
    {
        if (m_drained.empty() || !m_writing.isEmpty() || m_transport == nullptr) {
            return;
        }
        m_left = m_left || bytesNotYetSent(m_port.native_handle()) == 0;
        if (m_left) {
            for (auto &drained : std::exchange(m_drained, {})) {
                notify([drained = std::move(drained)](SerialTransport &) { drained(); });
            }
            return;
        }
        m_poll.expires_after(std::chrono::milliseconds(2));
        m_poll.async_wait([self = shared_from_this()](const asio::error_code &error) {
            if (!error) {
                self->checkDrained();
            }
        });
    }

    /// A port that hangs up reports errors endlessly: the first one closes it. The end of an earlier write
    /// may still be queued; it is handled first.
    void fail(const asio::error_code &error)
    {
        asio::post(m_port.get_executor(),
                   [self = shared_from_this(), reason = QString::fromStdString(error.message())] {
                       const bool everythingSent =
                           self->m_left && self->m_writing.isEmpty() && self->m_waiting.isEmpty();
                       self->notify([reason, everythingSent](SerialTransport &transport) {
                           transport.close();
                           Q_EMIT transport.lost(reason, everythingSent);
                       });
                   });
    }

    template <class Message> void notify(Message message)
    {
        if (m_transport != nullptr) {
            QMetaObject::invokeMethod(
                m_transport,
                [self = shared_from_this(), transport = m_transport, message] {
                    if (transport->m_port == self) { // not closed meanwhile
                        message(*transport);
                    }
                },
                Qt::QueuedConnection);
        }
    }

    asio::serial_port m_port;
    asio::steady_timer m_poll;
    SerialTransport *m_transport;
    std::array<char, 4096> m_input{};
    QByteArray m_waiting;
    QByteArray m_writing;
    std::vector<std::function<void()>> m_drained;
    bool m_left = true; ///< all that was written has left the machine
};

SerialTransport::SerialTransport(IoThread &io, QObject *parent) : Transport(parent), m_io(io) {}

SerialTransport::~SerialTransport()
{
    SerialTransport::close();
}

Status SerialTransport::open(const QString &address)
{
    close();
    SerialHandle handle{};
    if (Status opened = openSerialDevice(address, handle); !opened) {
        return opened;
    }
    m_port = std::make_shared<Port>(m_io.context(), *this, handle);
    asio::post(m_io.context(), [port = m_port] { port->read(); });
    return Status::done();
}

void SerialTransport::close()
{
    if (m_port != nullptr) {
        // Nothing may reach a transport that is being destroyed.
        m_io.run([port = std::exchange(m_port, nullptr)] { port->close(); });
    }
}

void SerialTransport::send(const QByteArray &bytes)
{
    if (m_port != nullptr) {
        asio::post(m_io.context(), [port = m_port, bytes] { port->write(bytes); });
    }
}

void SerialTransport::whenDrained(std::function<void()> drained)
{
    if (m_port != nullptr) {
        asio::post(m_io.context(), [port = m_port, drained = std::move(drained)]() mutable {
            port->whenDrained(std::move(drained));
        });
    }
}

} // namespace ktr

#pragma once

#include "platform/status.h"

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

namespace ktr {

class IoThread;

/// An address and a port to listen at.
struct ListenAddress
{
    QString address = QStringLiteral("127.0.0.1");
    quint16 port = 0; ///< 0: a free one
};

/// Takes "PORT", "ADDRESS:PORT" or "[ADDRESS]:PORT" apart; an address is of digits.
Status readListenAddress(const QString &text, ListenAddress &address);

/// Answers "GET /metrics" over HTTP. Its sockets live on the I/O thread; the text is made in the event loop
/// of the thread that owns this, for each request, so that nobody is told of a program that hangs that all is
/// well. So many may be connected, each for so long, for a request of so many bytes; what is beyond is cut
/// off.
class MetricsServer
{
public:
    struct Limits
    {
        std::size_t connections = 8;
        std::chrono::milliseconds time{5'000};
    };
    static constexpr std::size_t longestRequest = 8'192;

    /// `io` must outlive it; `text` is called in the event loop.
    MetricsServer(IoThread &io, std::function<QByteArray()> text, Limits limits);
    ~MetricsServer();
    Q_DISABLE_COPY_MOVE(MetricsServer)

    Status listen(const ListenAddress &address);
    quint16 port() const { return m_port; }

private:
    struct Shared;
    struct Connection;

    IoThread &m_io;
    std::shared_ptr<Shared> d; ///< of the I/O thread
    quint16 m_port = 0;
};

} // namespace ktr

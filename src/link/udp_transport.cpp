#include "link/udp_transport.h"

namespace ktr {

UdpTransport::UdpTransport(IoThread &io, QObject *parent, PortRange ports)
    : Transport(parent), m_pair(io, {ports})
{}

UdpTransport::~UdpTransport()
{
    UdpTransport::close();
}

Status UdpTransport::open(const QString &address)
{
    close();
    m_isLossReported = false;
    UdpPairEvents events;
    events.received = [this](QByteArray &&datagram) {
        notify([this, bytes = std::move(datagram)] {
            m_pair.handled(bytes);
            Q_EMIT received(bytes);
        });
    };
    events.foreign = [this] { ++m_foreign; };
    events.lost = [this](const DatagramLoss &loss) {
        if (loss.isOver || !std::exchange(m_isLossReported, true)) {
            notify([this, loss] { Q_EMIT statusMessage(textOf(loss)); });
        }
        m_isLossReported = !loss.isOver;
    };
    events.trouble = [this](const QString &text) { notify([this, text] { Q_EMIT statusMessage(text); }); };
    events.failed = [this](const QString &reason) {
        notify([this, reason] {
            close();
            Q_EMIT lost(reason, false);
        });
    };
    return m_pair.open(address, std::move(events));
}

void UdpTransport::close()
{
    m_pair.close();
    ++m_connection;
}

void UdpTransport::send(const QByteArray &bytes)
{
    m_pair.send(bytes);
}

void UdpTransport::whenDrained(std::function<void()> drained)
{
    m_pair.whenDrained([this, drained = std::move(drained)] { notify(drained); });
}

/// Called on the I/O thread, which has let go of the pair when the connection changes.
void UdpTransport::notify(std::function<void()> message)
{
    QMetaObject::invokeMethod(
        this,
        [this, connection = m_connection, message = std::move(message)] {
            if (connection == m_connection) { // not closed meanwhile
                message();
            }
        },
        Qt::QueuedConnection);
}

} // namespace ktr

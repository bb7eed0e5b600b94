#pragma once

#include "link/datagram_loss.h"
#include "platform/status.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace ktr {

class IoThread;

/// The ports that pairs are taken from: below the system's own range, which runs out of free neighbours, and
/// enough for the stations of the largest systems.
struct PortRange
{
    quint16 first = 12'000;
    quint16 last = 32'767;
};

/// How much is received from one module. A datagram counts as its bytes, and some more for the work with
/// each. What comes beyond that stays with the system, which drops what does not fit its buffer: a module
/// that floods the program costs no more than this.
struct IntakeLimits
{
    static constexpr qint64 ofADatagram = 128;
    static constexpr qint64 shareOfAPair = qint64{32} << 10;

    /// Received as fast as it comes: enough for the longest archive, 20,000 lines, in one go.
    qint64 burst = qint64{4} << 20;
    /// Received after a burst; some 1,400 lines a second.
    qint64 perSecond = qint64{256} << 10;
    /// What the owner has not dealt with yet, of one pair; of all pairs together, shareOfAPair for each
    /// beyond.
    qint64 waiting = qint64{4} << 20;
    qint64 waitingOfAll = qint64{64} << 20;
    /// A loss counts as over when none followed for so long.
    std::chrono::milliseconds quietUntilOver{10'000};
};

struct UdpPairOptions
{
    PortRange ports;
    IntakeLimits intake = {};
    /// Opening fails when fewer would be left for files and the like. With any, a pair that is opened when
    /// more than half of all descriptors are in use has its sending port only while it sends.
    quint64 descriptorsInReserve = 0;
};

/// What happens at a pair of ports. Called on the I/O thread, until the pair is closed.
struct UdpPairEvents
{
    std::function<void(QByteArray &&datagram)> received; ///< the owner calls handled() once it is dealt with
    std::function<void()> foreign;                       ///< a datagram of somebody else was dropped
    /// Datagrams are lost: at the first one, then once a second while it goes on, and when it is over.
    std::function<void(const DatagramLoss &)> lost;
    std::function<void()> sent;                   ///< one datagram has left, or could not; may be empty
    std::function<void(const QString &)> trouble; ///< why datagrams cannot be sent; when that changes
    std::function<void(const QString &)> failed;  ///< the name was not found: the pair is useless
};

/// A pair of UDP ports to one module: it sends from an even port and receives on the next one, where the
/// module answers. Only datagrams from the address that it was opened for are taken, whatever port they
/// come from.
class UdpPair
{
public:
    static constexpr quint16 modulePort = 49111;

    /// What open() gives when no pair of ports is free.
    static Status noPortFree();

    /// Whether open() accepts it; a name is not looked up.
    static bool isAddress(const QString &address);

    explicit UdpPair(IoThread &io, const UdpPairOptions &options = {});
    ~UdpPair();
    Q_DISABLE_COPY_MOVE(UdpPair)

    /// Opens a pair for "host", "host:port" or "[host]:port", where the host is an IPv4 or IPv6 address or a
    /// name. A name is looked up meanwhile, for 2 s at most once it is its turn, and what is sent waits for
    /// that. Fails at once when the address is none or no pair is free.
    Status open(const QString &address, UdpPairEvents events);
    /// Waits until the I/O thread has let go.
    void close();
    bool isOpen() const { return m_pair != nullptr; }
    /// Whether it talks to the address that a name had, which may be another by now.
    bool mayMove() const;
    /// Sends one datagram; nothing happens while closed.
    void send(const QByteArray &bytes);
    /// A datagram that was received is dealt with. Without these calls, receiving stops in the end.
    void handled(const QByteArray &datagram);
    /// Receives, on the I/O thread, all that the system holds for the pair at this moment, despite the
    /// limits, and tells what was lost by now.
    void takeArrived();
    /// Calls back, on the I/O thread, once all datagrams are with the system.
    void whenDrained(std::function<void()> drained);

    /// The even port of the pair, 0 while closed.
    quint16 sendPort() const { return m_sendPort; }

private:
    class Ports;

    IoThread &m_io;
    UdpPairOptions m_options;
    std::shared_ptr<Ports> m_pair;
    quint16 m_sendPort = 0;
    bool m_isNamed = false;
};

} // namespace ktr

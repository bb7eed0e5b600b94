#pragma once

#include "link/datagram_loss.h"
#include "platform/status.h"

namespace ktr {

/// What a station's line tells it.
class StationLineListener
{
public:
    virtual ~StationLineListener() = default;

    /// One datagram of the module.
    virtual void DataArrival(const QByteArray &data) = 0;
    /// A datagram has left the machine.
    virtual void socket_SendComplete() = 0;
    /// Something is wrong with the line, or it was closed for that; told when it changes.
    virtual void lineTrouble(const QString &text) = 0;
    /// Datagrams of the module were dropped: at the first, then now and then while it goes on, and when it is
    /// over.
    virtual void linesLost(const DatagramLoss &loss) = 0;
};

/// What carries datagrams between a station and its module. It tells its listener nothing while the listener
/// calls it.
class StationLine
{
public:
    virtual ~StationLine() = default;

    /// Opens the line to a module at an address or name, "host" or "host:port", anew when it is open.
    virtual Status open(const QString &hostAddress) = 0;
    /// Nothing is told of it any more, not even what came before.
    virtual void close() = 0;
    virtual bool isOpen() const = 0;
    /// Whether it goes to the address that a name had, which may be another by now.
    virtual bool mayMove() const { return false; }
    /// Whether the module may be talked to although it said nothing. Otherwise it is just answered.
    virtual bool mayBegin() const { return true; }
    /// Sends one datagram; nothing happens while closed.
    virtual void send(const QByteArray &datagram) = 0;
    /// Tells at once what has arrived by now, in a flood the first of it.
    virtual void takeArrived() {}

    /// Must outlive the line's last event, or be replaced by nullptr.
    void setListener(StationLineListener *listener) { m_listener = listener; }

protected:
    StationLineListener *m_listener = nullptr;
};

} // namespace ktr

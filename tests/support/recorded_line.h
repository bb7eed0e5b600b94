#pragma once

#include "opmode/station/station_line.h"

#include <QStringList>

namespace ktr::test {

/// A station's line that keeps what is sent and can be made to fail.
struct RecordedLine : StationLine
{
    Status open(const QString &hostAddress) override
    {
        opened += hostAddress;
        isOpened = failure.isEmpty();
        return isOpened ? Status::done() : Status::failed(failure);
    }
    void close() override { isOpened = false; }
    bool isOpen() const override { return isOpened; }
    void send(const QByteArray &datagram) override
    {
        if (isOpened) {
            sent += datagram;
        }
    }

    /// The module says something.
    void say(const QByteArray &datagram) { m_listener->DataArrival(datagram); }
    void lose(const DatagramLoss &loss) { m_listener->linesLost(loss); }
    void takeArrived() override
    {
        for (const QByteArray &datagram : std::exchange(arrived, {})) {
            say(datagram);
        }
    }

    QStringList opened;
    QByteArrayList sent;
    QByteArrayList arrived; ///< not told yet
    QString failure;
    bool isOpened = false;
};

} // namespace ktr::test

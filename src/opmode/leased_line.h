#pragma once

#include "opmode/station/station_line.h"

#include <functional>
#include <memory>

namespace ktr {

/// A station's line that carries nothing, in neither direction, unless this program may talk to the module,
/// or answer it, at that very moment: it may have stood still for longer than its lease.
class LeasedLine : public StationLine, private StationLineListener
{
public:
    struct May
    {
        std::function<bool()> begin;
        std::function<bool()> answer;
    };

    LeasedLine(std::unique_ptr<StationLine> line, May may);

    Status open(const QString &hostAddress) override;
    void close() override { m_line->close(); }
    bool isOpen() const override { return m_line->isOpen(); }
    bool mayMove() const override { return m_line->mayMove(); }
    bool mayBegin() const override { return m_may.begin(); }
    void send(const QByteArray &datagram) override;
    void takeArrived() override { m_line->takeArrived(); }

private:
    void DataArrival(const QByteArray &data) override;
    void socket_SendComplete() override;
    void lineTrouble(const QString &text) override;
    void linesLost(const DatagramLoss &loss) override;

    std::unique_ptr<StationLine> m_line;
    May m_may;
};

} // namespace ktr

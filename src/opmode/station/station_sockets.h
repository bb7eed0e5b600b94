#pragma once

#include "link/udp_pair.h"
#include "opmode/station/station_line.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <deque>
#include <unordered_map>

namespace ktr {

class IoThread;

/// The UDP lines of all stations, each a pair of ports. Their sockets belong to the one I/O thread; what
/// happens at them (a datagram arrived, one was sent, some were lost) is gathered there and told to the
/// stations on the thread that owns this object, which needs an event loop. Stations take turns: when A has a
/// thousand events and B has one, A hears its first, B its only one, and then A the others.
class StationSockets : public QObject
{
    Q_OBJECT

public:
    /// So many events takeArrived() of a line tells at most: more than the system's buffer holds.
    static constexpr int mostAtOnce = 4'096;
    /// File descriptors that stay free for files, look-ups of names and the main window's line.
    static constexpr quint64 descriptorsInReserve = 64;
    /// Telling pauses after this time, so that the window answers; the rest follows from the event loop.
    static constexpr std::chrono::milliseconds longestTurn{15};
    /// When many events come they are fetched from the I/O thread once in this time; when few come, each at
    /// once. Many are `manyEvents` in the last two of these intervals.
    static constexpr std::chrono::milliseconds lookInterval{10};
    static constexpr std::size_t manyEvents = 12;

    /// Raises the process's limit of descriptors.
    explicit StationSockets(IoThread &io, PortRange ports = {}, const IntakeLimits &intake = {});
    ~StationSockets() override; ///< all lines must be gone

    /// A line that is not open yet. Opening it fails when no pair of ports is free, or when too few
    /// descriptors would be left.
    std::unique_ptr<StationLine> createLine();

    /// Datagrams dropped because they came from elsewhere.
    qint64 foreignDatagrams() const;

private:
    class Line;
    struct Event;
    class Batch;

    void deliver();
    std::size_t sortIn();
    bool isMuch(std::size_t events);

    IoThread &m_io;
    UdpPairOptions m_options;
    std::unique_ptr<Batch> m_batch;
    std::deque<Line *> m_turns; ///< lines that have something to tell, the next one first
    QTimer m_nextLook;
    QElapsedTimer m_sinceLook;
    QElapsedTimer m_sinceCount;
    std::size_t m_counted = 0;                  ///< events since then
    std::size_t m_countedBefore = 0;            ///< in the interval before that
    std::unordered_map<quint64, Line *> m_open; ///< each opening of a line has a number of its own
    quint64 m_connections = 0;
    bool m_isFull = false; ///< no pair was free, and none was closed since: looking again takes long
};

} // namespace ktr

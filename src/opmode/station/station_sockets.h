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

/// The lines of all stations, a pair of UDP ports each, on the one I/O thread. What happens at them is handed
/// over in batches on the thread that owns this, which needs an event loop: of each line in its order, of
/// those that have something one event in turn, so that none waits for another's many.
class StationSockets : public QObject
{
    Q_OBJECT

public:
    /// What takeArrived() of a line tells at most: more than the system's buffer holds.
    static constexpr int mostAtOnce = 4'096;
    /// Descriptors that are left for files, look-ups and the main window's line.
    static constexpr quint64 descriptorsInReserve = 64;
    /// So long the owner's thread is kept at a time, an event more at most; the rest is told in its next
    /// turn.
    static constexpr std::chrono::milliseconds longestTurn{15};
    /// While much comes, it is handed over no more often. Much are so many events in the last two of these
    /// times; of less, each event is told at once.
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
    std::deque<Line *> m_turns; ///< that have something to tell
    QTimer m_nextLook;
    QElapsedTimer m_sinceLook;
    QElapsedTimer m_sinceCount;
    std::size_t m_counted = 0;                  ///< events since then
    std::size_t m_countedBefore = 0;            ///< in the interval before that
    std::unordered_map<quint64, Line *> m_open; ///< by the number of the connection
    quint64 m_connections = 0;
    bool m_isFull = false; ///< no pair was free, and none was closed since: looking again takes long
};

} // namespace ktr

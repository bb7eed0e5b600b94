#include "opmode/station_sockets.h"

#include "platform/exclusive_port.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>

namespace ktr {

struct StationSockets::Event
{
    enum class Kind {
        Received,
        Sent,
        Trouble,
        Failed, ///< the line is of no use any more
    };
    quint64 connection;
    Kind kind;
    QByteArray datagram;
    QString text;
};

/// What happened since the owner's thread last looked. Filled by the I/O thread.
class StationSockets::Batch
{
public:
    explicit Batch(StationSockets &sockets) : m_sockets(sockets) {}

    void add(Event event)
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(std::move(event));
        if (!std::exchange(m_ownerLooks, true)) {
            QMetaObject::invokeMethod(
                &m_sockets, [this] { m_sockets.deliver(); }, Qt::QueuedConnection);
        }
    }

    std::vector<Event> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_events, {});
    }

    /// The owner is called for what comes from now on. False, and nothing is changed, when something came.
    bool stopLooking()
    {
        const std::lock_guard lock(m_mutex);
        m_ownerLooks = !m_events.empty();
        return !m_ownerLooks;
    }

    std::atomic<qint64> foreign = 0;
    std::atomic<qint64> unsent = 0;

private:
    StationSockets &m_sockets;
    std::mutex m_mutex;
    std::vector<Event> m_events;
    bool m_ownerLooks = false; ///< by itself, or it is called
};

class StationSockets::Line : public StationLine
{
public:
    explicit Line(StationSockets &sockets) : m_sockets(sockets), m_pair(sockets.m_io, sockets.m_options) {}
    ~Line() override { Line::close(); }
    Q_DISABLE_COPY_MOVE(Line)

    Status open(const QString &hostAddress) override;
    void close() override;
    bool isOpen() const override { return m_pair.isOpen(); }
    bool mayMove() const override { return m_pair.mayMove(); }
    void send(const QByteArray &datagram) override { m_pair.send(datagram); }

    void handOver(const Event &event);

private:
    StationSockets &m_sockets;
    UdpPair m_pair;
    quint64 m_connection = 0;
};

Status StationSockets::Line::open(const QString &hostAddress)
{
    close();
    if (m_sockets.m_isFull) {
        return Status::failed(UdpPair::portInUse());
    }
    const quint64 connection = ++m_sockets.m_connections;
    Batch *batch = m_sockets.m_batch.get(); // outlives the pair
    UdpPairEvents events;
    events.received = [batch, connection](QByteArray &&datagram) {
        batch->add({connection, Event::Kind::Received, std::move(datagram), {}});
    };
    events.dropped = [batch] { ++batch->foreign; };
    events.sent = [batch, connection](bool done) {
        batch->unsent += done ? 0 : 1;
        batch->add({connection, Event::Kind::Sent, {}, {}});
    };
    events.trouble = [batch, connection](const QString &text) {
        batch->add({connection, Event::Kind::Trouble, {}, text});
    };
    events.failed = [batch, connection](const QString &text) {
        batch->add({connection, Event::Kind::Failed, {}, text});
    };
    Status opened = m_pair.open(hostAddress, std::move(events));
    if (opened) {
        m_connection = connection;
        m_sockets.m_open.emplace(connection, this);
    } else {
        m_sockets.m_isFull = opened.message() == UdpPair::portInUse();
    }
    return opened;
}

void StationSockets::Line::close()
{
    if (m_pair.isOpen()) {
        m_pair.close();
        m_sockets.m_open.erase(m_connection);
        m_sockets.m_isFull = false;
    }
}

void StationSockets::Line::handOver(const Event &event)
{
    if (event.kind == Event::Kind::Failed) {
        close();
    }
    if (m_listener == nullptr) {
        return;
    }
    switch (event.kind) {
    case Event::Kind::Received:
        m_listener->DataArrival(event.datagram);
        break;
    case Event::Kind::Sent:
        m_listener->socket_SendComplete();
        break;
    case Event::Kind::Trouble:
    case Event::Kind::Failed:
        m_listener->lineTrouble(event.text);
        break;
    }
}

StationSockets::StationSockets(IoThread &io, PortRange ports, QObject *parent)
    : QObject(parent),
      m_io(io),
      m_options{ports, lookupsAtOnce, descriptorsInReserve},
      m_batch(std::make_unique<Batch>(*this))
{
    m_nextLook.setSingleShot(true);
    m_nextLook.callOnTimeout(this, &StationSockets::deliver);
    raiseDescriptorLimit();
}

StationSockets::~StationSockets() = default;

std::unique_ptr<StationLine> StationSockets::createLine()
{
    return std::make_unique<Line>(*this);
}

qint64 StationSockets::foreignDatagrams() const
{
    return m_batch->foreign;
}

qint64 StationSockets::unsentDatagrams() const
{
    return m_batch->unsent;
}

bool StationSockets::isMuch(std::size_t events)
{
    const qint64 elapsed = m_sinceCount.isValid() ? m_sinceCount.elapsed() : 2 * lookInterval.count();
    if (elapsed >= lookInterval.count()) {
        m_countedBefore = elapsed < 2 * lookInterval.count() ? m_counted : 0;
        m_counted = 0;
        m_sinceCount.start();
    }
    m_counted += events;
    return m_countedBefore + m_counted >= manyEvents;
}

void StationSockets::deliver()
{
    // While much comes, it is looked for now and then: to be called for each datagram costs more than the
    // datagram itself.
    m_sinceLook.start();
    m_nextLook.start(lookInterval); // where a listener asks the user something, the rest is told from there
    std::vector<Event> events = m_batch->take();
    const bool isBusy = isMuch(events.size());
    std::ranges::move(events, std::back_inserter(m_waiting));
    const bool isQuiet = m_waiting.empty();
    while (!m_waiting.empty()) {
        const Event event = std::move(m_waiting.front());
        m_waiting.pop_front();
        // A connection that was closed meanwhile, perhaps by an event before, is told nothing.
        if (const auto line = m_open.find(event.connection); line != m_open.end()) {
            line->second->handOver(event);
        }
        if (m_sinceLook.elapsed() >= longestTurn.count() && !m_waiting.empty()) {
            m_nextLook.start(0); // a timer, since posted events would go in front of the user's
            return;
        }
    }
    if ((isQuiet || !isBusy) && m_batch->stopLooking()) {
        m_nextLook.stop();
    }
}

} // namespace ktr

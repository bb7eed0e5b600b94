#include "opmode/station/station_sockets.h"

#include "platform/exclusive_port.h"
#include "platform/overloaded.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <variant>

namespace ktr {

namespace {

constexpr qsizetype keptCapacity = 64;

} // namespace

struct StationSockets::Event
{
    struct Sent
    {};
    struct Trouble
    {
        QString text;
    };
    struct Failed ///< the line is of no use any more
    {
        QString text;
    };
    quint64 connection;
    std::variant<QByteArray, Sent, Trouble, Failed, DatagramLoss> what; ///< a datagram, or ...
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

    void takeArrived() override;

    void await(Event &&event);
    /// Tells the oldest event, when there is one, and queues up again for the next. The line may be gone
    /// after it.
    void takeTurn();

private:
    void tellNext();
    void queueUp();

    StationSockets &m_sockets;
    UdpPair m_pair;
    quint64 m_connection = 0;
    QList<Event> m_waiting; ///< taken over, not told yet
    bool m_isInTurns = false;
};

Status StationSockets::Line::open(const QString &hostAddress)
{
    close();
    if (m_sockets.m_isFull) {
        return UdpPair::noPortFree();
    }
    const quint64 connection = ++m_sockets.m_connections;
    Batch *batch = m_sockets.m_batch.get(); // outlives the pair
    UdpPairEvents events;
    events.received = [batch, connection](QByteArray &&datagram) {
        batch->add({connection, std::move(datagram)});
    };
    events.foreign = [batch] { ++batch->foreign; };
    events.lost = [batch, connection](const DatagramLoss &loss) { batch->add({connection, loss}); };
    events.sent = [batch, connection] { batch->add({connection, Event::Sent()}); };
    events.trouble = [batch, connection](const QString &text) {
        batch->add({connection, Event::Trouble{text}});
    };
    events.failed = [batch, connection](const QString &text) {
        batch->add({connection, Event::Failed{text}});
    };
    Status opened = m_pair.open(hostAddress, std::move(events));
    if (opened) {
        m_connection = connection;
        m_sockets.m_open.emplace(connection, this);
    } else {
        m_sockets.m_isFull = opened.is(Failure::NoPortFree);
    }
    return opened;
}

void StationSockets::Line::close()
{
    if (m_pair.isOpen()) {
        m_pair.close();
        m_sockets.m_open.erase(m_connection);
        m_sockets.m_isFull = false;
        m_waiting = {};
        if (std::exchange(m_isInTurns, false)) {
            std::erase(m_sockets.m_turns, this);
        }
    }
}

void StationSockets::Line::await(Event &&event)
{
    m_waiting.push_back(std::move(event));
    queueUp();
}

void StationSockets::Line::queueUp()
{
    if (!m_waiting.empty() && !std::exchange(m_isInTurns, true)) {
        m_sockets.m_turns.push_back(this);
    }
}

void StationSockets::Line::takeArrived()
{
    const quint64 connection = m_connection;
    StationSockets &sockets = m_sockets;
    m_pair.takeArrived();
    sockets.sortIn();
    for (qsizetype left = std::min(m_waiting.size(), qsizetype{mostAtOnce}); left > 0; --left) {
        tellNext();
        if (!sockets.m_open.contains(connection)) {
            return; // closed meanwhile
        }
    }
}

void StationSockets::Line::takeTurn()
{
    m_isInTurns = false;
    tellNext();
}

void StationSockets::Line::tellNext()
{
    if (m_waiting.empty()) {
        return;
    }
    const Event event = m_waiting.takeFirst();
    if (m_waiting.empty() && m_waiting.capacity() > keptCapacity) {
        m_waiting = {};
    }
    queueUp();
    if (const auto *datagram = std::get_if<QByteArray>(&event.what)) {
        m_pair.handled(*datagram);
    } else if (std::holds_alternative<Event::Failed>(event.what)) {
        close();
    }
    if (StationLineListener *const listener = m_listener) {
        std::visit(Overloaded{[&](const QByteArray &datagram) { listener->DataArrival(datagram); },
                              [&](const Event::Sent &) { listener->socket_SendComplete(); },
                              [&](const Event::Trouble &trouble) { listener->lineTrouble(trouble.text); },
                              [&](const Event::Failed &failure) { listener->lineTrouble(failure.text); },
                              [&](const DatagramLoss &loss) { listener->linesLost(loss); }},
                   event.what);
    }
}

StationSockets::StationSockets(IoThread &io, PortRange ports, const IntakeLimits &intake)
    : m_io(io), m_options{ports, intake, descriptorsInReserve}, m_batch(std::make_unique<Batch>(*this))
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

/// Gives each event to its line. One of a connection that was closed meanwhile is told nobody.
std::size_t StationSockets::sortIn()
{
    std::vector<Event> events = m_batch->take();
    for (Event &event : events) {
        if (const auto line = m_open.find(event.connection); line != m_open.end()) {
            line->second->await(std::move(event));
        }
    }
    return events.size();
}

void StationSockets::deliver()
{
    // While much comes, it is looked for now and then: to be called for each datagram costs more than the
    // datagram itself.
    m_sinceLook.start();
    m_nextLook.start(lookInterval); // where a listener asks the user something, the rest is told from there
    const std::size_t news = sortIn();
    const bool isBusy = isMuch(news);
    const bool isQuiet = m_turns.empty();
    while (!m_turns.empty()) {
        Line *const line = m_turns.front();
        m_turns.pop_front();
        line->takeTurn();
        if (m_sinceLook.elapsed() >= longestTurn.count() && !m_turns.empty()) {
            m_nextLook.start(0); // a timer, since posted events would go in front of the user's
            return;
        }
    }
    if ((isQuiet || !isBusy) && m_batch->stopLooking()) {
        m_nextLook.stop();
    }
}

} // namespace ktr

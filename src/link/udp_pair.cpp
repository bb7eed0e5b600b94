#include "link/udp_pair.h"

#include "link/io_thread.h"
#include "link/module_address.h"
#include "platform/exclusive_port.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <asio/ip/v6_only.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <algorithm>
#include <atomic>
#include <vector>

namespace ktr {

namespace {

using asio::ip::udp;

constexpr std::chrono::milliseconds pauseAfterError{10};
/// So often it is tried to have the sending port again, which somebody who looks for free ones may hold.
constexpr int mostTries = 100;
constexpr qsizetype longestDatagram = 65'507;
/// The system's buffer for a pair, as far as the system allows it: what ten alarms a second bring in a minute
/// in which the program stands still, two datagrams an alarm and almost a kilobyte a datagram. Linux doubles
/// it.
constexpr int systemBuffer = 1 << 20;
/// While too much comes, it is read so often at most.
constexpr std::chrono::milliseconds holdBack{20};
constexpr std::chrono::seconds lossInterval{1};
/// Less was read than fits into the smallest buffer: nothing can have been dropped.
constexpr qint64 muchRead = 16 << 10;
/// Datagrams of others than the module that are counted one by one; more are not even let in.
constexpr int foreignAtMost = 100;

using Clock = std::chrono::steady_clock;
/// What all owners have not dealt with yet.
std::atomic<qint64> waitingOfAll = 0; // NOLINT

qint64 costOf(qsizetype bytes)
{
    return bytes + IntakeLimits::ofADatagram;
}

asio::ip::address withoutMapping(const asio::ip::address &address)
{
    if (address.is_v6() && address.to_v6().is_v4_mapped()) {
        return asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6());
    }
    return address;
}

/// Whether two addresses are one host's; the interface of a link-local one may be known to one of them only.
bool isSameHost(const asio::ip::address &a, const asio::ip::address &b)
{
    const asio::ip::address left = withoutMapping(a);
    const asio::ip::address right = withoutMapping(b);
    return left.is_v6() && right.is_v6() ? left.to_v6().to_bytes() == right.to_v6().to_bytes()
                                         : left == right;
}

asio::error_code bindTo(udp::socket &socket, const udp &protocol, quint16 port)
{
    asio::error_code error;
    socket.open(protocol, error);
    if (error) {
        return error;
    }
    claimPortExclusively(socket.native_handle());
    if (protocol == udp::v6()) {
        socket.set_option(asio::ip::v6_only(false), error); // IPv4 addresses are reached too
    }
    if (!error) {
        socket.bind({protocol, port}, error);
    }
    if (error) {
        asio::error_code ignored;
        socket.close(ignored);
    }
    return error;
}

bool isTaken(const asio::error_code &error)
{
    return error == asio::error::address_in_use || error == asio::error::access_denied;
}

} // namespace

/// The part that lives on the I/O thread. Everything below but the constructor, bind() and what asks
/// about the ports runs there.
class UdpPair::Ports : public std::enable_shared_from_this<Ports>
{
public:
    Ports(IoThread &io, UdpPairEvents events, const UdpPairOptions &options)
        : m_names(io.names()),
          m_sendSocket(io.context()),
          m_receiveSocket(io.context()),
          m_retry(io.context()),
          m_writeAgain(io.context()),
          m_lossTimer(io.context()),
          m_events(std::move(events)),
          m_limits(options.intake),
          m_credit(options.intake.burst)
    {}
    ~Ports() { waitingOfAll -= m_waitingForOwner; }
    Q_DISABLE_COPY_MOVE(Ports)

    Status bind(const udp &protocol, const PortRange &ports)
    {
        // The last pair's neighbours are the likeliest to be free. Each run begins elsewhere: a module that
        // was left in the middle by one that was killed goes on talking to its pair, and another module may
        // have the same address.
        static std::atomic<unsigned> turn = QRandomGenerator::global()->generate();
        const unsigned first = (ports.first + 1U) / 2 * 2;
        const unsigned pairs = ports.last > first ? (ports.last - first + 1) / 2 : 0;
        for (unsigned i = 0; i < pairs; ++i) {
            const auto port = static_cast<quint16>(first + turn++ % pairs * 2);
            asio::error_code error = bindTo(m_sendSocket, protocol, port);
            if (!error) {
                error = bindTo(m_receiveSocket, protocol, static_cast<quint16>(port + 1));
            }
            if (!error) {
                m_receiveSocket.non_blocking(true, error);
            }
            if (!error) {
                setReceiveBuffer(m_receiveSocket.native_handle(), systemBuffer);
                m_isV6 = protocol == udp::v6();
                m_sendPort = port;
                return Status::done();
            }
            asio::error_code ignored;
            m_sendSocket.close(ignored);
            if (!isTaken(error)) {
                return Status::failed(QString::fromStdString(error.message()));
            }
        }
        return UdpPair::noPortFree();
    }

    bool leavesDescriptors(quint64 atLeast)
    {
        return atLeast == 0 || ktr::leavesDescriptors(m_receiveSocket.native_handle(), atLeast);
    }
    quint16 port() const { return m_sendPort; }
    /// Where descriptors are scarce, one is enough for a pair: nothing arrives at the sending port.
    void spareDescriptors()
    {
        if (areDescriptorsScarce(m_receiveSocket.native_handle())) {
            m_keepsSendPort = false;
            asio::error_code ignored;
            m_sendSocket.close(ignored);
        }
    }

    /// Reads the next datagram as soon as the limits allow it.
    void read()
    {
        if (!mayRead()) {
            m_wasHeldBack = true;
            const std::chrono::milliseconds untilCredit(-m_credit * 1000 / m_limits.perSecond);
            readAgainIn(std::max(holdBack, untilCredit));
            return;
        }
        m_receiveSocket.async_receive_from(
            asio::buffer(m_input.get(), longestDatagram), m_sender,
            [self = shared_from_this()](const asio::error_code &error, std::size_t count) {
                if (self->m_isClosed) {
                    return;
                }
                if (error) {
                    // That nobody listened at the other end is reported here on some systems: it is over now.
                    self->readAgainIn(pauseAfterError);
                    return;
                }
                self->handle(self->m_sender, {self->m_input.get(), qsizetype(count)});
                self->lookForLoss();
                self->read(); // what has come already is taken without waiting, others between
            });
    }

    /// What stands in the system's buffer now, and how much found no room there.
    void takeArrived()
    {
        const auto input = std::make_unique_for_overwrite<char[]>(longestDatagram);
        udp::endpoint sender;
        asio::error_code error;
        for (qint64 taken = 0; !m_isClosed && taken < m_limits.waiting;) {
            const std::size_t count =
                m_receiveSocket.receive_from(asio::buffer(input.get(), longestDatagram), sender, 0, error);
            if (error) {
                break;
            }
            handle(sender, {input.get(), qsizetype(count)});
            taken += costOf(qsizetype(count));
        }
        if (!m_isClosed) {
            look(Clock::now());
        }
    }

    /// Called on the owner's thread.
    void handled(qsizetype bytes)
    {
        m_waitingForOwner -= costOf(bytes);
        waitingOfAll -= costOf(bytes);
    }

    void startLookup(const std::string &host, quint16 port, const QString &name)
    {
        // The look-up does not keep the pair alive: a closed pair gets no answer.
        m_lookup =
            m_names.lookUp(host, m_isV6, [this, port, name](const std::optional<asio::ip::address> &address) {
                if (address) {
                    aimAt(*address, port);
                } else {
                    m_events.failed(notFound(name));
                }
            });
    }

    /// Whether datagrams can go out. Called on any thread.
    bool isAimed() const { return m_isAimed; }

    void aimAt(const asio::ip::address &address, quint16 port)
    {
        const bool maps = m_isV6 && address.is_v4();
        m_target = udp::endpoint(
            maps ? asio::ip::make_address_v6(asio::ip::v4_mapped, address.to_v4()) : address, port);
        m_isAimed = true;
        writeNext();
    }

    void write(const QByteArray &bytes)
    {
        if (!m_target && !m_waiting.empty() && m_waiting.constLast() == bytes) {
            return; // a repeated announcement while the name is looked up
        }
        for (qsizetype at = 0; at < bytes.size(); at += longestDatagram) {
            m_waiting.push_back(bytes.mid(at, longestDatagram));
        }
        writeNext();
    }

    void whenDrained(std::function<void()> drained)
    {
        m_drained.push_back(std::move(drained));
        checkDrained();
    }

    void close()
    {
        m_isClosed = true;
        m_events = {}; // no more callbacks
        m_drained.clear();
        asio::error_code ignored;
        m_sendSocket.close(ignored);
        m_receiveSocket.close(ignored);
        m_lookup.reset();
        m_retry.cancel();
        m_writeAgain.cancel();
        m_lossTimer.cancel();
    }

private:
    /// A datagram of the module; one of somebody else is dropped.
    void handle(const udp::endpoint &sender, QByteArrayView datagram)
    {
        m_credit -= costOf(datagram.size());
        m_readSinceLook += costOf(datagram.size());
        if (m_target && isSameHost(sender.address(), m_target->address())) {
            m_waitingForOwner += costOf(datagram.size());
            waitingOfAll += costOf(datagram.size());
            m_events.received(datagram.toByteArray());
        } else {
            m_events.foreign();
            if (m_target && ++m_foreign == foreignAtMost) {
                shutOthersOut();
                if (!m_isLookDue) {
                    lookIn(lossInterval); // nothing of what is dropped from now on would be a reason to
                }
            }
        }
    }

    /// Somebody else sends so much that the module's datagrams would not find room in the system's buffer.
    void shutOthersOut()
    {
        const asio::ip::address module = withoutMapping(m_target->address());
        if (module.is_v4()) {
            const auto bytes = module.to_v4().to_bytes();
            admitOnlyFrom(m_receiveSocket.native_handle(), bytes);
        } else {
            const auto bytes = module.to_v6().to_bytes();
            admitOnlyFrom(m_receiveSocket.native_handle(), bytes);
        }
    }

    bool mayRead()
    {
        const qint64 waiting = m_waitingForOwner;
        if (waiting > m_limits.waiting ||
            (waiting > IntakeLimits::shareOfAPair && waitingOfAll > m_limits.waitingOfAll)) {
            return false;
        }
        if (m_credit <= 0) {
            const Clock::time_point now = Clock::now();
            const std::chrono::duration<double> since = now - std::exchange(m_creditedAt, now);
            const double more = since.count() * double(m_limits.perSecond);
            m_credit = more < double(m_limits.burst - m_credit) ? m_credit + qint64(more) : m_limits.burst;
        }
        return m_credit > 0;
    }

    /// Once a second, with what arrives, the system is asked what it dropped; after much, and in a loss, by a
    /// timer.
    void lookForLoss()
    {
        const Clock::time_point now = Clock::now();
        if (now >= m_nextLook) {
            look(now);
        } else if (m_readSinceLook > muchRead && !m_isLookDue) {
            lookIn(m_nextLook - now);
        }
    }

    void lookIn(Clock::duration time)
    {
        m_isLookDue = true;
        m_lossTimer.expires_after(std::min<Clock::duration>(time, m_limits.quietUntilOver));
        m_lossTimer.async_wait([self = shared_from_this()](const asio::error_code &) {
            self->m_isLookDue = false;
            if (!self->m_isClosed) {
                self->look(Clock::now());
            }
        });
    }

    void look(Clock::time_point now)
    {
        m_nextLook = now + lossInterval;
        m_readSinceLook = 0;
        DatagramLoss loss = m_loss.value_or(DatagramLoss());
        if (countLoss(loss)) {
            m_lastLoss = now;
            m_loss = loss;
            m_events.lost(loss);
        } else if (m_loss && now - m_lastLoss >= m_limits.quietUntilOver) {
            loss.isOver = true;
            m_loss.reset();
            m_events.lost(loss);
        }
        if (m_loss && !m_isLookDue) {
            lookIn(lossInterval);
        }
    }

    /// Whether something was lost since the last time. Where the system does not tell, a flood is taken for a
    /// loss.
    bool countLoss(DatagramLoss &loss)
    {
        const bool floods = std::exchange(m_wasHeldBack, false);
        const std::optional<quint32> dropped = droppedDatagrams(m_receiveSocket.native_handle());
        const quint32 more = dropped ? *dropped - std::exchange(m_systemDropped, *dropped) : 0;
        loss.dropped += more;
        loss.isFlood = loss.isFlood || floods;
        return dropped ? more > 0 : floods;
    }

    static QString notFound(const QString &host)
    {
        return QCoreApplication::translate("Files", "%1: the name is not found").arg(host);
    }

    void readAgainIn(Clock::duration time)
    {
        m_retry.expires_after(time);
        m_retry.async_wait([self = shared_from_this()](const asio::error_code &) {
            if (!self->m_isClosed) {
                self->read();
            }
        });
    }

    void writeNext()
    {
        if (m_isWriting || !m_target || m_waiting.empty() || m_isClosed) {
            return;
        }
        m_isWriting = true;
        if (!m_keepsSendPort) {
            sendAtOnce(mostTries);
            return;
        }
        m_sendSocket.async_send_to(next(), *m_target,
                                   [self = shared_from_this()](const asio::error_code &error, std::size_t) {
                                       self->written(error);
                                   });
    }

    asio::const_buffer next() const
    {
        return asio::buffer(m_waiting.constFirst().constData(), std::size_t(m_waiting.constFirst().size()));
    }

    /// Sends from a port that is this pair's for this moment alone, so that no more than one is at a time.
    void sendAtOnce(int tries)
    {
        asio::error_code error = bindTo(m_sendSocket, m_isV6 ? udp::v6() : udp::v4(), m_sendPort);
        if (!error) {
            m_sendSocket.non_blocking(true, error);
            m_sendSocket.send_to(next(), *m_target, 0, error);
            asio::error_code ignored;
            m_sendSocket.close(ignored);
        }
        if ((isTaken(error) || error == asio::error::would_block) && tries > 1) {
            m_writeAgain.expires_after(pauseAfterError);
            m_writeAgain.async_wait([self = shared_from_this(), tries](const asio::error_code &) {
                if (!self->m_isClosed) {
                    self->sendAtOnce(tries - 1);
                }
            });
            return;
        }
        asio::post(m_sendSocket.get_executor(), [self = shared_from_this(), error] { self->written(error); });
    }

    void written(const asio::error_code &error)
    {
        m_isWriting = false;
        m_waiting.pop_front();
        if (m_isClosed) {
            return;
        }
        tell(error);
        writeNext();
        checkDrained();
    }

    void checkDrained()
    {
        if (m_waiting.empty()) {
            for (const auto &drained : std::exchange(m_drained, {})) {
                drained();
            }
        }
    }

    /// A network that is down for a while may come back: the pair stays open.
    void tell(const asio::error_code &error)
    {
        if (m_events.sent) {
            m_events.sent();
        }
        if (error && error != m_told) {
            m_events.trouble(QString::fromStdString(error.message()));
        }
        m_told = error;
    }

    NameResolver &m_names;
    NameResolver::Lookup m_lookup;
    udp::socket m_sendSocket;
    udp::socket m_receiveSocket;
    asio::steady_timer m_retry;
    asio::steady_timer m_writeAgain;
    asio::steady_timer m_lossTimer; ///< runs after much and in a loss
    UdpPairEvents m_events;
    IntakeLimits m_limits;
    qint64 m_credit; ///< what may be read at once; below 0 it has to be waited for
    Clock::time_point m_creditedAt = Clock::now();
    std::atomic<qint64> m_waitingForOwner = 0;
    bool m_wasHeldBack = false; ///< since losses were counted last
    qint64 m_readSinceLook = 0; ///< for losses, as are the following
    bool m_isLookDue = false;
    quint32 m_systemDropped = 0;
    std::optional<DatagramLoss> m_loss; ///< while it goes on
    Clock::time_point m_lastLoss;
    Clock::time_point m_nextLook;
    bool m_isClosed = false;
    bool m_isV6 = false;
    bool m_keepsSendPort = true;
    quint16 m_sendPort = 0;
    int m_foreign = 0; ///< datagrams of others, since the module's address is known
    std::optional<udp::endpoint> m_target;
    std::atomic<bool> m_isAimed = false;
    udp::endpoint m_sender;
    /// Room for any datagram. The system gives memory to what of it was used, a page for most pairs.
    std::unique_ptr<char[]> m_input = std::make_unique_for_overwrite<char[]>(longestDatagram);
    QByteArrayList m_waiting; ///< mostly none or one, so no deque: its blocks are large beside that
    bool m_isWriting = false;
    std::vector<std::function<void()>> m_drained;
    asio::error_code m_told;
};

Status UdpPair::noPortFree()
{
    return Status::failed(QCoreApplication::translate("Files", "the port is already in use"),
                          Failure::NoPortFree);
}

UdpPair::UdpPair(IoThread &io, const UdpPairOptions &options) : m_io(io), m_options(options) {}

UdpPair::~UdpPair()
{
    close();
}

bool UdpPair::mayMove() const
{
    return m_isNamed && m_pair != nullptr && m_pair->isAimed();
}

bool UdpPair::isAddress(const QString &address)
{
    return moduleAddress(address, modulePort).has_value();
}

Status UdpPair::open(const QString &address, UdpPairEvents events)
{
    const std::optional<ModuleAddress> module = moduleAddress(address, modulePort);
    if (!module) {
        return Status::failed(
            QCoreApplication::translate("Files", "%1: is no address of a module").arg(address));
    }
    close();
    auto pair = std::make_shared<Ports>(m_io, std::move(events), m_options);
    const bool isName = !module->literal;
    const bool isV4 = !isName && module->literal->is_v4();
    Status bound = pair->bind(isV4 ? udp::v4() : udp::v6(), m_options.ports);
    if (!bound && isName && !bound.is(Failure::NoPortFree)) {
        bound = pair->bind(udp::v4(), m_options.ports); // a machine without IPv6
    }
    if (!bound) {
        return bound;
    }
    if (!pair->leavesDescriptors(m_options.descriptorsInReserve)) {
        return Status::failed(
            QCoreApplication::translate("Files", "the system allows no more connections at a time"));
    }
    if (m_options.descriptorsInReserve > 0) {
        pair->spareDescriptors();
    }
    m_pair = pair;
    m_sendPort = pair->port();
    m_isNamed = isName;
    asio::post(m_io.context(), [pair, module = *module, address] {
        if (module.literal) {
            pair->aimAt(*module.literal, module.port);
        } else {
            pair->startLookup(module.host, module.port, address);
        }
        pair->read();
    });
    return Status::done();
}

void UdpPair::close()
{
    if (m_pair != nullptr) {
        m_sendPort = 0;
        m_io.run([pair = std::exchange(m_pair, nullptr)] { pair->close(); });
    }
}

void UdpPair::send(const QByteArray &bytes)
{
    if (m_pair != nullptr) {
        asio::post(m_io.context(), [pair = m_pair, bytes] { pair->write(bytes); });
    }
}

void UdpPair::handled(const QByteArray &datagram)
{
    if (m_pair != nullptr) {
        m_pair->handled(datagram.size());
    }
}

void UdpPair::takeArrived()
{
    if (m_pair != nullptr) {
        m_io.run([pair = m_pair] { pair->takeArrived(); });
    }
}

void UdpPair::whenDrained(std::function<void()> drained)
{
    if (m_pair != nullptr) {
        asio::post(m_io.context(), [pair = m_pair, drained = std::move(drained)]() mutable {
            pair->whenDrained(std::move(drained));
        });
    }
}

} // namespace ktr

#include "link/udp_transport.h"

#include "platform/exclusive_port.h"

#include <QCoreApplication>

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <asio/ip/v6_only.hpp>
#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <array>
#include <deque>
#include <thread>

namespace ktr {

namespace {

using asio::ip::udp;

constexpr std::chrono::milliseconds longestLookup{1900};
constexpr std::chrono::milliseconds lookupPoll{20};
constexpr std::chrono::milliseconds pauseAfterError{10};
constexpr qsizetype longestDatagram = 65'507;

struct ModuleAddress
{
    std::string host;
    quint16 port = UdpTransport::modulePort;
};

/// Numbers in an IPv4 address are decimal here, leading zeros or not: the system reads such as octal ones.
QString withoutLeadingZeros(const QString &host)
{
    QStringList parts = host.split(u'.');
    for (QString &part : parts) {
        bool isNumber = false;
        const uint number = part.toUInt(&isNumber);
        if (!isNumber) {
            return host;
        }
        part = QString::number(number);
    }
    return parts.join(u'.');
}

std::optional<ModuleAddress> parse(const QString &text)
{
    QString host = text.trimmed();
    QString port;
    if (host.startsWith(u'[')) {
        const qsizetype end = host.indexOf(u']');
        port = host.mid(end + 1);
        host = host.mid(1, end - 1);
        if (end < 0 || (!port.isEmpty() && !port.startsWith(u':'))) {
            return std::nullopt;
        }
    } else if (host.count(u':') == 1) { // more of them are an IPv6 address
        port = host.mid(host.indexOf(u':'));
        host.chop(port.size());
    }
    ModuleAddress address{withoutLeadingZeros(host).toStdString()};
    if (!port.isEmpty()) {
        bool ok = false;
        address.port = port.mid(1).toUShort(&ok);
        if (!ok || address.port == 0) {
            return std::nullopt;
        }
    }
    return host.isEmpty() ? std::nullopt : std::optional(address);
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

/// A name's addresses, found on a thread of its own, since the system's look-up cannot be broken off. It
/// touches nothing but this.
struct Lookup
{
    std::atomic<bool> isDone = false;
    std::vector<asio::ip::address> addresses; ///< none: the name is unknown

    static std::shared_ptr<Lookup> start(const std::string &host)
    {
        auto lookup = std::make_shared<Lookup>();
        std::thread([lookup, host] {
            asio::io_context context;
            asio::error_code unknown;
            for (const auto &entry : udp::resolver(context).resolve(host, std::string(), unknown)) {
                lookup->addresses.push_back(entry.endpoint().address());
            }
            lookup->isDone = true;
        }).detach();
        return lookup;
    }

    /// Modules know IPv4; nothing when no address can be reached.
    std::optional<asio::ip::address> best(bool reachesV6) const
    {
        for (const auto &address : addresses) {
            if (address.is_v4()) {
                return address;
            }
        }
        return reachesV6 && !addresses.empty() ? std::optional(addresses.front()) : std::nullopt;
    }
};

} // namespace

/// The part that lives on the I/O thread. Everything below but the constructor and bind() runs there.
class UdpTransport::Pair : public std::enable_shared_from_this<Pair>
{
public:
    Pair(asio::io_context &context, UdpTransport &transport)
        : m_sendSocket(context),
          m_receiveSocket(context),
          m_timer(context),
          m_retry(context),
          m_transport(&transport)
    {}

    Status bind(const udp &protocol, const PortRange &ports)
    {
        static std::atomic<unsigned> turn = 0; // the last pair's neighbours are the likeliest to be free
        const unsigned first = (ports.first + 1U) / 2 * 2;
        const unsigned pairs = ports.last > first ? (ports.last - first + 1) / 2 : 0;
        for (unsigned i = 0; i < pairs; ++i) {
            const auto port = static_cast<quint16>(first + turn++ % pairs * 2);
            asio::error_code error = bindTo(m_sendSocket, protocol, port);
            if (!error) {
                error = bindTo(m_receiveSocket, protocol, static_cast<quint16>(port + 1));
            }
            if (!error) {
                m_isV6 = protocol == udp::v6();
                return Status::done();
            }
            asio::error_code ignored;
            m_sendSocket.close(ignored);
            if (!isTaken(error)) {
                return Status::failed(QString::fromStdString(error.message()));
            }
        }
        return Status::failed(portInUse());
    }

    quint16 port() const { return m_sendSocket.local_endpoint().port(); }
    bool reachesV6() const { return m_isV6; }

    void read()
    {
        m_receiveSocket.async_receive_from(
            asio::buffer(m_input), m_sender,
            [self = shared_from_this()](const asio::error_code &error, std::size_t count) {
                if (self->m_transport == nullptr) {
                    return;
                }
                if (error) {
                    // That nobody listened at the other end is reported here on some systems: it is over now.
                    self->readAgainSoon();
                    return;
                }
                if (self->m_target && isSameHost(self->m_sender.address(), self->m_target->address())) {
                    self->notify([bytes = QByteArray(self->m_input.data(), qsizetype(count))](
                                     UdpTransport &transport) { Q_EMIT transport.received(bytes); });
                } else {
                    ++self->m_transport->m_foreign;
                }
                self->read();
            });
    }

    void aimAt(const asio::ip::address &address, quint16 port)
    {
        const bool maps = m_isV6 && address.is_v4();
        m_target = udp::endpoint(
            maps ? asio::ip::make_address_v6(asio::ip::v4_mapped, address.to_v4()) : address, port);
        writeNext();
    }

    void await(std::shared_ptr<Lookup> lookup, quint16 port, const QString &host,
               std::chrono::steady_clock::time_point deadline)
    {
        if (m_transport == nullptr) {
            return;
        }
        if (lookup->isDone) {
            if (const auto address = lookup->best(m_isV6)) {
                aimAt(*address, port);
            } else {
                fail(notFound(host));
            }
        } else if (std::chrono::steady_clock::now() >= deadline) {
            fail(notFound(host));
        } else {
            m_timer.expires_after(lookupPoll);
            m_timer.async_wait([self = shared_from_this(), lookup, port, host, deadline](
                                   const asio::error_code &) { self->await(lookup, port, host, deadline); });
        }
    }

    void write(const QByteArray &bytes)
    {
        for (qsizetype at = 0; at < bytes.size(); at += longestDatagram) {
            m_waiting.push_back(bytes.mid(at, longestDatagram));
        }
        writeNext();
    }

    void whenDrained(std::function<void()> drained)
    {
        m_drained = std::move(drained);
        checkDrained();
    }

    void close()
    {
        m_transport = nullptr; // nothing is told any more
        asio::error_code ignored;
        m_sendSocket.close(ignored);
        m_receiveSocket.close(ignored);
        m_timer.cancel();
        m_retry.cancel();
    }

private:
    static QString notFound(const QString &host)
    {
        return QCoreApplication::translate("Files", "%1: the name is not found").arg(host);
    }

    void readAgainSoon()
    {
        m_retry.expires_after(pauseAfterError);
        m_retry.async_wait([self = shared_from_this()](const asio::error_code &) {
            if (self->m_transport != nullptr) {
                self->read();
            }
        });
    }

    void writeNext()
    {
        if (m_isWriting || !m_target || m_waiting.empty() || m_transport == nullptr) {
            return;
        }
        m_isWriting = true;
        m_sendSocket.async_send_to(
            asio::buffer(m_waiting.front().constData(), std::size_t(m_waiting.front().size())), *m_target,
            [self = shared_from_this()](const asio::error_code &error, std::size_t) {
                self->m_isWriting = false;
                self->m_waiting.pop_front();
                if (self->m_transport == nullptr) {
                    return;
                }
                self->tell(error);
                self->writeNext();
                self->checkDrained();
            });
    }

    void checkDrained()
    {
        if (m_drained && m_waiting.empty()) {
            notify([drained = std::exchange(m_drained, nullptr)](UdpTransport &) { drained(); });
        }
    }

    /// A network that is down for a while may come back: the line stays open.
    void tell(const asio::error_code &error)
    {
        m_transport->m_unsent += error ? 1 : 0;
        if (error && error != m_told) {
            notify([text = QString::fromStdString(error.message())](UdpTransport &transport) {
                Q_EMIT transport.statusMessage(text);
            });
        }
        m_told = error;
    }

    void fail(const QString &reason)
    {
        notify([reason](UdpTransport &transport) {
            transport.close();
            Q_EMIT transport.lost(reason, false);
        });
    }

    template <class Message> void notify(Message message)
    {
        if (m_transport != nullptr) {
            QMetaObject::invokeMethod(
                m_transport,
                [self = shared_from_this(), transport = m_transport, message] {
                    if (transport->m_pair == self) { // not closed meanwhile
                        message(*transport);
                    }
                },
                Qt::QueuedConnection);
        }
    }

    udp::socket m_sendSocket;
    udp::socket m_receiveSocket;
    asio::steady_timer m_timer;
    asio::steady_timer m_retry;
    UdpTransport *m_transport;
    bool m_isV6 = false;
    std::optional<udp::endpoint> m_target;
    udp::endpoint m_sender;
    std::array<char, 65'536> m_input{};
    std::deque<QByteArray> m_waiting;
    bool m_isWriting = false;
    std::function<void()> m_drained;
    asio::error_code m_told;
};

QString UdpTransport::portInUse()
{
    return QCoreApplication::translate("Files", "the port is already in use");
}

UdpTransport::UdpTransport(IoThread &io, QObject *parent, PortRange ports)
    : Transport(parent), m_io(io), m_ports(ports)
{}

UdpTransport::~UdpTransport()
{
    close();
}

Status UdpTransport::open(const QString &address)
{
    close();
    const std::optional<ModuleAddress> module = parse(address);
    asio::error_code isName;
    const asio::ip::address literal =
        module ? asio::ip::make_address(module->host, isName) : asio::ip::address();
    const bool isNumbers = module && module->host.find_first_not_of("0123456789.") == std::string::npos;
    if (!module || (isName && isNumbers) ||
        (!isName && (literal.is_unspecified() || literal.is_multicast()))) {
        return Status::failed(
            QCoreApplication::translate("Files", "%1: is no address of a module").arg(address));
    }
    auto pair = std::make_shared<Pair>(m_io.context(), *this);
    const bool isV4 = !isName && literal.is_v4();
    Status bound = pair->bind(isV4 ? udp::v4() : udp::v6(), m_ports);
    if (!bound && isName && bound.message() != portInUse()) {
        bound = pair->bind(udp::v4(), m_ports); // a machine without IPv6
    }
    if (!bound) {
        return bound;
    }
    std::shared_ptr<Lookup> lookup;
    if (isName) {
        try {
            lookup = Lookup::start(module->host);
        } catch (const std::system_error &error) { // no more threads
            return Status::failed(address + QLatin1String(": ") + QString::fromLocal8Bit(error.what()));
        }
    }
    m_pair = pair;
    m_sendPort = pair->port();
    asio::post(m_io.context(), [pair, lookup, literal, port = module->port, address] {
        if (lookup) {
            pair->await(lookup, port, address, std::chrono::steady_clock::now() + longestLookup);
        } else {
            pair->aimAt(literal, port);
        }
        pair->read();
    });
    return Status::done();
}

void UdpTransport::close()
{
    if (m_pair != nullptr) {
        m_sendPort = 0;
        m_io.run([pair = std::exchange(m_pair, nullptr)] { pair->close(); });
    }
}

void UdpTransport::send(const QByteArray &bytes)
{
    if (m_pair != nullptr) {
        asio::post(m_io.context(), [pair = m_pair, bytes] { pair->write(bytes); });
    }
}

void UdpTransport::whenDrained(std::function<void()> drained)
{
    if (m_pair != nullptr) {
        asio::post(m_io.context(), [pair = m_pair, drained = std::move(drained)]() mutable {
            pair->whenDrained(std::move(drained));
        });
    }
}

} // namespace ktr

#include "link/name_resolver.h"

#include "platform/exclusive_port.h"

#include <asio/io_context.hpp>
#include <asio/ip/udp.hpp>
#include <asio/post.hpp>

#include <algorithm>
#include <ares.h>
#include <map>

namespace ktr {

namespace {

using namespace std::chrono_literals;

constexpr auto turnTime = 10ms;     ///< between two turns while names wait for theirs
constexpr auto silenceTime = 100ms; ///< while answers are waited for
constexpr int lookupsATurn = NameResolver::perSecond / int(1000ms / turnTime);
/// The system's name servers may change: after so long its settings are read anew.
constexpr auto settingsTime = 10s;
constexpr int roundsOfServers = 2; ///< the second one waits twice as long
constexpr int answersBuffer = 1 << 20;

bool startAres()
{
    return ::ares_library_init(ARES_LIB_INIT_ALL) == ARES_SUCCESS;
}

std::optional<asio::ip::address> firstAddress(const ares_addrinfo &found)
{
    for (const ares_addrinfo_node *node = found.nodes; node != nullptr; node = node->ai_next) {
        asio::ip::udp::endpoint endpoint;
        if (std::size_t(node->ai_addrlen) <= endpoint.capacity()) {
            std::copy_n(reinterpret_cast<const char *>(node->ai_addr), node->ai_addrlen,
                        reinterpret_cast<char *>(endpoint.data()));
            return endpoint.address();
        }
    }
    return std::nullopt;
}

/// Watches a socket of the library through another descriptor of it.
class Watch : public std::enable_shared_from_this<Watch>
{
public:
    using Ready = std::function<void(bool readable)>;

    Watch(asio::io_context &context, SocketHandle duplicate, Ready ready)
        : m_socket(context), m_ready(std::move(ready))
    {
        asio::error_code ignored;
        m_socket.assign(asio::ip::udp::v4(), duplicate, ignored); // of which kind it is makes no difference
    }

    void await(bool readable, bool writable)
    {
        awaitOne(m_reading, readable, asio::ip::udp::socket::wait_read);
        awaitOne(m_writing, writable, asio::ip::udp::socket::wait_write);
    }

    void close()
    {
        m_ready = nullptr;
        asio::error_code ignored;
        m_socket.close(ignored);
    }

private:
    struct Side
    {
        bool isWanted = false;
        bool isAwaited = false;
    };

    void awaitOne(Side &side, bool isWanted, asio::ip::udp::socket::wait_type type)
    {
        side.isWanted = isWanted;
        if (!isWanted || std::exchange(side.isAwaited, true)) {
            return;
        }
        m_socket.async_wait(type, [self = shared_from_this(), &side, type](const asio::error_code &error) {
            side.isAwaited = false;
            if (error || !self->m_ready || !side.isWanted) {
                return;
            }
            Ready(self->m_ready)(type == asio::ip::udp::socket::wait_read);
            if (self->m_ready) {
                self->awaitOne(side, side.isWanted, type);
            }
        });
    }

    asio::ip::udp::socket m_socket;
    Ready m_ready;
    Side m_reading;
    Side m_writing;
};

} // namespace

struct NameResolver::Request
{
    std::string host;
    bool takesV6;
    Found found; ///< until it is answered
};

/// A set of name servers as the system has them at its beginning, and what they are asked.
class NameResolver::Channel
{
public:
    Channel(NameResolver &resolver, const std::string &servers) : m_resolver(resolver)
    {
        static const bool isStarted = startAres();
        if (!isStarted || !open(silenceOf(1)) || (!servers.empty() && !use(servers))) {
            return;
        }
        if (const int count = serverCount(); count > 1) { // each of them has its turn in good time
            ::ares_destroy(std::exchange(m_ares, nullptr));
            if (open(silenceOf(count)) && !servers.empty()) {
                use(servers);
            }
        }
    }
    ~Channel()
    {
        m_isEnding = true;
        if (m_ares != nullptr) {
            ::ares_destroy(m_ares);
        }
    }
    Channel(const Channel &) = delete;
    Channel &operator=(const Channel &) = delete;

    bool isOpen() const { return m_ares != nullptr; }
    bool isIdle() const { return m_running == 0; }
    bool isOld(Clock::time_point now) const { return now - m_begun >= settingsTime; }

    void ask(const std::shared_ptr<Request> &request, int family)
    {
        ares_addrinfo_hints hints{};
        hints.ai_family = family;
        hints.ai_socktype = SOCK_DGRAM;
        hints.ai_flags = ARES_AI_NOSORT;
        ++m_running;
        ++m_resolver.m_running;
        auto query = std::make_unique<Query>(Query{*this, request, family});
        ::ares_getaddrinfo(m_ares, request->host.c_str(), nullptr, &hints, &Channel::answered,
                           query.release());
    }

    /// What is overdue is asked again or given up.
    void lookAtTimes() { ::ares_process_fd(m_ares, ARES_SOCKET_BAD, ARES_SOCKET_BAD); }

private:
    struct Query
    {
        Channel &channel;
        std::weak_ptr<Request> request;
        int family;
    };

    /// Milliseconds for the first answer of each of so many servers.
    static int silenceOf(int servers)
    {
        constexpr int shortest = 100;
        constexpr int parts = (1 << roundsOfServers) - 1;
        return std::max(shortest, int(patience.count()) / parts / servers);
    }

    bool open(int silence)
    {
        ares_options options{};
        options.timeout = silence;
        options.tries = roundsOfServers;
        options.flags = ARES_FLAG_STAYOPEN;
        char lookups[] = "b"; // the hosts file is read once for all names, not here for each
        options.lookups = lookups;
        options.socket_receive_buffer_size = answersBuffer;
        options.sock_state_cb = &Channel::socketChanged;
        options.sock_state_cb_data = this;
        const bool opened =
            ::ares_init_options(&m_ares, &options,
                                ARES_OPT_TIMEOUTMS | ARES_OPT_TRIES | ARES_OPT_FLAGS | ARES_OPT_LOOKUPS |
                                    ARES_OPT_SOCK_RCVBUF | ARES_OPT_SOCK_STATE_CB) == ARES_SUCCESS;
        if (!opened) {
            m_ares = nullptr;
        }
        return opened;
    }

    bool use(const std::string &servers)
    {
        return ::ares_set_servers_ports_csv(m_ares, servers.c_str()) == ARES_SUCCESS;
    }

    int serverCount() const
    {
        ares_addr_port_node *servers = nullptr;
        if (::ares_get_servers_ports(m_ares, &servers) != ARES_SUCCESS) {
            return 1;
        }
        int count = 0;
        for (const ares_addr_port_node *server = servers; server != nullptr; server = server->next) {
            ++count;
        }
        ::ares_free_data(servers);
        return count;
    }

    static void answered(void *argument, int status, int, ares_addrinfo *found)
    {
        const std::unique_ptr<Query> query(static_cast<Query *>(argument));
        Channel &channel = query->channel;
        --channel.m_running;
        --channel.m_resolver.m_running;
        std::optional<asio::ip::address> address;
        if (found != nullptr) {
            address = firstAddress(*found);
            ::ares_freeaddrinfo(found);
        }
        const std::shared_ptr<Request> request = query->request.lock();
        if (!request || channel.m_isEnding) {
            return;
        }
        if (!address && status == ARES_ENODATA && query->family == AF_INET && request->takesV6) {
            channel.ask(request, AF_INET6);
        } else {
            answer(request, address);
        }
    }

    static void socketChanged(void *argument, ares_socket_t socket, int readable, int writable)
    {
        static_cast<Channel *>(argument)->watch(socket, readable != 0, writable != 0);
    }

    /// Called by the library before it closes a socket, too.
    void watch(ares_socket_t socket, bool readable, bool writable)
    {
        const auto found = m_watches.find(socket);
        if (!readable && !writable) {
            if (found != m_watches.end()) {
                found->second->close();
                m_watches.erase(found);
            }
            return;
        }
        if (found != m_watches.end()) {
            found->second->await(readable, writable);
        } else if (const std::optional<SocketHandle> duplicate = duplicateSocket(socket)) {
            auto ready = [this, socket](bool toRead) {
                ::ares_process_fd(m_ares, toRead ? socket : ARES_SOCKET_BAD,
                                  toRead ? ARES_SOCKET_BAD : socket);
            };
            const auto watch = std::make_shared<Watch>(m_resolver.m_context, *duplicate, std::move(ready));
            m_watches.emplace(socket, watch);
            watch->await(readable, writable);
        }
    }

    NameResolver &m_resolver;
    ares_channel m_ares = nullptr;
    Clock::time_point m_begun = Clock::now();
    std::map<ares_socket_t, std::shared_ptr<Watch>> m_watches;
    int m_running = 0;
    bool m_isEnding = false;
};

NameResolver::NameResolver(asio::io_context &context, Options options)
    : m_context(context), m_options(std::move(options)), m_hosts(m_options.hostsFile), m_timer(context)
{}

NameResolver::~NameResolver() = default;

NameResolver::Lookup NameResolver::lookUp(const std::string &host, bool takesV6, Found found)
{
    auto request = std::make_shared<Request>(Request{host, takesV6, std::move(found)});
    for (const std::string &known : m_hosts.addressesOf(host)) {
        asio::error_code error;
        const asio::ip::address address = asio::ip::make_address(known, error);
        if (!error && (address.is_v4() || takesV6)) {
            asio::post(m_context, [weak = std::weak_ptr(request), address] {
                if (const auto waiting = weak.lock()) {
                    answer(waiting, address);
                }
            });
            return request;
        }
    }
    m_queue.push_back(request);
    wakeAt(m_nextTurn);
    return request;
}

void NameResolver::answer(const std::shared_ptr<Request> &request,
                          const std::optional<asio::ip::address> &address)
{
    if (const Found found = std::exchange(request->found, nullptr)) {
        found(address);
    }
}

void NameResolver::wakeAt(Clock::time_point time)
{
    if (m_wakesAt && *m_wakesAt <= time) {
        return;
    }
    m_wakesAt = time;
    m_timer.expires_at(time);
    m_timer.async_wait([this, isThere = std::weak_ptr(m_isThere)](const asio::error_code &error) {
        if (!error && !isThere.expired()) {
            m_wakesAt.reset();
            turn();
        }
    });
}

void NameResolver::turn()
{
    const Clock::time_point now = Clock::now();
    m_nextTurn = now + turnTime;
    for (const auto &channel : m_channels) {
        channel->lookAtTimes();
    }
    giveUpOnSilence();
    for (int begun = 0; begun < lookupsATurn && m_running < mostAtOnce && !m_queue.empty();) {
        const std::shared_ptr<Request> request = m_queue.front().lock();
        m_queue.pop_front();
        if (request) {
            begin(request);
            ++begun;
        }
    }
    std::erase_if(m_channels, [](const auto &channel) { return channel->isIdle(); });
    if (!m_queue.empty()) {
        wakeAt(m_nextTurn);
    } else if (!m_channels.empty()) {
        wakeAt(now + silenceTime);
    }
}

void NameResolver::begin(const std::shared_ptr<Request> &request)
{
    const Clock::time_point now = Clock::now();
    if (m_channels.empty() || m_channels.back()->isOld(now)) {
        auto channel = std::make_unique<Channel>(*this, m_options.servers);
        if (!channel->isOpen()) {
            answer(request, std::nullopt);
            return;
        }
        m_channels.push_back(std::move(channel));
    }
    m_begun.emplace_back(now + patience, request);
    m_channels.back()->ask(request, AF_INET);
}

void NameResolver::giveUpOnSilence()
{
    const Clock::time_point now = Clock::now();
    while (!m_begun.empty()) {
        const std::shared_ptr<Request> request = m_begun.front().second.lock();
        if (request && request->found && m_begun.front().first > now) {
            return;
        }
        m_begun.pop_front();
        if (request) {
            answer(request, std::nullopt);
        }
    }
}

} // namespace ktr

#pragma once

#include "platform/hosts_file.h"

#include <QHash>

#include <asio/ip/address.hpp>
#include <asio/steady_timer.hpp>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ktr {

/// Finds the addresses of host names, of thousands at a time: from the hosts file at once, from the system's
/// name servers otherwise. A name that nobody answers for does not hold up the others: each look-up has the
/// same time, and they start at a pace that a name server can bear. Everything happens on the thread of the
/// context; with nothing to look up there are no sockets and no timers.
class NameResolver
{
public:
    using Found = std::function<void(const std::optional<asio::ip::address> &)>;
    /// Dropping it cancels the look-up.
    using Lookup = std::shared_ptr<void>;

    struct Options
    {
        QString hostsFile = systemHostsFile();
        std::string servers = {}; ///< "address:port,..." instead of those that the system is set up for
    };

    /// After this time a name counts as unknown.
    static constexpr std::chrono::milliseconds patience{1900};
    /// Look-ups started per second: the names of the largest system within 2 s.
    static constexpr int perSecond = 5'000;
    /// At a time, of the 65,536 that can be told apart.
    static constexpr int mostAtOnce = 16'384;

    NameResolver(asio::io_context &context, Options options);
    ~NameResolver(); ///< nothing that is still looked up is answered
    NameResolver(const NameResolver &) = delete;
    NameResolver &operator=(const NameResolver &) = delete;

    /// Looks for the first IPv4 address of a name; where there is none, for an IPv6 one if the caller takes
    /// it. Never calls `found` before it returns.
    [[nodiscard]] Lookup lookUp(const std::string &host, bool takesV6, Found found);

private:
    using Clock = std::chrono::steady_clock;
    struct Request;
    class Channel;

    static void answer(const std::shared_ptr<Request> &request,
                       const std::optional<asio::ip::address> &address);
    void wakeAt(Clock::time_point time);
    void turn();
    void begin(const std::shared_ptr<Request> &request);
    void giveUpOnSilence();

    asio::io_context &m_context;
    Options m_options;
    HostsFile m_hosts;
    asio::steady_timer m_timer;
    std::optional<Clock::time_point> m_wakesAt;
    Clock::time_point m_nextTurn; ///< no earlier
    std::deque<std::weak_ptr<Request>> m_queue;
    /// In the order in which they began, so that of their ends, too.
    std::deque<std::pair<Clock::time_point, std::weak_ptr<Request>>> m_begun;
    std::vector<std::unique_ptr<Channel>> m_channels; ///< the last one takes new look-ups
    int m_running = 0;
    std::shared_ptr<bool> m_isThere =
        std::make_shared<bool>(true); ///< for what is called when it may have gone
};

} // namespace ktr

#pragma once

#include <QString>

#include <asio/ip/address.hpp>

#include <optional>
#include <string>

namespace ktr {

/// Where a module is to be found.
struct ModuleAddress
{
    std::string host;
    std::optional<asio::ip::address> literal; ///< none: the host is a name
    quint16 port = 0;
};

/// "host", "host:port" or "[host]:port" taken apart; the host is an IPv4 address, with leading zeros or
/// without, an IPv6 address or a name. `usualPort` is that of
/// "host" alone. Nothing for what no module can have.
std::optional<ModuleAddress> moduleAddress(const QString &text, quint16 usualPort);

} // namespace ktr

#pragma once

#include "link/udp_pair.h"

#include <asio/ip/address.hpp>

#include <optional>
#include <string>

namespace ktr {

/// Where a module is to be found.
struct ModuleAddress
{
    std::string host;
    std::optional<asio::ip::address> literal; ///< none: the host is a name
    quint16 port = UdpPair::modulePort;
};

/// "host", "host:port" or "[host]:port" taken apart; the host is an IPv4 address, with leading zeros or
/// without, an IPv6 address or a name. Nothing for what no module can have.
std::optional<ModuleAddress> moduleAddress(const QString &text);

} // namespace ktr

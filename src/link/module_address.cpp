#include "link/module_address.h"

#include "config/address.h"

#include <algorithm>

namespace ktr {

namespace {

/// Whether a host can be a name to look up. Without a letter it is a mistyped address.
bool isHostName(const QString &host)
{
    constexpr qsizetype longest = 253;
    const auto isPart = [](QChar c) { return c.isLetterOrNumber() || c.isMark() || c == u'-' || c == u'_'; };
    return host.size() <= longest &&
           std::ranges::all_of(host, [&](QChar c) { return isPart(c) || c == u'.'; }) &&
           std::ranges::any_of(host, [](QChar c) { return c.isLetter(); });
}

} // namespace

std::optional<ModuleAddress> moduleAddress(const QString &text, quint16 usualPort)
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
    ModuleAddress address{withoutLeadingZeros(host).toStdString(), {}, usualPort};
    if (!port.isEmpty()) {
        bool ok = false;
        address.port = port.mid(1).toUShort(&ok);
        if (!ok || address.port == 0) {
            return std::nullopt;
        }
    }
    asio::error_code error;
    const asio::ip::address literal = asio::ip::make_address(address.host, error);
    // Some systems also accept three numbers and other forms as an address.
    const bool isName = error || (literal.is_v4() && literal.to_string() != address.host);
    if (!isName) {
        address.literal = literal;
    }
    const bool isOfAModule = isName ? isHostName(host) : !literal.is_unspecified() && !literal.is_multicast();
    return isOfAModule ? std::optional(address) : std::nullopt;
}

} // namespace ktr

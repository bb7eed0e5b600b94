#include "editor/network_adapter.h"

#include "config/address.h"
#include "look/outside_texts.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace ktr {

namespace {

QString adapterText(const NetworkAdapter &adapter)
{
    return shortenedLine(adapter.name) + QLatin1String(" (") + adapter.address + u')';
}

bool isInNetwork(quint32 address, const NetworkAdapter &adapter)
{
    constexpr int bits = 32;
    const auto own = addressNumber(adapter.address);
    const int shift = bits - std::clamp(adapter.prefix, 0, bits);
    return own && (shift == bits || (address >> shift) == (*own >> shift));
}

} // namespace

QString networkText(const QString &address, const QList<NetworkAdapter> &adapters)
{
    if (adapters.isEmpty()) {
        return QCoreApplication::translate("NetworkAdapter",
                                           "No network adapter of this computer is connected");
    }
    QStringList all;
    for (const NetworkAdapter &adapter : adapters) {
        all += adapterText(adapter);
    }
    const QString list = all.join(QLatin1String(", "));
    const auto number = addressDefect(address) == AddressDefect::None ? addressNumber(address) : std::nullopt;
    if (!number) {
        return QCoreApplication::translate("NetworkAdapter", "Adapters of this computer: %1").arg(list);
    }
    const auto found = std::ranges::find_if(
        adapters, [&](const NetworkAdapter &adapter) { return isInNetwork(*number, adapter); });
    return found != adapters.end()
               ? QCoreApplication::translate("NetworkAdapter", "Through %1").arg(adapterText(*found))
               : QCoreApplication::translate("NetworkAdapter",
                                             "In none of this computer's networks, so through a router: %1")
                     .arg(list);
}

} // namespace ktr

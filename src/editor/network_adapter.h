#pragma once

#include <QList>
#include <QString>

namespace ktr {

/// An address of one of this computer's network adapters, with the length of its network's part.
struct NetworkAdapter
{
    QString name;
    QString address; ///< IPv4
    int prefix = 0;
};

/// What an address is reached through: "eth0 (192.168.1.5)"; where no adapter is in its network, or where it
/// is a name, all of them.
QString networkText(const QString &address, const QList<NetworkAdapter> &adapters);

} // namespace ktr

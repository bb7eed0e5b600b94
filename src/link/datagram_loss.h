#pragma once

#include <QString>

namespace ktr {

/// Datagrams that were dropped because more came than is taken in, or the program was not running.
struct DatagramLoss
{
    qint64 dropped = 0;   ///< 0: the system does not say how many
    bool isFlood = false; ///< the module sent more than it may for long
    bool isOver = false;
    bool operator==(const DatagramLoss &) const = default;
};

/// A loss in words for the user.
QString textOf(const DatagramLoss &loss);

} // namespace ktr

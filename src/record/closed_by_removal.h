#pragma once

#include <QString>

namespace ktr {

/// Stands in the place of who acknowledged an alarm: nobody did, its station was removed from the list.
inline QString closedByRemoval()
{
    return QStringLiteral("(station removed)");
}

} // namespace ktr

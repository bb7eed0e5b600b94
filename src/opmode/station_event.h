#pragma once

#include <QString>

namespace ktr {

/// Something that a station did, as it is told outside of the tree.
struct StationEvent
{
    enum class Kind { Notification, Values, History, Message, Quality, Puk, Alive, Silent, Flood, Loss };
    QString kennung;
    Kind kind;
    QString text;
    qint64 at = 0; ///< milliseconds since 1970, UTC
};

} // namespace ktr

#pragma once

#include "opmode/station/station_attributes.h"

#include <cstdint>
#include <string>

namespace ktr {

/// A change of the tree: an acknowledgement, or what the journal of the version before says.
struct NodeChange
{
    enum class What : quint8 {
        Added = 1,
        Text,
        Colour, ///< of a notification from red to another: it was acknowledged
        Removed,
        Station,  ///< a station's attributes; the tree does not keep them
        Repeated, ///< a notification arrived again
        Saved     ///< a file with all changes so far was begun; only that journal knows it
    };
    What what = What::Added;
    std::string key;
    std::string text;        ///< of Added and Text
    std::int32_t colour = 0; ///< of Added, Colour and Repeated
    qint64 moment = 0;       ///< milliseconds since 1970, UTC; 0 when not known
    int count = 0;           ///< of Repeated, and of an acknowledgement: arrivals of the notification so far
    StationAttributes station{}; ///< of Station
    qint64 raised = 0;           ///< of Repeated: as in Arrival
    bool operator==(const NodeChange &) const = default;
};

} // namespace ktr

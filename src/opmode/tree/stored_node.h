#pragma once

#include "opmode/station/station_attributes.h"

#include <cstdint>
#include <string_view>

namespace ktr {

/// So many nodes before one is handed over, it is announced.
inline constexpr std::size_t nodesAhead = 12;

/// A node as its file holds it. Valid while it is handed over.
struct StoredNode
{
    std::string_view key;
    std::string_view text;
    std::int32_t colour;
    const StationAttributes *station; ///< of a key without "/", else none
    std::string_view later; ///< the key of the one that comes nodesAhead later, so that memory can be fetched
                            ///< meanwhile; empty when there is none
};

} // namespace ktr

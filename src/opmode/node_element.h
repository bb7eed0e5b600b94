#pragma once

#include "opmode/station_attributes.h"

#include <cstdint>
#include <string_view>

namespace ktr {

/// A node as its file holds it. Valid while it is handed over.
struct NodeElement
{
    std::string_view key;
    std::string_view text;
    std::int32_t colour;
    const StationAttributes *station; ///< of a key without "/", else none
    std::string_view later;           ///< the key of one that comes soon: memory can be fetched meanwhile
};

} // namespace ktr

#pragma once

#include "config/channel_names.h"

namespace ktr {

// What a window calls an input of a station, with what the user calls it.

/// "Analog In 1 – Well"
QString inputCaption(int channel, const ChannelNames &names);
/// For narrow places: "9 Well"; "Analog In 1" where it has no name.
QString shortInputCaption(int channel, const ChannelNames &names);

} // namespace ktr

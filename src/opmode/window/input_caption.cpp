#include "opmode/window/input_caption.h"

#include "opmode/tree/node_texts.h"

namespace ktr {

QString inputCaption(int channel, const ChannelNames &names)
{
    return withChannelName(channelCaption(channel).trimmed(), channel, names);
}

QString shortInputCaption(int channel, const ChannelNames &names)
{
    return names.of(channel).name.isEmpty() ? channelCaption(channel).trimmed()
                                            : shortNamedChannel(channel, names);
}

} // namespace ktr

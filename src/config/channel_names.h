#pragma once

#include "config/channels.h"
#include "platform/status.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>

namespace ktr {

/// What the user calls an input or output of one module, and the unit of its values. Either may be empty.
struct ChannelName
{
    static constexpr int longestName = 60;
    static constexpr int longestUnit = 12;

    QString name;
    QString unit;

    bool operator==(const ChannelName &) const = default;
};

/// The names of channels 1 to 18. No module knows them: they stand in a file beside the configuration's.
struct ChannelNames
{
    std::array<ChannelName, channelCount> channels;

    /// An empty one for what is no channel.
    const ChannelName &of(int channel) const;
    bool isEmpty() const { return *this == ChannelNames(); }

    bool operator==(const ChannelNames &) const = default;
};

/// The list text of a channel with its name behind: "1 DigIn 1 – Pump 1".
QString namedChannel(int channel, const ChannelNames &names);
/// The same for narrow places: "1 Pump 1", or the list text of a channel without a name.
QString shortNamedChannel(int channel, const ChannelNames &names);
/// Any text of a channel with its name behind.
QString withChannelName(const QString &text, int channel, const ChannelNames &names);

/// As they are kept: on one line, not too long, a unit without ";".
ChannelName storedChannelName(const QString &name, const QString &unit);

/// The file of names beside a configuration's: "north.names" of "north.xml".
QString namesFileOf(const QString &configurationFile);

/// Lines "1=Pump 1;unit" in UTF-8 of the channels that have a name or unit. What cannot be understood is told
/// in a remark with its line.
QByteArray writeChannelNames(const ChannelNames &names);
ChannelNames readChannelNames(const QByteArray &content, QStringList &remarks);

/// Reads the file of names beside a configuration's; empty names where there is none. What cannot be read is
/// told in a remark.
ChannelNames readNamesBeside(const QString &configurationFile, QStringList &remarks);

} // namespace ktr

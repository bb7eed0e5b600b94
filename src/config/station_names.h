#pragma once

#include "config/channel_names.h"
#include "platform/file_mark.h"

#include <QHash>

namespace ktr {

/// What users call the inputs and outputs of stations: of each configuration with a file of names beside it,
/// by the identifier in it. Each file is read again only when it has changed. To be used on one thread.
class StationNames
{
public:
    /// Of a folder with more files of names these are looked at.
    static constexpr int mostFiles = 1'000;

    /// Looks into folders. Of several configurations with one identifier that counts whose names are newest.
    /// Gives whether any name or unit has changed.
    bool look(const QStringList &folders);

    /// Empty ones for a station that no configuration is of.
    ChannelNames of(const QString &station) const;

private:
    struct Known
    {
        FileStamp configurationOf;
        FileStamp namesOf;
        QString station;
        ChannelNames names;
    };
    static Known read(const QFileInfo &configuration, const QFileInfo &names);

    QHash<QString, Known> m_known; ///< by the configuration's path
    QHash<QString, Known> m_names; ///< by station
};

} // namespace ktr

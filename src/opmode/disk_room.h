#pragma once

#include <QString>

#include <optional>

namespace ktr {

/// Bytes of a disk.
struct DiskRoom
{
    qint64 free = 0;
    qint64 all = 0;
};

/// Of the disk that a folder is on; nothing when the system does not tell.
std::optional<DiskRoom> systemDiskRoom(const QString &folder);

} // namespace ktr

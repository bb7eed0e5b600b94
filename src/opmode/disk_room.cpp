#include "opmode/disk_room.h"

#include <QStorageInfo>

namespace ktr {

std::optional<DiskRoom> systemDiskRoom(const QString &folder)
{
    const QStorageInfo disk(folder);
    return disk.isValid() && disk.bytesTotal() > 0
               ? std::optional(DiskRoom{disk.bytesAvailable(), disk.bytesTotal()})
               : std::nullopt;
}

} // namespace ktr

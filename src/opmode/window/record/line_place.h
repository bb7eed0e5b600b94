#pragma once

#include "opmode/window/record/record_table.h"

#include <QModelIndex>

namespace ktr {

class OperationalMode;

/// Where the tree has what a line of the record tells of.
struct LinePlace
{
    QString kennung;   ///< of its station; empty when that is not in the list, or the line is about none
    QModelIndex entry; ///< of the notification; invalid when it is about something else, or has been removed
};
LinePlace placeOf(const RecordLine &line, const OperationalMode &mode);

} // namespace ktr

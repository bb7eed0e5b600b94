#pragma once

#include "opmode/tree/station_tree.h"
#include "record/record_reader.h"

namespace ktr {

/// Puts stations into a tree as a record without a file has them: their names, notifications and which of
/// these are red. Gives their keys by their numbers; a name that another station has, or none can have,
/// becomes another one.
QHash<qint64, QString> loadStations(StationTree &tree, const RecordedStations &states);

} // namespace ktr

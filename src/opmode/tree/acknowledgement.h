#pragma once

#include "opmode/tree/station_tree.h"

namespace ktr {

/// What acknowledging entries changes, without changing it: the red ones of these notifications, or all under
/// a notifications node or a station, become normal, and so do the nodes above when none stays red.
/// StationTree::carryOut() does it.
QList<NodeChange> acknowledgementOf(const QModelIndexList &entries, const StationTree &tree,
                                    const QDateTime &now);

} // namespace ktr

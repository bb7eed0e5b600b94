#pragma once

#include "opmode/list_parts.h"

namespace ktr {

class Acknowledger;

/// The alarms of a list that was opened: what stood at the end of the last run, and what else is red in its
/// tree, of a list that has no record yet or was edited. What is red no more was acknowledged by whoever
/// edited it.
void takeUpAlarms(const ListParts &parts, const Acknowledger &acknowledger, const QList<AlarmRow> &standing,
                  const QList<Shelf> &shelves);

} // namespace ktr

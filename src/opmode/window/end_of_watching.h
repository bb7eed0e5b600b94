#pragma once

#include <QString>

namespace ktr {

class OperationalMode;

/// How many stations nobody watches once this list is closed: those that are online. None of a list that was
/// only joined, since who keeps it goes on.
int stationsWithoutWatch(const OperationalMode &mode);

/// What is asked before the list is closed: that nobody watches its stations then, or that alarms are open.
/// Empty where neither is so.
QString questionBeforeEnd(const OperationalMode &mode);

} // namespace ktr

#pragma once

#include "link/problems.h"

#include <QDateTime>

namespace ktr {

/// Adds what each field may hold, but what together has no effect or a dangerous one: notifications that
/// reach nobody, limits that a channel never crosses, switch points that never switch, addresses that no
/// module can have. `now` tells what lies in the past.
void findEffectProblems(const Configuration &configuration, const QDateTime &now, QList<Problem> &problems);

} // namespace ktr

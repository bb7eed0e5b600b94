#pragma once

#include "config/configuration.h"
#include "link/problem.h"

#include <QDateTime>
#include <QList>

namespace ktr {

/// Adds problems of fields that are fine one by one, but have no effect or a dangerous one together:
/// notifications that reach nobody, limits that a channel never crosses, switch points that never switch,
/// addresses that no module can have. What is before `now` is past.
void findEffectProblems(const Configuration &configuration, const QDateTime &now, QList<Problem> &problems);

} // namespace ktr

#pragma once

#include "opmode/overview/overview_model.h"

namespace ktr {

// How many of stations are how, in words.

/// "in alarm 3"; empty for none.
QString inAlarmText(const OverviewModel::Numbers &numbers);
/// "silent 2"; empty for none.
QString silentText(const OverviewModel::Numbers &numbers);
/// "12, in alarm 3, silent 2".
QString numbersText(const OverviewModel::Numbers &numbers);

} // namespace ktr

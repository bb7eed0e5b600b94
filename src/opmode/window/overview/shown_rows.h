#pragma once

#include "opmode/overview/overview_model.h"

namespace ktr {

// The rows of an overview, of which some are headings, as stations and back.

/// The keys of the stations that are shown, in their order.
QStringList shownKeys(const OverviewModel &model);
/// The key of the station behind the last of these that is shown, or else before it, that is none of them;
/// empty for none.
QString shownBeside(const OverviewModel &model, const QStringList &stations);
/// Those of these stations that are shown, in growing order.
std::vector<int> rowsOf(const OverviewModel &model, const QStringList &stations);

} // namespace ktr

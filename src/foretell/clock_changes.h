#pragma once

#include "foretell/module_time.h"

#include <QList>
#include <QTimeZone>

namespace ktr {

/// The clocks here go forward or back, while the module's goes on.
struct ClockChange
{
    ModuleMs at = 0;        ///< as the module's clock shows it that was set at the beginning of the span
    int aheadBySeconds = 0; ///< from then on the clocks here are so much ahead of the module's

    bool operator==(const ClockChange &) const = default;
};

/// Those within a span, for a module whose clock was set at its beginning or before, since the last change.
QList<ClockChange> clockChanges(const ModuleSpan &span, const QTimeZone &zone);

/// What the clocks here show when the module's shows `at`.
ModuleMs shownHere(ModuleMs at, const QList<ClockChange> &changes);

} // namespace ktr

#include "foretell/clock_changes.h"

namespace ktr {

QList<ClockChange> clockChanges(const ModuleSpan &span, const QTimeZone &zone)
{
    QList<ClockChange> changes;
    if (!zone.isValid() || !zone.hasTransitions()) {
        return changes;
    }
    const QDateTime clock = clockOf(span.from);
    const QDateTime begin(clock.date(), clock.time(), zone);
    const int offset = zone.offsetFromUtc(begin);
    const QDateTime end = begin.addMSecs(span.to - span.from);
    for (const QTimeZone::OffsetData &change : zone.transitions(begin, end)) {
        const ModuleMs at = change.atUtc.toMSecsSinceEpoch() + offset * msPerSecond;
        const int ahead = change.offsetFromUtc - offset;
        const int before = changes.isEmpty() ? 0 : changes.constLast().aheadBySeconds;
        if (span.contains(at) && ahead != before) { // others change a name alone
            changes += ClockChange{at, ahead};
        }
    }
    return changes;
}

ModuleMs shownHere(ModuleMs at, const QList<ClockChange> &changes)
{
    int ahead = 0;
    for (const ClockChange &change : changes) {
        ahead = at >= change.at ? change.aheadBySeconds : ahead;
    }
    return at + ahead * msPerSecond;
}

} // namespace ktr

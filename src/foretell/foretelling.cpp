#include "foretell/foretelling.h"

#include "config/channels.h"

#include <QSet>

#include <algorithm>
#include <map>

namespace ktr {

QList<SeriesValue> valuesIn(const QList<SeriesValue> &values, const ModuleSpan &span)
{
    std::map<int, double> atBegin;
    QList<SeriesValue> later;
    for (const SeriesValue &each : values) {
        if (each.at <= span.from) {
            atBegin[each.channel] = each.value;
        } else if (each.at < span.to) {
            later += each;
        }
    }
    QList<SeriesValue> all;
    for (const auto &[channel, value] : atBegin) {
        all += SeriesValue{span.from, channel, value};
    }
    return all + later;
}

QList<int> watchedChannels(const Configuration &configuration)
{
    QList<int> channels;
    for (int channel = 1; channel <= channelCount; ++channel) {
        const auto watches = [channel, index = 0](const LimitValue &value) mutable {
            return !LimitValue::isReference(index++) && value.channel == channel;
        };
        if (std::ranges::any_of(configuration.limitValues, watches)) {
            channels += channel;
        }
    }
    return channels;
}

QList<QDate> holidaysIn(const HolidayList &list, const ModuleSpan &span)
{
    QList<QDate> days;
    for (const QDate &day : holidaysOf(list)) {
        if (moduleMs(day) + msPerDay > span.from && moduleMs(day) < span.to) {
            days += day;
        }
    }
    std::ranges::sort(days);
    return days;
}

Foretold foretell(const Configuration &configuration, const ModuleSpan &span, const ValueSeries &series,
                  const QTimeZone &zone, const Assumptions &otherwise)
{
    Foretold foretold;
    ModulePlay play(configuration, span, otherwise);
    for (const SeriesValue &each : valuesIn(series.values, span)) {
        foretold.events += play.setValue(each.at, each.channel, each.value);
    }
    foretold.events += play.advance(span.to - 1);
    foretold.quietPoints = play.calendar().quiet;
    for (int index = 0; index < LimitValue::count; ++index) {
        if (const auto why = play.whyUnplayed(index)) {
            foretold.unplayed.append({index, *why});
        }
    }
    for (const int channel : watchedChannels(configuration)) {
        if (!play.value(channel)) {
            foretold.withoutValues += channel;
        }
    }
    foretold.holidays = holidaysIn(configuration.holidays, span);
    foretold.clockChanges = clockChanges(span, zone);
    for (const PlayEvent &event : foretold.events) {
        foretold.restsOn |= event.restsOn;
    }
    for (const QuietPoint &quiet : foretold.quietPoints) {
        foretold.restsOn.addIf(quiet.why == QuietPoint::Why::NotTheTime, Assumption::StartDateHolds);
    }
    foretold.restsOn.addIf(!foretold.clockChanges.isEmpty(), Assumption::ModuleClock);
    foretold.restsOn.addIf(series.isOfArchive, Assumption::ArchiveSecondValue);
    return foretold;
}

} // namespace ktr

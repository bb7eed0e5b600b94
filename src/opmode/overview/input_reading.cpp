#include "opmode/overview/input_reading.h"

#include "config/channel_use.h"
#include "opmode/operational_mode.h"
#include "platform/text_rules.h"

#include <algorithm>

namespace ktr {

namespace {

/// Of a channel's values, where no module's configuration can say otherwise.
QString knownUnit(int channel)
{
    switch (fixedMeasure(channel)) {
    case Measure::Temperature:
        return QStringLiteral("°C");
    case Measure::Hours:
        return QStringLiteral("h");
    default:
        return {};
    }
}

bool isState(double value)
{
    return value == 0 || value == 1;
}

QString receivedValue(const OperationalMode &mode, const QString &kennung, int channel)
{
    const QString key = QStringLiteral("%1/ip/ip%2").arg(kennung).arg(channel);
    const QString line = mode.tree().find(key).data().toString();
    constexpr QLatin1StringView sign(" = ");
    const qsizetype at = line.indexOf(sign);
    const QString received = at < 0 ? QString() : line.sliced(at + sign.size());
    return received == u"?" ? QString() : received;
}

} // namespace

InputReading readingOf(const OperationalMode &mode, const QString &kennung, int channel,
                       const StationConfiguration &configuration)
{
    InputReading reading;
    reading.value = receivedValue(mode, kennung, channel);
    const QString &unit = configuration.names().of(channel).unit;
    reading.unit = unit.isEmpty() ? knownUnit(channel) : unit;
    reading.trend = mode.trends().trend(kennung, channel);
    const bool onlyStates = std::ranges::all_of(
        reading.trend, [](const ValueTrends::Point &point) { return isState(double(point.value)); });
    // The first four inputs count where the configuration lets them; it may not be known.
    const Measure known = configuration.measure(channel);
    const Measure measure = known == Measure::None ? fixedMeasure(channel) : known;
    const bool hasStates =
        measure == Measure::Binary || (measure == Measure::None && channel <= 4 && onlyStates);
    const std::optional<double> number = toNumber(reading.value);
    if (hasStates && number && isState(*number)) {
        reading.state = *number == 1;
    }
    reading.limits = configuration.limitsOf(channel);
    const auto beyond = std::ranges::find_if(
        reading.limits, [&number](const InputLimit &limit) { return number && limit.isBeyond(*number); });
    if (beyond != reading.limits.end()) {
        reading.beyond = *beyond;
    }
    return reading;
}

QList<int> shownChannels(const OperationalMode &mode, const QString &kennung, const ChannelNames &names,
                         const QList<int> &chosen, int most)
{
    if (!chosen.isEmpty()) {
        return chosen.first(std::min<qsizetype>(most, chosen.size()));
    }
    QList<int> channels;
    const auto addWhere = [&](const auto &holds) {
        for (int channel = 1; channel <= channelCount && channels.size() < most; ++channel) {
            if (holds(channel)) {
                channels += channel;
            }
        }
    };
    addWhere([&](int channel) { return !names.of(channel).name.isEmpty(); });
    if (channels.isEmpty()) {
        addWhere([&](int channel) { return !receivedValue(mode, kennung, channel).isEmpty(); });
    }
    return channels;
}

} // namespace ktr

#include "editor/limit_units.h"

#include "config/channel_use.h"

namespace ktr {

LimitUnits limitUnits(const Configuration &configuration, int channel, const TextTable &texts)
{
    const auto both = [](const QString &unit) { return LimitUnits{unit, unit}; };
    switch (channelMeasure(configuration, channel)) {
    case Measure::None:
        return {};
    case Measure::Binary:
        return {QStringLiteral("0/1"), QStringLiteral("0")}; // two states leave no room for a hysteresis
    case Measure::Pulses:
        return both(texts.text(Text::Pulses));
    case Measure::Hours:
        return both(texts.text(Text::Hours));
    case Measure::Scaled:
        return both(scalingOf(configuration, channel)->unit);
    case Measure::Temperature:
        return {QStringLiteral("°C"), texts.text(Text::Kelvin)};
    }
    return {};
}

} // namespace ktr

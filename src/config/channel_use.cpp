#include "config/channel_use.h"

#include "platform/text_rules.h"

namespace ktr {

namespace {

template <class Records> auto at(const Records &records, int index) -> decltype(records.data())
{
    return &records[static_cast<std::size_t>(index)];
}

} // namespace

const DigitalInput *countingInputOf(const Configuration &configuration, int channel)
{
    return channel >= 1 && channel <= 4 ? at(configuration.digitalInputs, channel - 1) : nullptr;
}

const OutputHours *outputHoursOf(const Configuration &configuration, int channel)
{
    return channel == 15 || channel == 16 ? at(configuration.outputHours, channel - 15) : nullptr;
}

const Scaling *scalingOf(const Configuration &configuration, int channel)
{
    const bool input = channel == 9 || channel == 10;
    const bool output = channel == 13 || channel == 14;
    return input || output ? at(configuration.scaling, channel - (input ? 9 : 11)) : nullptr;
}

Measure fixedMeasure(int channel)
{
    const bool isOutput = channel == 11 || channel == 12;
    return channel == 17 || channel == 18               ? Measure::Temperature
           : channel == 15 || channel == 16             ? Measure::Hours
           : (channel >= 5 && channel <= 8) || isOutput ? Measure::Binary
           : channel >= 9 && channel <= 14              ? Measure::Scaled
                                                        : Measure::None;
}

Measure channelMeasure(const Configuration &configuration, int channel)
{
    if (const DigitalInput *input = countingInputOf(configuration, channel)) {
        const bool first = channel <= 2;
        return first && input->countsPulses   ? Measure::Pulses
               : !first && input->countsHours ? Measure::Hours
                                              : Measure::Binary;
    }
    return fixedMeasure(channel);
}

QString startSent(const SwitchPoint &point)
{
    return point.start.isEmpty() ? QStringLiteral("0001010000") : point.start;
}

QString valueSent(const SwitchPoint &point)
{
    return leadingNumber(point.period) >= SwitchPoint::periodBound ? QStringLiteral("1") : point.value;
}

} // namespace ktr

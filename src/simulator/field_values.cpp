#include "simulator/field_values.h"

#include "config/channels.h"

#include <QStringList>

#include <cmath>
#include <numbers>

namespace ktr {

namespace {

constexpr qint64 start = 1'230'768'000; ///< counters begin with the year 2009
constexpr double aDay = 86'400;
constexpr qint64 noiseTime = 10; ///< seconds between two steps of the noise

quint64 mixed(quint64 number)
{
    number = (number ^ (number >> 30)) * 0xBF58476D1CE4E5B9;
    number = (number ^ (number >> 27)) * 0x94D049BB133111EB;
    return number ^ (number >> 31);
}

QString oneDigit(double value)
{
    const QString text = QString::number(value, 'f', 1);
    return text == QLatin1String("-0.0") ? QStringLiteral("0.0") : text;
}

} // namespace

/// In [0, 1), another one for each channel and step.
double FieldValues::chance(int channel, qint64 step) const
{
    const quint64 key = (quint64{m_seed} << 8U) + static_cast<quint64>(channel);
    constexpr double scale = 0x1p-53;
    return static_cast<double>(mixed(mixed(key) + static_cast<quint64>(step)) >> 11U) * scale;
}

/// Between about -1 and 1: a slow wave, a quicker one, and a little noise.
double FieldValues::waves(int channel, qint64 seconds, double period) const
{
    const double turns = static_cast<double>(seconds) / period + chance(channel, -1);
    const double slow = std::sin(2 * std::numbers::pi * turns);
    const double quick = std::sin(2 * std::numbers::pi * turns * 17.3);
    return 0.75 * slow + 0.2 * quick + 0.1 * (chance(channel, seconds / noiseTime) - 0.5);
}

/// Goes on and off every few minutes, each channel in a rhythm of its own.
bool FieldValues::isSwitchedOn(int channel, qint64 seconds) const
{
    const auto rhythm = 60 + static_cast<qint64>(chance(channel, -2) * 540);
    return chance(channel, seconds / rhythm) < 0.35;
}

QString FieldValues::value(int channel, const QDateTime &at) const
{
    const qint64 seconds = at.toSecsSinceEpoch();
    const auto running = static_cast<double>(std::max<qint64>(seconds - start, 0));
    const double own = chance(channel, -3); // no two stations are alike
    switch (channel) {
    case 7:
    case 8: // pulses: always more, now quicker and now slower
        return QString::number(
            static_cast<qint64>(running / (8 + 20 * own) + 200 * (1 + std::sin(running / 4000))));
    case 9: // a level in dm
        return oneDigit(24 + 8 * own + 9 * waves(channel, seconds, aDay / 3));
    case 10: // a flow in l/s
        return oneDigit(std::max(0.0, 12 + 6 * own + 11 * waves(channel, seconds, aDay)));
    case 13:
    case 14: // percent
        return QString::number(std::lround(50 + 48 * waves(channel, seconds / 300 * 300, aDay / 5)));
    case 15:
    case 16:
        return oneDigit(running / 3600 * (0.2 + 0.3 * own));
    case 17: // outside
        return oneDigit(6 + 6 * own + 9 * waves(channel, seconds, aDay));
    case 18: // in the cabinet
        return oneDigit(24 + 5 * own + 4 * waves(channel, seconds, aDay / 2));
    default:
        return isSwitchedOn(channel, seconds) ? QStringLiteral("1") : QStringLiteral("0");
    }
}

QString FieldValues::allValues(const QDateTime &at) const
{
    QStringList values;
    for (int channel = 1; channel <= channelCount; ++channel) {
        values += value(channel, at);
    }
    return values.join(u',');
}

} // namespace ktr

#pragma once

#include <QDateTime>
#include <QString>

namespace ktr {

/// What the inputs and outputs of a pumping station measure over time: the same for the same seed and time,
/// so that a history of the past agrees with the values of the present.
class FieldValues
{
public:
    explicit FieldValues(quint32 seed) : m_seed(seed) {}

    /// Channel 1 to 18 as a module reports it: digital inputs 0 or 1 (7 and 8 count pulses), analog ones
    /// with one digit behind the point, digital outputs, analog outputs in percent, operating hours of both
    /// pumps, temperatures in °C.
    QString value(int channel, const QDateTime &at) const;

    /// All channels, separated by ",".
    QString allValues(const QDateTime &at) const;

private:
    double chance(int channel, qint64 step) const;
    double waves(int channel, qint64 seconds, double period) const;
    bool isSwitchedOn(int channel, qint64 seconds) const;

    quint32 m_seed;
};

} // namespace ktr

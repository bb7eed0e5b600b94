#pragma once

#include <QString>

#include <optional>

namespace ktr {

/// A signal as it is measured, or given out, and the value that stands for it.
struct ScalingPoint
{
    double signal = 0;
    double value = 0;
};

struct ScalingLine
{
    double offset = 0;
    double factor = 1;
};

/// The offset and the factor with which value = offset + factor * signal goes through both points; nothing
/// where the signals are equal, or where numbers cannot tell.
std::optional<ScalingLine> scalingThrough(const ScalingPoint &one, const ScalingPoint &other);

/// A number for a field of the configuration: up to eight digits that count, a decimal point, no exponent.
QString scalingNumber(double number);

} // namespace ktr

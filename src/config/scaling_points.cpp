#include "config/scaling_points.h"

#include <algorithm>
#include <cmath>

namespace ktr {

std::optional<ScalingLine> scalingThrough(const ScalingPoint &one, const ScalingPoint &other)
{
    ScalingLine line;
    line.factor = (other.value - one.value) / (other.signal - one.signal);
    line.offset = one.value - line.factor * one.signal;
    return std::isfinite(line.factor) && std::isfinite(line.offset) ? std::optional(line) : std::nullopt;
}

QString scalingNumber(double number)
{
    constexpr int digits = 8;
    constexpr int mostDecimals = 12;
    const int before = number == 0 ? 1 : static_cast<int>(std::floor(std::log10(std::abs(number)))) + 1;
    QString text = QString::number(number, 'f', std::clamp(digits - before, 0, mostDecimals));
    if (text.contains(u'.')) {
        while (text.endsWith(u'0')) {
            text.chop(1);
        }
        if (text.endsWith(u'.')) {
            text.chop(1);
        }
    }
    return text == u"-0" ? QStringLiteral("0") : text;
}

} // namespace ktr

#pragma once

#include <QByteArray>

#include <algorithm>
#include <cstdint>
#include <vector>

namespace ktr::fuzz {

/// A step of a script: what is to be done, and with what.
struct Step
{
    char what;
    QByteArray bytes;

    /// The number that the bytes begin with, at most `highest`; 0 where there is none.
    int number(int highest) const
    {
        int number = 0;
        for (const char c : bytes) {
            if (c < '0' || c > '9' || number > highest) {
                break;
            }
            number = number * 10 + (c - '0');
        }
        return std::min(number, highest);
    }
    /// The bytes again and again, so many that no line may be that long.
    QByteArray flood() const
    {
        constexpr qsizetype tooLong = 70'000;
        return bytes.isEmpty() ? QByteArray() : bytes.repeated(tooLong / bytes.size() + 1);
    }
};

/// An input as steps, each a letter and bytes up to the next "|": what is tried in sequences is text, so that
/// seeds can be written and findings read.
inline std::vector<Step> stepsOf(const std::uint8_t *data, std::size_t size)
{
    constexpr std::size_t most = 100; // a longer one only takes longer
    int floods = 4;
    std::vector<Step> steps;
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    for (const QByteArray &step : input.split('|')) {
        if (!step.isEmpty() && steps.size() < most && (step.front() != 'f' || floods-- > 0)) {
            steps.push_back({step.front(), step.mid(1)});
        }
    }
    return steps;
}

} // namespace ktr::fuzz

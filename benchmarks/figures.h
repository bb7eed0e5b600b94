#pragma once

// What the benchmarks found, as rows of the tables in docs/performance.md: what was measured, how much it is,
// how much it may be, the floor of the same run and the ratio to it. scripts/bench gathers them.

#include <cstdio>
#include <limits>
#include <optional>
#include <string>

namespace figures {

enum class Unit { Seconds, Bytes };

inline constexpr double unbounded = std::numeric_limits<double>::infinity();

/// The least that something could cost, measured in the same run.
struct Floor
{
    double value;
    const char *what;
    double mostTimes = unbounded; ///< so many times the floor are allowed
};

/// With three digits, in the unit that suits it.
inline std::string text(double value, Unit unit)
{
    struct Step
    {
        double size;
        const char *name;
    };
    static constexpr Step times[] = {{1, "s"}, {1e-3, "ms"}, {1e-6, "µs"}};
    static constexpr Step sizes[] = {{1 << 20, "MiB"}, {1 << 10, "KiB"}, {1, "bytes"}};
    const Step *step = unit == Unit::Seconds ? times : sizes;
    const Step *const last = step + 2;
    while (step != last && value < step->size) {
        ++step;
    }
    const double scaled = value / step->size;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, scaled < 100 ? "%.3g %s" : "%.0f %s", scaled, step->name);
    return buffer;
}

inline bool &anyBroken()
{
    static bool broken = false;
    return broken;
}

/// Prints a row; a broken bound makes exitCode() a failure. Texts that are not needed are empty.
inline void row(const std::string &what, const std::string &measured, const std::string &bound, bool isKept,
                const std::string &floor = {}, const std::string &ratio = {})
{
    anyBroken() = anyBroken() || !isKept;
    std::printf("| %s | %s%s | %s | %s | %s |\n", what.c_str(), measured.c_str(), isKept ? "" : " **broken**",
                bound.c_str(), floor.c_str(), ratio.c_str());
    std::fflush(stdout);
}

/// A value of which there may be so many at most, and so many times its floor. One that is not positive was
/// not measured, which breaks the bound.
inline void row(const std::string &what, double value, Unit unit, double most = unbounded,
                const std::optional<Floor> &floor = {})
{
    const auto brief = [](const char *format, double number) {
        char buffer[64];
        std::snprintf(buffer, sizeof buffer, format, number);
        return std::string(buffer);
    };
    if (!(value > 0) || (floor && !(floor->value > 0))) {
        row(what, "not measured", "", false);
        return;
    }
    const double ratio = floor ? value / floor->value : 0;
    std::string bound = most < unbounded ? text(most, unit) : "";
    if (floor && floor->mostTimes < unbounded) {
        bound += (bound.empty() ? "" : ", ") + brief("%g × floor", floor->mostTimes);
    }
    row(what, text(value, unit), bound, value <= most && (!floor || ratio <= floor->mostTimes),
        floor ? text(floor->value, unit) + ": " + floor->what : "",
        floor ? brief(ratio < 1.1 ? "%.3f" : "%.2f", ratio) : "");
}

inline int exitCode()
{
    return anyBroken() ? 1 : 0;
}

} // namespace figures

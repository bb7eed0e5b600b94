#include "opmode/window/curves/curve_look.h"

#include "opmode/curves/curve_series.h"

#include <QtGlobal>

#include <array>

namespace ktr {

int lookOfSlot(int slot)
{
    // The six colours as whole lines, then with dashes, then with dots.
    static constexpr std::array<int, mostSeries> looks{9,  10, 17, 18, 11, 12, 1, 16, 2,
                                                       15, 13, 14, 7,  3,  8,  4, 5,  6};
    return looks.at(static_cast<std::size_t>(qBound(1, slot, mostSeries) - 1));
}

} // namespace ktr

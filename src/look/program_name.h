#pragma once

#include <QLatin1StringView>

namespace ktr {

/// What the program calls itself in window titles and towards the system.
inline constexpr QLatin1StringView programName("KTRconfig");

} // namespace ktr

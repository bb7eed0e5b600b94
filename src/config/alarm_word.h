#pragma once

#include <QLatin1String>

namespace ktr {

/// A notification with this in it is an alarm, as long as the user's rules say nothing else.
inline constexpr QLatin1String alarmWord("fail");

} // namespace ktr

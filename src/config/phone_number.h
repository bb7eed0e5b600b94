#pragma once

namespace ktr {

/// Digits behind the "+". A country code alone stands for a number that is still to be entered.
inline constexpr int longestCountryCode = 3;

} // namespace ktr

#pragma once
namespace ktr {
/// Which colours the windows take.
enum class Appearance { System, Light, Dark };
} // namespace ktr

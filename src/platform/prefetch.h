#pragma once

namespace ktr {

/// Lets the processor fetch memory that is going to be read, where the compiler knows how.
inline void prefetch([[maybe_unused]] const void *memory)
{
#ifdef __GNUC__
    __builtin_prefetch(memory);
#endif
}

} // namespace ktr

#pragma once

#include <cstddef>
#include <new>

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

namespace ktr {

/// Allocates what a long list needs in the system's large pages, where it has such pages: tens of megabytes
/// are then had in a few steps, and each place in them is found with fewer look-ups. Less than such a page
/// comes from where all memory comes from.
template <class Value> class LargePageAllocator
{
public:
    using value_type = Value;

    LargePageAllocator() = default;
    template <class Other> explicit(false) LargePageAllocator(const LargePageAllocator<Other> &) {}

    Value *allocate(std::size_t count)
    {
        const std::size_t bytes = count * sizeof(Value);
        if (!isLarge(bytes)) {
            return static_cast<Value *>(::operator new(bytes));
        }
        void *const memory = ::operator new(bytes, std::align_val_t(page));
#ifdef MADV_HUGEPAGE
        ::madvise(memory, bytes / page * page, MADV_HUGEPAGE); // a wish: nothing depends on it
#endif
        return static_cast<Value *>(memory);
    }
    void deallocate(Value *memory, std::size_t count)
    {
        if (isLarge(count * sizeof(Value))) {
            ::operator delete(memory, std::align_val_t(page));
        } else {
            ::operator delete(memory);
        }
    }

    bool operator==(const LargePageAllocator &) const = default;

private:
    static constexpr std::size_t page = std::size_t{2} << 20;
    static constexpr bool isLarge(std::size_t bytes)
    {
        return bytes >= page;
    }
};

} // namespace ktr

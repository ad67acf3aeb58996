/// Which part of memory a loaded module occupies.
#pragma once

#include <cstdint>

namespace afx::detail {

/// The addresses from `begin` up to, not including, `end`.
struct MemoryRange {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;

    bool Contains(const void* address) const {
        const auto number = reinterpret_cast<std::uintptr_t>(address);
        return begin <= number && number < end;
    }
    bool IsEmpty() const { return begin == end; }
};

/// Returns the range of the executable or shared library that holds `address`.
///
/// - Result: empty when the address lies in none of them.
MemoryRange ModuleRangeOf(const void* address);

}  // namespace afx::detail

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Vr::detail {

/// Returns a stored 64-bit number; the bytes need no alignment.
[[nodiscard]] inline uint64_t NumberAt(const unsigned char* bytes, size_t place) {
    uint64_t number;
    std::memcpy(&number, bytes + place * sizeof(number), sizeof(number));
    return number;
}

/// Returns the greatest of so many stored numbers, 0 for none.
[[nodiscard]] inline uint64_t GreatestNumber(const unsigned char* bytes, size_t count) {
    // Four that do not wait for each other: as fast as memory delivers.
    uint64_t greatest[4] = {};
    size_t place = 0;
    for (; place + 4 <= count; place += 4)
        for (size_t lane = 0; lane < 4; ++lane)
            greatest[lane] = (std::max)(greatest[lane], NumberAt(bytes, place + lane));
    for (; place < count; ++place)
        greatest[0] = (std::max)(greatest[0], NumberAt(bytes, place));
    return (std::max)((std::max)(greatest[0], greatest[1]), (std::max)(greatest[2], greatest[3]));
}

/// Returns the place of the first number that is not below `bound`.
///
/// - Requires: there is one.
[[nodiscard]] inline size_t FindNumberFrom(uint64_t bound, const unsigned char* bytes) {
    size_t place = 0;
    while (NumberAt(bytes, place) < bound)
        ++place;
    return place;
}

}  // namespace Vr::detail

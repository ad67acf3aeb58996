// Stable removal from one array, in place: what degenerate removal, face deletion and compaction share.
// Which elements go is found without a branch an element, since removals rarely follow a pattern.

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace Vr::detail {

/// Moves the elements that stay forward, in their order, and returns how many they are.
///
/// `isRemoved(position, element)` is asked once for each element, in order. Elements in front of the
/// first removed one are not written.
template <class Element, class IsRemoved>
[[nodiscard]] size_t MoveKept(Element* elements, size_t count, const IsRemoved& isRemoved) {
    size_t position = 0;
    while (position < count && !isRemoved(position, elements[position]))
        ++position;
    size_t keptCount = position;
    for (++position; position < count; ++position) {
        const Element element = elements[position];
        elements[keptCount] = element;
        keptCount += !isRemoved(position, element);
    }
    return keptCount;
}

}  // namespace Vr::detail

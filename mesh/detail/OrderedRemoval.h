// Stable removal from one array, in place: what degenerate removal, face deletion and compaction
// share. Which elements go rarely follows a pattern that a processor could predict, so the moves
// have no branch an element.

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vr::detail {

/// Moves the elements that stay forward, in their order, and returns how many they are.
///
/// `isRemoved(position, element)` is asked once for each element, in order. Elements in front of
/// the first removed one are not written.
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

/// Shortens an array to the `newSize` elements that `moveKept(elements.data())` moves to its front.
///
/// - Shape: storage stays, unless less than half of it, rounded down, would be in use: then it is
///   reallocated to exactly the new size, and released when that is 0.
/// - Throws: `std::bad_alloc`; nothing has changed then.
template <class Element, class MoveKeptElements>
void ShortenAndShrink(std::vector<Element>& elements, size_t newSize,
                      const MoveKeptElements& moveKept) {
    const bool shrinks = newSize < elements.capacity() / 2;
    std::vector<Element> exact;
    if (shrinks)
        exact.reserve(newSize);
    moveKept(elements.data());
    elements.resize(newSize);
    if (shrinks) {
        exact.assign(elements.begin(), elements.end());
        elements.swap(exact);
    }
}

/// The numbers of a caller's list that an ordered walk over the triangles meets.
///
/// - Deliberate: a walk looks for one number at a time, so a number not above the one before it is
///   never met, nor is any behind it. What counts is the strictly ascending start of the list.
/// - Requires: the list lives, unchanged, as long as this object.
class AscendingNumbers {
public:
    explicit AscendingNumbers(const std::vector<size_t>& numbers)
        : begin_(numbers.data()),
          end_(begin_ + (std::adjacent_find(numbers.begin(), numbers.end(),
                                            [](size_t a, size_t b) { return a >= b; }) -
                         numbers.begin())) {
        // The first of the two that stand wrong is met.
        if (end_ != begin_ + numbers.size())
            ++end_;
    }

    [[nodiscard]] const size_t* begin() const { return begin_; }
    /// Returns the end of the numbers below `bound`.
    [[nodiscard]] const size_t* EndBelow(size_t bound) const {
        return std::lower_bound(begin_, end_, bound);
    }

private:
    const size_t* begin_;
    const size_t* end_;
};

/// Moves forward the groups of `kGroup` elements whose numbers are not in the ascending list.
///
/// A window of 64 groups is one word with a bit for each that stays.
///
/// - Requires: every listed number is below `groupCount`.
template <size_t kGroup, class Element>
void MoveUnlisted(Element* elements, size_t groupCount, const size_t* listed,
                  const size_t* listedEnd) {
    constexpr size_t kWindow = 64;
    if (listed == listedEnd)
        return;
    size_t begin = *listed / kWindow * kWindow;
    Element* kept = elements + begin * kGroup;
    for (; begin < groupCount; begin += kWindow) {
        const size_t end = std::min(begin + kWindow, groupCount);
        uint64_t stays = ~uint64_t{0};
        for (; listed != listedEnd && *listed < end; ++listed)
            stays &= ~(uint64_t{1} << (*listed - begin));
        if (stays == ~uint64_t{0}) {
            kept = std::copy(elements + begin * kGroup, elements + end * kGroup, kept);
            continue;
        }
        for (size_t group = begin; group < end; ++group, stays >>= 1) {
            for (size_t part = 0; part < kGroup; ++part) {
                const Element element = elements[group * kGroup + part];
                kept[part] = element;
            }
            kept += (stays & 1) * kGroup;
        }
    }
}

/// Removes the listed groups of `kGroup` elements, and shrinks as `ShortenAndShrink` does, also
/// when nothing is listed.
///
/// - Throws: `std::bad_alloc`; nothing has changed then.
template <size_t kGroup = 1, class Element>
void RemoveListed(std::vector<Element>& elements, const AscendingNumbers& numbers) {
    const size_t groupCount = elements.size() / kGroup;
    const size_t* const listedEnd = numbers.EndBelow(groupCount);
    const size_t keptCount = groupCount - static_cast<size_t>(listedEnd - numbers.begin());
    ShortenAndShrink(elements, keptCount * kGroup, [&](Element* first) {
        MoveUnlisted<kGroup>(first, groupCount, numbers.begin(), listedEnd);
    });
}

}  // namespace Vr::detail

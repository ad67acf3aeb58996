// The table and the cuts of whole arrays. A cut does what asking the query for each element in turn
// would, but keeps cursor and counter in registers: inside the object they would have to be read
// again after every store to the array.

#include "mesh/VraMeshDegenJudge.h"

#include <algorithm>

#include "mesh/detail/OrderedRemoval.h"
#include "mesh/detail/Throw.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace Vr {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;

// A bit for each of two triangles, set where it repeats a vertex number. Whole triangles are compared
// at once and without a branch.
#if defined(__SSE2__)

__m128i AreEqual(__m128i a, __m128i b) {
    const __m128i halves = _mm_cmpeq_epi32(a, b);
    return _mm_and_si128(halves, _mm_shuffle_epi32(halves, _MM_SHUFFLE(2, 3, 0, 1)));
}

unsigned DegenerateOf(const TriangleIndex* two) {
    const auto* const numbers = reinterpret_cast<const __m128i*>(two);
    const __m128i a0b0 = _mm_loadu_si128(numbers);
    const __m128i c0a1 = _mm_loadu_si128(numbers + 1);
    const __m128i b1c1 = _mm_loadu_si128(numbers + 2);
    const __m128i a0b1 = _mm_unpacklo_epi64(a0b0, b1c1);
    const __m128i b0c1 = _mm_unpackhi_epi64(a0b0, b1c1);
    const __m128i anyEqual = _mm_or_si128(_mm_or_si128(AreEqual(a0b1, b0c1), AreEqual(b0c1, c0a1)),
                                          AreEqual(c0a1, a0b1));
    return static_cast<unsigned>(_mm_movemask_pd(_mm_castsi128_pd(anyEqual)));
}

#else

unsigned DegenerateOf(const TriangleIndex* two) {
    unsigned bits = 0;
    for (unsigned i = 0; i < 2; ++i) {
        const TriangleIndex& corners = two[i];
        bits |= static_cast<unsigned>((corners[0] == corners[1]) | (corners[1] == corners[2]) |
                                      (corners[2] == corners[0]))
                << i;
    }
    return bits;
}

#endif

}  // namespace

VraMeshDegenJudge::VraMeshDegenJudge(size_t triangleCount) {
    if (triangleCount > newTriangleOf_.max_size())
        detail::ThrowVectorTooLong();
    newTriangleOf_.assign(triangleCount, kRemoved);
}

VraMeshDegenJudge::~VraMeshDegenJudge() = default;

void VraMeshDegenJudge::SetDegenTriangles(const std::vector<size_t>& triangles) {
    std::fill(newTriangleOf_.begin(), newTriangleOf_.end(), 0);
    for (const size_t triangle : triangles)
        if (triangle < newTriangleOf_.size())
            newTriangleOf_[triangle] = kRemoved;

    uint32_t keptCount = 0;
    for (uint32_t& newTriangle : newTriangleOf_) {
        const bool isRemoved = newTriangle == kRemoved;
        newTriangle = isRemoved ? kRemoved : keptCount;
        keptCount += !isRemoved;
    }
}

bool VraMeshDegenJudge::IsExistDegen() const {
    // Whole blocks without a branch inside, which the compiler turns into vector comparisons.
    constexpr size_t kBlock = 256;
    const uint32_t* entries = newTriangleOf_.data();
    size_t left = newTriangleOf_.size();
    for (; left >= kBlock; left -= kBlock, entries += kBlock) {
        uint32_t removedMarks = 0;
        for (size_t entry = 0; entry < kBlock; ++entry)
            removedMarks |= entries[entry] == kRemoved ? 1u : 0u;
        if (removedMarks != 0)
            return true;
    }
    return std::find(entries, entries + left, kRemoved) != entries + left;
}

size_t VraMeshDegenJudge::CutDegenerate(TriangleIndex* triples, size_t count,
                                        uint32_t* newTriangleOf, uint64_t& newTriangle) {
    size_t position = 0;
    // What lies in front of the first degenerate one is not written.
    for (; position + 2 <= count && DegenerateOf(triples + position) == 0; position += 2) {
        newTriangleOf[position] = static_cast<uint32_t>(newTriangle);
        newTriangleOf[position + 1] = static_cast<uint32_t>(newTriangle + 1);
        newTriangle += 2;
    }
    TriangleIndex* kept = triples + position;
    const auto keepUnless = [&](const TriangleIndex& corners, unsigned isRemoved, size_t triangle) {
        *kept = corners;
        kept += 1 - isRemoved;
        // All bits of the removed mark are set.
        newTriangleOf[triangle] = static_cast<uint32_t>(newTriangle) | (0 - isRemoved);
        newTriangle += 1 - isRemoved;
    };
    for (; position + 2 <= count; position += 2) {
        const unsigned isRemoved = DegenerateOf(triples + position);
        const TriangleIndex first = triples[position];
        const TriangleIndex second = triples[position + 1];
        keepUnless(first, isRemoved & 1, position);
        keepUnless(second, isRemoved >> 1, position + 1);
    }
    if (position < count) {
        const TriangleIndex last = triples[position];
        keepUnless(last, IsDegenerate(last), position);
    }
    return static_cast<size_t>(kept - triples);
}

bool VraMeshDegenJudge::Cut(std::vector<TriangleIndex>& triples) {
    const size_t count = triples.size();
    assert(cursor_ + count <= newTriangleOf_.size());
    uint32_t* const newTriangleOf = newTriangleOf_.data() + cursor_;
    size_t keptCount = 0;
    if (mode_ == eJudge) {
        uint64_t newTriangle = keptCount_;
        keptCount = CutDegenerate(triples.data(), count, newTriangleOf, newTriangle);
        keptCount_ = newTriangle;
    } else {
        const auto isMarked = [newTriangleOf](size_t position, const TriangleIndex&) {
            return newTriangleOf[position] == kRemoved;
        };
        keptCount = detail::MoveKept(triples.data(), count, isMarked);
    }
    triples.resize(keptCount);
    ResetIndex();
    return keptCount < count;
}

void VraMeshDegenJudge::CutByValue(std::vector<size_t>& numbers) const {
    const auto isMarked = [this](size_t, size_t number) {
        return number < newTriangleOf_.size() && newTriangleOf_[number] == kRemoved;
    };
    numbers.resize(detail::MoveKept(numbers.data(), numbers.size(), isMarked));
}

}  // namespace Vr

// The table and the cuts of whole arrays. A cut does what asking the query for each element in turn
// would, but keeps cursor and counter in registers: inside the object they would have to be read
// again after every store to the array.

#include "mesh/VraMeshDegenJudge.h"

#include <algorithm>

#include "mesh/detail/OrderedRemoval.h"
#include "mesh/detail/Throw.h"

namespace Vr {

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

bool VraMeshDegenJudge::Cut(std::vector<TriangleIndex>& triples) {
    const size_t count = triples.size();
    assert(cursor_ + count <= newTriangleOf_.size());
    uint32_t* const newTriangleOf = newTriangleOf_.data() + cursor_;
    size_t keptCount = 0;
    if (mode_ == eJudge) {
        uint64_t newTriangle = keptCount_;
        const auto isDegenerate = [newTriangleOf, &newTriangle](size_t position,
                                                                const TriangleIndex& corners) {
            const bool isRemoved = IsDegenerate(corners);
            newTriangleOf[position] = isRemoved ? kRemoved : static_cast<uint32_t>(newTriangle);
            newTriangle += !isRemoved;
            return isRemoved;
        };
        keptCount = detail::MoveKept(triples.data(), count, isDegenerate);
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

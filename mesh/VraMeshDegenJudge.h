#pragma once

#include <boost/core/noncopyable.hpp>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "module/Export.h"

namespace Vr {

/// Decides which triangles of a primitive go, and remembers it, so that every array with one entry
/// a triangle can be cut in step.
///
/// Meant to be passed by reference to a stable remove-if over one array after the other; each query
/// answers true for what is to be removed. In judging mode the query for triangles finds those with
/// a repeated vertex number and fills the table; in table mode it reads the table back. The table
/// comes from a judging pass or from `SetDegenTriangles`.
///
/// - Shape: the table has one entry for each triangle of the constructor's count: the triangle's
///   new number among the kept ones, or the removed mark 0xFFFFFFFF, which all entries hold at
///   first.
/// - Order: the sequential queries (triangles, UVs) answer for the triangle under a cursor and move
///   it on, so ask them once for each element, in array order. Call `ResetIndex` between two
///   arrays.
/// - Deliberate: new numbers have 32 bits.
/// - Deliberate: degenerate means a repeated vertex number; area and positions are not looked at.
/// - Requires: the table has an entry for every triangle asked about; asserted in debug builds
///   only.
class VERIDANE_MESH_API VraMeshDegenJudge : private boost::noncopyable {
public:
    /// Any value other than `eJudge` is table mode.
    enum EMode : int32_t {
        eJudge = 0,  ///< Find degenerate triangles and record them.
        eTable = 1   ///< Read back what is recorded.
    };

    using TriangleIndex = VraMeshPrimitive::TriangleIndex;
    using MeshVertex = VraMeshPrimitive::MeshVertex;

    /// Starts in judging mode at triangle 0 with every triangle marked removed.
    ///
    /// - Throws: `std::length_error` "vector too long" for a count no table can have;
    ///   `std::bad_alloc`.
    explicit VraMeshDegenJudge(size_t triangleCount);
    virtual ~VraMeshDegenJudge();

    /// Sets the mode and nothing else.
    void SetMode(EMode mode) { mode_ = mode; }

    /// Rewrites the whole table: the listed triangles are marked removed, the others numbered in
    /// order.
    ///
    /// Mode, cursor and the next new number of judging stay.
    ///
    /// - Shape: triangle numbers in any order, repeated or not; numbers beyond the table are
    ///   ignored.
    /// - Complexity: linear in the table and the list, no allocation.
    /// - Example: {5, 1, 1} on 6 triangles gives 0, removed, 1, 2, 3, removed.
    void SetDegenTriangles(const std::vector<size_t>& triangles);

    /// Moves the cursor to corner 0 of triangle 0 and forgets the last vertex key.
    ///
    /// - Deliberate: the table and the next new number stay, so a second judging pass numbers on
    ///   from the first.
    void ResetIndex();

    /// Returns whether any triangle is marked removed.
    ///
    /// - Deliberate: true for a new judge of at least one triangle, since all marks are set at
    ///   first.
    bool IsExistDegen() const;

    /// Answers whether the next triangle goes, and moves the cursor to the one behind it.
    ///
    /// - Result: in judging mode, whether two of `corners` are equal, recorded under the cursor; in
    ///   table mode, what is recorded there, whatever `corners` are.
    bool operator()(const TriangleIndex& corners);

    /// Answers whether `triangle` is marked removed; moves nothing.
    bool operator()(size_t triangle) const { return EntryOf(triangle) == kRemoved; }

    /// Answers whether the next corner's triangle is marked removed, and moves on by one corner.
    ///
    /// Made for arrays of three entries a triangle; the point is not looked at.
    ///
    /// - Deliberate: reads the table in either mode.
    bool operator()(const ON_2dPoint& uv);

    /// Renumbers the triangles around a vertex by the table, drops removed ones, and answers
    /// whether the vertex repeats the key of the one asked about before.
    ///
    /// - Order: the triangles that stay keep theirs.
    /// - Result: over vertices sorted by key, true for every repetition of a key; false for the
    ///   first vertex after `ResetIndex`.
    /// - Deliberate: table entries are taken as signed, so a new number of 2^31 or above comes out
    ///   with its upper 32 bits set.
    /// - Deliberate: the last key is kept as a signed 32-bit number. The first vertex counts as
    ///   repeated when its key has all 64 bits set, and a key that does not survive the narrowing
    ///   is never found repeated.
    /// - Requires: every listed triangle is below the triangle count.
    bool operator()(MeshVertex& vertex);

private:
    friend class VraMeshPrimitive;

    static constexpr uint32_t kRemoved = 0xFFFFFFFF;
    static constexpr uint32_t kNoKey = 0xFFFFFFFF;

    // Takes the 32 bits as a signed number and widens it.
    static uint64_t WithSign(uint32_t bits) {
        return static_cast<uint64_t>(int64_t{static_cast<int32_t>(bits)});
    }

    // Adds the comparisons up: whole arrays are judged without a branch.
    static bool IsDegenerate(const TriangleIndex& corners) {
        return int{corners[0] == corners[1]} + int{corners[1] == corners[2]} +
                   int{corners[2] == corners[0]} !=
               0;
    }

    uint32_t EntryOf(size_t triangle) const {
        assert(triangle < newTriangleOf_.size());
        return newTriangleOf_[triangle];
    }

    /// Cuts a list with one triple a triangle, as asking about each in turn and then resetting the
    /// index would, and leaves the same state behind. Returns whether any went.
    bool Cut(std::vector<TriangleIndex>& triples);
    /// Removes the degenerate triangles and records which stay; returns how many do.
    static size_t CutDegenerate(TriangleIndex* triples, size_t count, uint32_t* newTriangleOf,
                                uint64_t& newTriangle);
    /// Removes the numbers that, taken as triangle numbers, are marked removed; a number that no
    /// triangle has stays. Moves nothing else.
    void CutByValue(std::vector<size_t>& numbers) const;

    EMode mode_ = eJudge;
    std::vector<uint32_t> newTriangleOf_;
    uint64_t keptCount_ = 0;  // The next new number of judging mode.
    uint64_t cursor_ = 0;
    uint64_t corner_ = 0;
    uint32_t lastKey_ = kNoKey;  // Read as a signed number.
};

inline void VraMeshDegenJudge::ResetIndex() {
    cursor_ = 0;
    corner_ = 0;
    lastKey_ = kNoKey;
}

inline bool VraMeshDegenJudge::operator()(const TriangleIndex& corners) {
    assert(cursor_ < newTriangleOf_.size());
    uint32_t& entry = newTriangleOf_[cursor_++];
    if (mode_ == eJudge) {
        const bool isDegenerate = IsDegenerate(corners);
        entry = isDegenerate ? kRemoved : static_cast<uint32_t>(keptCount_++);
        return isDegenerate;
    }
    return entry == kRemoved;
}

inline bool VraMeshDegenJudge::operator()(const ON_2dPoint&) {
    const bool isRemoved = EntryOf(cursor_) == kRemoved;
    if (corner_ < 2) {
        ++corner_;
    } else {
        corner_ = 0;
        ++cursor_;
    }
    return isRemoved;
}

inline bool VraMeshDegenJudge::operator()(MeshVertex& vertex) {
    auto& triangles = vertex.triangles;
    size_t keptCount = 0;
    for (const uint64_t triangle : triangles) {
        const uint32_t newTriangle = EntryOf(triangle);
        triangles[keptCount] = WithSign(newTriangle);
        keptCount += newTriangle != kRemoved;
    }
    triangles.resize(keptCount);

    const bool isRepeated = vertex.key == WithSign(lastKey_);
    lastKey_ = static_cast<uint32_t>(vertex.key);
    return isRepeated;
}

}  // namespace Vr

#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <limits>
#include <memory>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/ParallelFor.h"
#include "mesh/detail/Prefetch.h"
#include "mesh/detail/Throw.h"

namespace Vr::detail {

/// Returns the first corner at which a triangle names a vertex.
///
/// - Throws: std::runtime_error "conrer index not found" when it does not.
[[nodiscard]] inline size_t FirstCornerOf(const VraMeshPrimitive::TriangleIndex& triangle,
                                          size_t vertex) {
    for (size_t corner = 0; corner < 3; ++corner)
        if (triangle.v[corner] == vertex)
            return corner;
    ThrowCornerNotFound();
}

/// The triangles around each vertex, all in one flat array.
///
/// The list of a vertex has an entry for each corner that names it, in ascending order of triangles;
/// a triangle that names one vertex twice has two equal entries. An entry holds the triangle and the
/// first of its corners at the vertex, so that a walk round a vertex need not look up the triangle.
///
/// `Number` is `uint32_t` where `CanHold` says so, else `uint64_t`.
template <class Number>
class IncidenceLists {
public:
    /// Returns whether the entries of so many triangles fit in `Number`.
    [[nodiscard]] static constexpr bool CanHold(size_t triangleCount) {
        return triangleCount <= std::numeric_limits<Number>::max() / 4;
    }

    /// - Requires: every vertex number is below `vertexCount`; `CanHold(triangles.size())`.
    /// - Complexity: linear in vertices and triangles; the same lists for any number of workers.
    IncidenceLists(size_t vertexCount, const VraMeshPrimitive::VertexIndexArray& triangles,
                   size_t workerCount) {
        // Each worker counts and fills its own range of triangles with a table of its own; more
        // tables than this would cost more memory than time.
        constexpr size_t kMostTables = 4;
        const size_t tableCount = std::min(workerCount, kMostTables);
        entries_.reset(new Number[3 * triangles.size()]);
        std::vector<std::unique_ptr<Number[]>> slotTables(tableCount);
        ParallelRanges(triangles.size(), tableCount, [&](size_t begin, size_t end, size_t worker) {
            slotTables[worker].reset(new Number[vertexCount]());
            CountCorners(triangles, begin, end, slotTables[worker].get());
        });
        AssignSlots(vertexCount, slotTables);
        ParallelRanges(triangles.size(), tableCount, [&](size_t begin, size_t end, size_t worker) {
            FillEntries(triangles, begin, end, slotTables[worker].get());
        });
        // The last table has moved on to the end of each list.
        ends_ = std::move(slotTables.back());
    }

    /// @name The list of a vertex
    /// The lists follow each other without gaps, so the end of one is the begin of the next.
    /// @{
    Number* Begin(size_t vertex) { return entries_.get() + (vertex == 0 ? 0 : ends_[vertex - 1]); }
    Number* End(size_t vertex) { return entries_.get() + ends_[vertex]; }
    /// @}

    [[nodiscard]] static size_t TriangleOf(Number entry) { return entry / 4; }
    [[nodiscard]] static size_t CornerOf(Number entry) { return entry % 4; }

private:
    // How far ahead memory is asked for in random order.
    static constexpr size_t kTrianglesAhead = 12;

    using Triangles = VraMeshPrimitive::VertexIndexArray;
    using TriangleIndex = VraMeshPrimitive::TriangleIndex;

    static void CountCorners(const Triangles& triangles, size_t begin, size_t end, Number* counts) {
        for (size_t triangle = begin; triangle < end; ++triangle)
            for (const size_t vertex : triangles[triangle].v)
                ++counts[vertex];
    }

    // Turns counts into the slot at which each worker's entries of each vertex begin.
    static void AssignSlots(size_t vertexCount,
                            const std::vector<std::unique_ptr<Number[]>>& tables) {
        Number slot = 0;
        for (size_t vertex = 0; vertex < vertexCount; ++vertex) {
            for (const auto& table : tables) {
                const Number count = table[vertex];
                table[vertex] = slot;
                slot = static_cast<Number>(slot + count);
            }
        }
    }

    void FillEntries(const Triangles& triangles, size_t begin, size_t end, Number* nextSlotOf) {
        Number* const entries = entries_.get();
        for (size_t triangle = begin; triangle < end; ++triangle) {
            if (triangle + 2 * kTrianglesAhead < end) {
                for (const size_t vertex : triangles[triangle + 2 * kTrianglesAhead].v)
                    Prefetch(nextSlotOf + vertex);
                for (const size_t vertex : triangles[triangle + kTrianglesAhead].v)
                    Prefetch(entries + nextSlotOf[vertex]);
            }
            const TriangleIndex corners = triangles[triangle];
            for (const size_t vertex : corners.v)
                entries[nextSlotOf[vertex]++] =
                    static_cast<Number>(4 * triangle + FirstCornerOf(corners, vertex));
        }
    }

    std::unique_ptr<Number[]> entries_;
    std::unique_ptr<Number[]> ends_;
};

}  // namespace Vr::detail

#pragma once

#include <opennurbs.h>

#include <algorithm>
#include <cassert>
#include <cstddef>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/Prefetch.h"

namespace Vr::detail {

/// Returns whether the numbers `numberOf(begin)` to `numberOf(end - 1)`, of which a few are looked at,
/// differ by more than `nearby`. Numbers that lie together are best left to the processor, which
/// finds them in its caches; asking ahead for them would cost a tenth.
template <class NumberOf>
bool AreScattered(size_t begin, size_t end, size_t nearby, const NumberOf& numberOf) {
    constexpr size_t kSampleSize = 16;
    if (begin >= end)
        return false;
    size_t lowest = numberOf(begin);
    size_t highest = lowest;
    const size_t step = (end - begin + kSampleSize - 1) / kSampleSize;
    for (size_t i = begin + step; i < end; i += step) {
        const size_t number = numberOf(i);
        lowest = std::min(lowest, number);
        highest = std::max(highest, number);
    }
    return highest - lowest > nearby;
}

/// The points of one triangle after another, asked for ahead of their turn where they lie far apart.
class CornerReader {
public:
    /// Triangles that are judged together.
    static constexpr size_t kBlock = 256;
    /// Points or sums of vertices whose numbers differ by this much fit into a second-level cache.
    static constexpr size_t kNearbyVertices = 16384;

    CornerReader(const VraMeshPrimitive::VertexArray& vertices,
                 const VraMeshPrimitive::VertexIndexArray& triangles)
        : points_(vertices.data()),
          pointCount_(vertices.size()),
          triangles_(triangles.data()),
          triangleCount_(triangles.size()) {}

    /// Calls `body(triangle)` for each triangle in [begin, end), in order.
    template <class Body>
    void ForEach(size_t begin, size_t end, const Body& body) const {
        while (begin < end) {
            const size_t blockEnd = std::min(begin + kBlock, end);
            if (IsScatteredAt(begin)) {
                for (; begin < blockEnd; ++begin) {
                    PrefetchBehind(begin);
                    body(begin);
                }
            } else {
                for (; begin < blockEnd; ++begin)
                    body(begin);
            }
        }
    }

    /// Returns whether vertices are worth asking ahead for from this triangle on.
    ///
    /// Judged by the block in front of it, which is likely to be in the cache still.
    [[nodiscard]] bool IsScatteredAt(size_t triangle) const {
        const size_t begin = triangle - std::min(kBlock, triangle);
        return AreScattered(begin, std::min(begin + kBlock, triangleCount_), kNearbyVertices,
                            [this](size_t number) { return triangles_[number].v[0]; });
    }

    /// Asks for the points of a triangle that follows soon.
    void PrefetchBehind(size_t triangle) const {
        constexpr size_t kTrianglesAhead = 16;
        if (triangle + kTrianglesAhead < triangleCount_)
            for (const size_t vertex : triangles_[triangle + kTrianglesAhead].v)
                PrefetchWhole(points_ + vertex);
    }

    [[nodiscard]] const ON_3dPoint& Point(size_t triangle, size_t corner) const {
        assert(triangles_[triangle].v[corner] < pointCount_);
        return points_[triangles_[triangle].v[corner]];
    }

private:
    const ON_3dPoint* points_;
    size_t pointCount_;
    const VraMeshPrimitive::TriangleIndex* triangles_;
    size_t triangleCount_;
};

}  // namespace Vr::detail

// Growing a valid box by a valid point replaces a bound only by a strictly smaller (larger) value, so
// the bounds are plain extremes, found here with independent accumulators for the three corners. A
// zero keeps the sign of the first zero met; grouping loses that order, so it is looked up again when
// a bound is zero.

#include "mesh/detail/PositionExtremes.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "mesh/detail/CornerReader.h"
#include "mesh/detail/Pair.h"

namespace Vr::detail {

namespace {

using VertexArray = VraMeshPrimitive::VertexArray;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;

// More vertices than this for each triangle, and looking at all of them is not worth it.
constexpr size_t kMaxVerticesPerTriangle = 4;

// A sum of magnitudes is finite only if every term is, and openNURBS's unset value is caught by size.
// A sum that overflows for ordinary but huge numbers only costs the slow road.
bool AllOrdinary(const VertexArray& vertices) {
    const double* coordinates = vertices.empty() ? nullptr : &vertices.front().x;
    const size_t count = vertices.size() * 3;
    Pair sums[4] = {Pair::Both(0.0), Pair::Both(0.0), Pair::Both(0.0), Pair::Both(0.0)};
    size_t next = 0;
    for (; next + 8 <= count; next += 8)
        for (size_t pair = 0; pair < 4; ++pair)
            sums[pair] = sums[pair] + Magnitudes(Pair::Load(coordinates + next + 2 * pair));
    for (; next < count; ++next)
        sums[0] = sums[0] + Magnitudes(Pair::Both(coordinates[next]));
    double sum = 0.0;
    for (const Pair& pair : sums)
        sum += pair.Low() + pair.High();
    return sum < -ON_UNSET_VALUE;
}

struct Extremes {
    explicit Extremes(const ON_3dPoint& first)
        : lowXY(Pair::Load(&first.x)), highXY(lowXY), lowZ(Pair::Both(first.z)), highZ(lowZ) {}

    Pair lowXY;
    Pair highXY;
    Pair lowZ;
    Pair highZ;
};

Extremes Joined(const Extremes& a, const Extremes& b) {
    Extremes joined = a;
    joined.lowXY = Min(a.lowXY, b.lowXY);
    joined.highXY = Max(a.highXY, b.highXY);
    joined.lowZ = Min(a.lowZ, b.lowZ);
    joined.highZ = Max(a.highZ, b.highZ);
    return joined;
}

Extremes FindExtremes(const ON_3dPoint* positionOf, const VertexIndexArray& triangles) {
    const ON_3dPoint& first = positionOf[triangles.front()[0]];
    Extremes even(first);
    Extremes odd(first);
    for (const auto& corners : triangles) {
        const ON_3dPoint& p0 = positionOf[corners[0]];
        const ON_3dPoint& p1 = positionOf[corners[1]];
        const ON_3dPoint& p2 = positionOf[corners[2]];
        const Pair xy0 = Pair::Load(&p0.x);
        const Pair xy1 = Pair::Load(&p1.x);
        const Pair xy2 = Pair::Load(&p2.x);
        const Pair z01 = Pair::Load(p0.z, p1.z);
        const Pair z2 = Pair::Both(p2.z);
        even.lowXY = Min(Min(xy0, xy1), even.lowXY);
        even.highXY = Max(Max(xy0, xy1), even.highXY);
        odd.lowXY = Min(xy2, odd.lowXY);
        odd.highXY = Max(xy2, odd.highXY);
        even.lowZ = Min(z01, even.lowZ);
        even.highZ = Max(z01, even.highZ);
        odd.lowZ = Min(z2, odd.lowZ);
        odd.highZ = Max(z2, odd.highZ);
    }
    return Joined(even, odd);
}

// The vertices that triangles name, a bit each.
class UsedVertices {
public:
    // Empty when memory is short or a number is none of a vertex.
    UsedVertices(size_t vertexCount, const VertexIndexArray& triangles)
        : words_(MarksOf(vertexCount, triangles)) {}

    explicit operator bool() const { return words_ != nullptr; }

    // Calls `body(begin, end)` for each run of used vertices within one word.
    template <class Body>
    void ForEachRun(size_t vertexCount, const Body& body) const {
        for (size_t begin = 0; begin < vertexCount; begin += 64) {
            uint64_t word = words_[begin / 64];
            if (word == ~uint64_t{0}) {
                body(begin, begin + 64);
                continue;
            }
            for (size_t vertex = begin; word != 0; ++vertex, word >>= 1)
                if ((word & 1) != 0)
                    body(vertex, vertex + 1);
        }
    }

private:
    using Words = std::unique_ptr<uint64_t[]>;

    static Words MarksOf(size_t vertexCount, const VertexIndexArray& triangles) {
        Words words(new (std::nothrow) uint64_t[vertexCount / 64 + 1]());
        if (!words)
            return nullptr;
        for (const auto& corners : triangles) {
            if (std::max({corners[0], corners[1], corners[2]}) >= vertexCount)
                // LCOV_EXCL_LINE: numbers that no caller may have; nothing is written for them
                return nullptr;
            for (const size_t vertex : corners.v)
                words[vertex / 64] |= uint64_t{1} << (vertex % 64);
        }
        return words;
    }

    Words words_;
};

// The same as `FindExtremes`, each used vertex once and in order.
Extremes FindExtremesOfUsed(const VertexArray& vertices, const ON_3dPoint& first,
                            const UsedVertices& used) {
    Extremes all(first);
    const ON_3dPoint* const positionOf = vertices.data();
    used.ForEachRun(vertices.size(), [&](size_t begin, size_t end) {
        for (size_t vertex = begin; vertex < end; ++vertex) {
            const Pair xy = Pair::Load(&positionOf[vertex].x);
            const Pair z = Pair::Both(positionOf[vertex].z);
            all.lowXY = Min(xy, all.lowXY);
            all.highXY = Max(xy, all.highXY);
            all.lowZ = Min(z, all.lowZ);
            all.highZ = Max(z, all.highZ);
        }
    });
    return all;
}

// The first zero that a triangle corner has on the axis, sign and all. There is one.
double FirstZero(const VertexArray& vertices, const VertexIndexArray& triangles,
                 double ON_3dPoint::*axis) {
    const auto coordinateOf = [&](size_t corner) {
        return vertices[triangles[corner / 3].v[corner % 3]].*axis;
    };
    size_t corner = 0;
    while (coordinateOf(corner) != 0.0)
        ++corner;
    return coordinateOf(corner);
}

// Where vertices are met in random order it is faster to mark them first.
Extremes ExtremesOf(const VertexArray& vertices, const VertexIndexArray& triangles) {
    if (CornerReader(vertices, triangles).IsScatteredAt(0)) {
        const UsedVertices used(vertices.size(), triangles);
        if (used)
            return FindExtremesOfUsed(vertices, vertices[triangles.front()[0]], used);
    }
    return FindExtremes(vertices.data(), triangles);
}

}  // namespace

bool FindPositionExtremes(const VertexArray& vertices, const VertexIndexArray& triangles,
                          ON_BoundingBox& box) {
    if (vertices.size() / kMaxVerticesPerTriangle > triangles.size() || !AllOrdinary(vertices))
        return false;
    const Extremes extremes = ExtremesOf(vertices, triangles);
    const double lowZ = Min(extremes.lowZ, Pair::Both(extremes.lowZ.High())).Low();
    const double highZ = Max(extremes.highZ, Pair::Both(extremes.highZ.High())).Low();
    ON_3dPoint low(extremes.lowXY.Low(), extremes.lowXY.High(), lowZ);
    ON_3dPoint high(extremes.highXY.Low(), extremes.highXY.High(), highZ);
    for (ON_3dPoint* const bound : {&low, &high})
        for (double ON_3dPoint::*const axis : {&ON_3dPoint::x, &ON_3dPoint::y, &ON_3dPoint::z})
            if (bound->*axis == 0.0)
                bound->*axis = FirstZero(vertices, triangles, axis);
    box.m_min = low;
    box.m_max = high;
    return true;
}

}  // namespace Vr::detail

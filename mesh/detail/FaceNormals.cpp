// Raw normals are a gather and few operations; angles are worked out for blocks of triangles, because
// their lengths, unit normals and cosines need seventeen divisions a triangle, which go in pairs only
// where the compiler sees several triangles at a time.

#include "mesh/detail/FaceNormals.h"

#include <algorithm>

#include "mesh/detail/CornerReader.h"
#include "mesh/detail/UnitVectors.h"

namespace Vr::detail {

namespace {

using VertexArray = VraMeshPrimitive::VertexArray;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;

constexpr size_t kBlock = VectorBlock::kCapacity;

ON_3dVector RawNormal(const CornerReader& corners, size_t triangle) {
    const ON_3dPoint& p1 = corners.Point(triangle, 1);
    return ON_CrossProduct(p1 - corners.Point(triangle, 0), corners.Point(triangle, 2) - p1);
}

// Edge k runs from corner k to the next.
struct AngleBlock {
    VectorBlock edges[3];
    double lengths[3][kBlock];
    double cosines[3][kBlock];
};

void SetEdge(VectorBlock& edges, size_t i, const ON_3dVector& edge) {
    edges.x[i] = edge.x;
    edges.y[i] = edge.y;
    edges.z[i] = edge.z;
}

double AngleOf(double cosine) {
    if (cosine >= 1.0)
        return 0.0;
    return cosine <= -1.0 ? ON_PI : std::acos(cosine);
}

void SetAngles(AngleBlock& block, size_t count, AngleFace* faces) {
    for (size_t edge = 0; edge < 3; ++edge)
        LengthsOf(block.edges[edge], block.lengths[edge]);
    for (size_t corner = 0; corner < 3; ++corner) {
        const size_t before = (corner + 2) % 3;
        CosinesOf(block.edges[corner], block.lengths[corner], block.edges[before],
                  block.lengths[before], block.cosines[corner]);
    }
    for (size_t i = 0; i < count; ++i) {
        for (size_t corner = 0; corner < 3; ++corner) {
            const bool hasSides =
                block.lengths[corner][i] != 0.0 && block.lengths[(corner + 2) % 3][i] != 0.0;
            // The side that leads back is the edge before the corner, reversed: that changes no
            // length, and the sign of the cosine alone.
            faces[i].angles[corner] = hasSides ? AngleOf(-block.cosines[corner][i]) : 0.0;
        }
    }
}

void MakeAngleFaces(const CornerReader& corners, size_t begin, size_t count, AngleFace* faces) {
    AngleBlock block;
    ON_3dVector units[kBlock];
    const bool isScattered = corners.IsScatteredAt(begin);
    for (size_t i = 0; i < kBlock; ++i) {
        // A last block that is not full repeats its last triangle.
        const size_t triangle = begin + std::min(i, count - 1);
        if (isScattered)
            corners.PrefetchBehind(triangle);
        const ON_3dPoint& p0 = corners.Point(triangle, 0);
        const ON_3dPoint& p1 = corners.Point(triangle, 1);
        const ON_3dPoint& p2 = corners.Point(triangle, 2);
        SetEdge(block.edges[0], i, p1 - p0);
        SetEdge(block.edges[1], i, p2 - p1);
        SetEdge(block.edges[2], i, p0 - p2);
        units[i] = ON_CrossProduct(p1 - p0, p2 - p1);
    }
    UnitizeAll(units, kBlock);
    SetAngles(block, count, faces);
    for (size_t i = 0; i < count; ++i)
        faces[i].unit = units[i];
}

}  // namespace

void MakeFaces(const VertexArray& vertices, const VertexIndexArray& triangles, size_t begin,
               size_t end, AreaFace* faces) {
    const CornerReader corners(vertices, triangles);
    corners.ForEach(begin, end, [=](size_t triangle) {
        faces[triangle - begin].raw = RawNormal(corners, triangle);
    });
}

void MakeFaces(const VertexArray& vertices, const VertexIndexArray& triangles, size_t begin,
               size_t end, CreaseAreaFace* faces) {
    const CornerReader corners(vertices, triangles);
    corners.ForEach(begin, end, [=](size_t triangle) {
        CreaseAreaFace& face = faces[triangle - begin];
        face.raw = RawNormal(corners, triangle);
        face.length = std::sqrt(face.raw.LengthSquared());
    });
}

void MakeFaces(const VertexArray& vertices, const VertexIndexArray& triangles, size_t begin,
               size_t end, AngleFace* faces) {
    const CornerReader corners(vertices, triangles);
    for (size_t block = begin; block < end; block += kBlock)
        MakeAngleFaces(corners, block, std::min(kBlock, end - block), faces + (block - begin));
}

}  // namespace Vr::detail

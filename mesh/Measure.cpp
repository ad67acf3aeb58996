// Measures are sums and extremes over the triangles in array order. The bounding box takes a fast
// road where every position is an ordinary number: growing a box is then the minimum and maximum of
// each axis, in any grouping, save for the sign of a zero.

#include <algorithm>
#include <cmath>
#include <limits>
#include <typeinfo>

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/CornerReader.h"
#include "mesh/detail/Pair.h"
#include "mesh/detail/PositionExtremes.h"

namespace Vr {

namespace {

using VertexArray = VraMeshPrimitive::VertexArray;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;

// The box as described: started at the first point, then grown point by point.
void GrowPointByPoint(const VertexArray& vertices, const VertexIndexArray& triangles,
                      ON_BoundingBox& box) {
    box.Set(vertices[triangles.front()[0]], false);
    for (const auto& triangle : triangles) {
        box.Set(vertices[triangle[0]], true);
        box.Set(vertices[triangle[1]], true);
        box.Set(vertices[triangle[2]], true);
    }
}

// Out of line, so that the common case saves no registers for it.
[[gnu::noinline, gnu::cold]] double CrossLengthOfExtreme(const ON_3dPoint& p0, const ON_3dPoint& p1,
                                                         const ON_3dPoint& p2) {
    return ON_CrossProduct(p1 - p0, p2 - p0).Length();
}

// The length of the cross product of p1 - p0 and p2 - p0, by openNURBS's operations, two numbers at a
// time where they do not wait for each other.
double CrossLength(const ON_3dPoint& p0, const ON_3dPoint& p1, const ON_3dPoint& p2) {
    using detail::Pair;
    const Pair yz0 = Pair::Load(&p0.y);
    const Pair aYZ = Pair::Load(&p1.y) - yz0;
    const Pair bYZ = Pair::Load(&p2.y) - yz0;
    const double aX = p1.x - p0.x;
    const double bX = p2.x - p0.x;
    const Pair crossXY = aYZ * HighLow(bYZ, Pair::Both(bX)) - HighLow(aYZ, Pair::Both(aX)) * bYZ;
    const double crossZ = aX * bYZ.Low() - aYZ.Low() * bX;

    // The largest component is exchanged with x, y before z. Both numbers of a pair are the same
    // here, since choices between single numbers become branches.
    const Pair absXY = Magnitudes(crossXY);
    const Pair x = LowLow(absXY, absXY);
    const Pair y = HighHigh(absXY, absXY);
    const Pair z = Magnitudes(Pair::Both(crossZ));
    const Pair largestOfXY = Max(x, y);
    const Pair largests = Max(largestOfXY, z);
    const Pair second = WhereEqual(y, largests, x, y);
    const Pair third = WhereLess(largestOfXY, z, x, z);
    const double largest = largests.Low();
    const Pair ratios = LowLow(second, third) / largests;
    const Pair squares = ratios * ratios;
    const double length = largest * std::sqrt(1.0 + squares.Low() + squares.High());
    // Also false for NaN, which is in the length whichever component has it.
    if (largest > std::numeric_limits<double>::min() &&
        length <= std::numeric_limits<double>::max())
        return length;
    return CrossLengthOfExtreme(p0, p1, p2);
}

inline double AreaOf(size_t triangle, const VertexArray* vertices,
                     const VertexIndexArray* triangles) {
    // Deliberate: the bound is "greater than", so a number equal to the count passes.
    if (!vertices || !triangles || triangle > triangles->size())
        return -1.0;
    const auto& corners = triangles->data()[triangle];
    const ON_3dPoint& p0 = vertices->data()[corners[0]];
    const ON_3dPoint& p1 = vertices->data()[corners[1]];
    const ON_3dPoint& p2 = vertices->data()[corners[2]];
    return CrossLength(p0, p1, p2) * 0.5;
}

[[gnu::noinline]] double AreaThroughGetters(const VraMeshPrimitive& mesh, size_t triangle) {
    const auto vertices = mesh.GetVertexArray();
    const auto triangles = mesh.GetVertexIndexArray();
    return AreaOf(triangle, vertices.get(), triangles.get());
}

}  // namespace

bool VraMeshPrimitive::CalcBoundingBox(ON_BoundingBox& box) const {
    const auto vertices = GetVertexArray();
    const auto triangles = GetVertexIndexArray();
    if (!vertices || !triangles || triangles->empty())
        return false;
    if (!detail::FindPositionExtremes(*vertices, *triangles, box))
        GrowPointByPoint(*vertices, *triangles, box);
    return true;
}

double VraMeshPrimitive::GetTriangleArea(size_t triangle) const {
    // Copying two handles costs several times the area. The two classes of this module do not
    // override the getters, so for them the members are what the getters give.
    const std::type_info* const type = &typeid(*this);
    if (type == &typeid(VraMesh) || type == &typeid(VraMeshPrimitive))
        return AreaOf(triangle, vertexArray_.get(), vertexIndexArray_.get());
    return AreaThroughGetters(*this, triangle);
}

double VraMeshPrimitive::CalcVolume(ON_3dPoint reference) const {
    const auto vertices = GetVertexArray();
    const auto triangles = GetVertexIndexArray();
    if (!vertices || !triangles)
        return 0.0;
    const detail::CornerReader corners(*vertices, *triangles);
    double volume = 0.0;
    corners.ForEach(0, triangles->size(), [&](size_t triangle) {
        const ON_3dPoint& p0 = corners.Point(triangle, 0);
        const ON_3dPoint& p1 = corners.Point(triangle, 1);
        const ON_3dPoint& p2 = corners.Point(triangle, 2);
        volume += ON_DotProduct(ON_CrossProduct(p1 - p0, p2 - p0), p0 - reference) / 6.0;
    });
    return volume;
}

}  // namespace Vr

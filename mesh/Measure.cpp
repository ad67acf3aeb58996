// Measures are sums and extremes over the triangles in array order. The bounding box takes a fast
// road where every position is an ordinary number: growing a box is then the minimum and maximum of
// each axis, in any grouping, save for the sign of a zero.

#include "mesh/VraMeshPrimitive.h"
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
    const auto vertices = GetVertexArray();
    const auto triangles = GetVertexIndexArray();
    // Deliberate: the bound is "greater than", so a number equal to the count passes.
    if (!vertices || !triangles || triangle > triangles->size())
        return -1.0;
    const TriangleIndex& corners = triangles->data()[triangle];
    const ON_3dPoint& p0 = (*vertices)[corners[0]];
    const ON_3dPoint& p1 = (*vertices)[corners[1]];
    const ON_3dPoint& p2 = (*vertices)[corners[2]];
    return ON_CrossProduct(p1 - p0, p2 - p0).Length() * 0.5;
}

double VraMeshPrimitive::CalcVolume(ON_3dPoint reference) const {
    const auto vertices = GetVertexArray();
    const auto triangles = GetVertexIndexArray();
    if (!vertices || !triangles)
        return 0.0;
    const ON_3dPoint* const positionOf = vertices->data();
    double volume = 0.0;
    for (const TriangleIndex& corners : *triangles) {
        const ON_3dPoint& p0 = positionOf[corners[0]];
        const ON_3dPoint& p1 = positionOf[corners[1]];
        const ON_3dPoint& p2 = positionOf[corners[2]];
        volume += ON_DotProduct(ON_CrossProduct(p1 - p0, p2 - p0), p0 - reference) / 6.0;
    }
    return volume;
}

}  // namespace Vr

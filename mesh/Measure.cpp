// Measures are sums and extremes over the triangles in array order. The bounding box takes a fast
// road where every position is an ordinary number: growing a box is then the minimum and maximum of
// each axis, in any grouping, save for the sign of a zero.

#include <typeinfo>

#include "mesh/VraMesh.h"
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

double AreaOf(size_t triangle, const VertexArray* vertices, const VertexIndexArray* triangles) {
    // Deliberate: the bound is "greater than", so a number equal to the count passes.
    if (!vertices || !triangles || triangle > triangles->size())
        return -1.0;
    const auto& corners = triangles->data()[triangle];
    const ON_3dPoint& p0 = vertices->data()[corners[0]];
    const ON_3dPoint& p1 = vertices->data()[corners[1]];
    const ON_3dPoint& p2 = vertices->data()[corners[2]];
    return ON_CrossProduct(p1 - p0, p2 - p0).Length() * 0.5;
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
    const auto vertices = GetVertexArray();
    const auto triangles = GetVertexIndexArray();
    return AreaOf(triangle, vertices.get(), triangles.get());
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

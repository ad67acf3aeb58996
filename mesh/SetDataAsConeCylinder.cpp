// Cone and cylinder by fixed patterns of indices over one or two rings of vertices, sampled from
// openNURBS's surfaces. Both begin with the second point (vertex and normal 0) and the first point
// (vertex and normal 1); the first ring begins at vertex 2 and has the normals of the same numbers.

#include <new>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;

constexpr size_t kRing = 2;

double AngleOf(size_t segment, size_t segmentCount) {
    return static_cast<double>(segment) * 6.283185307179586 / static_cast<double>(segmentCount);
}

// From the first to the second point. The points are copies: a caller may pass elements of an array
// that goes away when the new arrays are installed.
struct Axis {
    ON_3dPoint first;
    ON_3dPoint second;
    ON_3dVector direction;
    double height;
    ON_Plane plane;

    Axis(const ON_3dPoint& firstPoint, const ON_3dPoint& secondPoint)
        : first(firstPoint),
          second(secondPoint),
          direction(second - first),
          height(direction.Length()) {
        direction.Unitize();
        plane = ON_Plane(first, direction);
    }
};

// The new arrays while they are filled.
class Solid {
public:
    Solid(VraMeshPrimitive::VertexArray& vertices, VraMeshPrimitive::NormalArray& normals,
          VraMeshPrimitive::VertexIndexArray& triangles,
          VraMeshPrimitive::IndexArray& normalIndices)
        : vertices_(vertices),
          normals_(normals),
          triangles_(triangles),
          normalTriples_(boost::get<VraMeshPrimitive::IndexArray::PerVertex>(normalIndices.data)) {}

    void Reserve(size_t segmentCount, size_t ringCount, size_t trianglesPerSegment) {
        // More than any memory holds, and the products below would overflow.
        if (segmentCount > triangles_.max_size() / 8)
            throw std::bad_alloc();
        vertices_.reserve(ringCount * segmentCount + kRing);
        normals_.reserve(segmentCount + kRing);
        triangles_.reserve(trianglesPerSegment * segmentCount);
        normalTriples_.reserve(trianglesPerSegment * segmentCount);
    }

    void AddVertex(const ON_3dPoint& vertex) { vertices_.push_back(vertex); }

    void AddVertex(const ON_3dPoint& vertex, const ON_3dVector& normal) {
        vertices_.push_back(vertex);
        normals_.push_back(normal);
    }

    void AddEnds(const Axis& axis) {
        AddVertex(axis.second, axis.direction);
        AddVertex(axis.first, -axis.direction);
    }

    void AddTriangle(const TriangleIndex& triangle, const TriangleIndex& normalTriple) {
        triangles_.push_back(triangle);
        normalTriples_.push_back(normalTriple);
    }

    // Closes the first ring with a fan around the first point.
    void AddFirstCap(size_t segmentCount) {
        for (size_t segment = 0; segment < segmentCount; ++segment) {
            const size_t next = (segment + 1) % segmentCount;
            AddTriangle({{1, kRing + next, kRing + segment}}, {{1, 1, 1}});
        }
    }

private:
    VraMeshPrimitive::VertexArray& vertices_;
    VraMeshPrimitive::NormalArray& normals_;
    VraMeshPrimitive::VertexIndexArray& triangles_;
    std::vector<TriangleIndex>& normalTriples_;
};

}  // namespace

bool VraMeshPrimitive::SetDataAsCone(const ON_3dPoint& first, const ON_3dPoint& second,
                                     double radius, size_t segmentCount) {
    if (segmentCount < 3)
        return false;
    const Axis axis(first, second);
    const ON_Cone cone(axis.plane, axis.height, radius);

    colorArray_.reset();
    colorIndexArray_.reset();
    vertexArray_ = std::make_shared<VertexArray>();
    normalArray_ = std::make_shared<NormalArray>();
    vertexIndexArray_ = std::make_shared<VertexIndexArray>();
    normalIndexArray_ = std::make_shared<IndexArray>(IndexArray::PerVertex());
    Solid solid(*vertexArray_, *normalArray_, *vertexIndexArray_, *normalIndexArray_);
    solid.Reserve(segmentCount, 1, 2);

    solid.AddEnds(axis);
    for (size_t segment = 0; segment < segmentCount; ++segment) {
        const double angle = AngleOf(segment, segmentCount);
        // Deliberate: distances on this surface count from its apex, which is the first point, so
        // the ring at distance 0 has no radius; only the normals tell of it.
        solid.AddVertex(cone.PointAt(angle, 0.0), cone.NormalAt(angle, 0.0));
    }
    for (size_t segment = 0; segment < segmentCount; ++segment) {
        const size_t next = (segment + 1) % segmentCount;
        const TriangleIndex side = {{0, kRing + segment, kRing + next}};
        solid.AddTriangle(side, side);
    }
    solid.AddFirstCap(segmentCount);
    return true;
}

bool VraMeshPrimitive::SetDataAsCylinder(const ON_3dPoint& first, const ON_3dPoint& second,
                                         double radius, size_t segmentCount) {
    if (segmentCount < 3)
        return false;
    const Axis axis(first, second);
    const ON_Circle circle(axis.plane, axis.first, radius);
    const ON_Cylinder cylinder(circle, axis.height);

    colorArray_.reset();
    colorIndexArray_.reset();
    vertexArray_ = std::make_shared<VertexArray>();
    normalArray_ = std::make_shared<NormalArray>();
    vertexIndexArray_ = std::make_shared<VertexIndexArray>();
    normalIndexArray_ = std::make_shared<IndexArray>(IndexArray::PerVertex());
    Solid solid(*vertexArray_, *normalArray_, *vertexIndexArray_, *normalIndexArray_);
    solid.Reserve(segmentCount, 2, 4);

    solid.AddEnds(axis);
    for (size_t segment = 0; segment < segmentCount; ++segment) {
        const double angle = AngleOf(segment, segmentCount);
        solid.AddVertex(cylinder.PointAt(angle, 0.0), cylinder.NormalAt(angle, 0.0));
    }
    for (size_t segment = 0; segment < segmentCount; ++segment)
        solid.AddVertex(cylinder.PointAt(AngleOf(segment, segmentCount), axis.height));

    const size_t secondRing = kRing + segmentCount;
    for (size_t segment = 0; segment < segmentCount; ++segment) {
        const size_t next = (segment + 1) % segmentCount;
        const size_t low = kRing + segment;
        const size_t lowNext = kRing + next;
        solid.AddTriangle({{low, lowNext, secondRing + segment}}, {{low, lowNext, low}});
        solid.AddTriangle({{secondRing + next, secondRing + segment, lowNext}},
                          {{lowNext, low, lowNext}});
    }
    solid.AddFirstCap(segmentCount);
    // Deliberate: this cap too is a fan around the first point, with the normals of the second; no
    // triangle uses vertex 0.
    for (size_t segment = 0; segment < segmentCount; ++segment) {
        const size_t next = (segment + 1) % segmentCount;
        solid.AddTriangle({{1, secondRing + segment, secondRing + next}}, {{0, 0, 0}});
    }
    return true;
}

}  // namespace Vr

/// What the family units share to call the library as a host does.
#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <string>
#include <utility>

#include "mesh/VraMeshPrimitive.h"
#include "peers/Contest.h"
#include "peers/Figures.h"

namespace Vr::bench::peers {

using OurMesh = boost::intrusive_ptr<VraMeshPrimitive>;

inline std::shared_ptr<VraMeshPrimitive::VertexArray> OurVertices(
    const std::vector<Point>& points) {
    auto vertices = std::make_shared<VraMeshPrimitive::VertexArray>();
    vertices->reserve(points.size());
    for (const Point& point : points)
        vertices->push_back(ON_3dPoint(point[0], point[1], point[2]));
    return vertices;
}

inline VraMeshPrimitive::VertexIndexArray OurTriangles(const std::vector<Triangle>& triangles) {
    VraMeshPrimitive::VertexIndexArray ours;
    ours.reserve(triangles.size());
    for (const Triangle& triangle : triangles)
        ours.push_back({{triangle[0], triangle[1], triangle[2]}});
    return ours;
}

inline OurMesh MakeOurMesh(const std::vector<Point>& points,
                           const std::vector<Triangle>& triangles) {
    OurMesh mesh(new VraMeshPrimitive);
    mesh->SetVertexArray(OurVertices(points));
    mesh->SetVertexIndexArray(
        std::make_shared<VraMeshPrimitive::VertexIndexArray>(OurTriangles(triangles)));
    return mesh;
}

/// A mesh and what it was made from, for operations that edit it in place.
struct RestorableMesh {
    explicit RestorableMesh(const Input& input)
        : mesh(MakeOurMesh(input.points, input.triangles)),
          vertices(*mesh->GetVertexArray()),
          triangles(*mesh->GetVertexIndexArray()) {}

    void Restore() {
        *mesh->GetModifiableVertexArray() = vertices;
        *mesh->GetModifiableVertexIndexArray() = triangles;
    }

    OurMesh mesh;
    VraMeshPrimitive::VertexArray vertices;
    VraMeshPrimitive::VertexIndexArray triangles;
};

/// Counts of both arrays, and the position at every corner in the order of triangles.
inline Figures MeshFigures(const VraMeshPrimitive& mesh) {
    const auto vertices = mesh.GetVertexArray();
    const auto triangles = mesh.GetVertexIndexArray();
    const auto positionOf = [&](size_t corner) {
        const ON_3dPoint& point = (*vertices)[(*triangles)[corner / 3][corner % 3]];
        return Point{point.x, point.y, point.z};
    };
    return {Count("vertices", vertices->size()), Count("triangles", triangles->size()),
            VectorSum("positions", 3 * triangles->size(), kDoubles, positionOf)};
}

/// Makes a contestant of the library.
inline Contestant Ours(std::string operation, std::string call, std::string note,
                       std::function<Task(const Input&)> make, bool isParallel = false) {
    Contestant ours;
    ours.operation = std::move(operation);
    ours.peer = kOurs;
    ours.call = std::move(call);
    ours.note = std::move(note);
    ours.make = std::move(make);
    ours.isParallel = isParallel;
    return ours;
}

}  // namespace Vr::bench::peers

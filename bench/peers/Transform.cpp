// Moving and turning over. Both meshes have a normal a vertex; neither needs its input put back, for a
// rotated mesh is rotated again and a reversed one reversed back.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

// A normal for each point, all different; the normals' numbers are left out.
OurMesh WithNormals(const Input& input) {
    OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    auto normals = std::make_shared<VraMeshPrimitive::NormalArray>();
    normals->reserve(input.points.size());
    for (const Point& point : input.points) {
        ON_3dVector normal(point[0], point[1], point[2] + 1.0);
        normal.Unitize();
        normals->push_back(normal);
    }
    mesh->SetNormalArray(normals);
    return mesh;
}

Task Rotate(const Input& input) {
    const OurMesh mesh = WithNormals(input);
    ON_Xform xf;
    xf.Rotation(0.1, ON_3dVector(0, 0, 1), ON_3dPoint(0, 0, 0));
    Task task;
    task.run = [=] {
        std::set<void*> done;
        mesh->Transform(xf, done);
    };
    task.result = [=] {
        const auto points = mesh->GetVertexArray();
        const auto normals = mesh->GetNormalArray();
        return Figures{VectorSum("points", points->size(), kDoubles,
                                 [&](size_t place) {
                                     const ON_3dPoint& point = (*points)[place];
                                     return Point{point.x, point.y, point.z};
                                 }),
                       VectorSum("normals", normals->size(), kDoubles, [&](size_t place) {
                           const ON_3dVector& normal = (*normals)[place];
                           return Point{normal.x, normal.y, normal.z};
                       })};
    };
    return task;
}

Task Reverse(const Input& input) {
    const OurMesh mesh = WithNormals(input);
    Task task;
    task.run = [=] { mesh->ReverseFaces(true); };
    task.result = [=] {
        const auto& triangles = *mesh->GetVertexIndexArray();
        return Figures{NumberSum("corners", 3 * triangles.size(),
                                 [&](size_t corner) { return triangles[corner / 3][corner % 3]; })};
    };
    return task;
}

Traffic PointTraffic(const Input& input) {
    const size_t pointsAndNormals = 2 * input.points.size() * sizeof(Point);
    return {pointsAndNormals, pointsAndNormals};
}

Traffic ReverseTraffic(const Input& input) {
    const size_t bytes =
        input.points.size() * sizeof(Point) + input.triangles.size() * sizeof(Triangle);
    return {bytes, bytes};
}

}  // namespace

void AddTransform(Contest& contest) {
    contest.operations.push_back({"transform", "transform", false, WholeMesh});
    contest.contestants.push_back(
        Ours("transform", "Transform", "points and normals, in place", Rotate));
    contest.contestants.push_back(CopyLimit("transform", PointTraffic));
    contest.operations.push_back({"reverse", "reverse faces", false, WholeMesh});
    contest.contestants.push_back(
        Ours("reverse", "ReverseFaces", "faces and normals, in place", Reverse));
    contest.contestants.push_back(CopyLimit("reverse", ReverseTraffic));
}

}  // namespace Vr::bench::peers

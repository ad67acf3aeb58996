// Normals of triangles and of corners. Results of the run before are let go untimed, by us and by the
// peers, so that every run makes its arrays.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

constexpr double kThirtyDegrees = 3.14159265358979323846 / 6.0;
constexpr double kNoSplitting = -1.0;

using IndexArray = VraMeshPrimitive::IndexArray;

void LetGo(const OurMesh& mesh) {
    mesh->SetNormalArray(nullptr);
    mesh->SetNormalIndexArray(nullptr);
}

Task TriangleNormals(const Input& input) {
    const OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    Task task;
    task.prepare = [=] { LetGo(mesh); };
    task.run = [=] { mesh->CreateNormalPerTriangle(); };
    task.result = [=] {
        const auto normals = mesh->GetNormalArray();
        return Figures{VectorSum("normals", normals->size(), kDoubles, [&](size_t triangle) {
            const ON_3dVector& normal = (*normals)[triangle];
            return Point{normal.x, normal.y, normal.z};
        })};
    };
    return task;
}

// The figure "normals" is named for the weighting, for that differs from peer to peer.
Task CornerNormals(const Input& input, double creaseAngle,
                   VraMeshPrimitive::VertexNormalWeightType weight) {
    const OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    mesh->SetCreaseAngle(creaseAngle);
    Task task;
    task.prepare = [=] {
        LetGo(mesh);
        VraMeshPrimitive::SetVertexNormalWeightType(weight);
    };
    task.run = [=] { mesh->CreateNormalPerVertex(); };
    task.result = [=] {
        const auto normals = mesh->GetNormalArray();
        const auto& triples = boost::get<IndexArray::PerVertex>(mesh->GetNormalIndexArray()->data);
        const char* const name =
            weight == VraMeshPrimitive::Area ? "normals by area" : "normals by angle";
        return Figures{VectorSum(name, 3 * triples.size(), kDoubles, [&](size_t corner) {
            const ON_3dVector& normal = (*normals)[triples[corner / 3][corner % 3]];
            return Point{normal.x, normal.y, normal.z};
        })};
    };
    return task;
}

Traffic TriangleNormalTraffic(const Input& input) {
    const size_t triangles = input.triangles.size();
    return {input.points.size() * sizeof(Point) + triangles * sizeof(Triangle),
            triangles * (sizeof(Point) + sizeof(size_t))};
}

Traffic CornerNormalTraffic(const Input& input) {
    const size_t points = input.points.size() * sizeof(Point);
    const size_t triangles = input.triangles.size() * sizeof(Triangle);
    return {points + triangles, points + triangles};
}

}  // namespace

void AddNormals(Contest& contest) {
    contest.operations.push_back({"flat_normals", "flat normals", true, WholeMesh});
    contest.contestants.push_back(Ours("flat_normals", "CreateNormalPerTriangle",
                                       "with a number a triangle", TriangleNormals, true));
    contest.contestants.push_back(CopyLimit("flat_normals", TriangleNormalTraffic));

    const auto add = [&](const char* name, const char* title, double creaseAngle,
                         VraMeshPrimitive::VertexNormalWeightType weight) {
        contest.operations.push_back({name, title, true, WholeMesh});
        contest.contestants.push_back(Ours(
            name, "CreateNormalPerVertex", "with a number a corner",
            [=](const Input& input) { return CornerNormals(input, creaseAngle, weight); }, true));
        contest.contestants.push_back(CopyLimit(name, CornerNormalTraffic));
    };
    add("smooth_area", "vertex normals, by area", kNoSplitting, VraMeshPrimitive::Area);
    add("smooth_angle", "vertex normals, by angle", kNoSplitting, VraMeshPrimitive::Angle);
    add("crease_area", "crease normals 30 deg, by area", kThirtyDegrees, VraMeshPrimitive::Area);
    add("crease_angle", "crease normals 30 deg, by angle", kThirtyDegrees, VraMeshPrimitive::Angle);
}

}  // namespace Vr::bench::peers

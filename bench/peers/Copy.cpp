// Deep copies of positions, triangles and a normal a point.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

Task Copy(const Input& input) {
    const OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    mesh->SetNormalArray(std::make_shared<VraMeshPrimitive::NormalArray>(
        mesh->GetVertexArray()->begin(), mesh->GetVertexArray()->end()));
    const auto copy = std::make_shared<OurMesh>();
    Task task;
    task.prepare = [=] { copy->reset(); };
    task.run = [=] { *copy = mesh->Duplicate(); };
    task.result = [=] { return MeshFigures(**copy); };
    return task;
}

Traffic CopyTraffic(const Input& input) {
    const size_t bytes =
        2 * input.points.size() * sizeof(Point) + input.triangles.size() * sizeof(Triangle);
    return {bytes, bytes};
}

}  // namespace

void AddCopy(Contest& contest) {
    contest.operations.push_back({"copy", "deep copy", false, WholeMesh});
    contest.contestants.push_back(
        Ours("copy", "Duplicate", "positions, triangles and normals", Copy));
    contest.contestants.push_back(CopyLimit("copy", CopyTraffic));
}

}  // namespace Vr::bench::peers

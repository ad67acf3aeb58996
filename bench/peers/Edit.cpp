// Removal of triangles and compaction of vertices.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

using Edit = std::function<void(VraMeshPrimitive&)>;

Task EditTask(const Input& input, const Edit& edit) {
    const auto ours = std::make_shared<RestorableMesh>(input);
    Task task;
    task.prepare = [=] { ours->Restore(); };
    task.run = [=] { edit(*ours->mesh); };
    task.result = [=] { return MeshFigures(*ours->mesh); };
    return task;
}

Traffic TriangleTraffic(const Input& input) {
    const size_t triangles = input.triangles.size() * sizeof(Triangle);
    return {triangles, triangles};
}

Traffic MeshTraffic(const Input& input) {
    const size_t points = input.points.size() * sizeof(Point);
    const size_t triangles = input.triangles.size() * sizeof(Triangle);
    return {points + triangles, points + triangles};
}

}  // namespace

void AddEdit(Contest& contest) {
    contest.operations.push_back(
        {"remove_degenerate", "degenerate removal", false, WithDegenerate});
    contest.contestants.push_back(Ours("remove_degenerate", "RemoveDegenerateMesh",
                                       "fills a table of who went", [](const Input& input) {
                                           return EditTask(input, [](VraMeshPrimitive& mesh) {
                                               mesh.RemoveDegenerateMesh();
                                           });
                                       }));
    contest.contestants.push_back(CopyLimit("remove_degenerate", TriangleTraffic));

    contest.operations.push_back({"delete_faces", "face deletion", false, WithFacesToDelete});
    contest.contestants.push_back(
        Ours("delete_faces", "DeleteFacetFaces", "by a sorted list", [](const Input& input) {
            return EditTask(input, [faces = input.faces](VraMeshPrimitive& mesh) {
                mesh.DeleteFacetFaces(faces);
            });
        }));
    contest.contestants.push_back(CopyLimit("delete_faces", TriangleTraffic));

    contest.operations.push_back({"compact", "compaction", true, WithUnusedPoints});
    contest.contestants.push_back(Ours(
        "compact", "DeleteUnusedVertices", "",
        [](const Input& input) {
            return EditTask(input, [](VraMeshPrimitive& mesh) { mesh.DeleteUnusedVertices(); });
        },
        true));
    contest.contestants.push_back(CopyLimit("compact", MeshTraffic));
}

}  // namespace Vr::bench::peers

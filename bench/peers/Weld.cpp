// Joining of equal values: of a soup's vertices, of an indexed mesh's, of normals and of colours. Each
// mesh has the arrays of one kind only, so that MergeSameData, which a host calls, does one step.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

using IndexArray = VraMeshPrimitive::IndexArray;
using NormalArray = VraMeshPrimitive::NormalArray;
using ColorArray = VraMeshPrimitive::ColorArray;

Task Vertices(const Input& input) {
    const auto ours = std::make_shared<RestorableMesh>(input);
    Task task;
    task.prepare = [=] { ours->Restore(); };
    task.run = [=] { ours->mesh->MergeSameData(); };
    task.result = [=] { return MeshFigures(*ours->mesh); };
    return task;
}

Task Normals(const Input& input) {
    NormalArray normals;
    for (const Point& point : input.points)
        normals.push_back(ON_3dVector(point[0], point[1], point[2]));
    const IndexArray indices(OurTriangles(input.triangles));
    const OurMesh mesh(new VraMeshPrimitive);
    mesh->SetNormalArray(std::make_shared<NormalArray>());
    mesh->SetNormalIndexArray(std::make_shared<IndexArray>());
    Task task;
    task.prepare = [=] {
        *mesh->GetModifiableNormalArray() = normals;
        *mesh->GetModifiableNormalIndexArray() = indices;
    };
    task.run = [=] { mesh->MergeSameData(); };
    task.result = [=] {
        const auto& triples = boost::get<IndexArray::PerVertex>(mesh->GetNormalIndexArray()->data);
        const auto normalOf = [&](size_t corner) {
            const ON_3dVector& normal = (*mesh->GetNormalArray())[triples[corner / 3][corner % 3]];
            return Point{normal.x, normal.y, normal.z};
        };
        return Figures{Count("vertices", mesh->GetNormalArray()->size()),
                       VectorSum("positions", 3 * triples.size(), kDoubles, normalOf)};
    };
    return task;
}

Task Colors(const Input& input) {
    const ColorArray colors(input.colors.begin(), input.colors.end());
    const IndexArray indices(OurTriangles(input.triangles));
    const OurMesh mesh(new VraMeshPrimitive);
    mesh->SetColorArray(std::make_shared<ColorArray>());
    mesh->SetColorIndexArray(std::make_shared<IndexArray>());
    Task task;
    task.prepare = [=] {
        *mesh->GetModifiableColorArray() = colors;
        *mesh->GetModifiableColorIndexArray() = indices;
    };
    task.run = [=] { mesh->MergeSameData(); };
    task.result = [=] {
        const auto& triples = boost::get<IndexArray::PerVertex>(mesh->GetColorIndexArray()->data);
        const auto colorOf = [&](size_t corner) {
            return static_cast<unsigned int>(
                (*mesh->GetColorArray())[triples[corner / 3][corner % 3]]);
        };
        return Figures{Count("colors", mesh->GetColorArray()->size()),
                       NumberSum("color of corners", 3 * triples.size(), colorOf)};
    };
    return task;
}

// Read: all values and numbers. Written: the numbers; the distinct values are few.
Traffic ValueTraffic(const Input& input) {
    const size_t values = input.points.size() * sizeof(Point) + input.colors.size() * 4;
    const size_t numbers = input.triangles.size() * sizeof(Triangle);
    return {values + numbers, numbers};
}

}  // namespace

void AddWeld(Contest& contest) {
    contest.operations.push_back({"weld", "weld a soup", false, Soup});
    contest.operations.push_back({"weld_indexed", "weld an indexed mesh", false, WholeMesh});
    contest.operations.push_back({"merge_normals", "merge normals", false, Soup});
    contest.operations.push_back({"merge_colors", "merge colours", false, CornerColors});

    const char* const sorted = "sorted by x, y, z; 64-bit numbers";
    contest.contestants.push_back(Ours("weld", "MergeSameData", sorted, Vertices));
    contest.contestants.push_back(Ours("weld_indexed", "MergeSameData", sorted, Vertices));
    contest.contestants.push_back(Ours("merge_normals", "MergeSameData", sorted, Normals));
    contest.contestants.push_back(
        Ours("merge_colors", "MergeSameData", "sorted; 64-bit numbers", Colors));
    for (const char* operation : {"weld", "weld_indexed", "merge_normals"}) {
        contest.contestants.push_back(CopyAndSortLimit(operation, ValueTraffic));
        contest.contestants.push_back(SortLimit(operation));
        contest.contestants.back().mostTriangles = 1'000'000;
    }
    contest.contestants.push_back(CopyLimit("merge_colors", ValueTraffic));
}

}  // namespace Vr::bench::peers

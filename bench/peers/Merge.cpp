// Merging of eight parts of a mesh into one, with the maps.

#include <memory>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/Limits.h"
#include "peers/OurMesh.h"

namespace Vr::bench::peers {

namespace {

Task MergeParts(const Input& input) {
    std::vector<boost::intrusive_ptr<const VraMeshPrimitive>> parts;
    for (const PlainMesh& part : input.parts)
        parts.push_back(MakeOurMesh(part.points, part.triangles));
    const auto target = std::make_shared<OurMesh>();
    const auto maps = std::make_shared<std::vector<std::vector<int>>>();
    Task task;
    task.prepare = [=] {
        target->reset(new VraMeshPrimitive);
        maps->clear();
    };
    task.run = [=] { VraMeshPrimitive::Merge(*target, parts, maps.get()); };
    task.result = [=] { return MeshFigures(**target); };
    return task;
}

Traffic PartTraffic(const Input& input) {
    size_t bytes = 0;
    for (const PlainMesh& part : input.parts)
        bytes += part.points.size() * sizeof(Point) + part.triangles.size() * sizeof(Triangle);
    return {bytes, bytes};
}

}  // namespace

void AddMerge(Contest& contest) {
    contest.operations.push_back({"merge", "merge of eight parts", false, EightParts});
    contest.contestants.push_back(
        Ours("merge", "Merge", "in order of first use, with a map a part", MergeParts));
    contest.contestants.push_back(CopyLimit("merge", PartTraffic));
}

}  // namespace Vr::bench::peers

// Merging of eight parts of one mesh, with maps. Parts of a coherent mesh touch along seams; parts of
// a shuffled one have most of their vertices in common.

#include <limits>

#include "support/BenchMeshes.h"

namespace {

using namespace Vr::bench;
using Vr::VraMeshPrimitive;
using Sources = std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>;

// Triangles `begin` to `end` with the vertices that they use, in the order of the whole mesh.
Mesh PartOf(const VraMeshPrimitive& whole, size_t begin, size_t end) {
    constexpr size_t kUnused = std::numeric_limits<size_t>::max();
    std::vector<size_t> newVertexOf(whole.GetVertexArray()->size(), kUnused);
    const auto triangles = std::make_shared<VraMeshPrimitive::VertexIndexArray>(
        whole.GetVertexIndexArray()->begin() + static_cast<std::ptrdiff_t>(begin),
        whole.GetVertexIndexArray()->begin() + static_cast<std::ptrdiff_t>(end));
    for (const auto& triangle : *triangles)
        for (const size_t vertex : triangle.v)
            newVertexOf[vertex] = 0;
    const auto vertices = std::make_shared<VraMeshPrimitive::VertexArray>();
    for (size_t vertex = 0; vertex < newVertexOf.size(); ++vertex) {
        if (newVertexOf[vertex] == kUnused)
            continue;
        newVertexOf[vertex] = vertices->size();
        vertices->push_back((*whole.GetVertexArray())[vertex]);
    }
    for (auto& triangle : *triangles)
        for (size_t& vertex : triangle.v)
            vertex = newVertexOf[vertex];
    const Mesh part(new VraMeshPrimitive);
    part->SetVertexArray(vertices);
    part->SetVertexIndexArray(triangles);
    return part;
}

void MergeParts(benchmark::State& state, const Case& which) {
    constexpr size_t kPartCount = 8;
    const Mesh whole = SharedMesh(which);
    Sources parts;
    for (size_t part = 0; part < kPartCount; ++part)
        parts.push_back(PartOf(*whole, which.triangleCount * part / kPartCount,
                               which.triangleCount * (part + 1) / kPartCount));
    Mesh target;
    std::vector<std::vector<int>> maps;
    Measure(
        state, which.triangleCount,
        [&] {
            target.reset(new VraMeshPrimitive);
            maps.clear();
        },
        [&] { VraMeshPrimitive::Merge(target, parts, &maps); });
}

const bool kIndexed = Register("Merge", IndexedCases(), MergeParts);
const bool kSoups = Register("MergeSoups", SoupCases(), MergeParts);

}  // namespace

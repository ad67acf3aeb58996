// One vertex in ten of the array is used by no triangle; and the same with all of them used.

#include <algorithm>

#include "support/BenchMeshes.h"

namespace {

using namespace Vr::bench;
using Vr::VraMeshPrimitive;

// Puts an unused vertex behind every nine, and moves the triangles' numbers up accordingly.
void AddUnused(VraMeshPrimitive& mesh) {
    const auto vertices = mesh.GetModifiableVertexArray();
    VraMeshPrimitive::VertexArray spread;
    spread.reserve(vertices->size() / 9 * 10 + 9);
    for (size_t vertex = 0; vertex < vertices->size(); ++vertex) {
        spread.push_back((*vertices)[vertex]);
        if (vertex % 9 == 8)
            spread.push_back(ON_3dPoint(0, 0, 0));
    }
    *vertices = std::move(spread);
    for (auto& corners : *mesh.GetModifiableVertexIndexArray())
        for (size_t& vertex : corners.v)
            vertex += vertex / 9;
}

void OneUnusedInTen(benchmark::State& state, const Case& which) {
    const Mesh mesh = PrivateMesh(which);
    AddUnused(*mesh);
    const auto vertices = *mesh->GetVertexArray();
    const auto triangles = *mesh->GetVertexIndexArray();
    const auto prepare = [&] {
        *mesh->GetModifiableVertexArray() = vertices;
        *mesh->GetModifiableVertexIndexArray() = triangles;
    };
    Measure(state, which.triangleCount, prepare, [&] { mesh->DeleteUnusedVertices(); });
}

void AllUsed(benchmark::State& state, const Case& which) {
    const Mesh mesh = SharedMesh(which);
    Measure(
        state, which.triangleCount, [] {}, [&] { mesh->DeleteUnusedVertices(); });
}

const bool kRegistered = Register("DeleteUnusedVertices", IndexedCases(), OneUnusedInTen, {1, 2}) &&
                         Register("DeleteUnusedVertices/all_used", IndexedCases(), AllUsed, {1, 2});

}  // namespace

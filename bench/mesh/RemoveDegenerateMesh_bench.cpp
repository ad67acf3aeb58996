// One triangle in twenty repeats a vertex number; and the same without any.

#include "support/BenchMeshes.h"

namespace {

using namespace Vr::bench;

void RemoveDegenerate(benchmark::State& state, const Case& which) {
    const Mesh mesh = PrivateMesh(which);
    uint64_t random = 20130711;
    const auto prepare = [&] {
        Restore(which, *mesh);
        for (auto& corners : *mesh->GetModifiableVertexIndexArray()) {
            random = random * 6364136223846793005u + 1442695040888963407u;
            if ((random >> 33) % 20 == 0)
                corners[2] = corners[0];
        }
    };
    Measure(state, which.triangleCount, prepare, [&] { mesh->RemoveDegenerateMesh(); });
}

void FindNone(benchmark::State& state, const Case& which) {
    const Mesh mesh = SharedMesh(which);
    Measure(
        state, which.triangleCount, [] {}, [&] { mesh->RemoveDegenerateMesh(); });
}

const bool kRegistered = Register("RemoveDegenerateMesh", IndexedCases(), RemoveDegenerate) &&
                         Register("RemoveDegenerateMesh/none", IndexedCases(), FindNone);

}  // namespace

// A random sorted tenth, hundredth and half of the triangles of a mesh with vertex indices alone.

#include "support/BenchMeshes.h"

namespace {

using namespace Vr::bench;

void DeleteOneIn(size_t step, benchmark::State& state, const Case& which) {
    const Mesh mesh = PrivateMesh(which);
    std::vector<size_t> faces;
    uint64_t random = 20130711;
    for (size_t triangle = 0; triangle < which.triangleCount; ++triangle) {
        random = random * 6364136223846793005u + 1442695040888963407u;
        if ((random >> 33) % step == 0)
            faces.push_back(triangle);
    }
    Measure(
        state, which.triangleCount, [&] { Restore(which, *mesh); },
        [&] { mesh->DeleteFacetFaces(faces); });
}

CaseBenchmark OneIn(size_t step) {
    return [step](benchmark::State& state, const Case& which) { DeleteOneIn(step, state, which); };
}

const bool kRegistered = Register("DeleteFacetFaces/tenth", IndexedCases(), OneIn(10)) &&
                         Register("DeleteFacetFaces/hundredth", IndexedCases(), OneIn(100)) &&
                         Register("DeleteFacetFaces/half", IndexedCases(), OneIn(2));

}  // namespace

#include <benchmark/benchmark.h>

#include <utility>
#include <vector>

#include "support/BenchMeshes.h"

namespace {

using Vr::bench::Case;

void FreeEdges(benchmark::State& state, const Case& which) {
    const auto mesh = Vr::bench::SharedMesh(which);
    std::vector<std::pair<size_t, size_t>> edges;
    Vr::bench::Measure(
        state, which.triangleCount, [&] { edges.clear(); }, [&] { mesh->GetFreeEdges(edges); });
    state.counters["free"] = static_cast<double>(edges.size());
}

const bool kRegistered =
    Vr::bench::Register("GetFreeEdges", Vr::bench::IndexedCases(), FreeEdges) &&
    Vr::bench::Register("GetFreeEdges", Vr::bench::SoupCases(), FreeEdges);

}  // namespace

#include <benchmark/benchmark.h>

#include "support/BenchMeshes.h"

namespace {

// Segments around the axis; a cone has two and a cylinder four triangles for each.
void Cone(benchmark::State& state) {
    const Vr::bench::Mesh mesh(new Vr::VraMeshPrimitive);
    const auto segmentCount = static_cast<size_t>(state.range(0));
    Vr::bench::Measure(
        state, 2 * segmentCount, [] {},
        [&] {
            mesh->SetDataAsCone({1, 2, 3}, {4, 6, 8}, 2.5, segmentCount);
        });
}

void Cylinder(benchmark::State& state) {
    const Vr::bench::Mesh mesh(new Vr::VraMeshPrimitive);
    const auto segmentCount = static_cast<size_t>(state.range(0));
    Vr::bench::Measure(
        state, 4 * segmentCount, [] {},
        [&] {
            mesh->SetDataAsCylinder({1, 2, 3}, {4, 6, 8}, 2.5, segmentCount);
        });
}

[[maybe_unused]] const bool kIsWarm = (Vr::bench::WarmHeap(), true);

BENCHMARK(Cone)->Name("SetDataAsCone")->Arg(32)->Arg(5000)->Arg(250000)->UseManualTime();
BENCHMARK(Cylinder)->Name("SetDataAsCylinder")->Arg(32)->Arg(2500)->Arg(250000)->UseManualTime();

}  // namespace

/// The meshes of the Google Benchmark programs, how one is timed and what is reported.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

#include "support/MeshShapes.h"

namespace Vr::bench {

using Mesh = boost::intrusive_ptr<VraMeshPrimitive>;

/// Both orders of the indexed shapes in all sizes: "sphere-10k" to "grid-5M-shuf".
[[nodiscard]] std::vector<Case> IndexedCases();
/// The soups in all sizes.
[[nodiscard]] std::vector<Case> SoupCases();

/// Returns a new primitive that shares the arrays of the case.
///
/// The arrays are built at first use from a fixed seed and kept for the process; an operation that
/// edits in place takes `PrivateMesh` instead.
[[nodiscard]] Mesh SharedMesh(const Case& which);

/// Returns a new primitive with copies of the arrays of the case.
[[nodiscard]] Mesh PrivateMesh(const Case& which);

/// Overwrites the positions and triangles of a mesh from `PrivateMesh` with those of the case again,
/// in place, so that an editing operation meets the same input each time without new memory.
void Restore(const Case& which, VraMeshPrimitive& mesh);

/// Times `operation` alone, once an iteration, and reports the figures.
///
/// Counters: `ns_per_tri` the fastest iteration, `median` the middle one, both in nanoseconds a
/// triangle; `triangles` how many the input has. `prepare` runs before each iteration, untimed.
void Measure(benchmark::State& state, size_t triangleCount, const std::function<void()>& prepare,
             const std::function<void()>& operation);

using CaseBenchmark = std::function<void(benchmark::State&, const Case&)>;

/// Registers "<name>/<case>" for each case, or "<name>/<case>/threads:<n>" for each thread count.
///
/// - Result: an unused value, so that a call can initialise a constant of the benchmark's unit.
bool Register(const std::string& name, const std::vector<Case>& cases, const CaseBenchmark& body,
              const std::vector<int>& threadCounts = {});

}  // namespace Vr::bench

/// Meshes that every benchmark measures, and the state of heap and threads that it measures in.
#pragma once

#include <memory>
#include <string>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::bench {

enum class Shape {
    kSphere,           ///< UV sphere, closed, radius jittered; neighbours in memory are neighbours.
    kGrid,             ///< Open height field with terraces, 0.1 jitter, many equal x and y.
    kSphereShuffled,   ///< The sphere with vertices and triangles in random order.
    kGridShuffled,     ///< The grid in random order: the worst case for caches.
    kSphereSoup,       ///< The sphere with three vertices a triangle.
    kGridSoup,         ///< The grid with three vertices a triangle.
    kGridShuffledSoup  ///< The shuffled grid with three vertices a triangle.
};

/// The triangle counts that meshes come in; every count is exact.
constexpr size_t k10Thousand = 10'000;
constexpr size_t k100Thousand = 100'000;
constexpr size_t k1Million = 1'000'000;
constexpr size_t k5Million = 5'000'000;
constexpr size_t k10Million = 10'000'000;

/// One shape in one size, as it is named in a benchmark: "grid-1M-shuf".
struct Case {
    Shape shape;
    size_t triangleCount;

    [[nodiscard]] std::string Name() const;
};

struct MeshArrays {
    std::shared_ptr<VraMeshPrimitive::VertexArray> vertices =
        std::make_shared<VraMeshPrimitive::VertexArray>();
    std::shared_ptr<VraMeshPrimitive::VertexIndexArray> triangles =
        std::make_shared<VraMeshPrimitive::VertexIndexArray>();
};

/// Builds the mesh of a case, from a fixed seed, anew at each call.
[[nodiscard]] MeshArrays MakeArrays(const Case& which);

/// Keeps freed memory in the process (no trim, no mmap threshold), so that after the first call
/// nothing page-faults. Called by `Register`; VERIDANE_BENCH_HEAP=default leaves the heap alone.
void WarmHeap();

/// Sets how many threads the library's parallel loops use.
void UseThreads(int threadCount);

}  // namespace Vr::bench

// Keeps the meshes of a program, times one operation and registers the cases with Google Benchmark.

#include "support/BenchMeshes.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <memory>
#include <utility>

namespace Vr::bench {

namespace {

using VertexArray = VraMeshPrimitive::VertexArray;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;

const MeshArrays& ArraysOf(const Case& which) {
    static std::map<std::pair<Shape, size_t>, MeshArrays> madeBefore;
    const auto key = std::make_pair(which.shape, which.triangleCount);
    const auto found = madeBefore.find(key);
    if (found != madeBefore.end())
        return found->second;
    return madeBefore.emplace(key, MakeArrays(which)).first->second;
}

constexpr size_t kSizes[] = {k10Thousand, k100Thousand, k1Million, k5Million};

}  // namespace

std::vector<Case> IndexedCases() {
    std::vector<Case> cases;
    for (const size_t size : kSizes)
        for (const Shape shape :
             {Shape::kSphere, Shape::kGrid, Shape::kSphereShuffled, Shape::kGridShuffled})
            cases.push_back({shape, size});
    return cases;
}

std::vector<Case> SoupCases() {
    std::vector<Case> cases;
    for (const size_t size : kSizes)
        for (const Shape shape : {Shape::kSphereSoup, Shape::kGridSoup, Shape::kGridShuffledSoup})
            cases.push_back({shape, size});
    return cases;
}

Mesh SharedMesh(const Case& which) {
    const MeshArrays& arrays = ArraysOf(which);
    Mesh mesh(new VraMeshPrimitive);
    mesh->SetVertexArray(arrays.vertices);
    mesh->SetVertexIndexArray(arrays.triangles);
    return mesh;
}

Mesh PrivateMesh(const Case& which) {
    const MeshArrays& arrays = ArraysOf(which);
    Mesh mesh(new VraMeshPrimitive);
    mesh->SetVertexArray(std::make_shared<VertexArray>(*arrays.vertices));
    mesh->SetVertexIndexArray(std::make_shared<VertexIndexArray>(*arrays.triangles));
    return mesh;
}

void Restore(const Case& which, VraMeshPrimitive& mesh) {
    const MeshArrays& arrays = ArraysOf(which);
    *mesh.GetModifiableVertexArray() = *arrays.vertices;
    *mesh.GetModifiableVertexIndexArray() = *arrays.triangles;
}

void Measure(benchmark::State& state, size_t triangleCount, const std::function<void()>& prepare,
             const std::function<void()>& operation) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> seconds;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        prepare();
        const Clock::time_point begin = Clock::now();
        operation();
        const std::chrono::duration<double> elapsed = Clock::now() - begin;
        state.SetIterationTime(elapsed.count());
        seconds.push_back(elapsed.count());
    }
    const double nsPerTriangle = 1e9 / static_cast<double>(triangleCount);
    std::sort(seconds.begin(), seconds.end());
    state.counters["ns_per_tri"] = seconds.front() * nsPerTriangle;
    state.counters["median"] = seconds[seconds.size() / 2] * nsPerTriangle;
    state.counters["triangles"] = static_cast<double>(triangleCount);
}

bool Register(const std::string& name, const std::vector<Case>& cases, const CaseBenchmark& body,
              const std::vector<int>& threadCounts) {
    WarmHeap();
    const auto registerOne = [&](const Case& which, const std::string& suffix, int threadCount) {
        benchmark::RegisterBenchmark((name + "/" + which.Name() + suffix).c_str(),
                                     [=](benchmark::State& state) {
                                         if (threadCount > 0)
                                             UseThreads(threadCount);
                                         body(state, which);
                                     })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    for (const Case& which : cases) {
        if (threadCounts.empty())
            registerOne(which, "", 0);
        for (const int threadCount : threadCounts)
            registerOne(which, "/threads:" + std::to_string(threadCount), threadCount);
    }
    return true;
}

}  // namespace Vr::bench

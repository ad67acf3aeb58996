// Builds each mesh from integer lattices and a 64-bit generator with a fixed seed, so that figures of
// different machines are of the same input. Random numbers are drawn without the standard
// distributions, which differ between libraries.

#include "support/MeshShapes.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <stdexcept>
#include <utility>

#if defined(__GLIBC__)
#include <malloc.h>
#endif
#if defined(_OPENMP)
#include <omp.h>
#endif

namespace Vr::bench {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;

class Random {
public:
    explicit Random(uint64_t seed) : engine_(seed) {}

    double Between(double low, double high) {
        return low + (high - low) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
    }
    size_t Below(size_t bound) { return engine_() % bound; }

    template <class Element>
    void Shuffle(std::vector<Element>& elements) {
        for (size_t left = elements.size(); left > 1; --left)
            std::swap(elements[left - 1], elements[Below(left)]);
    }

private:
    std::mt19937_64 engine_;
};

// Columns and rows of squares; twice their product is the triangle count.
std::pair<size_t, size_t> LatticeOf(size_t triangleCount) {
    switch (triangleCount) {
        case k10Thousand:
            return {100, 50};
        case k100Thousand:
            return {250, 200};
        case k1Million:
            return {1000, 500};
        case k5Million:
            return {2500, 1000};
        case k10Million:
            return {2500, 2000};
        default:
            throw std::invalid_argument("no mesh of this size");
    }
}

MeshArrays MakeGrid(size_t triangleCount) {
    constexpr double kTerraceWidth = 25.0;
    const auto [columns, rows] = LatticeOf(triangleCount);
    Random random(20130711);
    MeshArrays grid;
    grid.vertices->reserve((columns + 1) * (rows + 1));
    grid.triangles->reserve(triangleCount);
    for (size_t row = 0; row <= rows; ++row) {
        for (size_t column = 0; column <= columns; ++column) {
            const double x = static_cast<double>(column);
            const double y = static_cast<double>(row);
            const double terrace = std::floor((x + 0.5 * y) / kTerraceWidth);
            grid.vertices->push_back(ON_3dPoint(x, y, terrace + random.Between(0.0, 0.1)));
        }
    }
    for (size_t row = 0; row < rows; ++row) {
        for (size_t column = 0; column < columns; ++column) {
            const size_t lower = row * (columns + 1) + column;
            const size_t upper = lower + columns + 1;
            grid.triangles->push_back({{lower, lower + 1, upper + 1}});
            grid.triangles->push_back({{lower, upper + 1, upper}});
        }
    }
    return grid;
}

// One vertex a pole; `rows` counts the bands of squares and one band of triangles together.
MeshArrays MakeSphere(size_t triangleCount) {
    const double pi = std::acos(-1.0);
    const auto [segments, rows] = LatticeOf(triangleCount);
    const size_t rings = rows;
    Random random(19970515);
    const double jitter = 0.1 * 2.0 * pi / static_cast<double>(segments);
    MeshArrays sphere;
    sphere.vertices->reserve(segments * rings + 2);
    sphere.triangles->reserve(triangleCount);
    for (size_t ring = 0; ring < rings; ++ring) {
        const double polar = pi * static_cast<double>(ring + 1) / static_cast<double>(rings + 1);
        for (size_t segment = 0; segment < segments; ++segment) {
            const double turn =
                2.0 * pi * static_cast<double>(segment) / static_cast<double>(segments);
            const double radius = 1.0 + random.Between(-jitter, jitter);
            sphere.vertices->push_back(ON_3dPoint(radius * std::sin(polar) * std::cos(turn),
                                                  radius * std::sin(polar) * std::sin(turn),
                                                  radius * std::cos(polar)));
        }
    }
    const size_t northPole = sphere.vertices->size();
    const size_t southPole = northPole + 1;
    sphere.vertices->push_back(ON_3dPoint(0, 0, 1));
    sphere.vertices->push_back(ON_3dPoint(0, 0, -1));

    for (size_t segment = 0; segment < segments; ++segment)
        sphere.triangles->push_back({{northPole, segment, (segment + 1) % segments}});
    for (size_t ring = 0; ring + 1 < rings; ++ring) {
        for (size_t segment = 0; segment < segments; ++segment) {
            const size_t next = (segment + 1) % segments;
            const size_t upper = ring * segments;
            const size_t lower = upper + segments;
            sphere.triangles->push_back({{upper + segment, lower + segment, lower + next}});
            sphere.triangles->push_back({{upper + segment, lower + next, upper + next}});
        }
    }
    const size_t lastRing = (rings - 1) * segments;
    for (size_t segment = 0; segment < segments; ++segment)
        sphere.triangles->push_back(
            {{southPole, lastRing + (segment + 1) % segments, lastRing + segment}});
    return sphere;
}

MeshArrays Shuffled(const MeshArrays& source) {
    Random random(4711);
    std::vector<size_t> newVertexOf(source.vertices->size());
    for (size_t vertex = 0; vertex < newVertexOf.size(); ++vertex)
        newVertexOf[vertex] = vertex;
    random.Shuffle(newVertexOf);

    MeshArrays shuffled;
    shuffled.vertices->resize(source.vertices->size());
    for (size_t vertex = 0; vertex < newVertexOf.size(); ++vertex)
        (*shuffled.vertices)[newVertexOf[vertex]] = (*source.vertices)[vertex];
    *shuffled.triangles = *source.triangles;
    for (TriangleIndex& triangle : *shuffled.triangles)
        for (size_t& vertex : triangle.v)
            vertex = newVertexOf[vertex];
    random.Shuffle(*shuffled.triangles);
    return shuffled;
}

MeshArrays Soup(const MeshArrays& source) {
    MeshArrays soup;
    soup.vertices->reserve(3 * source.triangles->size());
    soup.triangles->reserve(source.triangles->size());
    for (const TriangleIndex& triangle : *source.triangles) {
        const size_t first = soup.vertices->size();
        soup.triangles->push_back({{first, first + 1, first + 2}});
        for (const size_t vertex : triangle.v)
            soup.vertices->push_back((*source.vertices)[vertex]);
    }
    return soup;
}

}  // namespace

std::string Case::Name() const {
    const std::string size = triangleCount >= k1Million
                                 ? std::to_string(triangleCount / k1Million) + "M"
                                 : std::to_string(triangleCount / 1000) + "k";
    switch (shape) {
        case Shape::kSphere:
            return "sphere-" + size;
        case Shape::kGrid:
            return "grid-" + size;
        case Shape::kSphereShuffled:
            return "sphere-" + size + "-shuf";
        case Shape::kGridShuffled:
            return "grid-" + size + "-shuf";
        case Shape::kSphereSoup:
            return "sphere-" + size + "-soup";
        case Shape::kGridSoup:
            return "grid-" + size + "-soup";
        case Shape::kGridShuffledSoup:
            return "grid-" + size + "-shuf-soup";
    }
    return size;
}

MeshArrays MakeArrays(const Case& which) {
    const size_t count = which.triangleCount;
    switch (which.shape) {
        case Shape::kSphere:
            return MakeSphere(count);
        case Shape::kGrid:
            return MakeGrid(count);
        case Shape::kSphereShuffled:
            return Shuffled(MakeSphere(count));
        case Shape::kGridShuffled:
            return Shuffled(MakeGrid(count));
        case Shape::kSphereSoup:
            return Soup(MakeSphere(count));
        case Shape::kGridSoup:
            return Soup(MakeGrid(count));
        case Shape::kGridShuffledSoup:
            return Soup(Shuffled(MakeGrid(count)));
    }
    throw std::invalid_argument("no such shape");
}

void WarmHeap() {
    const char* heap = std::getenv("VERIDANE_BENCH_HEAP");
    if (heap && std::string(heap) == "default")
        return;
#if defined(__GLIBC__)
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    // Without this the worker threads' own arenas would give their pages back.
    mallopt(M_ARENA_MAX, 1);
#endif
}

void UseThreads(int threadCount) {
#if defined(_OPENMP)
    omp_set_num_threads(threadCount);
#else
    static_cast<void>(threadCount);
#endif
}

}  // namespace Vr::bench

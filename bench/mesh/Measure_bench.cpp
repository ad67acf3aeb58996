// Measures beside the floor under them: a loop that reads the same indices and the three points of
// each triangle in the same order and only adds them up.

#include "support/BenchMeshes.h"

namespace {

using Vr::bench::Case;
using Vr::bench::SharedMesh;

void ReadOnly(benchmark::State& state, const Case& which) {
    const auto mesh = SharedMesh(which);
    const auto vertices = mesh->GetVertexArray();
    const auto triangles = mesh->GetVertexIndexArray();
    Vr::bench::Measure(
        state, which.triangleCount, [] {},
        [&] {
            const ON_3dPoint* const positionOf = vertices->data();
            double x = 0.0;
            double y = 0.0;
            double z = 0.0;
            for (const auto& corners : *triangles) {
                const ON_3dPoint& p0 = positionOf[corners[0]];
                const ON_3dPoint& p1 = positionOf[corners[1]];
                const ON_3dPoint& p2 = positionOf[corners[2]];
                x += p0.x + p1.x + p2.x;
                y += p0.y + p1.y + p2.y;
                z += p0.z + p1.z + p2.z;
            }
            benchmark::DoNotOptimize(x + y + z);
        });
}

void CalcBoundingBox(benchmark::State& state, const Case& which) {
    const auto mesh = SharedMesh(which);
    Vr::bench::Measure(
        state, which.triangleCount, [] {},
        [&] {
            ON_BoundingBox box;
            benchmark::DoNotOptimize(mesh->CalcBoundingBox(box));
            benchmark::DoNotOptimize(box);
        });
}

void CalcVolume(benchmark::State& state, const Case& which) {
    const auto mesh = SharedMesh(which);
    Vr::bench::Measure(
        state, which.triangleCount, [] {},
        [&] { benchmark::DoNotOptimize(mesh->CalcVolume(ON_3dPoint(1, 2, 3))); });
}

void GetTriangleArea(benchmark::State& state, const Case& which) {
    const auto mesh = SharedMesh(which);
    Vr::bench::Measure(
        state, which.triangleCount, [] {},
        [&] {
            double area = 0.0;
            for (size_t triangle = 0; triangle < which.triangleCount; ++triangle)
                area += mesh->GetTriangleArea(triangle);
            benchmark::DoNotOptimize(area);
        });
}

const bool registered =
    Vr::bench::Register("ReadOnly", Vr::bench::IndexedCases(), ReadOnly) &&
    Vr::bench::Register("CalcBoundingBox", Vr::bench::IndexedCases(), CalcBoundingBox) &&
    Vr::bench::Register("CalcVolume", Vr::bench::IndexedCases(), CalcVolume) &&
    Vr::bench::Register("GetTriangleArea", Vr::bench::IndexedCases(), GetTriangleArea);

}  // namespace

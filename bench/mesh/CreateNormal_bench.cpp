#include <benchmark/benchmark.h>

#include "support/BenchMeshes.h"

namespace {

using Vr::VraMeshPrimitive;
using Vr::bench::Case;
using Vr::bench::CaseBenchmark;

constexpr double kThirtyDegrees = 3.14159265358979323846 / 6.0;
constexpr double kNoSplitting = -1.0;

CaseBenchmark VertexNormals(double creaseAngle, VraMeshPrimitive::VertexNormalWeightType weight) {
    return [=](benchmark::State& state, const Case& which) {
        const auto mesh = Vr::bench::SharedMesh(which);
        mesh->SetCreaseAngle(creaseAngle);
        VraMeshPrimitive::SetVertexNormalWeightType(weight);
        Vr::bench::Measure(
            state, which.triangleCount, [] {}, [&] { mesh->CreateNormalPerVertex(); });
    };
}

void TriangleNormals(benchmark::State& state, const Case& which) {
    const auto mesh = Vr::bench::SharedMesh(which);
    Vr::bench::Measure(
        state, which.triangleCount, [] {}, [&] { mesh->CreateNormalPerTriangle(); });
}

const bool kRegistered =
    Vr::bench::Register("CreateNormalPerTriangle", Vr::bench::IndexedCases(), TriangleNormals,
                        {1, 2}) &&
    Vr::bench::Register("CreateNormalPerVertex/joined/area", Vr::bench::IndexedCases(),
                        VertexNormals(kNoSplitting, VraMeshPrimitive::Area), {1, 2}) &&
    Vr::bench::Register("CreateNormalPerVertex/joined/angle", Vr::bench::IndexedCases(),
                        VertexNormals(kNoSplitting, VraMeshPrimitive::Angle), {1, 2}) &&
    Vr::bench::Register("CreateNormalPerVertex/crease30/area", Vr::bench::IndexedCases(),
                        VertexNormals(kThirtyDegrees, VraMeshPrimitive::Area), {1, 2}) &&
    Vr::bench::Register("CreateNormalPerVertex/crease30/angle", Vr::bench::IndexedCases(),
                        VertexNormals(kThirtyDegrees, VraMeshPrimitive::Angle), {1, 2});

}  // namespace

#include <benchmark/benchmark.h>

#include <set>

#include "support/BenchMeshes.h"

namespace {

using Vr::bench::Case;
using Vr::bench::Mesh;

Mesh WithNormals(const Case& which) {
    const Mesh mesh = Vr::bench::PrivateMesh(which);
    mesh->SetCreaseAngle(-1.0);
    mesh->CreateNormalPerVertex();
    return mesh;
}

void Transform(benchmark::State& state, const Case& which) {
    const Mesh mesh = WithNormals(which);
    ON_Xform xf;
    xf.Rotation(0.1, ON_3dVector(1, 2, 3), ON_3dPoint(4, 5, 6));
    Vr::bench::Measure(
        state, which.triangleCount, [] {},
        [&] {
            std::set<void*> done;
            mesh->Transform(xf, done);
        });
}

void Scale(benchmark::State& state, const Case& which) {
    const Mesh mesh = WithNormals(which);
    Vr::bench::Measure(
        state, which.triangleCount, [] {}, [&] { mesh->Scale(-1.0); });
}

// Faces and normals; the normal index array, which reversal also edits, is taken away.
void ReverseFaces(benchmark::State& state, const Case& which) {
    const Mesh mesh = WithNormals(which);
    mesh->SetNormalIndexArray(nullptr);
    Vr::bench::Measure(
        state, which.triangleCount, [] {}, [&] { mesh->ReverseFaces(true); });
}

const bool kRegistered =
    Vr::bench::Register("Transform", Vr::bench::IndexedCases(), Transform) &&
    Vr::bench::Register("Scale", Vr::bench::IndexedCases(), Scale) &&
    Vr::bench::Register("ReverseFaces", Vr::bench::IndexedCases(), ReverseFaces);

}  // namespace

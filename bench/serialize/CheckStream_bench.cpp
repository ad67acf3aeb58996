// The check of stored documents beside reading the same bytes and beside loading them. MB_per_s counts
// the whole document, also what the check passes over.

#include <afx.h>

#include <stdexcept>

#include "serialize/CheckStream.h"
#include "serialize/MeshSerializers.h"
#include "serialize/VrmArchive.h"
#include "support/BenchMeshes.h"
#include "support/ScratchFile.h"

namespace {

using Vr::bench::Case;
using Vr::bench::ScratchFile;

constexpr UINT kPieceBytes = 256 * 1024;

void Store(CFile& file, const Vr::VraMeshPrimitive& mesh) {
    Vr::VrmArchive archive(&file, CArchive::store);
    archive.WriteObject(&mesh);
    archive.Close();
    file.SeekToBegin();
}

// The mesh with a normal number a corner, so that half of the bytes are numbers.
Vr::bench::Mesh WholeMesh(const Case& which) {
    const Vr::bench::Mesh mesh = Vr::bench::SharedMesh(which);
    mesh->SetNormalArray(std::make_shared<Vr::VraMeshPrimitive::NormalArray>(1));
    Vr::VraMeshPrimitive::IndexArray::PerVertex zeros(which.triangleCount);
    mesh->SetNormalIndexArray(std::make_shared<Vr::VraMeshPrimitive::IndexArray>(std::move(zeros)));
    return mesh;
}

// As many triangles at one vertex: hardly anything but numbers, of which none can be passed over.
Vr::bench::Mesh NumbersOnly(const Case& which) {
    const Vr::bench::Mesh mesh(new Vr::VraMeshPrimitive);
    mesh->SetVertexArray(std::make_shared<Vr::VraMeshPrimitive::VertexArray>(1));
    mesh->SetVertexIndexArray(
        std::make_shared<Vr::VraMeshPrimitive::VertexIndexArray>(which.triangleCount));
    return mesh;
}

void RequireSafe(const Vr::CheckReport& report) {
    if (!report.IsSafe() || report.objectCount != 1)
        throw std::runtime_error("the benchmark's document is not safe");
}

void ReportRate(benchmark::State& state, const Case& which, ULONGLONG bytes) {
    const double nanoseconds =
        state.counters["ns_per_tri"].value * static_cast<double>(which.triangleCount);
    state.counters["MB_per_s"] = static_cast<double>(bytes) * 1e3 / nanoseconds;
}

void CheckFile(benchmark::State& state, const Case& which, const Vr::VraMeshPrimitive& mesh) {
    ScratchFile file;
    Store(*file, mesh);
    Vr::bench::Measure(
        state, which.triangleCount, [] {}, [&] { RequireSafe(Vr::CheckDocument(*file)); });
    ReportRate(state, which, file->GetLength());
}

void CheckMesh(benchmark::State& state, const Case& which) {
    CheckFile(state, which, *WholeMesh(which));
}

void CheckNumbers(benchmark::State& state, const Case& which) {
    CheckFile(state, which, *NumbersOnly(which));
}

void CheckMemory(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *NumbersOnly(which));
    std::vector<BYTE> bytes(static_cast<size_t>(file->GetLength()));
    file->Read(bytes.data(), static_cast<UINT>(bytes.size()));
    Vr::bench::Measure(
        state, which.triangleCount, [] {},
        [&] { RequireSafe(Vr::CheckDocument(bytes.data(), bytes.size())); });
    ReportRate(state, which, bytes.size());
}

void PlainRead(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *WholeMesh(which));
    std::vector<BYTE> piece(kPieceBytes);
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            while (file->Read(piece.data(), kPieceBytes) == kPieceBytes)
                benchmark::ClobberMemory();
        });
    ReportRate(state, which, file->GetLength());
}

void Load(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *WholeMesh(which));
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            Vr::VrmArchive archive(&*file, CArchive::load);
            Vr::VraMeshPrimitive* mesh = nullptr;
            archive >> mesh;
            benchmark::DoNotOptimize(boost::intrusive_ptr<Vr::VraMeshPrimitive>(mesh));
        });
    ReportRate(state, which, file->GetLength());
}

const std::vector<Case> cases = {{Vr::bench::Shape::kSphere, Vr::bench::k10Thousand},
                                 {Vr::bench::Shape::kSphere, Vr::bench::k1Million},
                                 {Vr::bench::Shape::kSphere, Vr::bench::k5Million}};
const bool registered = Vr::bench::Register("CheckMesh", cases, CheckMesh) &&
                        Vr::bench::Register("CheckNumbers", cases, CheckNumbers) &&
                        Vr::bench::Register("CheckMemory", cases, CheckMemory) &&
                        Vr::bench::Register("PlainRead", cases, PlainRead) &&
                        Vr::bench::Register("Load", cases, Load);

}  // namespace

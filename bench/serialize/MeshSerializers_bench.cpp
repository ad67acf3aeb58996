// Storing and loading beside the floor under them: the same bytes written and read in 64 KiB pieces.
// Files lie in VERIDANE_BENCH_FOLDER, by default a folder in memory.

#include <afx.h>

#include <stdexcept>

#include "serialize/MeshSerializers.h"
#include "serialize/ValueSerializers.h"
#include "serialize/VrmArchive.h"
#include "support/BenchMeshes.h"
#include "support/ScratchFile.h"

namespace {

using Vr::bench::Case;
using Vr::bench::ScratchFile;

constexpr UINT kPieceBytes = 64 * 1024;

void Store(CFile& file, const Vr::VraMeshPrimitive& mesh) {
    Vr::VrmArchive archive(&file, CArchive::store);
    archive.WriteObject(&mesh);
    archive.Close();
}

boost::intrusive_ptr<Vr::VraMeshPrimitive> Load(CFile& file) {
    Vr::VrmArchive archive(&file, CArchive::load);
    Vr::VraMeshPrimitive* mesh = nullptr;
    archive >> mesh;
    archive.Close();
    return boost::intrusive_ptr<Vr::VraMeshPrimitive>(mesh);
}

void StoreMesh(benchmark::State& state, const Case& which) {
    const auto mesh = Vr::bench::SharedMesh(which);
    ScratchFile file;
    Store(*file, *mesh);
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); }, [&] { Store(*file, *mesh); });
    state.counters["bytes"] = static_cast<double>(file->GetLength());
}

void PlainWrite(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *Vr::bench::SharedMesh(which));
    std::vector<BYTE> bytes(static_cast<size_t>(file->GetLength()));
    file->SeekToBegin();
    file->Read(bytes.data(), static_cast<UINT>(bytes.size()));
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            for (size_t begin = 0; begin < bytes.size(); begin += kPieceBytes) {
                const size_t piece = std::min<size_t>(kPieceBytes, bytes.size() - begin);
                file->Write(bytes.data() + begin, static_cast<UINT>(piece));
            }
        });
}

void LoadMesh(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *Vr::bench::SharedMesh(which));
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] { benchmark::DoNotOptimize(Load(*file)); });
}

void PlainRead(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *Vr::bench::SharedMesh(which));
    std::vector<BYTE> piece(kPieceBytes);
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            while (file->Read(piece.data(), kPieceBytes) == kPieceBytes)
                benchmark::ClobberMemory();
        });
}

void Both(benchmark::State& state, const Case& which) {
    const auto mesh = Vr::bench::SharedMesh(which);
    ScratchFile file;
    Store(*file, *mesh);
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            Store(*file, *mesh);
            file->SeekToBegin();
            benchmark::DoNotOptimize(Load(*file));
        });
}

void PlainBoth(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *Vr::bench::SharedMesh(which));
    std::vector<BYTE> bytes(static_cast<size_t>(file->GetLength()));
    std::vector<BYTE> piece(kPieceBytes);
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            for (size_t begin = 0; begin < bytes.size(); begin += kPieceBytes) {
                const size_t count = std::min<size_t>(kPieceBytes, bytes.size() - begin);
                file->Write(bytes.data() + begin, static_cast<UINT>(count));
            }
            file->SeekToBegin();
            while (file->Read(piece.data(), kPieceBytes) == kPieceBytes)
                benchmark::ClobberMemory();
        });
}

// One colour a triangle and nothing else; the case only gives the count.
boost::intrusive_ptr<Vr::VraMeshPrimitive> ColorsOnly(const Case& which) {
    boost::intrusive_ptr<Vr::VraMeshPrimitive> mesh(new Vr::VraMeshPrimitive);
    mesh->SetColorArray(std::make_shared<Vr::VraMeshPrimitive::ColorArray>(which.triangleCount));
    return mesh;
}

void StoreColors(benchmark::State& state, const Case& which) {
    const auto mesh = ColorsOnly(which);
    ScratchFile file;
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); }, [&] { Store(*file, *mesh); });
}

void StoreColorsOneByOne(benchmark::State& state, const Case& which) {
    using Vr::operator<<;
    const auto mesh = ColorsOnly(which);
    ScratchFile file;
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            CArchive archive(&*file, CArchive::store);
            for (const ON_Color& color : *mesh->GetColorArray())
                archive << color;
            archive.Close();
        });
}

void LoadColors(benchmark::State& state, const Case& which) {
    ScratchFile file;
    Store(*file, *ColorsOnly(which));
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] { benchmark::DoNotOptimize(Load(*file)); });
}

void LoadColorsOneByOne(benchmark::State& state, const Case& which) {
    using Vr::operator>>;
    ScratchFile file;
    Store(*file, *ColorsOnly(which));
    Vr::bench::Measure(
        state, which.triangleCount, [&] { file->SeekToBegin(); },
        [&] {
            CArchive archive(&*file, CArchive::load);
            for (size_t number = 0; number < which.triangleCount; ++number) {
                ON_Color color;
                archive >> color;
                benchmark::DoNotOptimize(color);
            }
            archive.Close();
        });
}

const std::vector<Case> colorCases = {{Vr::bench::Shape::kSphere, Vr::bench::k100Thousand},
                                      {Vr::bench::Shape::kSphere, Vr::bench::k1Million}};
const std::vector<Case> cases = Vr::bench::IndexedCases();
const bool registered =
    Vr::bench::Register("StoreColors", colorCases, StoreColors) &&
    Vr::bench::Register("StoreColorsOneByOne", colorCases, StoreColorsOneByOne) &&
    Vr::bench::Register("LoadColors", colorCases, LoadColors) &&
    Vr::bench::Register("LoadColorsOneByOne", colorCases, LoadColorsOneByOne) &&
    Vr::bench::Register("StoreMesh", cases, StoreMesh) &&
    Vr::bench::Register("PlainWrite", cases, PlainWrite) &&
    Vr::bench::Register("LoadMesh", cases, LoadMesh) &&
    Vr::bench::Register("PlainRead", cases, PlainRead) &&
    Vr::bench::Register("StoreAndLoad", cases, Both) &&
    Vr::bench::Register("PlainWriteAndRead", cases, PlainBoth);

}  // namespace

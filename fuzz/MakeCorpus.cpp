// Writes the seeds of the fuzz targets: small inputs that take each road once. What a fuzzer adds to
// them is not kept; what it breaks becomes a unit test.
//   make_fuzz_corpus <folder>

#include <afx.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "mesh/VraMesh.h"
#include "support/MeshBuilders.h"
#include "support/StoreLoad.h"
#include "unit/platform/afx/TestClasses.h"
#include "unit/platform/opennurbs/MemoryArchive.h"

namespace {

namespace fs = std::filesystem;
using namespace Vr::test;

class Corpus {
public:
    Corpus(const fs::path& root, const std::string& target) : folder_(root / target) {
        fs::create_directories(folder_);
    }
    void Add(const std::string& name, const Bytes& bytes) const {
        std::ofstream file(folder_ / name, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        if (!file.flush())
            throw std::runtime_error("cannot write " + (folder_ / name).string());
    }

private:
    fs::path folder_;
};

Bytes Joined(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

Bytes With(Bytes bytes, std::size_t place, BYTE value) {
    bytes.at(place) = value;
    return bytes;
}

// Offsets: the name's last letter at 12, the first presence byte at 21.
void AddDocuments(const Corpus& corpus) {
    const auto [first, second] = SharedPair();
    const Bytes full = StoredObjects({FullSquare()});
    const Bytes empty = StoredObjects({Mesh(new Vr::VraMesh)});
    corpus.Add("empty", empty);
    corpus.Add("full", full);
    corpus.Add("both_classes", StoredObjects({NewPrimitive(), Mesh(new Vr::VraMesh)}));
    corpus.Add("shared", StoredObjects({first, nullptr, second, first}));
    corpus.Add("box", StoredObjects({Box()}));
    corpus.Add("old_schema", With(Bytes(empty.begin(), empty.end() - 1), 2, 10));
    corpus.Add("unknown_class", With(empty, 12, 'x'));
    corpus.Add("presence_byte", With(empty, 21, 2));
    corpus.Add("cut", Bytes(full.begin(), full.begin() + static_cast<long>(full.size() / 2)));
}

void AddDamage(const Corpus& corpus) {
    for (BYTE seed = 0; seed < 4; ++seed)
        corpus.Add("undamaged_" + std::to_string(seed), {seed, 0, 0, 0});
    corpus.Add("byte", {1, 0, 0, 0, 0, 40, 0, 9});
    corpus.Add("number", {2, 0, 0, 0, 1, 60, 0, 1, 255, 255, 255, 255, 0, 0, 0, 0});
    corpus.Add("erase", {3, 0, 0, 0, 2, 30, 0, 8});
    corpus.Add("repeat", {4, 0, 0, 0, 3, 30, 0, 17, 20, 0});
}

// 32 bytes of calls: the largest read, then call and wanted class in turn.
Bytes Calls(BYTE largestRead, const Bytes& calls) {
    Bytes bytes = Joined({largestRead}, calls);
    bytes.resize(32);
    return bytes;
}

void AddArchiveObjects(const Corpus& corpus) {
    CTestNode tail(7);
    CTestNode head(5);
    head.next = &tail;
    tail.next = &head;
    CTestItem item(0x11223344);
    const auto stored = [](const auto& write) {
        MemoryFile file;
        CArchive archive(&file, CArchive::store);
        write(archive);
        archive.Close();
        return file.Bytes();
    };
    const Bytes graph = stored([&](CArchive& archive) {
        archive << &head << &item << static_cast<CObject*>(nullptr) << &tail << &item;
    });
    const Bytes classes = stored([&](CArchive& archive) {
        archive.WriteClass(RUNTIME_CLASS(CTestItem));
        archive.WriteClass(RUNTIME_CLASS(CTestNode));
        archive.WriteClass(RUNTIME_CLASS(CTestItem));
        archive << &item;
    });
    corpus.Add("graph", Joined(Calls(255, {0, 0, 1, 1, 2, 3, 0, 0, 1, 1}), graph));
    corpus.Add("graph_of_anything", Joined(Calls(3, {0, 3, 0, 3, 0, 3, 0, 3, 0, 3}), graph));
    corpus.Add("classes", Joined(Calls(255, {3, 1, 4, 0, 3, 3, 0, 1}), classes));
    corpus.Add("mapped", Joined(Calls(255, {5, 3, 1, 0, 3}), classes));
    corpus.Add("long_tag", Joined(Calls(255, {0, 3}), {0xFF, 0x7F, 1, 0, 0, 0x80}));
}

// The first byte says what the record is read as: 0 a record, 2 one with lengths of 64 bits, 3 a bare
// material.
Bytes RecordOf(const ON_Object& object, BYTE kind = 0) {
    // Own classes are written from version 3 on, and read alike in all with lengths of 32 bits.
    kerneltest::MemoryArchive archive(ON::archive_mode::write, {}, kind == 2 ? 50 : 4);
    archive.WriteObject(object);
    return Joined({kind}, archive.bytes);
}

ON_LineCurve* NewLine(double x) {
    return new ON_LineCurve(ON_3dPoint(x, 0, 0), ON_3dPoint(x + 1, 1, 0));
}

void AddCurves(const Corpus& corpus) {
    ON_NurbsCurve nurbs(3, true, 3, 4);
    for (int point = 0; point < 4; ++point)
        nurbs.SetCV(point, ON_3dPoint(point, point * point, 1));
    for (int knot = 0; knot < 5; ++knot)
        nurbs.m_knot[knot] = knot;
    ON_PolyCurve chain;
    chain.Append(NewLine(0));
    chain.Append(new ON_ArcCurve);
    ON_SimpleArray<ON_3dPoint> points;
    for (int point = 0; point < 3; ++point)
        points.Append(ON_3dPoint(point, 1, point));
    corpus.Add("nurbs_curve", RecordOf(nurbs));
    corpus.Add("nurbs_curve_wide", RecordOf(nurbs, 2));
    corpus.Add("arc", RecordOf(ON_ArcCurve()));
    corpus.Add("polyline", RecordOf(ON_PolylineCurve(points)));
    corpus.Add("polycurve", RecordOf(chain));
    corpus.Add("polycurve_wide", RecordOf(chain, 2));
}

void AddSurfaces(const Corpus& corpus) {
    ON_NurbsSurface nurbs(3, false, 2, 3, 2, 3);
    for (int direction = 0; direction < 2; ++direction)
        for (int knot = 0; knot < 2 + 2 * direction; ++knot)
            nurbs.m_knot[direction][knot] = knot;
    ON_SumSurface sum;
    sum.m_curve[0] = NewLine(0);
    sum.m_curve[1] = NewLine(2);
    ON_RevSurface revolved;
    revolved.m_curve = NewLine(1);
    corpus.Add("nurbs_surface", RecordOf(nurbs));
    corpus.Add("plane_surface", RecordOf(ON_PlaneSurface(ON_Plane())));
    corpus.Add("sum_surface", RecordOf(sum));
    corpus.Add("rev_surface", RecordOf(revolved));
}

void AddMaterial(const Corpus& corpus) {
    kerneltest::MemoryArchive archive(ON::archive_mode::write);
    ON_Material().Write(archive);
    corpus.Add("material", Joined({3}, archive.bytes));
}

// A seed of four bytes; an edit is the number of the mesh (two bytes), the kind, and what that takes.
void AddEdits(const Corpus& corpus) {
    for (BYTE kind = 0; kind < 11; ++kind)
        corpus.Add("edit_" + std::to_string(kind),
                   {kind, 0, 0, 0, 0, 0, kind, 3, 0, 0, 0, 1, 0, 4, 0, 1, 0, 0});
    corpus.Add("road", {7, 0, 0, 0, 0, 0, 4, 0, 0, 1, 0, 0, 2, 0, 0, 7, 20, 0, 0, 10, 0, 0, 9});
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2)
        return 2;
    const fs::path root = arguments[1];
    AddDocuments(Corpus(root, "load_document"));
    AddDamage(Corpus(root, "damage_document"));
    AddArchiveObjects(Corpus(root, "archive_objects"));
    AddCurves(Corpus(root, "kernel_records"));
    AddSurfaces(Corpus(root, "kernel_records"));
    AddMaterial(Corpus(root, "kernel_records"));
    AddEdits(Corpus(root, "edits"));
    return 0;
}

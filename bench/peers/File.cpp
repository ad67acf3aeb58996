// Storing and loading of documents, beside plain writing and reading of the same bytes. A file that is
// there already is written over in place: fresh pages of the memory folder cost the same for all, but
// much.

#include <fcntl.h>
#include <unistd.h>

#include <memory>
#include <stdexcept>

#include "peers/Families.h"
#include "peers/Inputs.h"
#include "peers/OurMesh.h"
#include "peers/ScratchFile.h"
#include "serialize/MeshSerializers.h"
#include "serialize/ValueSerializers.h"
#include "serialize/VrmArchive.h"

namespace Vr::bench::peers {

namespace {

using MakeMeshOf = std::function<OurMesh(const Input&)>;

struct OpenFile {
    explicit OpenFile(OurMesh meshToStore) : mesh(std::move(meshToStore)) {
        file.Open(name.Path().c_str(), CFile::modeCreate | CFile::modeReadWrite);
    }

    void Store() {
        file.SeekToBegin();
        VrmArchive archive(&file, CArchive::store);
        archive.WriteObject(mesh.get());
        archive.Close();
    }

    OurMesh Load() {
        file.SeekToBegin();
        VrmArchive archive(&file, CArchive::load);
        VraMeshPrimitive* loaded = nullptr;
        archive >> loaded;
        archive.Close();
        return OurMesh(loaded);
    }

    OurMesh mesh;
    ScratchFile name{".vrd"};
    CFile file;
};

// One colour a triangle and nothing else.
OurMesh ColorsOnly(const Input& input) {
    OurMesh mesh(new VraMeshPrimitive);
    mesh->SetColorArray(std::make_shared<VraMeshPrimitive::ColorArray>(input.triangleCount));
    return mesh;
}

// One UV pair a triangle and nothing else.
OurMesh UVsOnly(const Input& input) {
    OurMesh mesh(new VraMeshPrimitive);
    mesh->SetUVArray(
        std::make_shared<VraMeshPrimitive::UVArray>(input.triangleCount, ON_2dPoint(0.25, 0.75)));
    return mesh;
}

OurMesh NormalsToo(const Input& input) {
    OurMesh mesh = MakeOurMesh(input.points, input.triangles);
    mesh->SetNormalArray(std::make_shared<VraMeshPrimitive::NormalArray>(
        mesh->GetVertexArray()->begin(), mesh->GetVertexArray()->end()));
    return mesh;
}

Task Save(const Input& input, const MakeMeshOf& meshOf) {
    const auto file = std::make_shared<OpenFile>(meshOf(input));
    Task task;
    task.run = [=] { file->Store(); };
    return task;
}

Task Load(const Input& input, const MakeMeshOf& meshOf) {
    const auto file = std::make_shared<OpenFile>(meshOf(input));
    file->Store();
    const auto loaded = std::make_shared<OurMesh>();
    Task task;
    task.prepare = [=] { loaded->reset(); };
    task.run = [=] { *loaded = file->Load(); };
    task.result = [=] { return (*loaded)->GetVertexArray() ? MeshFigures(**loaded) : Figures(); };
    return task;
}

// The bytes of the document in a block of memory, and a descriptor of a file with them.
struct PlainFile {
    explicit PlainFile(OurMesh mesh) {
        OpenFile document(std::move(mesh));
        document.Store();
        bytes.resize(static_cast<size_t>(document.file.GetLength()));
        document.file.SeekToBegin();
        document.file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
        descriptor = open(name.Path().c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
        Write();
    }
    ~PlainFile() { close(descriptor); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    void Write() const {
        for (size_t done = 0; done < bytes.size();)
            done += Moved(pwrite(descriptor, bytes.data() + done, bytes.size() - done,
                                 static_cast<off_t>(done)));
    }

    void Read() {
        for (size_t done = 0; done < bytes.size();)
            done += Moved(pread(descriptor, bytes.data() + done, bytes.size() - done,
                                static_cast<off_t>(done)));
    }

    static size_t Moved(ssize_t count) {
        if (count <= 0)
            throw std::runtime_error("plain reading or writing failed");
        return static_cast<size_t>(count);
    }

    std::vector<char> bytes;
    ScratchFile name{".plain"};
    int descriptor = -1;
};

void AddBoth(Contest& contest, const std::string& suffix, const std::string& titleSuffix,
             const char* note, const MakeMeshOf& meshOf) {
    const std::string save = "save" + suffix;
    const std::string load = "load" + suffix;
    contest.operations.push_back({save, "save" + titleSuffix, false, WholeMesh});
    contest.operations.push_back({load, "load" + titleSuffix, false, WholeMesh});
    contest.contestants.push_back(Ours(save, "WriteObject on VrmArchive", note,
                                       [=](const Input& input) { return Save(input, meshOf); }));
    contest.contestants.push_back(Ours(load, "ReadObject on VrmArchive", note,
                                       [=](const Input& input) { return Load(input, meshOf); }));

    Contestant plain;
    plain.peer = kLimit;
    plain.operation = save;
    plain.call = "pwrite";
    plain.note = "the bytes of our document in one call";
    plain.make = [=](const Input& input) {
        const auto file = std::make_shared<PlainFile>(meshOf(input));
        Task task;
        task.run = [=] { file->Write(); };
        return task;
    };
    contest.contestants.push_back(plain);
    plain.operation = load;
    plain.call = "pread";
    plain.make = [=](const Input& input) {
        const auto file = std::make_shared<PlainFile>(meshOf(input));
        Task task;
        task.run = [=] { file->Read(); };
        return task;
    };
    contest.contestants.push_back(plain);
}

// Values that a host stores or loads one at a time, as it does values of its own: each has a bridge to
// openNURBS, a flush and a file operation.
template <class Value>
struct OneByOne {
    explicit OneByOne(size_t count) : values(count) {
        file.Open(name.Path().c_str(), CFile::modeCreate | CFile::modeReadWrite);
    }

    void Store() {
        using Vr::operator<<;
        file.SeekToBegin();
        CArchive archive(&file, CArchive::store);
        for (const Value& value : values)
            archive << value;
        archive.Close();
    }

    void Load() {
        using Vr::operator>>;
        file.SeekToBegin();
        CArchive archive(&file, CArchive::load);
        for (Value& value : values)
            archive >> value;
        archive.Close();
    }

    std::vector<Value> values;
    ScratchFile name{".values"};
    CFile file;
};

template <class Value>
void AddOneByOne(Contest& contest, const std::string& suffix) {
    Contestant loop;
    loop.peer = "one by one";
    loop.mostTriangles = 1'000'000;
    loop.operation = "save" + suffix;
    loop.call = "archive << value";
    loop.note = "the same bytes, but a bridge, a flush and a file operation for each element";
    loop.make = [](const Input& input) {
        const auto values = std::make_shared<OneByOne<Value>>(input.triangleCount);
        Task task;
        task.run = [=] { values->Store(); };
        return task;
    };
    contest.contestants.push_back(loop);
    loop.operation = "load" + suffix;
    loop.call = "archive >> value";
    loop.make = [](const Input& input) {
        const auto values = std::make_shared<OneByOne<Value>>(input.triangleCount);
        values->Store();
        Task task;
        task.run = [=] { values->Load(); };
        return task;
    };
    contest.contestants.push_back(loop);
}

}  // namespace

void AddFile(Contest& contest) {
    AddBoth(contest, "", "", "positions, triangles, normals", NormalsToo);
    AddBoth(contest, "_colors", " of one colour a triangle", "colours alone, by openNURBS's coding",
            ColorsOnly);
    AddOneByOne<ON_Color>(contest, "_colors");
    AddBoth(contest, "_uvs", " of one UV pair a triangle", "UVs alone, by openNURBS's coding",
            UVsOnly);
    AddOneByOne<ON_2dPoint>(contest, "_uvs");
}

}  // namespace Vr::bench::peers

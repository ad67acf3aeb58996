// A document is one archive over one file: a header of the host's own, the objects in a row, and an
// end mark, by which a document that was cut short behind its last object is recognised too. Documents of
// meshes go on being stored as they were before there were others, for hosts that know nothing else.

#include "Document.h"

#include <algorithm>
#include <array>
#include <string>

#include "DocumentCheck.h"
#include "DocumentLayout.h"
#include "Failure.h"
#include "Interrupt.h"
#include "KernelObjects.h"
#include "LoadFile.h"
#include "Output.h"
#include "Progress.h"
#include "ReplacingFile.h"
#include "serialize/VrmArchive.h"

namespace Host {

namespace {

// For documents of many small objects; large arrays go past the buffer in pieces of their own.
constexpr int kArchiveBufferBytes = 64 << 10;

Failure Damaged(const std::filesystem::path& path, const std::string& reason) {
    return Failure(path, "damaged document: " + reason);
}

// Returns the format of the document.
DWORD ReadHeader(Vr::VrmArchive& archive, const std::filesystem::path& path) {
    DWORD magic = 0;
    if (archive.GetFile()->GetLength() >= sizeof(magic))
        archive >> magic;
    if (magic != kMagic)
        throw Failure(path, kNoDocument);
    DWORD format = 0;
    archive >> format;
    if (format != kMeshFormat && format != kObjectFormat)
        throw Failure(path, UnknownFormat(format));
    return format;
}

// A damaged count must not be believed before there is room for so many objects in the file.
size_t ReadObjectCount(Vr::VrmArchive& archive, DWORD format, const std::filesystem::path& path) {
    ULONGLONG count = 0;
    archive >> count;
    if (count > archive.GetFile()->GetLength() / SmallestObjectBytes(format))
        throw Damaged(path, TooShort(count));
    return static_cast<size_t>(count);
}

// Does what `archive >> mesh` does, but owns the object before its body is loaded: `ReadObject`
// leaves an object behind when its body fails, which a host that goes on running would not want.
Mesh ReadMesh(Vr::VrmArchive& archive, const std::filesystem::path& path) {
    UINT schema = 0;
    DWORD objectNumber = 0;
    CRuntimeClass* const storedClass =
        archive.ReadClass(RUNTIME_CLASS(Vr::VraMeshPrimitive), &schema, &objectNumber);
    if (storedClass == nullptr)
        throw Damaged(path, kObjectMissing);
    const Mesh mesh(static_cast<Vr::VraMeshPrimitive*>(storedClass->CreateObject()));
    if (!mesh)
        AfxThrowMemoryException();
    archive.MapObject(mesh.get());
    archive.SetObjectSchema(schema);
    static_cast<CObject&>(*mesh).Serialize(archive);  // public in the base only
    return mesh;
}

Object ReadObject(Vr::VrmArchive& archive, DWORD format, const std::filesystem::path& path) {
    if (format == kMeshFormat)
        return ReadMesh(archive, path);
    DWORD kind = 0;
    archive >> kind;
    if (kind == kMeshKind)
        return ReadMesh(archive, path);
    ThrowIfInterrupted();  // a mesh asks the observer
    return LoadFramed(archive, kind);
}

void ReadEnd(Vr::VrmArchive& archive, const std::filesystem::path& path) {
    DWORD endMark = 0;
    archive >> endMark;
    CFile* const file = archive.GetFile();
    archive.Close();  // leaves the file where the document ended
    if (endMark != kEndMark || file->GetPosition() != file->GetLength())
        throw Damaged(path, kWrongEnd);
}

Document ReadDocument(LoadFile& file, const std::filesystem::path& path) {
    Progress progress("loading " + path.filename().string());
    Vr::VrmArchive archive(&file, CArchive::load, kArchiveBufferBytes);
    archive.SetObserver(&progress);
    const DWORD format = ReadHeader(archive, path);
    const size_t count = ReadObjectCount(archive, format, path);
    Document document;
    document.objects.reserve(count);
    while (document.objects.size() < count)
        document.objects.push_back(ReadObject(archive, format, path));
    ReadEnd(archive, path);
    return document;
}

// The kinds in the order of the alternatives of `Object`.
constexpr std::array<DWORD, 4> kKinds = {kMeshKind, kCurveKind, kSurfaceKind, kMaterialKind};
static_assert(std::variant_size_v<Object> == kKinds.size());

DWORD FormatOf(const Document& document) {
    const bool holdsMeshesOnly =
        std::all_of(document.objects.begin(), document.objects.end(),
                    [](const Object& object) { return std::holds_alternative<Mesh>(object); });
    return holdsMeshesOnly ? kMeshFormat : kObjectFormat;
}

void WriteObject(const Object& object, DWORD format, CArchive& archive) {
    if (format != kMeshFormat)
        archive << kKinds[object.index()];
    if (const Mesh* const mesh = std::get_if<Mesh>(&object))
        archive << mesh->get();
    else if (const Curve* const curve = std::get_if<Curve>(&object))
        StoreFramed(archive, *curve);
    else if (const Surface* const surface = std::get_if<Surface>(&object))
        StoreFramed(archive, *surface);
    else
        StoreFramed(archive, std::get<Material>(object));
}

void WriteObjects(const Document& document, DWORD format, CArchive& archive, Progress& progress) {
    size_t written = 0;
    for (const Object& object : document.objects) {
        ThrowIfInterrupted();
        progress.OnProgress(written, document.objects.size());
        WriteObject(object, format, archive);
        ++written;
    }
}

void WriteDocument(const Document& document, CFile& file, Progress& progress) {
    Vr::VrmArchive archive(&file, CArchive::store, kArchiveBufferBytes);
    try {
        const DWORD format = FormatOf(document);
        archive << kMagic << format << static_cast<ULONGLONG>(document.objects.size());
        WriteObjects(document, format, archive, progress);
        archive << kEndMark;
        archive.Close();
    } catch (...) {
        archive.Abort();  // or the destructor would try to write once more
        throw;
    }
}

size_t CountKind(const Document& document, size_t alternative) {
    return static_cast<size_t>(std::count_if(
        document.objects.begin(), document.objects.end(),
        [alternative](const Object& object) { return object.index() == alternative; }));
}

}  // namespace

std::vector<Mesh> MeshesOf(const Document& document) {
    std::vector<Mesh> meshes;
    for (const Object& object : document.objects)
        if (const Mesh* const mesh = std::get_if<Mesh>(&object))
            meshes.push_back(*mesh);
    return meshes;
}

std::string CountOthers(const Document& document) {
    const std::array<std::pair<const char*, const char*>, 3> names = {
        {{"curve", "curves"}, {"surface", "surfaces"}, {"material", "materials"}}};
    std::string text;
    for (size_t alternative = 1; alternative <= names.size(); ++alternative) {
        const auto& [one, many] = names[alternative - 1];
        if (const size_t count = CountKind(document, alternative))
            text += (text.empty() ? "" : ", ") + Counted(count, one, many);
    }
    return text;
}

Document LoadDocument(const DocumentSource& source) {
    const std::filesystem::path path = source.path;
    try {
        LoadFile file(path);
        if (!source.isTrusted) {
            RequireSafe(file, path);
            file.SeekToBegin();
        }
        Document document = ReadDocument(file, path);
        ThrowIfInterrupted();
        return document;
    } catch (...) {
        RethrowAsFailure(path);
    }
}

uint64_t StoreDocument(const Document& document, const std::filesystem::path& path) {
    try {
        Progress progress("storing " + path.filename().string());
        ReplacingFile replacing(path);
        CFile file(replacing.Path().c_str(), CFile::modeWrite);
        WriteDocument(document, file, progress);
        const ULONGLONG length = file.GetLength();
        file.Flush();
        file.Close();
        ThrowIfInterrupted();
        replacing.Commit();
        return length;
    } catch (...) {
        RethrowAsFailure(path);
    }
}

}  // namespace Host

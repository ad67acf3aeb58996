// A document is one archive over one file: a header of the host's own, the objects in a row, and an
// end mark, by which a document that was cut short behind its last object is recognised too.

#include "Document.h"

#include <string>

#include "DocumentCheck.h"
#include "DocumentLayout.h"
#include "Failure.h"
#include "Interrupt.h"
#include "LoadFile.h"
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

void ReadHeader(Vr::VrmArchive& archive, const std::filesystem::path& path) {
    DWORD magic = 0;
    if (archive.GetFile()->GetLength() >= sizeof(magic))
        archive >> magic;
    if (magic != kMagic)
        throw Failure(path, kNoDocument);
    DWORD version = 0;
    archive >> version;
    if (version != kVersion)
        throw Failure(path, UnknownVersion(version));
}

// A damaged count must not be believed before there is room for so many objects in the file.
size_t ReadObjectCount(Vr::VrmArchive& archive, const std::filesystem::path& path) {
    ULONGLONG count = 0;
    archive >> count;
    if (count > archive.GetFile()->GetLength() / kSmallestObjectBytes)
        throw Damaged(path, TooShort(count));
    return static_cast<size_t>(count);
}

// Does what `archive >> mesh` does, but owns the object before its body is loaded: `ReadObject`
// leaves an object behind when its body fails, which a host that goes on running would not want.
Mesh ReadObject(Vr::VrmArchive& archive, const std::filesystem::path& path) {
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
    ReadHeader(archive, path);
    const size_t count = ReadObjectCount(archive, path);
    Document document;
    document.objects.reserve(count);
    while (document.objects.size() < count)
        document.objects.push_back(ReadObject(archive, path));
    ReadEnd(archive, path);
    return document;
}

void WriteObjects(const Document& document, CArchive& archive, Progress& progress) {
    size_t written = 0;
    for (const Mesh& object : document.objects) {
        ThrowIfInterrupted();
        progress.OnProgress(written, document.objects.size());
        archive << object.get();
        ++written;
    }
}

void WriteDocument(const Document& document, CFile& file, Progress& progress) {
    Vr::VrmArchive archive(&file, CArchive::store, kArchiveBufferBytes);
    try {
        archive << kMagic << kVersion << static_cast<ULONGLONG>(document.objects.size());
        WriteObjects(document, archive, progress);
        archive << kEndMark;
        archive.Close();
    } catch (...) {
        archive.Abort();  // or the destructor would try to write once more
        throw;
    }
}

}  // namespace

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

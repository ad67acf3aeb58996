// A curve's record says its length itself, but openNURBS does not mind it while it reads the numbers that
// are inside; a material has no length at all. So the host keeps one, and gives openNURBS the bytes of one
// object and no more.

#include "KernelObjects.h"

#include <limits>
#include <stdexcept>
#include <utility>
#include <vector>

#include "serialize/ValueSerializers.h"

namespace Host {

namespace {

using Vr::operator&;

constexpr ULONGLONG kLongestFrame = (std::numeric_limits<DWORD>::max)();

template <class Handle>
std::vector<BYTE> ToFrame(Handle& object) {
    CMemFile file;
    CArchive content(&file, CArchive::store);
    content& object;
    content.Close();
    const ULONGLONG length = file.GetLength();
    if (length > kLongestFrame)
        throw std::runtime_error("an object is too large for a document");
    std::vector<BYTE> frame(static_cast<size_t>(length));
    file.SeekToBegin();
    file.Read(frame.data(), static_cast<UINT>(length));
    return frame;
}

// Fills the handle and returns whether it holds such an object then, which took the whole frame.
template <class Base>
bool FromFrame(std::vector<BYTE>& frame, std::shared_ptr<Base>& object) {
    CMemFile file(frame.data(), static_cast<UINT>(frame.size()));
    CArchive content(&file, CArchive::load);
    content& object;
    content.Close();
    if (Base::Cast(static_cast<ON_Object*>(object.get())) == nullptr)
        object = nullptr;
    return object && file.GetPosition() == frame.size();
}

// What does not come back is not stored: openNURBS gives up in silence on objects that are not valid.
template <class Base>
void Store(CArchive& archive, std::shared_ptr<Base> object, std::shared_ptr<Base> again) {
    std::vector<BYTE> frame = ToFrame(object);
    if (!FromFrame(frame, again))
        throw std::runtime_error("openNURBS cannot store an object that is not valid");
    archive << static_cast<DWORD>(frame.size());
    archive.Write(frame.data(), static_cast<UINT>(frame.size()));
}

std::vector<BYTE> ReadFrame(CArchive& archive) {
    DWORD length = 0;
    archive >> length;
    if (length > archive.GetFile()->GetLength())
        throw std::runtime_error(std::string("damaged document: ") + kWrongFrame);
    std::vector<BYTE> frame(length);
    if (archive.Read(frame.data(), length) != length)
        AfxThrowArchiveException(CArchiveException::endOfFile);
    return frame;
}

template <class Base>
std::shared_ptr<Base> Load(CArchive& archive, std::shared_ptr<Base> object) {
    std::vector<BYTE> frame = ReadFrame(archive);
    if (!FromFrame(frame, object))
        throw std::runtime_error(std::string("damaged document: ") +
                                 (object ? kWrongFrame : kObjectMissing));
    return object;
}

}  // namespace

void StoreFramed(CArchive& archive, Curve curve) {
    Store(archive, std::move(curve), Curve());
}

void StoreFramed(CArchive& archive, Surface surface) {
    Store(archive, std::move(surface), Surface());
}

void StoreFramed(CArchive& archive, Material material) {
    Store(archive, std::move(material), std::make_shared<ON_Material>());
}

Object LoadFramed(CArchive& archive, DWORD kind) {
    switch (kind) {
        case kCurveKind:
            return Load(archive, Curve());
        case kSurfaceKind:
            return Load(archive, Surface());
        case kMaterialKind:
            return Load(archive, std::make_shared<ON_Material>());
        default:
            throw std::runtime_error("damaged document: " + UnknownKind(kind));
    }
}

}  // namespace Host

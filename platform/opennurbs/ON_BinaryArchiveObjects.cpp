// Records of objects: a chunk that holds the class's identifier, the class's own record and an end
// mark, so that a reader can pass over classes and additions that it does not know.
#include <memory>

#include "ON_BinaryArchive.h"
#include "ON_NurbsCurve.h"
#include "ON_NurbsSurface.h"
#include "detail/Typecodes.h"

namespace {

// Archives before this version know curves and surfaces as NURBS only.
constexpr int kOwnClassesVersion = 3;

// A chunk of an identifier and its checksum; a record holds at least that with its header.
constexpr std::int64_t kClassIdLength = 20;
constexpr std::int64_t kShortestRecord = 28;

// Returns the NURBS form of a curve or surface that is not one already; null for all others.
std::unique_ptr<ON_Object> NurbsForm(const ON_Object& object) {
    if (const auto* const curve = ON_Curve::Cast(&object)) {
        return ON_NurbsCurve::Cast(&object) ? nullptr
                                            : std::unique_ptr<ON_Object>(curve->NurbsCurve());
    }
    if (const auto* const surface = ON_Surface::Cast(&object)) {
        return ON_NurbsSurface::Cast(&object) ? nullptr
                                              : std::unique_ptr<ON_Object>(surface->NurbsSurface());
    }
    return nullptr;
}

}  // namespace

bool ON_BinaryArchive::WriteObject(const ON_Object* object) {
    if (object) {
        return WriteObject(*object);
    }
    if (!WriteMode() || !BeginWrite3dmChunk(kernel_detail::kObjectChunk, 0)) {
        return false;
    }
    const bool isWritten = WriteClassId(ON_nil_uuid);
    return EndWrite3dmChunk() && isWritten;
}

bool ON_BinaryArchive::WriteObject(const ON_Object& object) {
    if (!WriteMode()) {
        return false;
    }
    if (m_3dmVersion < kOwnClassesVersion) {
        if (const std::unique_ptr<ON_Object> form = NurbsForm(object)) {
            return WriteRecord(*form);
        }
    }
    return WriteRecord(object);
}

bool ON_BinaryArchive::WriteRecord(const ON_Object& object) {
    if (!BeginWrite3dmChunk(kernel_detail::kObjectChunk, 0)) {
        return false;
    }
    bool isWritten = WriteClassId(object.ClassId()->Uuid());
    if (isWritten) {
        isWritten = BeginWrite3dmChunk(kernel_detail::kClassDataChunk, 0);
        if (isWritten) {
            isWritten = object.Write(*this) != 0;
            isWritten = EndWrite3dmChunk() && isWritten;
        }
    }
    if (isWritten) {
        isWritten = BeginWrite3dmChunk(kernel_detail::kObjectEndChunk, 0) && EndWrite3dmChunk();
    }
    return EndWrite3dmChunk() && isWritten;
}

bool ON_BinaryArchive::WriteClassId(const ON_UUID& id) {
    if (!BeginWrite3dmChunk(kernel_detail::kClassIdChunk, 0)) {
        return false;
    }
    const bool isWritten = WriteUuid(id);
    return EndWrite3dmChunk() && isWritten;
}

int ON_BinaryArchive::ReadObject(ON_Object** object) {
    *object = nullptr;
    unsigned int typecode = 0;
    std::int64_t length = 0;
    if (!BeginRead3dmChunk(&typecode, &length)) {
        return 0;
    }
    std::unique_ptr<ON_Object> read;
    int code = 0;
    if (typecode == kernel_detail::kObjectChunk && length >= kShortestRecord) {
        code = ReadRecord(read);
    }
    if (!EndRead3dmChunk()) {
        code = 0;
    }
    *object = read.release();
    return code;
}

int ON_BinaryArchive::ReadRecord(std::unique_ptr<ON_Object>& object) {
    ON_UUID id = ON_nil_uuid;
    if (!ReadClassId(id)) {
        return 0;
    }
    if (id == ON_nil_uuid) {
        return 1;
    }
    const ON_ClassId* const classId = ON_ClassId::ClassId(id);
    std::unique_ptr<ON_Object> created(classId ? classId->Create() : nullptr);
    if (!created) {
        return 3;
    }
    unsigned int typecode = 0;
    std::int64_t length = 0;
    if (!BeginRead3dmChunk(&typecode, &length)) {
        return 0;
    }
    const bool isRead =
        typecode == kernel_detail::kClassDataChunk && length > 0 && created->Read(*this) != 0;
    if (isRead) {
        object = std::move(created);
    }
    return EndRead3dmChunk() && isRead && ReadToObjectEnd() ? 1 : 0;
}

bool ON_BinaryArchive::ReadClassId(ON_UUID& id) {
    unsigned int typecode = 0;
    std::int64_t length = 0;
    if (!BeginRead3dmChunk(&typecode, &length)) {
        return false;
    }
    const bool isRead =
        typecode == kernel_detail::kClassIdChunk && length == kClassIdLength && ReadUuid(id);
    return EndRead3dmChunk() && isRead;
}

bool ON_BinaryArchive::ReadToObjectEnd() {
    for (;;) {
        unsigned int typecode = 0;
        std::int64_t value = 0;
        if (!BeginRead3dmChunk(&typecode, &value) || !EndRead3dmChunk()) {
            return false;
        }
        if (typecode == kernel_detail::kObjectEndChunk) {
            return true;
        }
    }
}

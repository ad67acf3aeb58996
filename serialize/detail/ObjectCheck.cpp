// The tags in front of an object, as platform/afx reads them. Only the two mesh classes are known here,
// whatever else is registered: the body of another class has a layout of its own.

#include "serialize/detail/ObjectCheck.h"

#include "mesh/VraMesh.h"
#include "mesh/detail/CreateObject.h"
#include "serialize/detail/MeshFormat.h"

namespace Vr::detail {

namespace {

constexpr WORD kNullTag = 0x0000;
constexpr WORD kLongTag = 0x7FFF;
constexpr WORD kNewClassTag = 0xFFFF;
constexpr WORD kShortClassBit = 0x8000;
constexpr DWORD kClassBit = 0x80000000U;
constexpr WORD kLongestName = 63;

const CRuntimeClass* FindMeshClass(std::string_view name) {
    for (const CRuntimeClass* const known :
         {RUNTIME_CLASS(VraMesh), RUNTIME_CLASS(VraMeshPrimitive)})
        if (name == known->m_lpszClassName)
            return known;
    return nullptr;
}

// A name as it can be printed.
std::string Quoted(std::string_view name) {
    std::string text = "\"";
    for (const char character : name)
        text += character >= ' ' && character <= '~' ? character : '?';
    return text + '"';
}

}  // namespace

CheckedObject ObjectCheck::Object(const CRuntimeClass* wanted) {
    WORD shortTag = 0;
    if (!context_.Read(shortTag))
        return CheckedObject::None;
    tagOffset_ = context_.LastOffset();
    if (shortTag == kNewClassTag)
        return NewObject(NewClass(), wanted);
    DWORD tag = (static_cast<DWORD>(shortTag & kShortClassBit) << 16) | (shortTag & 0x7FFFU);
    if (shortTag == kLongTag && !context_.Read(tag))
        return CheckedObject::None;
    if ((tag & kClassBit) == 0)
        return Reference(tag, wanted);
    return NewObject(FindClass(tag & ~kClassBit), wanted);
}

CheckedObject ObjectCheck::Reference(uint64_t number, const CRuntimeClass* wanted) {
    if (number != kNullTag) {
        if (number >= entries_.size() || entries_[number].isClass) {
            context_.Stop(CheckCode::ObjectNumber, tagOffset_,
                          [&] { return "number " + std::to_string(number) + " is no object's"; });
            return CheckedObject::None;
        }
        if (!IsWanted(entries_[number].runtimeClass, wanted))
            return CheckedObject::None;
    }
    ++context_.Result().readCount;
    return number == kNullTag ? CheckedObject::Null : CheckedObject::Known;
}

CheckedObject ObjectCheck::NewObject(const CRuntimeClass* stored, const CRuntimeClass* wanted) {
    if (stored == nullptr || !IsWanted(stored, wanted))
        return CheckedObject::None;
    uint64_t& objectCount = context_.Result().objectCount;
    if (objectCount >= context_.Limits().objects) {
        context_.Stop(CheckCode::ObjectLimit, tagOffset_, [&] {
            return "more than " + std::to_string(context_.Limits().objects) + " objects";
        });
        return CheckedObject::None;
    }
    entries_.push_back({stored, false});
    ++objectCount;
    if (!bodies_.Body(HasUVEnvelope(*schema_)))
        return CheckedObject::None;
    ++context_.Result().readCount;
    return CheckedObject::New;
}

const CRuntimeClass* ObjectCheck::NewClass() {
    WORD schema = 0;
    WORD nameLength = 0;
    if (!context_.Read(schema))
        return nullptr;
    const uint64_t schemaOffset = context_.LastOffset();
    if (!context_.Read(nameLength))
        return nullptr;
    char bytes[kLongestName];
    if (nameLength > kLongestName || nameLength > context_.Remaining()) {
        context_.Stop(CheckCode::ClassName, context_.LastOffset(),
                      [&] { return "a class name of " + std::to_string(nameLength) + " bytes"; });
        return nullptr;
    }
    if (!context_.Read(bytes, nameLength))
        return nullptr;
    const std::string_view name(bytes, nameLength);
    const CRuntimeClass* const known = FindMeshClass(name);
    if (known == nullptr) {
        context_.Stop(CheckCode::UnknownClass, tagOffset_,
                      [&] { return "class " + Quoted(name) + " is no mesh class"; });
        return nullptr;
    }
    NoteSchema(schema, schemaOffset);
    entries_.push_back({known, true});
    return known;
}

void ObjectCheck::NoteSchema(WORD schema, uint64_t offset) {
    if (schema > kStreamSchema)
        context_.Report(CheckCode::NewerSchema, offset, [&] {
            return "schema " + std::to_string(schema) + " is newer than " +
                   std::to_string(kStreamSchema);
        });
    if (!schema_)
        schema_ = schema;
    else if (schema != *schema_)
        context_.Report(CheckCode::MixedSchemas, offset, [&] {
            return "schema " + std::to_string(schema) +
                   " does not count, since the first object has " + std::to_string(*schema_);
        });
}

const CRuntimeClass* ObjectCheck::FindClass(uint64_t number) {
    if (number < entries_.size() && entries_[number].isClass)
        return entries_[number].runtimeClass;
    context_.Stop(CheckCode::ClassNumber, tagOffset_,
                  [&] { return "number " + std::to_string(number) + " is no class's"; });
    return nullptr;
}

bool ObjectCheck::IsWanted(const CRuntimeClass* stored, const CRuntimeClass* wanted) {
    if (wanted == nullptr || stored->IsDerivedFrom(wanted))
        return true;
    return context_.Stop(CheckCode::WrongClass, tagOffset_, [&] {
        return std::string("an object of ") + stored->m_lpszClassName + " in place of " +
               wanted->m_lpszClassName;
    });
}

}  // namespace Vr::detail

// Objects in an archive. Each is preceded by a tag: a number that the archive gave out before, the
// number of its class, or the mark of a new class with its description. Numbers below 0x7FFF are
// one word, larger ones a double word behind an escape; the top bit tells classes from objects.
#include <memory>
#include <string_view>

#include "AfxArchive.h"
#include "AfxExceptions.h"
#include "detail/ArchiveTables.h"
#include "detail/ClassRegistry.h"

namespace {

constexpr WORD kNullTag = 0x0000;
constexpr WORD kLongTag = 0x7FFF;
constexpr WORD kNewClassTag = 0xFFFF;
constexpr WORD kShortClassBit = 0x8000;
constexpr DWORD kClassBit = 0x80000000U;
constexpr DWORD kObjectBit = 0;
constexpr UINT kLastNumber = 0x3FFFFFFE;

constexpr UINT kUnknownSchema = 0xFFFFFFFFU;
constexpr UINT kNotSerializable = 0xFFFFU;
constexpr WORD kLongestName = 63;

void RequireSerializable(const CRuntimeClass* runtimeClass) {
    if (runtimeClass->m_wSchema == kNotSerializable) {
        AfxThrowNotSupportedException();
    }
}

UINT OwnSchema(const CRuntimeClass* runtimeClass) {
    return runtimeClass->m_wSchema & ~VERSIONABLE_SCHEMA;
}

}  // namespace

void CRuntimeClass::Store(CArchive& archive) const {
    const std::string_view name = m_lpszClassName;
    archive << static_cast<WORD>(m_wSchema) << static_cast<WORD>(name.size());
    archive.Write(name.data(), static_cast<UINT>(name.size()));
}

CRuntimeClass* PASCAL CRuntimeClass::Load(CArchive& archive, UINT* schema) {
    WORD storedSchema = 0;
    WORD nameLength = 0;
    archive >> storedSchema;
    *schema = storedSchema;
    archive >> nameLength;
    char name[kLongestName];
    // Deliberate: a name cut short is an unknown class, not the end of the file.
    if (nameLength > kLongestName || archive.Read(name, nameLength) != nameLength) {
        return nullptr;
    }
    return AfxClassRegistry::Instance().Find(std::string_view(name, nameLength));
}

void CArchive::WriteObject(const CObject* object) {
    RequireStoring();
    SetUpTables();
    if (object == nullptr) {
        *this << kNullTag;
        return;
    }
    const auto known = m_pStoreMap->numberOf.find(object);
    if (known != m_pStoreMap->numberOf.end()) {
        WriteNumber(known->second, kObjectBit);
        return;
    }
    WriteClass(object->GetRuntimeClass());
    MapObject(object);
    // Serialize serves both directions and is therefore not const.
    const_cast<CObject*>(object)->Serialize(*this);
}

CObject* CArchive::ReadObject(const CRuntimeClass* wanted) {
    RequireLoading();
    UINT schema = kUnknownSchema;
    DWORD objectNumber = 0;
    CRuntimeClass* const runtimeClass = ReadClass(wanted, &schema, &objectNumber);
    if (runtimeClass == nullptr) {
        return FindObject(objectNumber, wanted);
    }
    CheckCount();
    std::unique_ptr<CObject> created(runtimeClass->CreateObject());
    if (created == nullptr) {
        AfxThrowMemoryException();
    }
    // Numbered before its body, so that an object inside can refer back to it.
    MapObject(created.get());
    // From here on others may point to it, so it stays whatever happens.
    CObject* const object = created.release();
    const UINT outerSchema = m_nObjectSchema;
    m_nObjectSchema = schema;
    object->Serialize(*this);
    m_nObjectSchema = outerSchema;
    return object;
}

void CArchive::WriteClass(const CRuntimeClass* storedClass) {
    RequireStoring();
    RequireSerializable(storedClass);
    SetUpTables();
    const auto known = m_pStoreMap->numberOf.find(storedClass);
    if (known != m_pStoreMap->numberOf.end()) {
        WriteNumber(known->second, kClassBit);
        return;
    }
    *this << kNewClassTag;
    storedClass->Store(*this);
    CheckCount();
    m_pStoreMap->numberOf.emplace(storedClass, m_nMapCount);
    ++m_nMapCount;
}

CRuntimeClass* CArchive::ReadClass(const CRuntimeClass* wanted, UINT* schema, DWORD* objectTag) {
    RequireLoading();
    if (wanted != nullptr) {
        RequireSerializable(wanted);
    }
    SetUpTables();
    WORD shortTag = 0;
    *this >> shortTag;
    UINT storedSchema = kUnknownSchema;
    CRuntimeClass* found = nullptr;
    if (shortTag == kNewClassTag) {
        found = ReadNewClass(&storedSchema);
    } else {
        DWORD tag = (static_cast<DWORD>(shortTag & kShortClassBit) << 16) | (shortTag & 0x7FFFU);
        if (shortTag == kLongTag) {
            *this >> tag;
        }
        if ((tag & kClassBit) == 0) {
            if (objectTag == nullptr) {
                AfxThrowArchiveException(CArchiveException::badIndex, m_strFileName);
            }
            *objectTag = tag;
            return nullptr;
        }
        found = FindClass(tag & ~kClassBit, &storedSchema);
    }
    if (wanted != nullptr && !found->IsDerivedFrom(wanted)) {
        AfxThrowArchiveException(CArchiveException::badClass, m_strFileName);
    }
    if (schema != nullptr) {
        *schema = storedSchema;
    } else {
        m_nObjectSchema = storedSchema;
    }
    return found;
}

void CArchive::SerializeClass(const CRuntimeClass* wanted) {
    if (IsStoring()) {
        WriteClass(wanted);
    } else {
        ReadClass(wanted);
    }
}

void CArchive::MapObject(const CObject* object) {
    SetUpTables();
    if (object == nullptr) {
        return;
    }
    CheckCount();
    if (IsStoring()) {
        m_pStoreMap->numberOf[object] = m_nMapCount;
    } else {
        m_pLoadArray->entries.push_back({const_cast<CObject*>(object), nullptr});
    }
    ++m_nMapCount;
}

UINT CArchive::GetObjectSchema() {
    const UINT schema = m_nObjectSchema;
    m_nObjectSchema = kUnknownSchema;
    return schema;
}

void CArchive::CheckCount() {
    if (m_nMapCount > kLastNumber) {
        AfxThrowArchiveException(CArchiveException::badIndex, m_strFileName);
    }
}

void CArchive::SetUpTables() {
    if (IsLoading() ? m_pLoadArray != nullptr : m_pStoreMap != nullptr) {
        return;
    }
    if (IsLoading()) {
        auto table = std::make_unique<AfxLoadTable>();
        table->entries.push_back({nullptr, nullptr});
        m_pLoadArray = table.release();
    } else {
        m_pStoreMap = new AfxStoreTable;
    }
    m_nMapCount = 1;
}

void CArchive::WriteNumber(UINT number, DWORD kindBit) {
    if (number < kLongTag) {
        *this << static_cast<WORD>(number | (kindBit >> 16));
    } else {
        *this << kLongTag << static_cast<DWORD>(number | kindBit);
    }
}

CRuntimeClass* CArchive::ReadNewClass(UINT* schema) {
    CRuntimeClass* const found = CRuntimeClass::Load(*this, schema);
    if (found == nullptr) {
        AfxThrowArchiveException(CArchiveException::badClass, m_strFileName);
    }
    if (*schema != OwnSchema(found)) {
        if ((found->m_wSchema & VERSIONABLE_SCHEMA) == 0) {
            AfxThrowArchiveException(CArchiveException::badSchema, m_strFileName);
        }
        if (m_pSchemaMap == nullptr) {
            m_pSchemaMap = new AfxSchemaTable;
        }
        m_pSchemaMap->storedSchemaOf[found] = *schema;
    }
    CheckCount();
    m_pLoadArray->entries.push_back({nullptr, found});
    ++m_nMapCount;
    return found;
}

CRuntimeClass* CArchive::FindClass(DWORD number, UINT* schema) const {
    const auto& entries = m_pLoadArray->entries;
    if (number >= entries.size() || entries[number].runtimeClass == nullptr) {
        AfxThrowArchiveException(CArchiveException::badIndex, m_strFileName);
    }
    CRuntimeClass* const found = entries[number].runtimeClass;
    *schema = OwnSchema(found);
    if (m_pSchemaMap != nullptr) {
        const auto stored = m_pSchemaMap->storedSchemaOf.find(found);
        if (stored != m_pSchemaMap->storedSchemaOf.end()) {
            *schema = stored->second;
        }
    }
    return found;
}

CObject* CArchive::FindObject(DWORD number, const CRuntimeClass* wanted) const {
    if (number == 0) {
        return nullptr;
    }
    const auto& entries = m_pLoadArray->entries;
    if (number >= entries.size() || entries[number].object == nullptr) {
        AfxThrowArchiveException(CArchiveException::badIndex, m_strFileName);
    }
    CObject* const found = entries[number].object;
    if (wanted != nullptr && !found->IsKindOf(wanted)) {
        AfxThrowArchiveException(CArchiveException::badClass, m_strFileName);
    }
    return found;
}

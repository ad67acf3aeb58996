// The root class. Its record is written out, as the macros give every class a base.
#include <new>

#include "AfxObject.h"
#include "AfxString.h"

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFFU,
                                             nullptr,   &CObject::_GetBaseClass,           nullptr,
                                             nullptr};

CRuntimeClass* PASCAL CObject::_GetBaseClass() {
    return nullptr;
}

CRuntimeClass* PASCAL CObject::GetThisClass() {
    return const_cast<CRuntimeClass*>(&CObject::classCObject);
}

CObject::CObject() = default;
CObject::~CObject() = default;

CRuntimeClass* CObject::GetRuntimeClass() const {
    return RUNTIME_CLASS(CObject);
}

void CObject::Serialize(CArchive&) {}

// ASSERT_VALID has checked the pointer, and there is nothing else to check here.
void CObject::AssertValid() const {}

void CObject::Dump(CDumpContext& context) const {
    context << GetRuntimeClass()->m_lpszClassName;
}

BOOL CObject::IsKindOf(const CRuntimeClass* wanted) const {
    return GetRuntimeClass()->IsDerivedFrom(wanted);
}

BOOL CObject::IsSerializable() const {
    return GetRuntimeClass()->m_wSchema != 0xFFFFU ? TRUE : FALSE;
}

void* CObject::operator new(std::size_t size) {
    return ::operator new(size);
}
void* CObject::operator new(std::size_t, void* place) noexcept {
    return place;
}
void* CObject::operator new(std::size_t size, LPCSTR, int) {
    return ::operator new(size);
}
void CObject::operator delete(void* memory) noexcept {
    ::operator delete(memory);
}
void CObject::operator delete(void*, void*) noexcept {}
void CObject::operator delete(void* memory, LPCSTR, int) noexcept {
    ::operator delete(memory);
}

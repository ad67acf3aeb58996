// Creating objects from class records and finding records by name.
#include <cstdint>
#include <new>
#include <string>

#include "AfxExceptions.h"
#include "AfxObject.h"
#include "detail/ClassRegistry.h"

CObject* CRuntimeClass::CreateObject() {
    if (m_pfnCreateObject == nullptr) {
        return nullptr;
    }
    try {
        return m_pfnCreateObject();
    } catch (CException* exception) {
        exception->Delete();
    } catch (const std::bad_alloc&) {
        // Memory is short: null, as for the exception of the layer's own.
    }
    return nullptr;
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
    const CRuntimeClass* ancestor = this;
    while (ancestor != nullptr && ancestor != base) {
        ancestor = ancestor->m_pfnGetBaseClass != nullptr ? ancestor->m_pfnGetBaseClass() : nullptr;
    }
    return ancestor != nullptr ? TRUE : FALSE;
}

CRuntimeClass* PASCAL CRuntimeClass::FromName(LPCSTR name) {
    return AfxClassRegistry::Instance().Find(name);
}

CRuntimeClass* PASCAL CRuntimeClass::FromName(LPCWSTR name) {
    std::string narrowName;
    for (; *name != L'\0'; ++name) {
        // Names are ASCII, so no class has a name with anything else in it.
        if (static_cast<std::uint32_t>(*name) > 0x7F) {
            return nullptr;
        }
        narrowName += static_cast<char>(*name);
    }
    return AfxClassRegistry::Instance().Find(narrowName);
}

CObject* PASCAL CRuntimeClass::CreateObject(LPCSTR name) {
    CRuntimeClass* const found = FromName(name);
    return found != nullptr ? found->CreateObject() : nullptr;
}

CObject* PASCAL CRuntimeClass::CreateObject(LPCWSTR name) {
    CRuntimeClass* const found = FromName(name);
    return found != nullptr ? found->CreateObject() : nullptr;
}

// Lists run through the records themselves (`m_pNextClass`), newest first, so registering needs no
// memory. A class belongs to the module that holds the text of its name: the record itself may have
// been copied into the executable, the text never is.
#include "detail/ClassRegistry.h"

#include <algorithm>

namespace {

using Guard = std::lock_guard<afx::detail::RegistryLock>;

bool IsListed(const CRuntimeClass* list, const CRuntimeClass* wanted) {
    while (list != nullptr && list != wanted) {
        list = list->m_pNextClass;
    }
    return list != nullptr;
}

bool Unlink(CRuntimeClass*& list, CRuntimeClass* oldClass) {
    for (CRuntimeClass** link = &list; *link != nullptr; link = &(*link)->m_pNextClass) {
        if (*link == oldClass) {
            *link = oldClass->m_pNextClass;
            oldClass->m_pNextClass = nullptr;
            return true;
        }
    }
    return false;
}

CRuntimeClass* FindInList(CRuntimeClass* list, std::string_view name) {
    while (list != nullptr && name != list->m_lpszClassName) {
        list = list->m_pNextClass;
    }
    return list;
}

bool Owns(const afx::detail::MemoryRange& range, const CRuntimeClass* ownedClass) {
    return range.Contains(ownedClass->m_lpszClassName) || range.Contains(ownedClass);
}

}  // namespace

AfxClassRegistry& AfxClassRegistry::Instance() {
    static AfxClassRegistry* const registry = new AfxClassRegistry;
    return *registry;
}

void AfxClassRegistry::Add(CRuntimeClass* newClass) {
    const Guard guard(lock_);
    for (const Module& module : modules_) {
        if (Owns(module.range, newClass)) {
            Prepend(*module.record, newClass);
            return;
        }
    }
    // A record linked twice would close the list to a ring.
    if (!IsListed(applicationClasses_, newClass)) {
        newClass->m_pNextClass = applicationClasses_;
        applicationClasses_ = newClass;
    }
}

void AfxClassRegistry::Remove(CRuntimeClass* oldClass) {
    const Guard guard(lock_);
    if (Unlink(applicationClasses_, oldClass)) {
        return;
    }
    for (const Module& module : modules_) {
        if (Unlink(module.record->pFirstSharedClass, oldClass)) {
            RefreshHeads(*module.record);
            return;
        }
    }
}

CRuntimeClass* AfxClassRegistry::Find(std::string_view name) {
    const Guard guard(lock_);
    CRuntimeClass* found = FindInList(applicationClasses_, name);
    for (const CDynLinkLibrary* library = newestLibrary_; found == nullptr && library != nullptr;
         library = library->m_pNextDLL) {
        found = FindInList(library->m_pFirstSharedClass, name);
    }
    return found;
}

void AfxClassRegistry::Initialise(AFX_EXTENSION_MODULE& module, HMODULE handle) {
    // The record lies in its module. A record elsewhere is taken for the module of the handle.
    auto range = afx::detail::ModuleRangeOf(&module);
    if (range.IsEmpty()) {
        range = afx::detail::ModuleRangeOf(handle);
    }
    const Guard guard(lock_);
    if (module.bInitialized) {
        return;
    }
    modules_.push_back({&module, range});
    module.bInitialized = TRUE;
    module.hModule = handle;
    module.hResource = handle;

    // Appended at the end, so that the module's list has the order of the general one.
    CRuntimeClass** moduleEnd = &module.pFirstSharedClass;
    while (*moduleEnd != nullptr) {
        moduleEnd = &(*moduleEnd)->m_pNextClass;
    }
    CRuntimeClass** link = &applicationClasses_;
    while (*link != nullptr) {
        CRuntimeClass* const candidate = *link;
        if (Owns(range, candidate)) {
            *link = candidate->m_pNextClass;
            candidate->m_pNextClass = nullptr;
            *moduleEnd = candidate;
            moduleEnd = &candidate->m_pNextClass;
        } else {
            link = &candidate->m_pNextClass;
        }
    }
}

void AfxClassRegistry::Terminate(AFX_EXTENSION_MODULE& module, bool all) {
    CDynLinkLibrary* leaving = nullptr;
    {
        const Guard guard(lock_);
        if (!module.bInitialized) {
            return;
        }
        for (CDynLinkLibrary** link = &newestLibrary_; *link != nullptr;) {
            CDynLinkLibrary* const library = *link;
            if (all || library->module_ == &module) {
                *link = library->m_pNextDLL;
                library->m_pNextDLL = leaving;
                leaving = library;
            } else {
                link = &library->m_pNextDLL;
            }
        }
        const auto isLeaving = [&](const Module& other) { return all || other.record == &module; };
        for (const Module& other : modules_) {
            if (isLeaving(other)) {
                other.record->bInitialized = FALSE;
            }
        }
        modules_.erase(std::remove_if(modules_.begin(), modules_.end(), isLeaving), modules_.end());
    }
    // Their destructors may be a derived class's and take the lock themselves.
    while (leaving != nullptr) {
        CDynLinkLibrary* const library = leaving;
        leaving = library->m_pNextDLL;
        delete library;
    }
}

void AfxClassRegistry::Join(CDynLinkLibrary& library, AFX_EXTENSION_MODULE& module, bool isSystem) {
    const Guard guard(lock_);
    library.module_ = &module;
    library.m_hModule = module.hModule;
    library.m_hResource = module.hResource;
    library.m_pFirstSharedClass = module.pFirstSharedClass;
    library.m_bSystem = isSystem ? TRUE : FALSE;
    library.m_pNextDLL = newestLibrary_;
    newestLibrary_ = &library;
}

void AfxClassRegistry::Leave(CDynLinkLibrary& library) {
    const Guard guard(lock_);
    for (CDynLinkLibrary** link = &newestLibrary_; *link != nullptr; link = &(*link)->m_pNextDLL) {
        if (*link == &library) {
            *link = library.m_pNextDLL;
            return;
        }
    }
}

void AfxClassRegistry::Prepend(AFX_EXTENSION_MODULE& module, CRuntimeClass* newClass) {
    if (!IsListed(module.pFirstSharedClass, newClass)) {
        newClass->m_pNextClass = module.pFirstSharedClass;
        module.pFirstSharedClass = newClass;
        RefreshHeads(module);
    }
}

// The libraries hold copies of the head of their module's list.
void AfxClassRegistry::RefreshHeads(const AFX_EXTENSION_MODULE& module) {
    for (CDynLinkLibrary* library = newestLibrary_; library != nullptr;
         library = library->m_pNextDLL) {
        if (library->module_ == &module) {
            library->m_pFirstSharedClass = module.pFirstSharedClass;
        }
    }
}

void AFXAPI AfxClassInit(CRuntimeClass* newClass) {
    AfxClassRegistry::Instance().Add(newClass);
}

AFX_CLASSINIT::AFX_CLASSINIT(CRuntimeClass* newClass) : registeredClass_(newClass) {
    AfxClassInit(newClass);
}

AFX_CLASSINIT::~AFX_CLASSINIT() {
    AfxClassRegistry::Instance().Remove(registeredClass_);
}

/// The lists of run-time classes and the chain of extension modules of this process.
#pragma once

#include <string_view>
#include <vector>

#include "ModuleRange.h"
#include "RegistryLock.h"
#include "afxwin.h"

/// The one registry of the process, behind `AfxClassInit`, `CRuntimeClass::FromName` and the
/// functions of extension modules. Every operation takes the lock; none calls the loader while it
/// holds it, because the loader holds its own lock while it runs the constructors that register.
class AfxClassRegistry {
public:
    /// Returns the registry. It is never destroyed, as modules unregister during process exit.
    static AfxClassRegistry& Instance();

    void Add(CRuntimeClass* newClass);
    void Remove(CRuntimeClass* oldClass);
    CRuntimeClass* Find(std::string_view name);

    void Initialise(AFX_EXTENSION_MODULE& module, HMODULE handle);
    void Terminate(AFX_EXTENSION_MODULE& module, bool all);

    void Join(CDynLinkLibrary& library, AFX_EXTENSION_MODULE& module, bool isSystem);
    void Leave(CDynLinkLibrary& library);

private:
    struct Module {
        AFX_EXTENSION_MODULE* record;
        afx::detail::MemoryRange range;
    };

    void Prepend(AFX_EXTENSION_MODULE& module, CRuntimeClass* newClass);
    void RefreshHeads(const AFX_EXTENSION_MODULE& module);

    afx::detail::RegistryLock lock_;
    /// Classes of no initialised module.
    CRuntimeClass* applicationClasses_ = nullptr;
    std::vector<Module> modules_;
    CDynLinkLibrary* newestLibrary_ = nullptr;
};

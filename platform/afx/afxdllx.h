/// Included by the one source file of a module that defines its entry point, `DllMain`.
///
/// On Windows the system calls the entry point. On ELF this header supplies the static object that
/// does: it calls `DllMain(attach)` when the module is loaded and `DllMain(detach)` when it is
/// unloaded. Source files initialise in the order they are linked, so the file comes after those
/// that register classes; what is registered later still joins the module.
///
/// - Deliberate: a constructor cannot make the load fail. When attach returns 0 the object calls
///   detach at once and the module stays loaded, outside the chain of modules.
#pragma once

#include "afxwin.h"

#if !defined(_WIN32)

// Protected: exported, so that a host can call the entry point of a module it opened, but never
// replaced by another module's entry point of the same name.
extern "C" __attribute__((visibility("protected"))) int WINAPI DllMain(HINSTANCE instance,
                                                                       DWORD reason,
                                                                       LPVOID reserved);

namespace {

struct AfxModuleEntry {
    AfxModuleEntry() : isAttached(DllMain(Instance(), DLL_PROCESS_ATTACH, nullptr) != 0) {
        if (!isAttached) {
            DllMain(Instance(), DLL_PROCESS_DETACH, nullptr);
        }
    }
    ~AfxModuleEntry() {
        if (isAttached) {
            DllMain(Instance(), DLL_PROCESS_DETACH, nullptr);
        }
    }
    AfxModuleEntry(const AfxModuleEntry&) = delete;
    AfxModuleEntry& operator=(const AfxModuleEntry&) = delete;

    // Any address inside the module tells it from all others.
    HINSTANCE Instance() { return reinterpret_cast<HINSTANCE>(this); }

    bool isAttached;
};

AfxModuleEntry afxModuleEntry;

}  // namespace

#endif

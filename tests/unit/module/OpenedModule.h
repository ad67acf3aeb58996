/// The module as a host sees it that opens it at run time.
#pragma once

#include <afxwin.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#if defined(_OPENMP)
#include <omp.h>
#endif

namespace Vr::test {

#if defined(_OPENMP)
// Keeps the OpenMP run-time loaded. It forgets a few bytes each time it is unloaded with the module,
// which a leak checker would count.
inline const int heldOpenMPThreads = omp_get_max_threads();
#endif

/// Keeps the module open. The program that uses this does not link the module.
class OpenedModule {
public:
    OpenedModule() : handle_(dlopen(VERIDANE_MESH_MODULE, RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr)
            ADD_FAILURE() << dlerror();
    }
    ~OpenedModule() { dlclose(handle_); }
    OpenedModule(const OpenedModule&) = delete;
    OpenedModule& operator=(const OpenedModule&) = delete;

    /// Calls the module's entry point as the system's loader does.
    int CallEntryPoint(DWORD reason) const {
        using EntryPoint = int(WINAPI*)(HINSTANCE, DWORD, LPVOID);
        return reinterpret_cast<EntryPoint>(dlsym(handle_, "DllMain"))(
            static_cast<HINSTANCE>(handle_), reason, nullptr);
    }

private:
    void* handle_;
};

inline bool IsModuleLoaded() {
    void* const handle = dlopen(VERIDANE_MESH_MODULE, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr)
        dlclose(handle);
    return handle != nullptr;
}

inline bool AreClassesFound() {
    const bool isMeshFound = CRuntimeClass::FromName("VraMesh") != nullptr;
    const bool isPrimitiveFound = CRuntimeClass::FromName("VraMeshPrimitive") != nullptr;
    EXPECT_EQ(isMeshFound, isPrimitiveFound);
    return isMeshFound && isPrimitiveFound;
}

}  // namespace Vr::test

// The entry point of the extension module. Windows calls it; elsewhere <afxdllx.h> does, at load and
// unload.

#include <afx.h>

#include <afxwin.h>

#include <afxdllx.h>

#include <new>

#include "module/Export.h"

namespace {

AFX_EXTENSION_MODULE extensionModule = {};

// Joins the host's chain. Deliberate: the load succeeds when memory is too short for the link; the
// platform owns the link and deletes it when the module terminates.
int Attach(HINSTANCE instance) {
    if (!AfxInitExtensionModule(extensionModule, instance))
        return 0;
    try {
        new CDynLinkLibrary(extensionModule, FALSE);
    } catch (const std::bad_alloc&) {
    } catch (
        CMemoryException* exception) {  // LCOV_EXCL_START: MFC's operator new, which others lack
        exception->Delete();
    }  // LCOV_EXCL_STOP
    return 1;
}

}  // namespace

extern "C" int WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    switch (reason) {
        case DLL_PROCESS_ATTACH:
            return Attach(instance);
        case DLL_PROCESS_DETACH:
            AfxTermExtensionModule(extensionModule, FALSE);
            return 1;
        default:
            return 1;
    }
}

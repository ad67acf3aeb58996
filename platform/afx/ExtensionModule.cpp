// The public face of the registry for modules that join a host.
#include <new>

#include "afxwin.h"
#include "detail/ClassRegistry.h"

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)
IMPLEMENT_DYNAMIC(CDynLinkLibrary, CCmdTarget)

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL isSystem) {
    AfxClassRegistry::Instance().Join(*this, module, isSystem != FALSE);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    AfxClassRegistry::Instance().Leave(*this);
}

BOOL AFXAPI AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HMODULE handle) {
    try {
        AfxClassRegistry::Instance().Initialise(module, handle);
        return TRUE;
    } catch (const std::bad_alloc&) {
        return FALSE;
    }
}

void AFXAPI AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all) {
    AfxClassRegistry::Instance().Terminate(module, all != FALSE);
}

/// The part of the MFC-compatible layer that joins extension modules to their host.
#pragma once

#include "afx.h"

class COleObjectFactory;

/// What a module keeps of itself; a static object of the module, zero at first.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
    CRuntimeClass* pFirstSharedClass;
    COleObjectFactory* pFirstSharedFactory;
};

/// The base of objects that receive commands; here only the base of `CDynLinkLibrary`.
class VERIDANE_AFX CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

protected:
    CCmdTarget() = default;
};

/// A module's place in the chain of extension modules. While it lives, the module's classes are
/// found by name.
///
/// Made with `new` and never deleted by the module; `AfxTermExtensionModule` deletes it.
class VERIDANE_AFX CDynLinkLibrary : public CCmdTarget {
    DECLARE_DYNAMIC(CDynLinkLibrary)

    /// Copies the handles and classes of an initialised module and becomes the newest of the chain.
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& module, BOOL isSystem = FALSE);
    ~CDynLinkLibrary() override;

    HMODULE m_hModule;
    HMODULE m_hResource;
    /// The module's classes, the head of the same list as in its record.
    CRuntimeClass* m_pFirstSharedClass;
    BOOL m_bSystem;
    /// The module that joined before this one.
    CDynLinkLibrary* m_pNextDLL = nullptr;

private:
    friend class AfxClassRegistry;
    const AFX_EXTENSION_MODULE* module_;
};

/// Notes the module's handle and collects the classes it has registered.
///
/// A class belongs to the module whose memory holds its name. Collected classes are no longer among
/// the application's; they are found again from the module's first `CDynLinkLibrary` on. Classes
/// that the module registers later join it.
///
/// - Result: FALSE when memory is short; the load of the module must then fail. TRUE for a record
/// that
///   is initialised already, which stays as it is.
VERIDANE_AFX BOOL AFXAPI AfxInitExtensionModule(AFX_EXTENSION_MODULE& module, HMODULE handle);

/// Takes the module, or with `all` every module, out of the chain: deletes the `CDynLinkLibrary`
/// objects, so that the classes are no longer found. Nothing happens for a record that is not
/// initialised.
VERIDANE_AFX void AFXAPI AfxTermExtensionModule(AFX_EXTENSION_MODULE& module, BOOL all = FALSE);

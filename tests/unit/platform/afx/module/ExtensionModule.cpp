// An extension module as its programmer writes it: classes, the module record and the entry point.
// Built twice; MODULE_CLASS is the name of the one class that only this module has.
#include <afxdllx.h>

#include "ModuleInterface.h"

class MODULE_CLASS : public CObject {
    DECLARE_SERIAL(MODULE_CLASS)

    void Serialize(CArchive& archive) override {
        if (archive.IsStoring()) {
            archive << value;
        } else {
            archive >> value;
        }
    }

    DWORD value = 0;
};
IMPLEMENT_SERIAL(MODULE_CLASS, CObject, VERSIONABLE_SCHEMA | 4)

// Every module of these tests has a class of this name.
class CModuleTwin : public CObject {
    DECLARE_SERIAL(CModuleTwin)
};
IMPLEMENT_SERIAL(CModuleTwin, CObject, 1)

namespace {

AFX_EXTENSION_MODULE moduleRecord = {};
std::string* notedCalls = nullptr;

class COwnException : public CException {
    DECLARE_DYNAMIC(COwnException)
};
IMPLEMENT_DYNAMIC(COwnException, CException)

void Note(const char* call) {
    if (notedCalls != nullptr) {
        *notedCalls += call;
    }
}

}  // namespace

extern "C" int WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        Note("A");
        if (!AfxInitExtensionModule(moduleRecord, instance)) {
            return 0;
        }
        new CDynLinkLibrary(moduleRecord, FALSE);
    } else if (reason == DLL_PROCESS_DETACH) {
        Note("D");
        AfxTermExtensionModule(moduleRecord, FALSE);
    }
    return 1;
}

MODULE_EXPORT void NoteCalls(std::string* notes) {
    notedCalls = notes;
}

MODULE_EXPORT CRuntimeClass* OwnClass() {
    return RUNTIME_CLASS(MODULE_CLASS);
}

MODULE_EXPORT CRuntimeClass* TwinClass() {
    return RUNTIME_CLASS(CModuleTwin);
}

MODULE_EXPORT AFX_EXTENSION_MODULE* ModuleRecord() {
    return &moduleRecord;
}

MODULE_EXPORT void Throw(int kind) {
    switch (kind) {
        case kThrowArchiveException:
            AfxThrowArchiveException(CArchiveException::badClass, "module.doc");
        case kThrowUserException:
            AfxThrowUserException();
        default:
            throw new COwnException;
    }
}

// A module that refuses to be loaded. On ELF it stays in memory all the same, outside the chain.
#include <afxdllx.h>

#include "ModuleInterface.h"

namespace {

AFX_EXTENSION_MODULE moduleRecord = {};
char notes[8] = {};
int noteCount = 0;

}  // namespace

extern "C" int WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        notes[noteCount++] = 'A';
        AfxInitExtensionModule(moduleRecord, instance);
        new CDynLinkLibrary(moduleRecord, FALSE);
        return 0;
    }
    notes[noteCount++] = 'D';
    AfxTermExtensionModule(moduleRecord, FALSE);
    return 1;
}

MODULE_EXPORT const char* OwnNotes() {
    return notes;
}

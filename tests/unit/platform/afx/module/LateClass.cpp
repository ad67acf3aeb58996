// Linked behind the entry point, so this class registers when the module is initialised already.
#include "ModuleInterface.h"

class CModuleLate : public CObject {
    DECLARE_SERIAL(CModuleLate)
};
IMPLEMENT_SERIAL(CModuleLate, CObject, 1)

MODULE_EXPORT CRuntimeClass* LateClass() {
    return RUNTIME_CLASS(CModuleLate);
}

// A shared library that registers a class and is no extension module.
#include "ModuleInterface.h"

class CPlainItem : public CObject {
    DECLARE_SERIAL(CPlainItem)
};
IMPLEMENT_SERIAL(CPlainItem, CObject, 1)

MODULE_EXPORT CRuntimeClass* OwnClass() {
    return RUNTIME_CLASS(CPlainItem);
}

// The class of the module that refuses; linked before its entry point, as class registrations are.
#include "ModuleInterface.h"

class CRefused : public CObject {
    DECLARE_SERIAL(CRefused)
};
IMPLEMENT_SERIAL(CRefused, CObject, 1)

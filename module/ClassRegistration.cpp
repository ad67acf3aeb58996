// Enters the two serializable classes into the platform's list when the module is loaded, before its
// entry point joins the host's chain of extension modules.

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"

namespace {

const AFX_CLASSINIT registerMesh(RUNTIME_CLASS(Vr::VraMesh));
const AFX_CLASSINIT registerMeshPrimitive(RUNTIME_CLASS(Vr::VraMeshPrimitive));

}  // namespace

// Operations whose units are still to come. Each answers that it is not supported, and its entry
// leaves this file when its unit arrives.

#include "mesh/VraMeshPrimitive.h"

namespace Vr {

// mesh/DeleteUnusedVertices.cpp

void VraMeshPrimitive::DeleteUnusedVertices() {
    AfxThrowNotSupportedException();
}

void VraMeshPrimitive::DeleteUnusedVertices(
    const std::vector<boost::intrusive_ptr<VraMeshPrimitive>>&) {
    AfxThrowNotSupportedException();
}

}  // namespace Vr

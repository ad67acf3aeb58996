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

// mesh/Merge.cpp

bool VraMeshPrimitive::Merge(boost::intrusive_ptr<VraMeshPrimitive>,
                             const std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>&,
                             std::vector<std::vector<int>>*, std::vector<std::vector<int>>*,
                             std::vector<std::vector<int>>*) {
    AfxThrowNotSupportedException();
}

}  // namespace Vr

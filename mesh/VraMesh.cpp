// The mesh object: its run-time class record and what it forwards to the primitive.

#include "mesh/VraMesh.h"

#include "mesh/detail/CreateObject.h"

namespace Vr {

CRuntimeClass VraMesh::classVraMesh = {"VraMesh",
                                       sizeof(VraMesh),
                                       VERSIONABLE_SCHEMA | detail::kStreamSchema,
                                       &VraMesh::CreateObject,
                                       &VraMesh::_GetBaseClass,
                                       nullptr,
                                       nullptr};

VraMesh::VraMesh() = default;
VraMesh::~VraMesh() = default;

CObject* PASCAL VraMesh::CreateObject() {
    return detail::CreateObjectOrNull<VraMesh>();
}

CRuntimeClass* PASCAL VraMesh::_GetBaseClass() {
    return VraMeshPrimitive::GetThisClass();
}

CRuntimeClass* PASCAL VraMesh::GetThisClass() {
    return &classVraMesh;
}

CRuntimeClass* VraMesh::GetRuntimeClass() const {
    return GetThisClass();
}

bool VraMesh::DeepCopy(boost::intrusive_ptr<VraMesh> target, VruDuplicateMap& map) const {
    return VraMeshPrimitive::DeepCopy(target, map);
}

void VraMesh::Serialize(CArchive& archive) {
    VraMeshPrimitive::Serialize(archive);
}

boost::intrusive_ptr<VraMeshPrimitive> VraMesh::OnDuplicate(VruDuplicateMap& map) const {
    return VraMeshPrimitive::OnDuplicate(map);
}

}  // namespace Vr

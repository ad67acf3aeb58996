#pragma once

#include "mesh/VraMeshPrimitive.h"

namespace Vr {

/// Reads an object with `CArchive::ReadObject`; serialize/MeshSerializers.h tells the whole.
VERIDANE_MESH_API CArchive& AFXAPI operator>>(CArchive& archive, VraMesh*& mesh);

/// The mesh object that a host stores in its documents.
///
/// A `VraMeshPrimitive` under a run-time class of its own, so that an archive can tell a mesh of the
/// document from a bare primitive, and so that duplication and loading create the right class. It
/// adds no data and no behaviour.
class VERIDANE_MESH_API VraMesh : public VraMeshPrimitive {
    DECLARE_SERIAL(VraMesh)

public:
    /// Creates an empty mesh: crease angle 0, all handles empty, reference count 0.
    VraMesh();
    ~VraMesh() override;

    /// Copies into another mesh exactly as `VraMeshPrimitive::DeepCopy` does.
    bool DeepCopy(boost::intrusive_ptr<VraMesh> target, VruDuplicateMap& map) const;

protected:
    /// Stores or loads the body of a primitive, which is the whole of a mesh.
    void Serialize(CArchive& archive) override;
    boost::intrusive_ptr<VraMeshPrimitive> OnDuplicate(VruDuplicateMap& map) const override;
};

}  // namespace Vr

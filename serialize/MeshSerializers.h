#pragma once

#include <afx.h>

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"
#include "module/Export.h"

namespace Vr {

/// @name Index records on any archive
/// A `TriangleIndex` is three 64-bit numbers. An `IndexArray` is a flag byte, a 64-bit count and the
/// elements: 24 bytes each in the per-vertex form, 8 in the per-triangle form.
///
/// - Deliberate: the flag byte is 0 for the per-vertex form (alternative 1) and 1 for the
///   per-triangle form (alternative 0). When loading, every value but 0 means the per-triangle form.
/// - Throws: `CArchiveException*` with cause `readOnly` when storing on a loading archive,
///   `writeOnly` when loading from a storing one, `endOfFile` for a short stream;
///   `std::length_error` "vector too long" for a count no vector can have; `std::bad_alloc`. An
///   `IndexArray` has by then the stored form and the elements that came whole.
/// @{
VERIDANE_MESH_API CArchive& operator<<(CArchive& archive,
                                       const VraMeshPrimitive::TriangleIndex& triangle);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive,
                                       VraMeshPrimitive::TriangleIndex& triangle);
VERIDANE_MESH_API CArchive& operator<<(CArchive& archive,
                                       const VraMeshPrimitive::IndexArray& indices);
VERIDANE_MESH_API CArchive& operator>>(CArchive& archive, VraMeshPrimitive::IndexArray& indices);
/// @}

/// @name Objects on a `VrmArchive`
/// Load an object with `CArchive::ReadObject`; store one with `CArchive::WriteObject` or `<<`.
///
/// - Result: `mesh` is the object, or null where the stream holds a null object. A new object has
///   reference count 0: put it into a `boost::intrusive_ptr` at once. An object met before on this
///   archive is the same one again.
/// - Throws: `CArchiveException*` with cause `badClass` when the stored class is neither the asked
///   one nor derived from it, and what `ReadObject` and `VraMeshPrimitive::Serialize` throw; `mesh`
///   is then unchanged.
/// @{
VERIDANE_MESH_API CArchive& AFXAPI operator>>(CArchive& archive, VraMeshPrimitive*& mesh);
VERIDANE_MESH_API CArchive& AFXAPI operator>>(CArchive& archive, VraMesh*& mesh);
/// @}

}  // namespace Vr

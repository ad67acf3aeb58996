/// Documents that hold more than meshes, written down by the layout of docs/sample-host.md.
#pragma once

#include "golden/OpenNurbsRecords.h"
#include "host/HostTest.h"
#include "support/Kernel.h"

namespace Vr::test {

/// The header of a document that holds this many objects of any kind.
inline ByteScript ObjectHeader(std::uint64_t objectCount) {
    return ByteScript()
        .Text("VRDM", "magic word")
        .Dword(2, "document format")
        .Qword(objectCount, "object count");
}

/// An object behind its kind and, unless it is a mesh, its length.
/// @{
inline ByteScript MeshObject(const ByteScript& mesh) {
    return ByteScript().Dword(1, "kind: mesh").Append(mesh);
}
inline ByteScript Framed(std::uint32_t kind, const ByteScript& content) {
    return ByteScript()
        .Dword(kind, "kind")
        .Dword(static_cast<std::uint32_t>(content.Bytes().size()), "length")
        .Append(content);
}
inline ByteScript CurveObject() {
    return Framed(2, golden::StraightCurve());
}
inline ByteScript SurfaceObject() {
    return Framed(3, golden::WeightedSurface());
}
inline ByteScript MaterialObject() {
    return Framed(4, golden::OakMaterial(StoredMaterialIndex(7)));
}
/// @}

/// A mesh, a curve, a surface, a material and another mesh.
inline ByteScript OneOfEachKind() {
    return ObjectHeader(5)
        .Append(MeshObject(FirstEmptyMesh()))
        .Append(CurveObject())
        .Append(SurfaceObject())
        .Append(MaterialObject())
        .Append(MeshObject(LaterEmptyMesh()))
        .Append(DocumentEnd());
}

}  // namespace Vr::test

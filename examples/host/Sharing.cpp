// Handles are counted once and the counts kept up to date, so that of n holders n - 1 get copies. The
// texture-UV arrays do not occur: documents do not store them.

#include "Sharing.h"

#include <map>
#include <utility>

namespace Host {

using Vr::VraMeshPrimitive;

SharedArrays::SharedArrays(const Document& document) {
    for (const Mesh& mesh : MeshesOf(document)) {
        Count(mesh->GetModifiableVertexArray().get());
        Count(mesh->GetModifiableNormalArray().get());
        Count(mesh->GetModifiableColorArray().get());
        Count(mesh->GetModifiableVertexIndexArray().get());
        Count(mesh->GetModifiableNormalIndexArray().get());
        Count(mesh->GetModifiableColorIndexArray().get());
        Count(mesh->GetModifiableUVArray().get());
    }
}

void SharedArrays::MakePrivate(VraMeshPrimitive& mesh) {
    CopyIfShared(mesh, mesh.GetModifiableVertexArray(), &VraMeshPrimitive::SetVertexArray);
    CopyIfShared(mesh, mesh.GetModifiableNormalArray(), &VraMeshPrimitive::SetNormalArray);
    CopyIfShared(mesh, mesh.GetModifiableColorArray(), &VraMeshPrimitive::SetColorArray);
    MakeTriangleListsPrivate(mesh);
}

void SharedArrays::MakeTriangleListsPrivate(VraMeshPrimitive& mesh) {
    CopyIfShared(mesh, mesh.GetModifiableVertexIndexArray(),
                 &VraMeshPrimitive::SetVertexIndexArray);
    CopyIfShared(mesh, mesh.GetModifiableNormalIndexArray(),
                 &VraMeshPrimitive::SetNormalIndexArray);
    CopyIfShared(mesh, mesh.GetModifiableColorIndexArray(), &VraMeshPrimitive::SetColorIndexArray);
    CopyIfShared(mesh, mesh.GetModifiableUVArray(), &VraMeshPrimitive::SetUVArray);
}

void SharedArrays::Count(const void* array) {
    if (array != nullptr)
        ++holderCountOf_[array];
}

template <class Array>
void SharedArrays::CopyIfShared(VraMeshPrimitive& mesh, const std::shared_ptr<Array>& array,
                                void (VraMeshPrimitive::*install)(std::shared_ptr<Array>)) {
    if (!array)
        return;
    size_t& holderCount = holderCountOf_[array.get()];
    if (holderCount <= 1)
        return;
    --holderCount;
    (mesh.*install)(std::make_shared<Array>(*array));
    ++copiedCount_;
}

void SeparateVertexNumbers(const Document& document) {
    using Triangles = std::shared_ptr<VraMeshPrimitive::VertexIndexArray>;
    // the array that objects of this vertex array are to hold instead of this vertex index array
    std::map<std::pair<const void*, const void*>, Triangles> separateFor;
    std::map<const void*, const void*> firstVerticesOf;
    for (const Mesh& mesh : MeshesOf(document)) {
        const Triangles triangles = mesh->GetModifiableVertexIndexArray();
        const void* const vertices = mesh->GetModifiableVertexArray().get();
        if (!triangles ||
            firstVerticesOf.emplace(triangles.get(), vertices).first->second == vertices)
            continue;
        Triangles& separate = separateFor[{vertices, triangles.get()}];
        if (!separate)
            separate = std::make_shared<VraMeshPrimitive::VertexIndexArray>(*triangles);
        mesh->SetVertexIndexArray(separate);
    }
}

}  // namespace Host

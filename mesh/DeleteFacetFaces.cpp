// The same ordered removal on every array with entries a triangle. The list is cut to what the walk
// can meet once, at the start; each array then takes the numbers below its own length.

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/OrderedRemoval.h"

namespace Vr {

namespace {

void RemoveFromForm(VraMeshPrimitive::IndexArray& numbers, bool isPerVertex,
                    const detail::AscendingNumbers& faces) {
    using IndexArray = VraMeshPrimitive::IndexArray;
    if (isPerVertex)
        detail::RemoveListed(boost::get<IndexArray::PerVertex>(numbers.data), faces);
    else
        detail::RemoveListed(boost::get<IndexArray::PerTriangle>(numbers.data), faces);
}

}  // namespace

size_t VraMeshPrimitive::DeleteFacetFaces(const std::vector<size_t>& faces) {
    const auto triangles = std::const_pointer_cast<VertexIndexArray>(GetVertexIndexArray());
    if (!triangles)
        return 0;
    const size_t oldTriangleCount = triangles->size();
    if (faces.empty())
        return oldTriangleCount;

    const detail::AscendingNumbers listed(faces);
    detail::RemoveListed(*triangles, listed);

    const auto normalNumbers = std::const_pointer_cast<IndexArray>(GetNormalIndexArray());
    if (normalNumbers)
        RemoveFromForm(*normalNumbers, IsNormalPerVertex(), listed);

    const auto colorNumbers = std::const_pointer_cast<IndexArray>(GetColorIndexArray());
    if (colorNumbers && colorNumbers != normalNumbers)
        RemoveFromForm(*colorNumbers, IsColorPerVertex(), listed);

    const auto textureUVNumbers =
        std::const_pointer_cast<TextureUVIndexArray>(GetTextureUVIndexArray());
    if (textureUVNumbers && textureUVNumbers != triangles) {
        // Texture-UVs are not cut, so UVs that are the same array get one of their own.
        const auto textureUVs = GetTextureUVArray();
        if (textureUVs == GetUVArray() && textureUVs)
            SetUVArray(std::make_shared<UVArray>(*textureUVs));
        detail::RemoveListed(*textureUVNumbers, listed);
    }

    const auto uvs = std::const_pointer_cast<UVArray>(GetUVArray());
    if (uvs && uvs->size() == 3 * oldTriangleCount)
        detail::RemoveListed<3>(*uvs, listed);
    return triangles->size();
}

}  // namespace Vr

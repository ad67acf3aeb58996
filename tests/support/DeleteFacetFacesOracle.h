/// A slow face deletion: one walk an array, with a cursor on the list, into new vectors.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// Walks the elements with a cursor on the list. A group of `group` elements has one number; its
/// last element moves the cursor on.
template <class Element>
std::vector<Element> OracleWithout(const std::vector<Element>& elements,
                                   const std::vector<size_t>& list, size_t group = 1) {
    std::vector<Element> kept;
    size_t cursor = 0;
    for (size_t position = 0; position < elements.size(); ++position) {
        if (cursor < list.size() && list[cursor] == position / group) {
            if ((position + 1) % group == 0)
                ++cursor;
        } else {
            kept.push_back(elements[position]);
        }
    }
    return kept;
}

/// The capacity that an array is left with: what it had, or the new size where that fills less than
/// half.
inline size_t OracleCapacity(size_t oldCapacity, size_t newSize) {
    return newSize < oldCapacity / 2 ? newSize : oldCapacity;
}

/// Deletes from the members of a plain primitive. Returns what the operation answers.
inline size_t OracleDeleteFacetFaces(VraMeshPrimitive& mesh, const std::vector<size_t>& list) {
    using IndexArray = VraMeshPrimitive::IndexArray;
    const auto triangles = mesh.GetModifiableVertexIndexArray();
    if (!triangles)
        return 0;
    const size_t oldTriangleCount = triangles->size();
    *triangles = OracleWithout(*triangles, list);

    const auto cutForm = [&list](IndexArray& numbers) {
        if (numbers.which() == 1) {
            auto& triples = boost::get<IndexArray::PerVertex>(numbers.data);
            triples = OracleWithout(triples, list);
        } else {
            auto& singles = boost::get<IndexArray::PerTriangle>(numbers.data);
            singles = OracleWithout(singles, list);
        }
    };
    const auto normals = mesh.GetModifiableNormalIndexArray();
    const auto colors = mesh.GetModifiableColorIndexArray();
    if (normals)
        cutForm(*normals);
    if (colors && colors != normals)
        cutForm(*colors);

    const auto textureTriangles = mesh.GetModifiableTextureUVIndexArray();
    if (textureTriangles && textureTriangles != triangles && !list.empty()) {
        const auto textureUVs = mesh.GetModifiableTextureUVArray();
        if (textureUVs && textureUVs == mesh.GetModifiableUVArray())
            mesh.SetUVArray(std::make_shared<VraMeshPrimitive::UVArray>(*textureUVs));
        *textureTriangles = OracleWithout(*textureTriangles, list);
    }
    const auto uvs = mesh.GetModifiableUVArray();
    if (uvs && uvs->size() == 3 * oldTriangleCount)
        *uvs = OracleWithout(*uvs, list, 3);
    return triangles->size();
}

}  // namespace Vr::test

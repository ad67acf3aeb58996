// Edits of the geometry in place. Arrays are reached through the getters that hosts may override, each
// once and in a fixed order, and nothing is installed.

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/UnitVectors.h"

namespace Vr {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using NormalArray = VraMeshPrimitive::NormalArray;

void TransformNormals(const ON_Xform& inverseTranspose, NormalArray& normals) {
    // Blocks that stay in the nearest cache between the two steps.
    constexpr size_t kBlock = 256;
    for (size_t begin = 0; begin < normals.size(); begin += kBlock) {
        const size_t end = std::min(begin + kBlock, normals.size());
        for (size_t normal = begin; normal < end; ++normal)
            normals[normal].Transform(inverseTranspose);
        detail::UnitizeAll(normals.data() + begin, end - begin);
    }
}

void SwapLastTwo(std::vector<TriangleIndex>& triples) {
    for (TriangleIndex& triple : triples)
        std::swap(triple.v[1], triple.v[2]);
}

void SwapLastTwo(VraMeshPrimitive::IndexArray& indices) {
    SwapLastTwo(boost::get<VraMeshPrimitive::IndexArray::PerVertex>(indices.data));
}

// Also edits what a read-only getter answered: both kinds answer the same array.
template <class Array>
void SwapLastTwo(const std::shared_ptr<Array>& array) {
    if (array)
        SwapLastTwo(*std::const_pointer_cast<std::remove_const_t<Array>>(array));
}

}  // namespace

bool VraMeshPrimitive::Transform(const ON_Xform& xf, std::set<void*>& done) {
    const auto normals = GetModifiableNormalArray();
    if (normals && done.insert(normals.get()).second) {
        ON_Xform inverseTranspose = xf;
        // Deliberate: the address stays in the set, and the points stay where they are.
        if (!inverseTranspose.Invert())
            return false;
        inverseTranspose.Transpose();
        TransformNormals(inverseTranspose, *normals);
    }
    const auto vertices = GetModifiableVertexArray();
    if (!vertices || !done.insert(vertices.get()).second)
        return true;
    // A copy, which no point that is written can be a part of, stays in registers.
    const ON_Xform matrix = xf;
    for (ON_3dPoint& point : *vertices)
        point.Transform(matrix);
    return true;
}

bool VraMeshPrimitive::Scale(double factor) {
    const auto vertices = GetModifiableVertexArray();
    if (!vertices)
        return true;
    for (ON_3dPoint& point : *vertices)
        point *= factor;
    return true;
}

void VraMeshPrimitive::ReverseFaces(bool reverseNormals) {
    // Deliberate: an array that serves two roles is swapped once for each, which undoes the swap.
    SwapLastTwo(GetVertexIndexArray());
    if (IsNormalPerVertex())
        SwapLastTwo(GetNormalIndexArray());
    if (IsColorPerVertex())
        SwapLastTwo(GetModifiableColorIndexArray());
    SwapLastTwo(GetTextureUVIndexArray());
    if (!reverseNormals)
        return;
    const auto normals = std::const_pointer_cast<NormalArray>(GetNormalArray());
    if (!normals)
        return;
    for (ON_3dVector& normal : *normals)
        normal.Reverse();
}

}  // namespace Vr

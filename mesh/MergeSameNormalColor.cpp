// Normals and colours are merged alike: the values that the index array uses, in whichever of its
// forms, by the exact merge of mesh/detail/ExactMerge.h.

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/ExactMerge.h"

namespace Vr {

namespace {

using IndexArray = VraMeshPrimitive::IndexArray;

template <class Value>
void MergeIndexed(std::vector<Value>& values, IndexArray& indices, bool isPerVertex) {
    const detail::ArrayRole role(values);
    if (isPerVertex)
        detail::MergeEqual(role, boost::get<IndexArray::PerVertex>(indices.data));
    else
        detail::MergeEqual(role, boost::get<IndexArray::PerTriangle>(indices.data));
}

}  // namespace

void VraMeshPrimitive::OnMergeSameNormal() {
    const auto normals = std::const_pointer_cast<NormalArray>(GetNormalArray());
    const auto indices = std::const_pointer_cast<IndexArray>(GetNormalIndexArray());
    if (normals && indices)
        MergeIndexed(*normals, *indices, IsNormalPerVertex());
}

void VraMeshPrimitive::OnMergeSameColor() {
    const auto colors = std::const_pointer_cast<ColorArray>(GetColorArray());
    const auto indices = std::const_pointer_cast<IndexArray>(GetColorIndexArray());
    if (colors && indices)
        MergeIndexed(*colors, *indices, IsColorPerVertex());
}

}  // namespace Vr

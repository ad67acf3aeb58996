// Duplication with sharing kept: an array is copied once a pass, whatever number of handles of
// whatever number of primitives refer to it. Arrays are recognised by address.

#include <new>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/VruDuplicateMap.h"

namespace Vr {

namespace {

// Points `target` at the pass's copy of the source array, made here when it is the first meeting.
template <class Array>
void CopyArray(const std::shared_ptr<Array>& source, std::shared_ptr<Array>& target,
               std::unordered_map<const void*, std::shared_ptr<void>>& copyOfArray) {
    // Both handles are one when a primitive is copied onto itself.
    const Array* const original = source.get();
    if (!original)
        return;
    const auto known = copyOfArray.find(original);
    if (known != copyOfArray.end()) {
        target = std::static_pointer_cast<Array>(known->second);
        return;
    }
    target = std::make_shared<Array>(*original);
    copyOfArray.emplace(original, target);
}

template <class Array>
std::shared_ptr<Array> Modifiable(const std::shared_ptr<const Array>& handle) {
    return std::const_pointer_cast<Array>(handle);
}

}  // namespace

boost::intrusive_ptr<VraMeshPrimitive> VraMeshPrimitive::Duplicate() const {
    VruDuplicateMap map;
    return Duplicate(map);
}

boost::intrusive_ptr<VraMeshPrimitive> VraMeshPrimitive::Duplicate(VruDuplicateMap& map) const {
    const auto known = map.duplicateOf_.find(this);
    if (known != map.duplicateOf_.end())
        return boost::intrusive_ptr<VraMeshPrimitive>(known->second);
    const boost::intrusive_ptr<VraMeshPrimitive> duplicate = OnDuplicate(map);
    if (duplicate)
        map.duplicateOf_[this] = duplicate.get();
    return duplicate;
}

boost::intrusive_ptr<VraMeshPrimitive> VraMeshPrimitive::OnDuplicate(VruDuplicateMap& map) const {
    CRuntimeClass* const runtimeClass = GetRuntimeClass();
    if (!runtimeClass->m_pfnCreateObject)
        return nullptr;
    const boost::intrusive_ptr<VraMeshPrimitive> duplicate(
        static_cast<VraMeshPrimitive*>(runtimeClass->CreateObject()));
    if (!duplicate)
        throw std::bad_alloc();
    if (!DeepCopy(duplicate, map))
        // LCOV_EXCL_LINE: `DeepCopy` as it stands always answers true
        return nullptr;
    return duplicate;
}

bool VraMeshPrimitive::DeepCopy(boost::intrusive_ptr<VraMeshPrimitive> target,
                                VruDuplicateMap& map) const {
    target->creaseAngle_ = creaseAngle_;
    CopyArray(vertexArray_, target->vertexArray_, map.copyOfArray_);
    CopyArray(normalArray_, target->normalArray_, map.copyOfArray_);
    CopyArray(colorArray_, target->colorArray_, map.copyOfArray_);
    CopyArray(vertexIndexArray_, target->vertexIndexArray_, map.copyOfArray_);
    CopyArray(textureUVIndexArray_, target->textureUVIndexArray_, map.copyOfArray_);
    CopyArray(textureUVArray_, target->textureUVArray_, map.copyOfArray_);
    CopyArray(normalIndexArray_, target->normalIndexArray_, map.copyOfArray_);
    CopyArray(colorIndexArray_, target->colorIndexArray_, map.copyOfArray_);
    return true;
}

void VraMeshPrimitive::ShallowCopy(boost::intrusive_ptr<VraMeshPrimitive> target) {
    target->creaseAngle_ = creaseAngle_;
    target->vertexArray_ = Modifiable(GetVertexArray());
    target->normalArray_ = Modifiable(GetNormalArray());
    target->colorArray_ = Modifiable(GetColorArray());
    target->vertexIndexArray_ = Modifiable(GetVertexIndexArray());
    target->textureUVArray_ = Modifiable(GetTextureUVArray());
    target->textureUVIndexArray_ = Modifiable(GetTextureUVIndexArray());
    target->normalIndexArray_ = Modifiable(GetNormalIndexArray());
    target->colorIndexArray_ = Modifiable(GetColorIndexArray());
}

}  // namespace Vr

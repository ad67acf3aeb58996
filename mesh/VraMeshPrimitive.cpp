// The class itself: run-time class record, life cycle, accessors, state queries, reference count and
// the weight setting. Each operation on the arrays has a unit of its own.

#include "mesh/VraMeshPrimitive.h"

#include "mesh/VraMesh.h"
#include "mesh/detail/CreateObject.h"

namespace Vr {

// An aggregate of constants, so that it is initialised before any constructor runs: registration
// links records into a list and must never be overwritten.
CRuntimeClass VraMeshPrimitive::classVraMeshPrimitive = {"VraMeshPrimitive",
                                                         sizeof(VraMeshPrimitive),
                                                         VERSIONABLE_SCHEMA | detail::kStreamSchema,
                                                         &VraMeshPrimitive::CreateObject,
                                                         &VraMeshPrimitive::_GetBaseClass,
                                                         nullptr,
                                                         nullptr};

VraMeshPrimitive::VertexNormalWeightType VraMeshPrimitive::vertexNormalWeightType_ = Area;

VraMeshPrimitive::VraMeshPrimitive() = default;
VraMeshPrimitive::~VraMeshPrimitive() = default;

CObject* PASCAL VraMeshPrimitive::CreateObject() {
    return detail::CreateObjectOrNull<VraMeshPrimitive>();
}

CRuntimeClass* PASCAL VraMeshPrimitive::_GetBaseClass() {
    return RUNTIME_CLASS(CObject);
}

CRuntimeClass* PASCAL VraMeshPrimitive::GetThisClass() {
    return &classVraMeshPrimitive;
}

CRuntimeClass* VraMeshPrimitive::GetRuntimeClass() const {
    return GetThisClass();
}

void VraMeshPrimitive::AssertValid() const {}

void VraMeshPrimitive::Dump(CDumpContext&) const {}

bool VraMeshPrimitive::IsNormalPerVertex() const {
    return normalIndexArray_ && normalIndexArray_->which() == 1;
}

bool VraMeshPrimitive::IsColorPerVertex() const {
    return colorIndexArray_ && colorIndexArray_->which() == 1;
}

bool VraMeshPrimitive::IsEmpty() const {
    return !vertexIndexArray_ || vertexIndexArray_->empty();
}

void VraMeshPrimitive::SetVertexArray(std::shared_ptr<VertexArray> vertices) {
    vertexArray_ = std::move(vertices);
}

std::shared_ptr<const VraMeshPrimitive::VertexArray> VraMeshPrimitive::GetVertexArray() const {
    return vertexArray_;
}

std::shared_ptr<VraMeshPrimitive::VertexArray> VraMeshPrimitive::GetModifiableVertexArray() {
    return vertexArray_;
}

void VraMeshPrimitive::SetNormalArray(std::shared_ptr<NormalArray> normals) {
    normalArray_ = std::move(normals);
}

std::shared_ptr<const VraMeshPrimitive::NormalArray> VraMeshPrimitive::GetNormalArray() const {
    return normalArray_;
}

std::shared_ptr<VraMeshPrimitive::NormalArray> VraMeshPrimitive::GetModifiableNormalArray() {
    return normalArray_;
}

void VraMeshPrimitive::SetColorArray(std::shared_ptr<ColorArray> colors) {
    colorArray_ = std::move(colors);
}

std::shared_ptr<const VraMeshPrimitive::ColorArray> VraMeshPrimitive::GetColorArray() const {
    return colorArray_;
}

std::shared_ptr<VraMeshPrimitive::ColorArray> VraMeshPrimitive::GetModifiableColorArray() {
    return colorArray_;
}

void VraMeshPrimitive::SetVertexIndexArray(std::shared_ptr<VertexIndexArray> triangles) {
    vertexIndexArray_ = std::move(triangles);
}

std::shared_ptr<const VraMeshPrimitive::VertexIndexArray> VraMeshPrimitive::GetVertexIndexArray()
    const {
    return vertexIndexArray_;
}

std::shared_ptr<VraMeshPrimitive::VertexIndexArray>
VraMeshPrimitive::GetModifiableVertexIndexArray() {
    return vertexIndexArray_;
}

void VraMeshPrimitive::SetNormalIndexArray(std::shared_ptr<IndexArray> normalIndices) {
    normalIndexArray_ = std::move(normalIndices);
}

std::shared_ptr<const VraMeshPrimitive::IndexArray> VraMeshPrimitive::GetNormalIndexArray() const {
    return normalIndexArray_;
}

std::shared_ptr<VraMeshPrimitive::IndexArray> VraMeshPrimitive::GetModifiableNormalIndexArray() {
    return normalIndexArray_;
}

void VraMeshPrimitive::SetColorIndexArray(std::shared_ptr<IndexArray> colorIndices) {
    colorIndexArray_ = std::move(colorIndices);
}

std::shared_ptr<const VraMeshPrimitive::IndexArray> VraMeshPrimitive::GetColorIndexArray() const {
    return colorIndexArray_;
}

std::shared_ptr<VraMeshPrimitive::IndexArray> VraMeshPrimitive::GetModifiableColorIndexArray() {
    return colorIndexArray_;
}

void VraMeshPrimitive::SetTextureUVIndexArray(
    std::shared_ptr<TextureUVIndexArray> textureUVIndices) {
    textureUVIndexArray_ = std::move(textureUVIndices);
}

std::shared_ptr<const VraMeshPrimitive::TextureUVIndexArray>
VraMeshPrimitive::GetTextureUVIndexArray() const {
    return textureUVIndexArray_;
}

std::shared_ptr<VraMeshPrimitive::TextureUVIndexArray>
VraMeshPrimitive::GetModifiableTextureUVIndexArray() {
    return textureUVIndexArray_;
}

void VraMeshPrimitive::SetUVArray(std::shared_ptr<UVArray> uvs) {
    uvArray_ = std::move(uvs);
}

std::shared_ptr<const VraMeshPrimitive::UVArray> VraMeshPrimitive::GetUVArray() const {
    return uvArray_;
}

std::shared_ptr<VraMeshPrimitive::UVArray> VraMeshPrimitive::GetModifiableUVArray() {
    return uvArray_;
}

void VraMeshPrimitive::SetTextureUVArray(std::shared_ptr<TextureUVArray> textureUVs) {
    textureUVArray_ = std::move(textureUVs);
}

std::shared_ptr<const VraMeshPrimitive::TextureUVArray> VraMeshPrimitive::GetTextureUVArray()
    const {
    return textureUVArray_;
}

std::shared_ptr<VraMeshPrimitive::TextureUVArray> VraMeshPrimitive::GetModifiableTextureUVArray() {
    return textureUVArray_;
}

double VraMeshPrimitive::GetCreaseAngle() const {
    return creaseAngle_;
}

void VraMeshPrimitive::SetCreaseAngle(double creaseAngle) {
    creaseAngle_ = creaseAngle;
}

VraMeshPrimitive::VertexNormalWeightType VraMeshPrimitive::GetVertexNormalWeightType() {
    return vertexNormalWeightType_;
}

void VraMeshPrimitive::SetVertexNormalWeightType(VertexNormalWeightType weightType) {
    vertexNormalWeightType_ = weightType;
}

void VraMeshPrimitive::AddRef() const {
    referenceCount_.fetch_add(1);
}

void VraMeshPrimitive::Release() const {
    if (referenceCount_.fetch_sub(1) == 1)
        delete this;
}

void intrusive_ptr_add_ref(const VraMeshPrimitive* mesh) {
    mesh->AddRef();
}

void intrusive_ptr_release(const VraMeshPrimitive* mesh) {
    mesh->Release();
}

void intrusive_ptr_add_ref(const VraMesh* mesh) {
    mesh->AddRef();
}

void intrusive_ptr_release(const VraMesh* mesh) {
    mesh->Release();
}

}  // namespace Vr

#include "support/RecordingPrimitive.h"

namespace Vr::test {

CRuntimeClass* RecordingPrimitive::GetRuntimeClass() const {
    calls_.push_back("GetRuntimeClass");
    return VraMeshPrimitive::GetRuntimeClass();
}

void RecordingPrimitive::Serialize(CArchive& archive) {
    calls_.push_back("Serialize");
    VraMeshPrimitive::Serialize(archive);
}

void RecordingPrimitive::AssertValid() const {
    calls_.push_back("AssertValid");
    VraMeshPrimitive::AssertValid();
}

void RecordingPrimitive::Dump(CDumpContext& context) const {
    calls_.push_back("Dump");
    VraMeshPrimitive::Dump(context);
}

boost::intrusive_ptr<VraMeshPrimitive> RecordingPrimitive::OnDuplicate(VruDuplicateMap& map) const {
    calls_.push_back("OnDuplicate");
    return VraMeshPrimitive::OnDuplicate(map);
}

bool RecordingPrimitive::IsNormalPerVertex() const {
    calls_.push_back("IsNormalPerVertex");
    return VraMeshPrimitive::IsNormalPerVertex();
}

bool RecordingPrimitive::IsColorPerVertex() const {
    calls_.push_back("IsColorPerVertex");
    return VraMeshPrimitive::IsColorPerVertex();
}

bool RecordingPrimitive::IsEmpty() const {
    calls_.push_back("IsEmpty");
    return VraMeshPrimitive::IsEmpty();
}

void RecordingPrimitive::SetVertexArray(std::shared_ptr<VertexArray> vertices) {
    calls_.push_back("SetVertexArray");
    VraMeshPrimitive::SetVertexArray(std::move(vertices));
}

std::shared_ptr<const VraMeshPrimitive::VertexArray> RecordingPrimitive::GetVertexArray() const {
    calls_.push_back("GetVertexArray");
    return substitutes.vertexArray ? *substitutes.vertexArray : VraMeshPrimitive::GetVertexArray();
}

std::shared_ptr<VraMeshPrimitive::VertexArray> RecordingPrimitive::GetModifiableVertexArray() {
    calls_.push_back("GetModifiableVertexArray");
    return substitutes.vertexArray ? *substitutes.vertexArray
                                   : VraMeshPrimitive::GetModifiableVertexArray();
}

void RecordingPrimitive::SetNormalArray(std::shared_ptr<NormalArray> normals) {
    calls_.push_back("SetNormalArray");
    VraMeshPrimitive::SetNormalArray(std::move(normals));
}

std::shared_ptr<const VraMeshPrimitive::NormalArray> RecordingPrimitive::GetNormalArray() const {
    calls_.push_back("GetNormalArray");
    return substitutes.normalArray ? *substitutes.normalArray : VraMeshPrimitive::GetNormalArray();
}

std::shared_ptr<VraMeshPrimitive::NormalArray> RecordingPrimitive::GetModifiableNormalArray() {
    calls_.push_back("GetModifiableNormalArray");
    return substitutes.normalArray ? *substitutes.normalArray
                                   : VraMeshPrimitive::GetModifiableNormalArray();
}

void RecordingPrimitive::SetColorArray(std::shared_ptr<ColorArray> colors) {
    calls_.push_back("SetColorArray");
    VraMeshPrimitive::SetColorArray(std::move(colors));
}

std::shared_ptr<const VraMeshPrimitive::ColorArray> RecordingPrimitive::GetColorArray() const {
    calls_.push_back("GetColorArray");
    return substitutes.colorArray ? *substitutes.colorArray : VraMeshPrimitive::GetColorArray();
}

std::shared_ptr<VraMeshPrimitive::ColorArray> RecordingPrimitive::GetModifiableColorArray() {
    calls_.push_back("GetModifiableColorArray");
    return substitutes.colorArray ? *substitutes.colorArray
                                  : VraMeshPrimitive::GetModifiableColorArray();
}

void RecordingPrimitive::SetVertexIndexArray(std::shared_ptr<VertexIndexArray> triangles) {
    calls_.push_back("SetVertexIndexArray");
    VraMeshPrimitive::SetVertexIndexArray(std::move(triangles));
}

std::shared_ptr<const VraMeshPrimitive::VertexIndexArray> RecordingPrimitive::GetVertexIndexArray()
    const {
    calls_.push_back("GetVertexIndexArray");
    return substitutes.vertexIndexArray ? *substitutes.vertexIndexArray
                                        : VraMeshPrimitive::GetVertexIndexArray();
}

std::shared_ptr<VraMeshPrimitive::VertexIndexArray>
RecordingPrimitive::GetModifiableVertexIndexArray() {
    calls_.push_back("GetModifiableVertexIndexArray");
    return substitutes.vertexIndexArray ? *substitutes.vertexIndexArray
                                        : VraMeshPrimitive::GetModifiableVertexIndexArray();
}

void RecordingPrimitive::SetNormalIndexArray(std::shared_ptr<IndexArray> indices) {
    calls_.push_back("SetNormalIndexArray");
    VraMeshPrimitive::SetNormalIndexArray(std::move(indices));
}

std::shared_ptr<const VraMeshPrimitive::IndexArray> RecordingPrimitive::GetNormalIndexArray()
    const {
    calls_.push_back("GetNormalIndexArray");
    return substitutes.normalIndexArray ? *substitutes.normalIndexArray
                                        : VraMeshPrimitive::GetNormalIndexArray();
}

std::shared_ptr<VraMeshPrimitive::IndexArray> RecordingPrimitive::GetModifiableNormalIndexArray() {
    calls_.push_back("GetModifiableNormalIndexArray");
    return substitutes.normalIndexArray ? *substitutes.normalIndexArray
                                        : VraMeshPrimitive::GetModifiableNormalIndexArray();
}

void RecordingPrimitive::SetColorIndexArray(std::shared_ptr<IndexArray> indices) {
    calls_.push_back("SetColorIndexArray");
    VraMeshPrimitive::SetColorIndexArray(std::move(indices));
}

std::shared_ptr<const VraMeshPrimitive::IndexArray> RecordingPrimitive::GetColorIndexArray() const {
    calls_.push_back("GetColorIndexArray");
    return substitutes.colorIndexArray ? *substitutes.colorIndexArray
                                       : VraMeshPrimitive::GetColorIndexArray();
}

std::shared_ptr<VraMeshPrimitive::IndexArray> RecordingPrimitive::GetModifiableColorIndexArray() {
    calls_.push_back("GetModifiableColorIndexArray");
    return substitutes.colorIndexArray ? *substitutes.colorIndexArray
                                       : VraMeshPrimitive::GetModifiableColorIndexArray();
}

void RecordingPrimitive::SetTextureUVIndexArray(std::shared_ptr<TextureUVIndexArray> triangles) {
    calls_.push_back("SetTextureUVIndexArray");
    VraMeshPrimitive::SetTextureUVIndexArray(std::move(triangles));
}

std::shared_ptr<const VraMeshPrimitive::TextureUVIndexArray>
RecordingPrimitive::GetTextureUVIndexArray() const {
    calls_.push_back("GetTextureUVIndexArray");
    return substitutes.textureUVIndexArray ? *substitutes.textureUVIndexArray
                                           : VraMeshPrimitive::GetTextureUVIndexArray();
}

std::shared_ptr<VraMeshPrimitive::TextureUVIndexArray>
RecordingPrimitive::GetModifiableTextureUVIndexArray() {
    calls_.push_back("GetModifiableTextureUVIndexArray");
    return substitutes.textureUVIndexArray ? *substitutes.textureUVIndexArray
                                           : VraMeshPrimitive::GetModifiableTextureUVIndexArray();
}

void RecordingPrimitive::SetUVArray(std::shared_ptr<UVArray> uvs) {
    calls_.push_back("SetUVArray");
    VraMeshPrimitive::SetUVArray(std::move(uvs));
}

std::shared_ptr<const VraMeshPrimitive::UVArray> RecordingPrimitive::GetUVArray() const {
    calls_.push_back("GetUVArray");
    return substitutes.uvArray ? *substitutes.uvArray : VraMeshPrimitive::GetUVArray();
}

std::shared_ptr<VraMeshPrimitive::UVArray> RecordingPrimitive::GetModifiableUVArray() {
    calls_.push_back("GetModifiableUVArray");
    return substitutes.uvArray ? *substitutes.uvArray : VraMeshPrimitive::GetModifiableUVArray();
}

void RecordingPrimitive::SetTextureUVArray(std::shared_ptr<TextureUVArray> uvs) {
    calls_.push_back("SetTextureUVArray");
    VraMeshPrimitive::SetTextureUVArray(std::move(uvs));
}

std::shared_ptr<const VraMeshPrimitive::TextureUVArray> RecordingPrimitive::GetTextureUVArray()
    const {
    calls_.push_back("GetTextureUVArray");
    return substitutes.textureUVArray ? *substitutes.textureUVArray
                                      : VraMeshPrimitive::GetTextureUVArray();
}

std::shared_ptr<VraMeshPrimitive::TextureUVArray>
RecordingPrimitive::GetModifiableTextureUVArray() {
    calls_.push_back("GetModifiableTextureUVArray");
    return substitutes.textureUVArray ? *substitutes.textureUVArray
                                      : VraMeshPrimitive::GetModifiableTextureUVArray();
}

double RecordingPrimitive::GetCreaseAngle() const {
    calls_.push_back("GetCreaseAngle");
    return VraMeshPrimitive::GetCreaseAngle();
}

void RecordingPrimitive::SetCreaseAngle(double creaseAngle) {
    calls_.push_back("SetCreaseAngle");
    VraMeshPrimitive::SetCreaseAngle(creaseAngle);
}

bool RecordingPrimitive::CreateNormalPerTriangle() {
    calls_.push_back("CreateNormalPerTriangle");
    return VraMeshPrimitive::CreateNormalPerTriangle();
}

bool RecordingPrimitive::CreateNormalPerVertex() {
    calls_.push_back("CreateNormalPerVertex");
    return VraMeshPrimitive::CreateNormalPerVertex();
}

double RecordingPrimitive::GetTriangleArea(size_t triangle) const {
    calls_.push_back("GetTriangleArea");
    return VraMeshPrimitive::GetTriangleArea(triangle);
}

bool RecordingPrimitive::SetDataAsBox(const ON_BoundingBox& box) {
    calls_.push_back("SetDataAsBox");
    return VraMeshPrimitive::SetDataAsBox(box);
}

bool RecordingPrimitive::SetDataAsCone(const ON_3dPoint& first, const ON_3dPoint& second,
                                       double radius, size_t segmentCount) {
    calls_.push_back("SetDataAsCone");
    return VraMeshPrimitive::SetDataAsCone(first, second, radius, segmentCount);
}

bool RecordingPrimitive::SetDataAsCylinder(const ON_3dPoint& first, const ON_3dPoint& second,
                                           double radius, size_t segmentCount) {
    calls_.push_back("SetDataAsCylinder");
    return VraMeshPrimitive::SetDataAsCylinder(first, second, radius, segmentCount);
}

void RecordingPrimitive::MergeSameData() {
    calls_.push_back("MergeSameData");
    VraMeshPrimitive::MergeSameData();
}

size_t RecordingPrimitive::DeleteFacetFaces(const std::vector<size_t>& faces) {
    calls_.push_back("DeleteFacetFaces");
    return VraMeshPrimitive::DeleteFacetFaces(faces);
}

void RecordingPrimitive::DeleteUnusedVertices() {
    calls_.push_back("DeleteUnusedVertices");
    VraMeshPrimitive::DeleteUnusedVertices();
}

bool RecordingPrimitive::Transform(const ON_Xform& xf, std::set<void*>& done) {
    calls_.push_back("Transform");
    return VraMeshPrimitive::Transform(xf, done);
}

bool RecordingPrimitive::Scale(double factor) {
    calls_.push_back("Scale");
    return VraMeshPrimitive::Scale(factor);
}

bool RecordingPrimitive::CalcBoundingBox(ON_BoundingBox& box) const {
    calls_.push_back("CalcBoundingBox");
    return VraMeshPrimitive::CalcBoundingBox(box);
}

void RecordingPrimitive::ShallowCopy(boost::intrusive_ptr<VraMeshPrimitive> target) {
    calls_.push_back("ShallowCopy");
    VraMeshPrimitive::ShallowCopy(target);
}

double RecordingPrimitive::CalcVolume(ON_3dPoint reference) const {
    calls_.push_back("CalcVolume");
    return VraMeshPrimitive::CalcVolume(reference);
}

void RecordingPrimitive::GetFreeEdges(std::vector<std::pair<size_t, size_t>>& edges) const {
    calls_.push_back("GetFreeEdges");
    VraMeshPrimitive::GetFreeEdges(edges);
}

void RecordingPrimitive::OnMergeSameVertex() {
    calls_.push_back("OnMergeSameVertex");
    VraMeshPrimitive::OnMergeSameVertex();
}

void RecordingPrimitive::OnMergeSameNormal() {
    calls_.push_back("OnMergeSameNormal");
    VraMeshPrimitive::OnMergeSameNormal();
}

void RecordingPrimitive::OnMergeSameColor() {
    calls_.push_back("OnMergeSameColor");
    VraMeshPrimitive::OnMergeSameColor();
}

bool RecordingPrimitive::OnRemoveDegenerateMesh(VraMeshDegenJudge& judge, bool judgeTriangles) {
    calls_.push_back("OnRemoveDegenerateMesh");
    return VraMeshPrimitive::OnRemoveDegenerateMesh(judge, judgeTriangles);
}

}  // namespace Vr::test

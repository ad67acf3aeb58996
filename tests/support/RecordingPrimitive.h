/// A primitive that notes which of its virtual operations are called, in order.
#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// Overrides every virtual operation but the destructor: notes its name, then forwards to the base
/// class. Protected operations are public here, so that a test can run a hook by itself.
///
/// Array getters answer a substitute where one is set: an operation that reaches its arrays through
/// the accessors then works on the substitutes, one that touches members does not. Setters always
/// set the members.
///
///     boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
///     mesh->substitutes.vertexArray = Vertices({{0, 0, 0}});
///     mesh->IsEmpty();
///     EXPECT_EQ(mesh->Calls(), (std::vector<std::string>{"IsEmpty"}));
///
/// - Result: its run-time class is that of `VraMeshPrimitive`, so its duplicates are plain ones.
class RecordingPrimitive : public VraMeshPrimitive {
public:
    /// What the getters answer instead of the members. A set but empty handle counts: the getter
    /// answers an empty handle then.
    struct Substitutes {
        std::optional<std::shared_ptr<VertexArray>> vertexArray;
        std::optional<std::shared_ptr<NormalArray>> normalArray;
        std::optional<std::shared_ptr<ColorArray>> colorArray;
        std::optional<std::shared_ptr<VertexIndexArray>> vertexIndexArray;
        std::optional<std::shared_ptr<IndexArray>> normalIndexArray;
        std::optional<std::shared_ptr<IndexArray>> colorIndexArray;
        std::optional<std::shared_ptr<TextureUVIndexArray>> textureUVIndexArray;
        std::optional<std::shared_ptr<UVArray>> uvArray;
        std::optional<std::shared_ptr<TextureUVArray>> textureUVArray;
    };
    Substitutes substitutes;

    /// The names of the virtual operations called so far.
    const std::vector<std::string>& Calls() const { return calls_; }
    void ClearCalls() { calls_.clear(); }

    CRuntimeClass* GetRuntimeClass() const override;
    void Serialize(CArchive& archive) override;
    void AssertValid() const override;
    void Dump(CDumpContext& context) const override;
    boost::intrusive_ptr<VraMeshPrimitive> OnDuplicate(VruDuplicateMap& map) const override;
    bool IsNormalPerVertex() const override;
    bool IsColorPerVertex() const override;
    bool IsEmpty() const override;
    void SetVertexArray(std::shared_ptr<VertexArray> vertices) override;
    std::shared_ptr<const VertexArray> GetVertexArray() const override;
    std::shared_ptr<VertexArray> GetModifiableVertexArray() override;
    void SetNormalArray(std::shared_ptr<NormalArray> normals) override;
    std::shared_ptr<const NormalArray> GetNormalArray() const override;
    std::shared_ptr<NormalArray> GetModifiableNormalArray() override;
    void SetColorArray(std::shared_ptr<ColorArray> colors) override;
    std::shared_ptr<const ColorArray> GetColorArray() const override;
    std::shared_ptr<ColorArray> GetModifiableColorArray() override;
    void SetVertexIndexArray(std::shared_ptr<VertexIndexArray> triangles) override;
    std::shared_ptr<const VertexIndexArray> GetVertexIndexArray() const override;
    std::shared_ptr<VertexIndexArray> GetModifiableVertexIndexArray() override;
    void SetNormalIndexArray(std::shared_ptr<IndexArray> indices) override;
    std::shared_ptr<const IndexArray> GetNormalIndexArray() const override;
    std::shared_ptr<IndexArray> GetModifiableNormalIndexArray() override;
    void SetColorIndexArray(std::shared_ptr<IndexArray> indices) override;
    std::shared_ptr<const IndexArray> GetColorIndexArray() const override;
    std::shared_ptr<IndexArray> GetModifiableColorIndexArray() override;
    void SetTextureUVIndexArray(std::shared_ptr<TextureUVIndexArray> triangles) override;
    std::shared_ptr<const TextureUVIndexArray> GetTextureUVIndexArray() const override;
    std::shared_ptr<TextureUVIndexArray> GetModifiableTextureUVIndexArray() override;
    void SetUVArray(std::shared_ptr<UVArray> uvs) override;
    std::shared_ptr<const UVArray> GetUVArray() const override;
    std::shared_ptr<UVArray> GetModifiableUVArray() override;
    void SetTextureUVArray(std::shared_ptr<TextureUVArray> uvs) override;
    std::shared_ptr<const TextureUVArray> GetTextureUVArray() const override;
    std::shared_ptr<TextureUVArray> GetModifiableTextureUVArray() override;
    double GetCreaseAngle() const override;
    void SetCreaseAngle(double creaseAngle) override;
    bool CreateNormalPerTriangle() override;
    bool CreateNormalPerVertex() override;
    double GetTriangleArea(size_t triangle) const override;
    bool SetDataAsBox(const ON_BoundingBox& box) override;
    bool SetDataAsCone(const ON_3dPoint& first, const ON_3dPoint& second, double radius,
                       size_t segmentCount) override;
    bool SetDataAsCylinder(const ON_3dPoint& first, const ON_3dPoint& second, double radius,
                           size_t segmentCount) override;
    void MergeSameData() override;
    size_t DeleteFacetFaces(const std::vector<size_t>& faces) override;
    using VraMeshPrimitive::DeleteUnusedVertices;
    void DeleteUnusedVertices() override;
    bool Transform(const ON_Xform& xf, std::set<void*>& done) override;
    bool Scale(double factor) override;
    bool CalcBoundingBox(ON_BoundingBox& box) const override;
    void ShallowCopy(boost::intrusive_ptr<VraMeshPrimitive> target) override;
    double CalcVolume(ON_3dPoint reference) const override;
    void GetFreeEdges(std::vector<std::pair<size_t, size_t>>& edges) const override;
    void OnMergeSameVertex() override;
    void OnMergeSameNormal() override;
    void OnMergeSameColor() override;
    bool OnRemoveDegenerateMesh(VraMeshDegenJudge& judge, bool judgeTriangles) override;

private:
    mutable std::vector<std::string> calls_;
};

}  // namespace Vr::test

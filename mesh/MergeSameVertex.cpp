// Welding is an exact merge of the positions, or of pairs of position and texture coordinate, that
// the triangles use (mesh/detail/ExactMerge.h). The arrays are exchanged when all else is done.

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/ExactMerge.h"

namespace Vr {

namespace {

using VertexArray = VraMeshPrimitive::VertexArray;
using TextureUVArray = VraMeshPrimitive::TextureUVArray;

class TexturedVertices {
public:
    using Value = detail::TexturedPosition;

    TexturedVertices(VertexArray& positions, TextureUVArray& textureUVs)
        : positions_(positions), textureUVs_(textureUVs) {}

    size_t Count() const { return std::min(positions_.size(), textureUVs_.size()); }
    Value operator[](size_t vertex) const { return {positions_[vertex], textureUVs_[vertex]}; }

    void Exchange(const std::vector<Value>& merged) const {
        VertexArray positions;
        TextureUVArray textureUVs;
        positions.reserve(merged.size());
        textureUVs.reserve(merged.size());
        for (const Value& value : merged) {
            positions.push_back(value.position);
            textureUVs.push_back(value.textureUV);
        }
        positions_.swap(positions);
        textureUVs_.swap(textureUVs);
    }

private:
    VertexArray& positions_;
    TextureUVArray& textureUVs_;
};

}  // namespace

void VraMeshPrimitive::MergeSameData() {
    OnMergeSameVertex();
    OnMergeSameNormal();
    OnMergeSameColor();
}

void VraMeshPrimitive::OnMergeSameVertex() {
    const auto vertices = std::const_pointer_cast<VertexArray>(GetVertexArray());
    if (!vertices)
        return;
    const auto textureUVs = std::const_pointer_cast<TextureUVArray>(GetTextureUVArray());
    const auto triangles = std::const_pointer_cast<VertexIndexArray>(GetVertexIndexArray());
    if (!triangles)
        return;
    if (textureUVs && !textureUVs->empty())
        detail::MergeEqual(TexturedVertices(*vertices, *textureUVs), *triangles);
    else
        detail::MergeEqual(detail::ArrayRole(*vertices), *triangles);
}

}  // namespace Vr

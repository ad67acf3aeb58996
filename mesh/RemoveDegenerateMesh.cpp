// The judge decides over the vertex index array and writes its table; the other index arrays are
// then cut by the table. An array that serves two roles is met once, so that no entry goes twice.

#include "mesh/VraMeshDegenJudge.h"
#include "mesh/VraMeshPrimitive.h"

namespace Vr {

bool VraMeshPrimitive::RemoveDegenerateMesh() {
    const auto triangles = GetModifiableVertexIndexArray();
    VraMeshDegenJudge judge(triangles ? triangles->size() : 0);
    return OnRemoveDegenerateMesh(judge, true);
}

bool VraMeshPrimitive::OnRemoveDegenerateMesh(VraMeshDegenJudge& judge, bool judgeTriangles) {
    const auto triangles = GetModifiableVertexIndexArray();
    if (!triangles)
        return false;

    judge.SetMode(judgeTriangles ? VraMeshDegenJudge::eJudge : VraMeshDegenJudge::eTable);
    const bool anyRemoved = judge.Cut(*triangles);
    // A table may hold marks behind the triangles, or in front of the cursor that was handed in.
    if (!anyRemoved && !judge.IsExistDegen())
        return true;

    const auto cutNumbers = [&judge](IndexArray& numbers, bool isPerVertex) {
        if (isPerVertex)
            judge.Cut(boost::get<IndexArray::PerVertex>(numbers.data));
        else  // Deliberate: by the value of each entry, not by its position.
            judge.CutByValue(boost::get<IndexArray::PerTriangle>(numbers.data));
    };

    const auto normalNumbers = GetModifiableNormalIndexArray();
    if (normalNumbers) {
        judge.SetMode(VraMeshDegenJudge::eTable);
        cutNumbers(*normalNumbers, IsNormalPerVertex());
    }
    const auto colorNumbers = GetModifiableColorIndexArray();
    if (colorNumbers && colorNumbers != normalNumbers) {
        judge.SetMode(VraMeshDegenJudge::eTable);
        cutNumbers(*colorNumbers, IsColorPerVertex());
    }
    const auto textureUVNumbers = GetModifiableTextureUVIndexArray();
    if (textureUVNumbers && textureUVNumbers != triangles) {
        judge.SetMode(VraMeshDegenJudge::eTable);
        judge.Cut(*textureUVNumbers);
    }
    return true;
}

}  // namespace Vr

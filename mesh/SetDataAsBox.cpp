// The box from constant tables: which corner, which triangles, which normal. Only the corner points
// come from the argument.

#include "mesh/VraMeshPrimitive.h"

namespace Vr {

namespace {

constexpr int kCorners[8][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                                {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};

struct Side {
    VraMeshPrimitive::TriangleIndex triangles[2];
    double normal[3];
};

constexpr Side kSides[6] = {
    {{{{0, 2, 1}}, {{0, 3, 2}}}, {0, 0, -1}},  // bottom
    {{{{0, 1, 5}}, {{0, 5, 4}}}, {0, -1, 0}},  // front
    {{{{1, 2, 6}}, {{1, 6, 5}}}, {1, 0, 0}},   // right
    {{{{2, 3, 6}}, {{6, 3, 7}}}, {0, 1, 0}},   // back; Deliberate: its second triangle starts at 6
    {{{{0, 4, 3}}, {{3, 4, 7}}}, {-1, 0, 0}},  // left
    {{{{4, 5, 6}}, {{4, 6, 7}}}, {0, 0, 1}}};  // top

}  // namespace

bool VraMeshPrimitive::SetDataAsBox(const ON_BoundingBox& box) {
    colorArray_.reset();
    colorIndexArray_.reset();
    vertexArray_ = std::make_shared<VertexArray>();
    normalArray_ = std::make_shared<NormalArray>();
    vertexIndexArray_ = std::make_shared<VertexIndexArray>();
    normalIndexArray_ = std::make_shared<IndexArray>();

    auto& normalNumbers = boost::get<IndexArray::PerTriangle>(normalIndexArray_->data);
    vertexArray_->reserve(8);
    normalArray_->reserve(6);
    vertexIndexArray_->reserve(12);
    normalNumbers.reserve(12);

    for (const auto& corner : kCorners)
        vertexArray_->push_back(box.Corner(corner[0], corner[1], corner[2]));
    for (const Side& side : kSides) {
        for (const TriangleIndex& triangle : side.triangles) {
            vertexIndexArray_->push_back(triangle);
            normalNumbers.push_back(normalArray_->size());
        }
        normalArray_->push_back(ON_3dVector(side.normal[0], side.normal[1], side.normal[2]));
    }
    return true;
}

}  // namespace Vr

#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::HasSubstr;
using IndexArray = VraMeshPrimitive::IndexArray;

class Merge : public EditTest {};

TEST_F(Merge, ObjectsBecomeOneAndEqualVerticesOne) {
    const Mesh right = UnitBox();
    for (ON_3dPoint& point : *right->GetModifiableVertexArray())
        point.x += 1;
    const auto objects = Edited({UnitBox(), right}, {"merge"});
    ASSERT_EQ(objects.size(), 1U);
    // four of the eight corners of each box are the other's too; six directions of normals
    EXPECT_EQ(objects[0]->GetVertexArray()->size(), 12U);
    EXPECT_EQ(objects[0]->GetNormalArray()->size(), 6U);
    EXPECT_THAT(printed_, HasSubstr("merged: 2 objects -> 1, 12 vertices, 24 triangles\nstored "));
}

TEST_F(Merge, TheCreaseAngleIsThatOfTheFirst) {
    const Mesh first = Square();
    first->SetCreaseAngle(0.5);
    const Mesh second = Square();
    second->SetCreaseAngle(0.25);
    EXPECT_EQ(Edited({first, second}, {"merge"})[0]->GetCreaseAngle(), 0.5);
}

TEST_F(Merge, WhatIsLostIsSaid) {
    const Mesh mesh = Square();
    mesh->SetUVArray(CountedUVs(6));
    mesh->SetColorArray(std::make_shared<VraMesh::ColorArray>(1));
    mesh->SetColorIndexArray(std::make_shared<IndexArray>(IndexArray::PerTriangle{0, 0}));
    const auto objects = Edited({UnitBox(), mesh}, {"merge"});
    EXPECT_EQ(objects[0]->GetNormalArray(), nullptr);
    EXPECT_THAT(printed_,
                HasSubstr("  without normals: not all objects have them in the same form\n"
                          "  without colours: not all objects have them in the same form\n"
                          "  without UVs\n"));
}

TEST_F(Merge, ADocumentWithoutObjectsIsRefused) {
    ExpectRefused({}, {"merge"}, "the document holds no meshes to merge");
}

}  // namespace
}  // namespace Vr::test

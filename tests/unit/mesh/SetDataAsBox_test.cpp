#include <gtest/gtest.h>

#include "mesh/VraMeshPrimitive.h"

namespace {

using Vr::VraMeshPrimitive;
using Mesh = boost::intrusive_ptr<VraMeshPrimitive>;

Mesh BoxOf(double xMin, double yMin, double zMin, double xMax, double yMax, double zMax) {
    Mesh mesh(new VraMeshPrimitive);
    EXPECT_TRUE(mesh->SetDataAsBox(
        ON_BoundingBox(ON_3dPoint(xMin, yMin, zMin), ON_3dPoint(xMax, yMax, zMax))));
    return mesh;
}

TEST(SetDataAsBox, CornersStandInTheirFixedOrder) {
    const std::vector<ON_3dPoint> expected = {
        ON_3dPoint(0, 1, 2), ON_3dPoint(3, 1, 2), ON_3dPoint(3, 5, 2), ON_3dPoint(0, 5, 2),
        ON_3dPoint(0, 1, 7), ON_3dPoint(3, 1, 7), ON_3dPoint(3, 5, 7), ON_3dPoint(0, 5, 7)};
    EXPECT_EQ(*BoxOf(0, 1, 2, 3, 5, 7)->GetVertexArray(), expected);
}

TEST(SetDataAsBox, TrianglesStandInTheirFixedOrderAndTheEighthStartsAtVertexSix) {
    const VraMeshPrimitive::VertexIndexArray expected = {
        {{0, 2, 1}}, {{0, 3, 2}}, {{0, 1, 5}}, {{0, 5, 4}}, {{1, 2, 6}}, {{1, 6, 5}},
        {{2, 3, 6}}, {{6, 3, 7}}, {{0, 4, 3}}, {{3, 4, 7}}, {{4, 5, 6}}, {{4, 6, 7}}};
    EXPECT_EQ(*BoxOf(0, 0, 0, 1, 1, 1)->GetVertexIndexArray(), expected);
}

TEST(SetDataAsBox, EachSideHasOneNormalForItsTwoTriangles) {
    const Mesh mesh = BoxOf(0, 0, 0, 1, 1, 1);
    const std::vector<ON_3dVector> normals = {ON_3dVector(0, 0, -1), ON_3dVector(0, -1, 0),
                                              ON_3dVector(1, 0, 0),  ON_3dVector(0, 1, 0),
                                              ON_3dVector(-1, 0, 0), ON_3dVector(0, 0, 1)};
    EXPECT_EQ(*mesh->GetNormalArray(), normals);
    const std::vector<size_t> numbers = {0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5};
    EXPECT_FALSE(mesh->IsNormalPerVertex());
    EXPECT_EQ(boost::get<std::vector<size_t>>(mesh->GetNormalIndexArray()->data), numbers);
}

TEST(SetDataAsBox, AnInvertedBoxIsTakenAsItIs) {
    const Mesh mesh = BoxOf(3, 0, 0, -3, 1, 1);
    EXPECT_EQ((*mesh->GetVertexArray())[0], ON_3dPoint(3, 0, 0));
    EXPECT_EQ((*mesh->GetVertexArray())[1], ON_3dPoint(-3, 0, 0));
    EXPECT_EQ(mesh->GetVertexIndexArray()->size(), 12u);
    EXPECT_EQ((*mesh->GetNormalArray())[2], ON_3dVector(1, 0, 0));
}

TEST(SetDataAsBox, ColoursGoAndTextureArraysStay) {
    Mesh mesh(new VraMeshPrimitive);
    const auto uvIndices = std::make_shared<VraMeshPrimitive::TextureUVIndexArray>();
    const auto uvs = std::make_shared<VraMeshPrimitive::UVArray>(1, ON_2dPoint(1, 2));
    const auto textureUVs = std::make_shared<VraMeshPrimitive::TextureUVArray>();
    mesh->SetColorArray(std::make_shared<VraMeshPrimitive::ColorArray>());
    mesh->SetColorIndexArray(std::make_shared<VraMeshPrimitive::IndexArray>());
    mesh->SetTextureUVIndexArray(uvIndices);
    mesh->SetUVArray(uvs);
    mesh->SetTextureUVArray(textureUVs);
    mesh->SetCreaseAngle(0.25);

    mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(1, 1, 1)));

    EXPECT_EQ(mesh->GetColorArray(), nullptr);
    EXPECT_EQ(mesh->GetColorIndexArray(), nullptr);
    EXPECT_EQ(mesh->GetTextureUVIndexArray(), uvIndices);
    EXPECT_EQ(mesh->GetUVArray(), uvs);
    EXPECT_EQ(mesh->GetTextureUVArray(), textureUVs);
    EXPECT_EQ(mesh->GetCreaseAngle(), 0.25);
}

TEST(SetDataAsBox, ArraysHeldByOthersStayAsTheyWere) {
    const Mesh mesh = BoxOf(0, 0, 0, 1, 1, 1);
    const Mesh sharer(new VraMeshPrimitive);
    mesh->ShallowCopy(sharer);

    mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(5, 5, 5), ON_3dPoint(6, 6, 6)));

    EXPECT_EQ((*sharer->GetVertexArray())[0], ON_3dPoint(0, 0, 0));
    EXPECT_NE(sharer->GetVertexArray(), mesh->GetVertexArray());
    EXPECT_NE(sharer->GetNormalIndexArray(), mesh->GetNormalIndexArray());
}

TEST(SetDataAsBox, ASecondCallReplacesAndDoesNotAppend) {
    const Mesh mesh = BoxOf(0, 0, 0, 1, 1, 1);
    mesh->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(2, 2, 2)));
    EXPECT_EQ(mesh->GetVertexArray()->size(), 8u);
    EXPECT_EQ(mesh->GetVertexIndexArray()->size(), 12u);
    EXPECT_EQ(mesh->GetNormalArray()->size(), 6u);
}

}  // namespace

#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using IndexArray = VraMeshPrimitive::IndexArray;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;

constexpr int kWrongUsage = 2;

class Transform : public EditTest {};

TEST_F(Transform, ScalesThenRotatesThenTranslates) {
    const auto objects = Edited({Square()}, {"transform", "--translate", "10", "0", "0", "--rotate",
                                             "90", "0", "0", "1", "--scale", "2"});
    // (1,0) -> (2,0) -> (0,2) -> (10,2); (1,1) -> (2,2) -> (-2,2) -> (8,2)
    EXPECT_EQ(Points(objects[0]),
              (std::vector<ON_3dPoint>{ON_3dPoint(10, 0, 0), ON_3dPoint(10, 2, 0),
                                       ON_3dPoint(8, 2, 0), ON_3dPoint(8, 0, 0)}));
}

TEST_F(Transform, AMatrixIsGivenRowByRow) {
    const auto objects =
        Edited({Square()}, {"transform", "--matrix", "1", "0", "0", "5",  //
                            "0", "1", "0", "6", "0", "0", "1", "7", "0", "0", "0", "1"});
    EXPECT_EQ(Points(objects[0])[0], ON_3dPoint(5, 6, 7));
}

TEST_F(Transform, SharedVerticesMoveOnceAndStayShared) {
    const Mesh first = Square();
    const Mesh second(new VraMesh);
    first->ShallowCopy(second);
    const auto objects = Edited({first, second}, {"transform", "--translate", "1", "0", "0"});
    EXPECT_EQ(Points(objects[0])[0], ON_3dPoint(1, 0, 0));
    EXPECT_EQ(objects[0]->GetVertexArray(), objects[1]->GetVertexArray());
}

TEST_F(Transform, AMirrorTurnsTheTrianglesRoundAlsoWhereTheyAreShared) {
    const Mesh first = UnitBox();
    const Mesh second(new VraMesh);
    first->ShallowCopy(second);
    const auto objects = Edited({first, second}, {"transform", "--scale", "-1", "1", "1"});
    EXPECT_DOUBLE_EQ(objects[0]->CalcVolume(ON_3dPoint(0, 0, 0)), 1.0);
    EXPECT_DOUBLE_EQ(objects[1]->CalcVolume(ON_3dPoint(0, 0, 0)), 1.0);
    // the right side, which was triangles 4 and 5 with normal 2, is the left one now
    EXPECT_EQ((*objects[0]->GetNormalArray())[2], ON_3dVector(-1, 0, 0));
    EXPECT_EQ(objects[0]->GetVertexArray(), objects[1]->GetVertexArray());
    EXPECT_EQ(objects[0]->GetVertexIndexArray(), objects[1]->GetVertexIndexArray());
}

TEST_F(Transform, FlatteningAnObjectWithNormalsIsRefused) {
    ExpectRefused({UnitBox()}, {"transform", "--scale", "1", "1", "0"},
                  "object 1: the transformation flattens it, which leaves no normals");
}

// 1e200 * 1e200 is beyond 1.8e308, the greatest double.
TEST_F(Transform, PositionsThatOverflowAreRefused) {
    const Mesh mesh = Square();
    (*mesh->GetModifiableVertexArray())[2].x = 1e200;
    ExpectRefused({UnitBox(), mesh}, {"transform", "--scale", "1e200"},
                  "object 2: a position is not finite");
}

TEST_F(Transform, TwoFactorsAndAnAxisWithoutDirectionAreWrongUsage) {
    StoreDocument("box.vrd", {UnitBox()});
    const HostResult factors =
        RunHost({"transform", Path("box.vrd"), "-o", Path("new.vrd"), "--scale", "1", "2"});
    EXPECT_EQ(factors.status, kWrongUsage);
    EXPECT_EQ(factors.err, "veridane-host: --scale: takes one factor or three (see --help)\n");
    const HostResult axis = RunHost(
        {"transform", Path("box.vrd"), "-o", Path("new.vrd"), "--rotate", "90", "0", "0", "0"});
    EXPECT_EQ(axis.status, kWrongUsage);
    EXPECT_EQ(axis.err, "veridane-host: --rotate: the axis has no direction (see --help)\n");
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
}

class Reverse : public EditTest {};

TEST_F(Reverse, TurnsTrianglesNormalsAndUVs) {
    const Mesh mesh = Square();
    mesh->SetNormalArray(std::make_shared<VraMesh::NormalArray>(1, ON_3dVector(0, 0, 1)));
    mesh->SetNormalIndexArray(std::make_shared<IndexArray>(IndexArray::PerTriangle{0, 0}));
    mesh->SetUVArray(CountedUVs(6));
    const auto objects = Edited({mesh}, {"reverse"});
    EXPECT_EQ(Triangles(objects[0]), (std::vector<TriangleIndex>{{{0, 2, 1}}, {{0, 3, 2}}}));
    EXPECT_EQ(*objects[0]->GetNormalArray(), VraMesh::NormalArray{ON_3dVector(0, 0, -1)});
    EXPECT_EQ(*objects[0]->GetUVArray(),
              (VraMesh::UVArray{ON_2dPoint(0, 0), ON_2dPoint(2, 0), ON_2dPoint(1, 0),
                                ON_2dPoint(3, 0), ON_2dPoint(5, 0), ON_2dPoint(4, 0)}));
}

TEST_F(Reverse, NormalsCanStay) {
    const auto objects = Edited({UnitBox()}, {"reverse", "--keep-normals"});
    EXPECT_DOUBLE_EQ(objects[0]->CalcVolume(ON_3dPoint(0, 0, 0)), -1.0);
    EXPECT_EQ((*objects[0]->GetNormalArray())[0], ON_3dVector(0, 0, -1));
}

TEST_F(Reverse, WhatIsSharedIsTurnedOnceAndStaysShared) {
    const Mesh first = UnitBox();
    const Mesh second(new VraMesh);
    first->ShallowCopy(second);
    const auto objects = Edited({first, second}, {"reverse"});
    for (const Mesh& object : objects) {
        EXPECT_DOUBLE_EQ(object->CalcVolume(ON_3dPoint(0, 0, 0)), -1.0);
        EXPECT_EQ((*object->GetNormalArray())[0].z, 1.0);
    }
    EXPECT_EQ(objects[0]->GetVertexIndexArray(), objects[1]->GetVertexIndexArray());
    EXPECT_EQ(objects[0]->GetNormalArray(), objects[1]->GetNormalArray());
}

TEST_F(Reverse, SharedUVsAreTurnedOnce) {
    const Mesh first = Square();
    first->SetUVArray(CountedUVs(6));
    const Mesh second = Square();
    second->SetUVArray(first->GetModifiableUVArray());
    const auto objects = Edited({first, second}, {"reverse"});
    EXPECT_EQ((*objects[0]->GetUVArray())[1], ON_2dPoint(2, 0));
    EXPECT_EQ(objects[0]->GetUVArray(), objects[1]->GetUVArray());
}

TEST_F(Reverse, AnIndexArrayOfNormalsAndColoursIsTurnedOnce) {
    const Mesh mesh = Square();
    mesh->SetNormalArray(std::make_shared<VraMesh::NormalArray>(4, ON_3dVector(0, 0, 1)));
    mesh->SetColorArray(std::make_shared<VraMesh::ColorArray>(4));
    const auto numbers = std::make_shared<IndexArray>(*mesh->GetVertexIndexArray());
    mesh->SetNormalIndexArray(numbers);
    mesh->SetColorIndexArray(numbers);
    const auto objects = Edited({mesh}, {"reverse"});
    const std::vector<TriangleIndex> turned = {{{0, 2, 1}}, {{0, 3, 2}}};
    EXPECT_EQ(boost::get<IndexArray::PerVertex>(objects[0]->GetNormalIndexArray()->data), turned);
    EXPECT_EQ(boost::get<IndexArray::PerVertex>(objects[0]->GetColorIndexArray()->data), turned);
}

}  // namespace
}  // namespace Vr::test

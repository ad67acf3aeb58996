#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using Vr::VraMeshPrimitive;

using Addresses = std::set<void*>;
using Calls = std::vector<std::string>;

ON_Xform Scaling(double x, double y, double z) {
    ON_Xform xf;
    xf.Scale(x, y, z);
    return xf;
}

ON_Xform Shift(double x, double y, double z) {
    ON_Xform xf;
    xf.Translation(x, y, z);
    return xf;
}

Mesh WithPoint(const Point3& point) {
    return NewPrimitive({point}, {});
}

Mesh WithNormal(const Vector3& normal) {
    const Mesh mesh = NewPrimitive();
    mesh->SetNormalArray(Normals({normal}));
    return mesh;
}

ON_3dPoint PointOf(const Mesh& mesh) {
    return mesh->GetVertexArray()->front();
}

// Transform ---------------------------------------------------------------------------------------

TEST(Transform, MovesThePointsInPlace) {
    const Mesh mesh = NewPrimitive({{1, 2, 3}, {-1, 0, 0}}, {});
    const auto vertices = mesh->GetVertexArray();
    Addresses done;
    EXPECT_TRUE(mesh->Transform(Shift(10, 20, 30), done));
    EXPECT_EQ(mesh->GetVertexArray(), vertices);
    EXPECT_THAT(*vertices, ElementsAre(ON_3dPoint(11, 22, 33), ON_3dPoint(9, 20, 30)));
}

TEST(Transform, DividesByTheWeightOfAProjectiveTransformation) {
    ON_Xform xf(1.0);
    xf.m_xform[3][0] = 1.0;  // Weight x + 1.
    const Mesh mesh = WithPoint({3, 8, 4});
    Addresses done;
    EXPECT_TRUE(mesh->Transform(xf, done));
    EXPECT_EQ(PointOf(mesh), ON_3dPoint(0.75, 2, 1));
}

TEST(Transform, AWeightOfZeroMultipliesInsteadOfDividing) {
    ON_Xform xf(1.0);
    xf.m_xform[3][0] = 1.0;  // The weight is x.
    xf.m_xform[3][3] = 0.0;
    const Mesh mesh = NewPrimitive();
    const auto points = Vertices({{0, 5, 6}, {2, 4, 6}, {-4, 8, 2}, {0, 1, -1}, {0, -3, 4}});
    mesh->SetVertexArray(points);
    std::set<void*> done;
    EXPECT_TRUE(mesh->Transform(xf, done));
    const auto expected =
        Vertices({{0, 0, 0}, {1, 2, 3}, {1, -2, -0.5}, {0, 0, -0.0}, {0, -0.0, 0}});
    EXPECT_TRUE(SameBits(points.get(), expected.get()));
}

TEST(Transform, ANeighbourOfWeightOneIsNotTakenForAll) {
    ON_Xform xf(1.0);
    xf.m_xform[3][0] = 1.0;  // The weight is x + 1.
    const Mesh mesh = NewPrimitive();
    const auto points =
        Vertices({{0, 5, 6}, {3, 8, 4}, {1, 4, 6}, {0, 1, -1}, {0, 2, 3}, {0, -0.0, 7}, {0, 8, 9}});
    mesh->SetVertexArray(points);
    Addresses done;
    EXPECT_TRUE(mesh->Transform(xf, done));
    const auto expected = Vertices({{0, 5, 6},
                                    {0.75, 2, 1},
                                    {0.5, 2, 3},
                                    {0, 1, -1},
                                    {0, 2, 3},
                                    {0, 0, 7},  // The row of y adds 0 at its end: -0 + 0.
                                    {0, 8, 9}});
    EXPECT_TRUE(SameBits(points.get(), expected.get()));
}

TEST(Transform, AnInfiniteCoordinateSpoilsEveryCoordinate) {
    const double infinite = std::numeric_limits<double>::infinity();
    const Mesh mesh = NewPrimitive({{infinite, 2, 3}, {1, 2, 3}, {1, 2, -infinite}}, {});
    Addresses done;
    EXPECT_TRUE(mesh->Transform(Shift(1, 1, 1), done));
    // 0 times infinity, in the weight too.
    const auto points = mesh->GetVertexArray();
    for (const size_t spoilt : {0u, 2u})
        for (int coordinate = 0; coordinate < 3; ++coordinate)
            EXPECT_TRUE(std::isnan((*points)[spoilt][coordinate]));
    EXPECT_EQ((*points)[1], ON_3dPoint(2, 3, 4));
}

TEST(Transform, AShiftLeavesNormalsAlone) {
    const Mesh mesh = WithNormal({0, 0, 1});
    Addresses done;
    EXPECT_TRUE(mesh->Transform(Shift(10, 20, 30), done));
    EXPECT_THAT(*mesh->GetNormalArray(), ElementsAre(ON_3dVector(0, 0, 1)));
}

TEST(Transform, NormalsStayNormalUnderAScalingOfOneAxis) {
    // Along (1, 1, 0), x doubled: along (1/2, 1, 0), of length sqrt(5)/2.
    const Mesh mesh = WithNormal({std::sqrt(0.5), std::sqrt(0.5), 0});
    Addresses done;
    EXPECT_TRUE(mesh->Transform(Scaling(2, 1, 1), done));
    const ON_3dVector normal = mesh->GetNormalArray()->front();
    EXPECT_DOUBLE_EQ(normal.x, 1 / std::sqrt(5.0));
    EXPECT_DOUBLE_EQ(normal.y, 2 / std::sqrt(5.0));
    EXPECT_EQ(normal.z, 0.0);
}

TEST(Transform, NormalsStayNormalUnderAShear) {
    // x grows by y: the plane x = 0 becomes x = y, with the normal (1, -1, 0).
    ON_Xform xf(1.0);
    xf.m_xform[0][1] = 1.0;
    const Mesh mesh = WithNormal({1, 0, 0});
    Addresses done;
    EXPECT_TRUE(mesh->Transform(xf, done));
    const ON_3dVector normal = mesh->GetNormalArray()->front();
    EXPECT_DOUBLE_EQ(normal.x, std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(normal.y, -std::sqrt(0.5));
    EXPECT_EQ(normal.z, 0.0);
}

TEST(Transform, NormalsComeOutAsUnitVectorsAndZeroStaysZero) {
    const Mesh mesh = NewPrimitive();
    mesh->SetNormalArray(Normals({{0, 0, 7}, {0, 0, 0}}));
    Addresses done;
    EXPECT_TRUE(mesh->Transform(ON_Xform(1.0), done));
    EXPECT_THAT(*mesh->GetNormalArray(), ElementsAre(ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 0)));
}

TEST(Transform, SharedPointsMoveOnceWithOneSetAndTwiceWithTwo) {
    const auto [first, second] = SharedPair();
    Addresses done;
    first->Transform(Shift(1, 0, 0), done);
    second->Transform(Shift(1, 0, 0), done);
    EXPECT_EQ(PointOf(first), ON_3dPoint(1, 0, 0));

    Addresses anew;
    second->Transform(Shift(1, 0, 0), anew);
    EXPECT_EQ(PointOf(first), ON_3dPoint(2, 0, 0));
}

TEST(Transform, EachArrayIsJudgedByItself) {
    // The points were visited through another primitive, the normals were not.
    const Mesh mesh = WithPoint({1, 1, 1});
    mesh->SetNormalArray(Normals({{0, 0, -2}}));
    Addresses done = {mesh->GetModifiableVertexArray().get()};
    EXPECT_TRUE(mesh->Transform(Scaling(3, 3, 3), done));
    EXPECT_EQ(PointOf(mesh), ON_3dPoint(1, 1, 1));
    EXPECT_THAT(*mesh->GetNormalArray(), ElementsAre(ON_3dVector(0, 0, -1)));

    // And the other way round.
    Addresses normalsDone = {mesh->GetModifiableNormalArray().get()};
    EXPECT_TRUE(mesh->Transform(Scaling(3, 0, 3), normalsDone));
    EXPECT_EQ(PointOf(mesh), ON_3dPoint(3, 0, 3));
}

TEST(Transform, AddsTheAddressesOfBothArraysToTheSet) {
    const Mesh mesh = FullSquare();
    int other = 0;
    Addresses done = {&other};
    mesh->Transform(ON_Xform(1.0), done);
    EXPECT_THAT(done, UnorderedElementsAre(&other, mesh->GetModifiableVertexArray().get(),
                                           mesh->GetModifiableNormalArray().get()));

    Addresses none;
    EXPECT_TRUE(NewPrimitive()->Transform(ON_Xform(1.0), none));
    EXPECT_THAT(none, IsEmpty());
}

TEST(Transform, DeliberatelyASingularOneFailsAfterTheNormalsAreInTheSet) {
    const Mesh mesh = WithPoint({1, 2, 3});
    mesh->SetNormalArray(Normals({{0, 0, 5}}));
    Addresses done;
    EXPECT_FALSE(mesh->Transform(Scaling(0, 1, 1), done));
    EXPECT_EQ(PointOf(mesh), ON_3dPoint(1, 2, 3));
    EXPECT_THAT(*mesh->GetNormalArray(), ElementsAre(ON_3dVector(0, 0, 5)));
    EXPECT_THAT(done, ElementsAre(mesh->GetModifiableNormalArray().get()));

    // Called again with the same set, it takes the normals for done and flattens the points.
    EXPECT_TRUE(mesh->Transform(Scaling(0, 1, 1), done));
    EXPECT_EQ(PointOf(mesh), ON_3dPoint(0, 2, 3));
}

TEST(Transform, ASingularOneIsAppliedWhereThereAreNoNormals) {
    const Mesh mesh = WithPoint({1, 2, 3});
    Addresses done;
    EXPECT_TRUE(mesh->Transform(Scaling(0, 1, 1), done));
    EXPECT_EQ(PointOf(mesh), ON_3dPoint(0, 2, 3));
}

TEST(Transform, AnEmptyNormalArrayStillAsksForAnInverse) {
    const Mesh mesh = WithPoint({1, 2, 3});
    mesh->SetNormalArray(Normals({}));
    Addresses done;
    EXPECT_FALSE(mesh->Transform(Scaling(1, 0, 1), done));
}

TEST(Transform, LeavesEverythingElseAsItWas) {
    const Mesh mesh = FullSquare();
    const ArrayAddresses before = AddressesOf(*mesh);
    Addresses done;
    mesh->Transform(Shift(1, 2, 3), done);
    EXPECT_EQ(AddressesOf(*mesh), before);

    const Mesh untouched = FullSquare();
    mesh->SetVertexArray(nullptr);
    untouched->SetVertexArray(nullptr);
    mesh->SetNormalArray(nullptr);
    untouched->SetNormalArray(nullptr);
    ExpectBitEqual(*mesh, *untouched);
}

TEST(Transform, FetchesTheNormalsThenThePoints) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->substitutes.normalArray = Normals({{0, 0, 2}});
    mesh->substitutes.vertexArray = Vertices({{1, 1, 1}});
    Addresses done;
    mesh->Transform(ON_Xform(2.0), done);
    EXPECT_EQ(mesh->Calls(),
              (Calls{"Transform", "GetModifiableNormalArray", "GetModifiableVertexArray"}));
    EXPECT_EQ((**mesh->substitutes.normalArray)[0], ON_3dVector(0, 0, 1));
    EXPECT_EQ((**mesh->substitutes.vertexArray)[0], ON_3dPoint(2, 2, 2));

    mesh->ClearCalls();
    Addresses anew;
    mesh->Transform(ON_Xform(0.0), anew);
    EXPECT_EQ(mesh->Calls(), (Calls{"Transform", "GetModifiableNormalArray"}));
}

// Scale -------------------------------------------------------------------------------------------

TEST(Scale, MultipliesThePointsInPlaceAndNothingElse) {
    const Mesh mesh = FullSquare();
    const Mesh expected = FullSquare();
    const ArrayAddresses before = AddressesOf(*mesh);
    for (ON_3dPoint& point : *expected->GetModifiableVertexArray())
        point = ON_3dPoint(point.x * -2.5, point.y * -2.5, point.z * -2.5);
    EXPECT_TRUE(mesh->Scale(-2.5));
    EXPECT_EQ(AddressesOf(*mesh), before);
    ExpectBitEqual(*mesh, *expected);
}

TEST(Scale, SharedPointsAreScaledAtEveryCall) {
    const auto [first, second] = SharedPair();
    first->Scale(2);
    second->Scale(2);
    EXPECT_EQ((*first->GetVertexArray())[2], ON_3dPoint(4, 4, 0));
}

TEST(Scale, WithoutPointsIsTrue) {
    EXPECT_TRUE(NewPrimitive()->Scale(3));
}

TEST(Scale, FetchesThePointsOnce) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->Scale(3);
    EXPECT_EQ(mesh->Calls(), (Calls{"Scale", "GetModifiableVertexArray"}));
}

// ReverseFaces --------------------------------------------------------------------------------------

TEST(ReverseFaces, SwapsTheLastTwoNumbersOfEveryTriple) {
    const Mesh mesh = NewPrimitive({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{{0, 1, 2}}, {{2, 1, 0}}});
    mesh->SetNormalIndexArray(PerVertex({{{3, 4, 5}}, {{6, 7, 8}}}));
    mesh->SetColorIndexArray(PerVertex({{{1, 1, 9}}, {{9, 1, 1}}}));
    mesh->SetTextureUVIndexArray(Triangles({{{5, 6, 7}}}));
    const ArrayAddresses before = AddressesOf(*mesh);

    mesh->ReverseFaces(false);

    EXPECT_EQ(AddressesOf(*mesh), before);
    EXPECT_THAT(*mesh->GetVertexIndexArray(),
                ElementsAre(TriangleIndex{{0, 2, 1}}, TriangleIndex{{2, 0, 1}}));
    EXPECT_THAT(PerVertexOf(*mesh->GetNormalIndexArray()),
                ElementsAre(TriangleIndex{{3, 5, 4}}, TriangleIndex{{6, 8, 7}}));
    EXPECT_THAT(PerVertexOf(*mesh->GetColorIndexArray()),
                ElementsAre(TriangleIndex{{1, 9, 1}}, TriangleIndex{{9, 1, 1}}));
    EXPECT_THAT(*mesh->GetTextureUVIndexArray(), ElementsAre(TriangleIndex{{5, 7, 6}}));
}

TEST(ReverseFaces, LeavesPerTriangleListsAndUVsAlone) {
    const Mesh mesh = FullSquare();
    mesh->SetNormalIndexArray(PerTriangle({1, 0}));
    mesh->SetColorIndexArray(PerTriangle({0, 1}));
    const Mesh expected = mesh->Duplicate();
    expected->SetUVArray(mesh->GetModifiableUVArray());
    mesh->ReverseFaces(false);
    for (const Mesh& either : {mesh, expected}) {
        either->SetVertexIndexArray(nullptr);
        either->SetTextureUVIndexArray(nullptr);
    }
    ExpectBitEqual(*mesh, *expected);
}

TEST(ReverseFaces, ReversesTheNormalsOnlyWhenAsked) {
    const Mesh mesh = WithNormal({0.5, -0.0, 2});
    const auto normals = mesh->GetNormalArray();
    mesh->ReverseFaces(false);
    EXPECT_THAT(*normals, ElementsAre(ON_3dVector(0.5, 0, 2)));
    mesh->ReverseFaces(true);
    EXPECT_EQ(mesh->GetNormalArray(), normals);
    const VraMeshPrimitive::NormalArray expected = {ON_3dVector(-0.5, 0.0, -2)};
    EXPECT_TRUE(SameBits(normals.get(), &expected));
}

TEST(ReverseFaces, OfAnEmptyPrimitiveDoesNothing) {
    const Mesh mesh = NewPrimitive();
    mesh->ReverseFaces(true);
    ExpectBitEqual(*mesh, *NewPrimitive());
}

TEST(ReverseFaces, DeliberatelyAnArrayOfTwoRolesIsSwappedTwice) {
    const Mesh mesh = SingleTriangle();
    mesh->SetTextureUVIndexArray(mesh->GetModifiableVertexIndexArray());
    const auto indices = PerVertex({{{3, 4, 5}}});
    mesh->SetNormalIndexArray(indices);
    mesh->SetColorIndexArray(indices);

    mesh->ReverseFaces(false);

    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 1, 2}}));
    EXPECT_THAT(PerVertexOf(*indices), ElementsAre(TriangleIndex{{3, 4, 5}}));
}

TEST(ReverseFaces, AsksInItsFixedOrderThroughTheGettersOfEachStep) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->SetNormalIndexArray(PerVertex({}));
    mesh->SetColorIndexArray(PerVertex({}));
    mesh->ClearCalls();
    mesh->ReverseFaces(true);
    EXPECT_EQ(mesh->Calls(),
              (Calls{"GetVertexIndexArray", "IsNormalPerVertex", "GetNormalIndexArray",
                     "IsColorPerVertex", "GetModifiableColorIndexArray", "GetTextureUVIndexArray",
                     "GetNormalArray"}));

    mesh->SetNormalIndexArray(PerTriangle({}));
    mesh->SetColorIndexArray(nullptr);
    mesh->ClearCalls();
    mesh->ReverseFaces(false);
    EXPECT_EQ(mesh->Calls(), (Calls{"GetVertexIndexArray", "IsNormalPerVertex", "IsColorPerVertex",
                                    "GetTextureUVIndexArray"}));
}

// Says that its index arrays hold the per-vertex form, whatever they hold.
class AlwaysPerVertex : public VraMeshPrimitive {
public:
    bool IsNormalPerVertex() const override { return true; }
    bool IsColorPerVertex() const override { return true; }
};

TEST(ReverseFaces, AnUntrueFormEndsInBadGetAfterTheStepsBefore) {
    const Mesh mesh(new AlwaysPerVertex);
    mesh->SetVertexIndexArray(Triangles({{{0, 1, 2}}}));
    mesh->SetNormalIndexArray(PerVertex({{{3, 4, 5}}}));
    mesh->SetColorIndexArray(PerTriangle({7}));
    mesh->SetTextureUVIndexArray(Triangles({{{6, 7, 8}}}));

    EXPECT_EQ(CaughtFrom([&] { mesh->ReverseFaces(true); }).text,
              "boost::bad_get: failed value get using boost::get");

    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 2, 1}}));
    EXPECT_THAT(PerVertexOf(*mesh->GetNormalIndexArray()), ElementsAre(TriangleIndex{{3, 5, 4}}));
    EXPECT_THAT(*mesh->GetTextureUVIndexArray(), ElementsAre(TriangleIndex{{6, 7, 8}}));
}

}  // namespace

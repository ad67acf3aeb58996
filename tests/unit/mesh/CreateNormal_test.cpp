#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Vr::VraMeshPrimitive;

const double kPi = std::acos(-1.0);
const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoSplitting = -1.0;

class CreateNormal : public ::testing::Test {
protected:
    void TearDown() override { SetWeightType(0); }

    static void SetWeightType(int weightType) {
        VraMeshPrimitive::SetVertexNormalWeightType(
            static_cast<VraMeshPrimitive::VertexNormalWeightType>(weightType));
    }
};

using CreateNormalPerTriangle = CreateNormal;
using CreateNormalPerVertex = CreateNormal;

const std::vector<ON_3dVector>& NormalsOf(const Mesh& mesh) {
    return *mesh->GetNormalArray();
}

const std::vector<TriangleIndex>& IndicesOf(const Mesh& mesh) {
    return PerVertexOf(*mesh->GetNormalIndexArray());
}

Mesh WithVertexNormals(const Mesh& mesh, double creaseAngle) {
    mesh->SetCreaseAngle(creaseAngle);
    EXPECT_TRUE(mesh->CreateNormalPerVertex());
    ExpectConsistent(*mesh);
    return mesh;
}

// Two faces on the edge from the origin along x; the first lies in z = 0, the second is bent down from
// going on in that plane by the angle.
Mesh TwoFacesBentBy(double angle) {
    return NewPrimitive({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, -std::cos(angle), -std::sin(angle)}},
                        {{{0, 1, 2}}, {{0, 3, 1}}});
}

// Per triangle ------------------------------------------------------------------------------------

TEST_F(CreateNormalPerTriangle, IsTheUnitNormalOfTheCounterClockwiseSide) {
    const Mesh mesh = NewPrimitive({{0, 0, 0}, {2, 0, 0}, {0, 5, 0}, {0, 0, 3}},
                                   {{{0, 1, 2}}, {{0, 2, 1}}, {{0, 2, 3}}, {{0, 3, 1}}});
    EXPECT_TRUE(mesh->CreateNormalPerTriangle());
    EXPECT_THAT(NormalsOf(mesh), ElementsAre(ON_3dVector(0, 0, 1), ON_3dVector(0, 0, -1),
                                             ON_3dVector(1, 0, 0), ON_3dVector(0, 1, 0)));
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(0, 1, 2, 3));
}

TEST_F(CreateNormalPerTriangle, GivesADegenerateTriangleTheZeroVector) {
    const Mesh mesh = NewPrimitive({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}, {{{0, 1, 2}}, {{1, 1, 2}}});
    mesh->CreateNormalPerTriangle();
    EXPECT_THAT(NormalsOf(mesh), ElementsAre(ON_3dVector(0, 0, 0), ON_3dVector(0, 0, 0)));
}

TEST_F(CreateNormalPerTriangle, AnInfiniteOrNaNCoordinateGivesTheZeroVector) {
    const Mesh mesh = NewPrimitive({{0, 0, 0}, {1, kNaN, 0}, {0, 1, kInfinity}, {1, 0, 0}},
                                   {{{0, 1, 3}}, {{0, 3, 2}}});
    mesh->CreateNormalPerTriangle();
    EXPECT_THAT(NormalsOf(mesh), ElementsAre(ON_3dVector(0, 0, 0), ON_3dVector(0, 0, 0)));
}

TEST_F(CreateNormalPerTriangle, ReachesTheExtremesOfTheNumbers) {
    // Areas of 1e-320 and 1e300 both have a direction; one beyond all numbers has none.
    const Mesh mesh = NewPrimitive({{0, 0, 0},
                                    {1e-160, 0, 0},
                                    {0, 1e-160, 0},
                                    {1e150, 0, 0},
                                    {0, 1e150, 0},
                                    {1e200, 0, 0},
                                    {0, 1e200, 0}},
                                   {{{0, 1, 2}}, {{0, 3, 4}}, {{0, 5, 6}}});
    mesh->CreateNormalPerTriangle();
    EXPECT_THAT(NormalsOf(mesh),
                ElementsAre(ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 0)));
}

TEST_F(CreateNormalPerTriangle, WithoutTrianglesInstallsTwoEmptyArrays) {
    const Mesh mesh = NewPrimitive({{0, 0, 0}}, {});
    EXPECT_TRUE(mesh->CreateNormalPerTriangle());
    ASSERT_NE(mesh->GetNormalArray(), nullptr);
    EXPECT_THAT(NormalsOf(mesh), IsEmpty());
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), IsEmpty());
}

TEST_F(CreateNormal, WithoutVerticesOrIndicesChangesNothing) {
    for (const bool hasVertices : {false, true}) {
        const Mesh mesh = FullSquare();
        hasVertices ? mesh->SetVertexIndexArray(nullptr) : mesh->SetVertexArray(nullptr);
        const ArrayAddresses before = AddressesOf(*mesh);
        EXPECT_TRUE(mesh->CreateNormalPerTriangle());
        EXPECT_TRUE(mesh->CreateNormalPerVertex());
        EXPECT_EQ(AddressesOf(*mesh), before);
    }
}

// What both do with the primitive -------------------------------------------------------------------

TEST_F(CreateNormal, InstallsNewArraysAndLeavesTheOldOnesToTheirHolders) {
    const Mesh mesh = FullSquare();
    const Mesh sharer = NewPrimitive();
    mesh->ShallowCopy(sharer);
    const Mesh copy = mesh->Duplicate();
    copy->SetUVArray(nullptr);

    mesh->CreateNormalPerTriangle();
    mesh->CreateNormalPerVertex();

    sharer->SetCreaseAngle(copy->GetCreaseAngle());
    ExpectBitEqual(*sharer, *copy);
    ArrayAddresses expected = AddressesOf(*sharer);
    const ArrayAddresses actual = AddressesOf(*mesh);
    EXPECT_NE(actual[kNormals], expected[kNormals]);
    EXPECT_NE(actual[kNormalIndices], expected[kNormalIndices]);
    expected[kNormals] = actual[kNormals];
    expected[kNormalIndices] = actual[kNormalIndices];
    expected[kUVs] = actual[kUVs];
    EXPECT_EQ(actual, expected);
}

TEST_F(CreateNormal, ReadsThroughTheGettersAndInstallsThroughTheSettersNormalsFirst) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->substitutes.vertexArray = Vertices({{0, 0, 0}, {0, 0, 1}, {1, 0, 0}});
    mesh->substitutes.vertexIndexArray = Triangles({{{0, 1, 2}}});
    const std::vector<std::string> calls = {"GetVertexArray", "GetVertexIndexArray",
                                            "SetNormalArray", "SetNormalIndexArray"};

    mesh->CreateNormalPerTriangle();
    EXPECT_EQ(mesh->Calls(), (std::vector<std::string>{"CreateNormalPerTriangle", calls[0],
                                                       calls[1], calls[2], calls[3]}));
    EXPECT_THAT(NormalsOf(mesh), ElementsAre(ON_3dVector(0, 1, 0)));

    mesh->ClearCalls();
    mesh->CreateNormalPerVertex();
    EXPECT_EQ(mesh->Calls(), (std::vector<std::string>{"CreateNormalPerVertex", calls[0], calls[1],
                                                       calls[2], calls[3]}));
    EXPECT_THAT(NormalsOf(mesh), SizeIs(3));
}

TEST_F(CreateNormal, FetchesBothArraysBeforeItLooksAtThem) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->CreateNormalPerVertex();
    EXPECT_EQ(mesh->Calls(), (std::vector<std::string>{"CreateNormalPerVertex", "GetVertexArray",
                                                       "GetVertexIndexArray"}));
}

// Per vertex: splitting -----------------------------------------------------------------------------

TEST_F(CreateNormalPerVertex, ABoxHasThreeNormalsACornerWhenItsEdgesAreCreases) {
    const Mesh mesh = WithVertexNormals(Box(), 0.5);
    EXPECT_THAT(NormalsOf(mesh), SizeIs(24));
    const std::vector<Vector3> sides = {{0, 0, -1}, {0, 0, -1}, {0, -1, 0}, {0, -1, 0},
                                        {1, 0, 0},  {1, 0, 0},  {0, 1, 0},  {0, 1, 0},
                                        {-1, 0, 0}, {-1, 0, 0}, {0, 0, 1},  {0, 0, 1}};
    for (std::size_t triangle = 0; triangle < sides.size(); ++triangle)
        for (std::size_t corner = 0; corner < 3; ++corner)
            EXPECT_EQ(NormalsOf(mesh)[IndicesOf(mesh)[triangle][corner]], sides[triangle]);
}

TEST_F(CreateNormalPerVertex, ABoxHasOneNormalAVertexUnderANegativeCreaseAngle) {
    const Mesh mesh = WithVertexNormals(Box(), kNoSplitting);
    EXPECT_THAT(NormalsOf(mesh), SizeIs(8));
    EXPECT_EQ(IndicesOf(mesh), *mesh->GetVertexIndexArray());
}

TEST_F(CreateNormalPerVertex, AFlatSquareHasOneNormalAVertex) {
    const Mesh mesh = WithVertexNormals(Square(), 0.0);
    EXPECT_THAT(NormalsOf(mesh), ElementsAre(ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 1),
                                             ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 1)));
    EXPECT_EQ(IndicesOf(mesh), *mesh->GetVertexIndexArray());
}

TEST_F(CreateNormalPerVertex, FacesBentByTheCreaseAngleItselfShareANormal) {
    // Bent by exactly 90 degrees: the dot product is 0, the threshold cos(pi/2) - 1e-12 is below.
    EXPECT_THAT(NormalsOf(WithVertexNormals(TwoFacesBentBy(kPi / 2), kPi / 2)), SizeIs(4));
}

TEST_F(CreateNormalPerVertex, FacesBentByMoreThanTheMarginAreSplit) {
    EXPECT_THAT(NormalsOf(WithVertexNormals(TwoFacesBentBy(kPi / 2), kPi / 2 - 1e-11)), SizeIs(6));
    EXPECT_THAT(NormalsOf(WithVertexNormals(TwoFacesBentBy(kPi / 2), kPi / 2 - 1e-13)), SizeIs(4));
}

TEST_F(CreateNormalPerVertex, NegativeZeroIsNotNegative) {
    EXPECT_THAT(NormalsOf(WithVertexNormals(TwoFacesBentBy(0.5), -0.0)), SizeIs(6));
    EXPECT_THAT(NormalsOf(WithVertexNormals(TwoFacesBentBy(0.5),
                                            -std::numeric_limits<double>::denorm_min())),
                SizeIs(4));
}

TEST_F(CreateNormalPerVertex, UnderANaNCreaseAngleEveryCornerHasItsOwnNormal) {
    EXPECT_THAT(NormalsOf(WithVertexNormals(Square(), kNaN)), SizeIs(6));
    EXPECT_THAT(NormalsOf(WithVertexNormals(Square(), kInfinity)), SizeIs(6));
}

TEST_F(CreateNormalPerVertex, AHalfTurnAsCreaseAngleSplitsNothing) {
    EXPECT_THAT(NormalsOf(WithVertexNormals(TwoFacesBentBy(kPi), kPi)), SizeIs(4));
    EXPECT_THAT(NormalsOf(WithVertexNormals(TwoFacesBentBy(kPi), kPi - 0.1)), SizeIs(6));
}

// Faces around the x axis at 0, 40 and 80 degrees, all with vertex 0 at the origin and vertex 1.
Mesh ThreeFacesFortyDegreesApart(std::initializer_list<TriangleIndex> triangles) {
    const double turn = 40.0 * kPi / 180.0;
    return NewPrimitive({{0, 0, 0},
                         {1, 0, 0},
                         {0, 1, 0},
                         {0, std::cos(turn), std::sin(turn)},
                         {0, std::cos(2 * turn), std::sin(2 * turn)}},
                        triangles);
}

TEST_F(CreateNormalPerVertex, DeliberatelyOnlyTheSeedOfAGroupIsCompared) {
    const double fiftyDegrees = 50.0 * kPi / 180.0;
    // Seed at 0 degrees: 40 joins, 80 does not, although it is near 40.
    const Mesh outer = WithVertexNormals(
        ThreeFacesFortyDegreesApart({{{0, 1, 2}}, {{0, 1, 3}}, {{0, 1, 4}}}), fiftyDegrees);
    EXPECT_THAT(IndicesOf(outer), ElementsAre(TriangleIndex{{0, 2, 4}}, TriangleIndex{{0, 2, 5}},
                                              TriangleIndex{{1, 3, 6}}));
    // Seed at 40 degrees: both others join.
    const Mesh middle = WithVertexNormals(
        ThreeFacesFortyDegreesApart({{{0, 1, 3}}, {{0, 1, 2}}, {{0, 1, 4}}}), fiftyDegrees);
    EXPECT_THAT(NormalsOf(middle), SizeIs(5));
}

TEST_F(CreateNormalPerVertex, GroupsOfAVertexStandInTheOrderOfTheirFirstTriangles) {
    // Triangles 0 and 2 face up, 1 and 3 face down: vertex 0 has the normals up, down.
    const Mesh mesh =
        WithVertexNormals(NewPrimitive({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {-1, 0, 0}},
                                       {{{0, 1, 2}}, {{0, 2, 1}}, {{0, 2, 3}}, {{0, 3, 2}}}),
                          0.1);
    EXPECT_THAT(IndicesOf(mesh), ElementsAre(TriangleIndex{{0, 2, 4}}, TriangleIndex{{1, 5, 3}},
                                             TriangleIndex{{0, 4, 6}}, TriangleIndex{{1, 7, 5}}));
    EXPECT_EQ(NormalsOf(mesh)[0], ON_3dVector(0, 0, 1));
    EXPECT_EQ(NormalsOf(mesh)[1], ON_3dVector(0, 0, -1));
}

TEST_F(CreateNormalPerVertex, AVertexWithoutATriangleHasNoNormal) {
    for (const double creaseAngle : {kNoSplitting, 0.5}) {
        const Mesh mesh = WithVertexNormals(
            NewPrimitive({{9, 9, 9}, {0, 0, 0}, {8, 8, 8}, {1, 0, 0}, {0, 1, 0}, {7, 7, 7}},
                         {{{3, 4, 1}}}),
            creaseAngle);
        EXPECT_THAT(NormalsOf(mesh), SizeIs(3));
        EXPECT_THAT(IndicesOf(mesh), ElementsAre(TriangleIndex{{1, 2, 0}}));
    }
}

TEST_F(CreateNormalPerVertex, DeliberatelyALaterCornerThatRepeatsAVertexKeepsNumberZero) {
    const Mesh joined = WithVertexNormals(
        NewPrimitive({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{{0, 1, 2}}, {{2, 1, 2}}, {{1, 1, 1}}}),
        kNoSplitting);
    EXPECT_THAT(NormalsOf(joined), SizeIs(3));
    EXPECT_THAT(IndicesOf(joined), ElementsAre(TriangleIndex{{0, 1, 2}}, TriangleIndex{{2, 1, 0}},
                                               TriangleIndex{{1, 0, 0}}));
}

TEST_F(CreateNormalPerVertex, DeliberatelyARepeatedVertexIsListedTwiceAndTheLastGroupCounts) {
    // The zero normal of the triangle is not smooth with itself, so vertex 1 has two groups of the
    // same triangle, and its first corner is numbered twice.
    const Mesh split = WithVertexNormals(NewPrimitive({{0, 0, 0}, {1, 0, 0}}, {{{1, 1, 0}}}), 0.5);
    EXPECT_THAT(NormalsOf(split), SizeIs(3));
    EXPECT_THAT(IndicesOf(split), ElementsAre(TriangleIndex{{2, 0, 0}}));
}

// Per vertex: weighting -----------------------------------------------------------------------------

// Two faces at the origin: one in z = 0 with a right angle and area 2, one in x = 0 with 45 degrees
// and area 1/2.
Mesh UnevenCorner() {
    return NewPrimitive({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {0, 1, 0}, {0, 1, 1}},
                        {{{0, 1, 2}}, {{0, 3, 4}}});
}

TEST_F(CreateNormalPerVertex, WeighsByAreaAtFirst) {
    // Raw normals (0,0,4) and (1,0,0).
    const ON_3dVector normal = NormalsOf(WithVertexNormals(UnevenCorner(), kNoSplitting))[0];
    EXPECT_DOUBLE_EQ(normal.x, 1 / std::sqrt(17.0));
    EXPECT_EQ(normal.y, 0.0);
    EXPECT_DOUBLE_EQ(normal.z, 4 / std::sqrt(17.0));
}

TEST_F(CreateNormalPerVertex, WeighsByAngleWhenAsked) {
    // (0,0,1) * pi/2 + (1,0,0) * pi/4.
    SetWeightType(VraMeshPrimitive::Angle);
    for (const double creaseAngle : {kNoSplitting, 2.0}) {
        const ON_3dVector normal = NormalsOf(WithVertexNormals(UnevenCorner(), creaseAngle))[0];
        EXPECT_DOUBLE_EQ(normal.x, 1 / std::sqrt(5.0));
        EXPECT_EQ(normal.y, 0.0);
        EXPECT_DOUBLE_EQ(normal.z, 2 / std::sqrt(5.0));
    }
}

TEST_F(CreateNormalPerVertex, AnEdgeWithoutLengthHasNoAngle) {
    SetWeightType(VraMeshPrimitive::Angle);
    // The second triangle has two corners at one place: no angle there, and no normal either.
    const Mesh mesh = WithVertexNormals(
        NewPrimitive({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0}}, {{{0, 1, 2}}, {{0, 3, 1}}}),
        kNoSplitting);
    EXPECT_THAT(NormalsOf(mesh), ElementsAre(ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 1),
                                             ON_3dVector(0, 0, 1), ON_3dVector(0, 0, 0)));
}

TEST_F(CreateNormalPerVertex, DeliberatelyAnyOtherWeightingGivesZeroVectors) {
    for (const double creaseAngle : {kNoSplitting, 0.5}) {
        const Mesh byArea = WithVertexNormals(Box(), creaseAngle);
        SetWeightType(2);
        const Mesh mesh = WithVertexNormals(Box(), creaseAngle);
        SetWeightType(-1);
        const Mesh other = WithVertexNormals(Box(), creaseAngle);
        SetWeightType(0);
        EXPECT_EQ(IndicesOf(mesh), IndicesOf(byArea));
        const std::vector<ON_3dVector> zeros(NormalsOf(byArea).size(), ON_3dVector(0, 0, 0));
        EXPECT_TRUE(SameBits(&NormalsOf(mesh), &zeros));
        EXPECT_TRUE(SameBits(&NormalsOf(other), &zeros));
    }
}

// Per vertex: the result's storage --------------------------------------------------------------------

TEST_F(CreateNormalPerVertex, TheNormalArrayHasNoRoomToSpare) {
    for (const double creaseAngle : {kNoSplitting, 0.0, 0.5, 2.0}) {
        const Mesh mesh = Box();
        mesh->GetModifiableVertexArray()->resize(100, ON_3dPoint(1, 2, 3));
        WithVertexNormals(mesh, creaseAngle);
        EXPECT_EQ(NormalsOf(mesh).capacity(), NormalsOf(mesh).size());
    }
}

TEST_F(CreateNormalPerVertex, WithoutTrianglesInstallsTwoEmptyArraysWithoutStorage) {
    for (const double creaseAngle : {kNoSplitting, 0.5}) {
        const Mesh mesh = NewPrimitive({{0, 0, 0}, {1, 1, 1}}, {});
        mesh->SetNormalIndexArray(PerTriangle({7}));
        WithVertexNormals(mesh, creaseAngle);
        EXPECT_EQ(NormalsOf(mesh).capacity(), 0u);
        EXPECT_TRUE(mesh->IsNormalPerVertex());
        EXPECT_THAT(IndicesOf(mesh), IsEmpty());
    }
}

TEST_F(CreateNormalPerVertex, MoreThanThirtyTwoTrianglesAroundAVertexAreNoLimit) {
    // The first triangle of the fan is degenerate, so its three corners are groups of their own; it is
    // the only one at vertex 1.
    const Mesh joined = WithVertexNormals(Fan(1000), 0.0);
    EXPECT_THAT(NormalsOf(joined), SizeIs(1002 + 2));
    EXPECT_EQ(IndicesOf(joined)[999][0], 1u);
    const Mesh apart = WithVertexNormals(Fan(1000), kNaN);
    EXPECT_THAT(NormalsOf(apart), SizeIs(3000));
    EXPECT_EQ(IndicesOf(apart)[999][0], 999u);
}

}  // namespace

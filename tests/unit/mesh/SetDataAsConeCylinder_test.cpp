#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"
#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/Trigonometry.h"

namespace {

using namespace Vr::test;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Vr::VraMeshPrimitive;

Mesh Cone(const Point3& first, const Point3& second, double radius, std::size_t count) {
    const Mesh mesh = NewPrimitive();
    EXPECT_TRUE(mesh->SetDataAsCone(first, second, radius, count));
    ExpectConsistent(*mesh);
    return mesh;
}

Mesh Cylinder(const Point3& first, const Point3& second, double radius, std::size_t count) {
    const Mesh mesh = NewPrimitive();
    EXPECT_TRUE(mesh->SetDataAsCylinder(first, second, radius, count));
    ExpectConsistent(*mesh);
    return mesh;
}

const std::vector<ON_3dPoint>& VerticesOf(const Mesh& mesh) {
    return *mesh->GetVertexArray();
}
const std::vector<ON_3dVector>& NormalsOf(const Mesh& mesh) {
    return *mesh->GetNormalArray();
}
const std::vector<TriangleIndex>& TrianglesOf(const Mesh& mesh) {
    return *mesh->GetVertexIndexArray();
}
const std::vector<TriangleIndex>& NormalTriplesOf(const Mesh& mesh) {
    return PerVertexOf(*mesh->GetNormalIndexArray());
}

TriangleIndex Triple(std::size_t v0, std::size_t v1, std::size_t v2) {
    return {{v0, v1, v2}};
}

// Both ------------------------------------------------------------------------------------------------

TEST(SetDataAsConeCylinder, FewerThanThreeSegmentsAreRefusedAndChangeNothing) {
    const Mesh mesh = FullSquare();
    const Mesh same = FullSquare();
    const ArrayAddresses before = AddressesOf(*mesh);
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{2}}) {
        EXPECT_FALSE(mesh->SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, count));
        EXPECT_FALSE(mesh->SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, count));
    }
    EXPECT_EQ(AddressesOf(*mesh), before);
    ExpectBitEqual(*mesh, *same);
}

TEST(SetDataAsConeCylinder, ThreeSegmentsAreEnough) {
    const Mesh cone = Cone({0, 0, 0}, {0, 0, 1}, 1, 3);
    EXPECT_THAT(VerticesOf(cone), SizeIs(5));
    EXPECT_THAT(TrianglesOf(cone), SizeIs(6));
    const Mesh cylinder = Cylinder({0, 0, 0}, {0, 0, 1}, 1, 3);
    EXPECT_THAT(VerticesOf(cylinder), SizeIs(8));
    EXPECT_THAT(NormalsOf(cylinder), SizeIs(5));
    EXPECT_THAT(TrianglesOf(cylinder), SizeIs(12));
}

TEST(SetDataAsConeCylinder, BeginWithTheSecondPointThenTheFirst) {
    for (const Mesh& mesh :
         {Cone({1, 2, 3}, {1, 2, 8}, 1, 4), Cylinder({1, 2, 3}, {1, 2, 8}, 1, 4)}) {
        EXPECT_EQ(VerticesOf(mesh)[0], ON_3dPoint(1, 2, 8));
        EXPECT_EQ(VerticesOf(mesh)[1], ON_3dPoint(1, 2, 3));
        EXPECT_EQ(NormalsOf(mesh)[0], ON_3dVector(0, 0, 1));
        EXPECT_EQ(NormalsOf(mesh)[1], ON_3dVector(0, 0, -1));
    }
}

TEST(SetDataAsConeCylinder, ReplaceGeometryDropColoursAndLeaveTextures) {
    for (const bool isCone : {true, false}) {
        const Mesh mesh = FullSquare();
        mesh->SetCreaseAngle(0.25);
        const Mesh sharer = NewPrimitive();
        mesh->ShallowCopy(sharer);
        sharer->SetUVArray(mesh->GetModifiableUVArray());
        const Mesh copy = FullSquare();
        copy->SetCreaseAngle(0.25);

        isCone ? mesh->SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, 5)
               : mesh->SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, 5);

        ExpectBitEqual(*sharer, *copy);
        const ArrayAddresses before = AddressesOf(*sharer);
        const ArrayAddresses after = AddressesOf(*mesh);
        for (const Role role : {kVertices, kNormals, kVertexIndices, kNormalIndices})
            EXPECT_NE(after[role], before[role]) << NameOf(role);
        EXPECT_EQ(after[kColors], nullptr);
        EXPECT_EQ(after[kColorIndices], nullptr);
        for (const Role role : {kTextureUVIndices, kUVs, kTextureUVs})
            EXPECT_EQ(after[role], before[role]) << NameOf(role);
        EXPECT_EQ(mesh->GetCreaseAngle(), 0.25);
        EXPECT_TRUE(mesh->IsNormalPerVertex());
    }
}

TEST(SetDataAsConeCylinder, TakeTheirPointsFromTheArrayThatTheyReplace) {
    for (const bool isCone : {true, false}) {
        const Mesh mesh = NewPrimitive({{1, 2, 3}, {1, 2, 8}}, {});
        const Mesh expected =
            isCone ? Cone({1, 2, 3}, {1, 2, 8}, 2, 3) : Cylinder({1, 2, 3}, {1, 2, 8}, 2, 3);
        // The array lives in the primitive alone.
        const ON_3dPoint& first = (*mesh->GetVertexArray())[0];
        const ON_3dPoint& second = (*mesh->GetVertexArray())[1];
        isCone ? mesh->SetDataAsCone(first, second, 2, 3)
               : mesh->SetDataAsCylinder(first, second, 2, 3);
        ExpectBitEqual(*mesh, *expected);
    }
}

TEST(SetDataAsConeCylinder, InstallDirectlyAndNotThroughTheSetters) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, 3);
    mesh->SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, 3);
    EXPECT_EQ(mesh->Calls(), (std::vector<std::string>{"SetDataAsCone", "SetDataAsCylinder"}));
}

TEST(SetDataAsConeCylinder, CoincidentPointsSucceedWithZeroNormals) {
    for (const Mesh& mesh :
         {Cone({1, 1, 1}, {1, 1, 1}, 1, 4), Cylinder({1, 1, 1}, {1, 1, 1}, 1, 4)}) {
        EXPECT_THAT(VerticesOf(mesh), Each(ON_3dPoint(1, 1, 1)));
        EXPECT_THAT(NormalsOf(mesh), Each(ON_3dVector(0, 0, 0)));
    }
}

TEST(SetDataAsConeCylinder, MoreSegmentsThanAnyMemoryHoldsEndInBadAlloc) {
    constexpr std::size_t kLast = std::numeric_limits<std::size_t>::max();
    for (const std::size_t count : {kLast, kLast / 16, kLast / 24}) {
        const Mesh mesh = FullSquare();
        EXPECT_EQ(CaughtFrom([&] {
                      mesh->SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, count);
                  }),
                  BadAlloc());
        // The handles have their new arrays by then.
        EXPECT_THAT(TrianglesOf(mesh), IsEmpty());
        EXPECT_EQ(mesh->GetColorArray(), nullptr);
        EXPECT_EQ(CaughtFrom([&] {
                      mesh->SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, count);
                  }),
                  BadAlloc());
    }
}

// Cone ------------------------------------------------------------------------------------------------

TEST(SetDataAsCone, FansFromBothPointsOverTheRing) {
    const Mesh mesh = Cone({0, 0, 0}, {0, 0, 1}, 1, 4);
    EXPECT_THAT(TrianglesOf(mesh),
                ElementsAre(Triple(0, 2, 3), Triple(0, 3, 4), Triple(0, 4, 5), Triple(0, 5, 2),
                            Triple(1, 3, 2), Triple(1, 4, 3), Triple(1, 5, 4), Triple(1, 2, 5)));
    EXPECT_THAT(NormalTriplesOf(mesh),
                ElementsAre(Triple(0, 2, 3), Triple(0, 3, 4), Triple(0, 4, 5), Triple(0, 5, 2),
                            Triple(1, 1, 1), Triple(1, 1, 1), Triple(1, 1, 1), Triple(1, 1, 1)));
}

TEST(SetDataAsCone, DeliberatelyTheRingLiesOnTheFirstPoint) {
    const Mesh mesh = Cone({1, 2, 3}, {1, 2, 8}, 4, 6);
    for (std::size_t vertex = 2; vertex < 8; ++vertex)
        EXPECT_EQ(VerticesOf(mesh)[vertex], ON_3dPoint(1, 2, 3));
}

TEST(SetDataAsCone, TheNormalsTellOfTheRadius) {
    // Radius 3 at height 4: sides rise 4 for 3, so a normal stands 4 out and 3 down, of length 5.
    const Mesh mesh = Cone({0, 0, 0}, {0, 0, 4}, 3, 4);
    EXPECT_DOUBLE_EQ(NormalsOf(mesh)[2].x, 0.8);
    EXPECT_EQ(NormalsOf(mesh)[2].y, 0.0);
    EXPECT_DOUBLE_EQ(NormalsOf(mesh)[2].z, -0.6);
}

// Cylinder --------------------------------------------------------------------------------------------

TEST(SetDataAsCylinder, SidesThenFirstCapThenSecondCap) {
    const Mesh mesh = Cylinder({0, 0, 0}, {0, 0, 1}, 1, 4);
    EXPECT_THAT(TrianglesOf(mesh),
                ElementsAre(Triple(2, 3, 6), Triple(7, 6, 3), Triple(3, 4, 7), Triple(8, 7, 4),
                            Triple(4, 5, 8), Triple(9, 8, 5), Triple(5, 2, 9), Triple(6, 9, 2),
                            Triple(1, 3, 2), Triple(1, 4, 3), Triple(1, 5, 4), Triple(1, 2, 5),
                            Triple(1, 6, 7), Triple(1, 7, 8), Triple(1, 8, 9), Triple(1, 9, 6)));
    EXPECT_THAT(NormalTriplesOf(mesh),
                ElementsAre(Triple(2, 3, 2), Triple(3, 2, 3), Triple(3, 4, 3), Triple(4, 3, 4),
                            Triple(4, 5, 4), Triple(5, 4, 5), Triple(5, 2, 5), Triple(2, 5, 2),
                            Triple(1, 1, 1), Triple(1, 1, 1), Triple(1, 1, 1), Triple(1, 1, 1),
                            Triple(0, 0, 0), Triple(0, 0, 0), Triple(0, 0, 0), Triple(0, 0, 0)));
}

TEST(SetDataAsCylinder, DeliberatelyTheSecondCapFansFromTheFirstPoint) {
    const Mesh mesh = Cylinder({0, 0, 0}, {0, 0, 9}, 1, 3);
    for (const TriangleIndex& triangle : TrianglesOf(mesh))
        for (const std::size_t vertex : triangle.v)
            EXPECT_NE(vertex, 0u);
    EXPECT_THAT(NormalTriplesOf(mesh).back(), Triple(0, 0, 0));
}

TEST(SetDataAsCylinder, RingsStandAtBothPoints) {
    const Mesh mesh = Cylinder({0, 0, 1}, {0, 0, 6}, 2, 4);
    EXPECT_EQ(VerticesOf(mesh)[2], ON_3dPoint(2, 0, 1));
    EXPECT_EQ(VerticesOf(mesh)[6], ON_3dPoint(2, 0, 6));
    EXPECT_EQ(NormalsOf(mesh)[2], ON_3dVector(1, 0, 0));
    // A quarter turn on; the cosine of pi/2 is not quite 0.
    EXPECT_NEAR(VerticesOf(mesh)[3].x, 0, 2e-16);
    EXPECT_EQ(VerticesOf(mesh)[3].y, 2.0);
}

// Against openNURBS -------------------------------------------------------------------------------------

TEST(SetDataAsConeCylinder, PointsAndNormalsAreThoseOfOpenNurbs) {
    for (auto& line : kerneltest::GoldenCases("solids.txt", "solid", 9)) {
        SCOPED_TRACE(line.Where());
        const ON_3dPoint first = line.Point();
        const ON_3dPoint second = line.Point();
        const double radius = line.Number();
        const std::size_t count = line.Count();
        const Mesh cone = Cone(first, second, radius, count);
        const Mesh cylinder = Cylinder(first, second, radius, count);

        const ON_3dVector axis = line.Vector();
        const ON_3dVector reversedAxis = line.Vector();
        for (const Mesh& mesh : {cone, cylinder}) {
            EXPECT_SAME_BITS(NormalsOf(mesh)[0], axis);
            EXPECT_SAME_BITS(NormalsOf(mesh)[1], reversedAxis);
        }
        for (std::size_t vertex = 2; vertex < 2 + count; ++vertex) {
            EXPECT_SAME_TRIGONOMETRY(VerticesOf(cone)[vertex], line.Point());
            EXPECT_SAME_TRIGONOMETRY(NormalsOf(cone)[vertex], line.Vector());
            EXPECT_SAME_TRIGONOMETRY(VerticesOf(cylinder)[vertex], line.Point());
            EXPECT_SAME_TRIGONOMETRY(NormalsOf(cylinder)[vertex], line.Vector());
            EXPECT_SAME_TRIGONOMETRY(VerticesOf(cylinder)[vertex + count], line.Point());
        }
        EXPECT_TRUE(line.IsAtEnd());
    }
}

}  // namespace

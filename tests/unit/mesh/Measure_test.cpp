#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using Vr::VraMeshPrimitive;

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kInfinity = std::numeric_limits<double>::infinity();

::testing::AssertionResult IsBox(const ON_BoundingBox& box, const Point3& low, const Point3& high) {
    const VraMeshPrimitive::VertexArray actual = {box.m_min, box.m_max};
    const VraMeshPrimitive::VertexArray expected = {low, high};
    return SameBits(&actual, &expected);
}

ON_BoundingBox BoxOf(const VraMeshPrimitive& mesh) {
    ON_BoundingBox box;
    EXPECT_TRUE(mesh.CalcBoundingBox(box));
    return box;
}

// The box of points used one after the other, three a triangle; the last is repeated to fill up.
ON_BoundingBox BoxOfPoints(std::initializer_list<Point3> corners) {
    const Mesh mesh = NewPrimitive();
    const auto points = Vertices(corners);
    while (points->size() % 3 != 0)
        points->push_back(points->back());
    const auto triangles = Triangles({});
    for (std::size_t first = 0; first < points->size(); first += 3)
        triangles->push_back({{first, first + 1, first + 2}});
    mesh->SetVertexArray(points);
    mesh->SetVertexIndexArray(triangles);
    return BoxOf(*mesh);
}

TEST(CalcBoundingBox, SpansTheUsedVertices) {
    EXPECT_TRUE(IsBox(BoxOf(*Box()), {0, 0, 0}, {2, 3, 4}));
    EXPECT_TRUE(IsBox(BoxOf(*OpenTube(6)), {0, 0, 0}, {1, 1, 5}));
}

TEST(CalcBoundingBox, IgnoresVerticesThatNoTriangleUses) {
    const Mesh mesh = SingleTriangle();
    mesh->GetModifiableVertexArray()->push_back(ON_3dPoint(1000, -1000, 1000));
    EXPECT_TRUE(IsBox(BoxOf(*mesh), {0, 0, 0}, {1, 1, 0}));
}

TEST(CalcBoundingBox, IgnoresUnusedVerticesAlsoAmongManyAndAmongUnusable) {
    const Mesh mesh = SingleTriangle();
    mesh->GetModifiableVertexArray()->resize(100, ON_3dPoint(9, 9, 9));
    EXPECT_TRUE(IsBox(BoxOf(*mesh), {0, 0, 0}, {1, 1, 0}));
    mesh->GetModifiableVertexArray()->resize(4);
    mesh->GetModifiableVertexArray()->back() = ON_3dPoint(kNaN, kInfinity, ON_UNSET_VALUE);
    EXPECT_TRUE(IsBox(BoxOf(*mesh), {0, 0, 0}, {1, 1, 0}));
}

TEST(CalcBoundingBox, LeavesTheBoxUntouchedWhenThereIsNothingToMeasure) {
    const Mesh noTriangles = SingleTriangle();
    noTriangles->SetVertexIndexArray(Triangles({}));
    const Mesh noIndexArray = SingleTriangle();
    noIndexArray->SetVertexIndexArray(nullptr);
    const Mesh noVertexArray = SingleTriangle();
    noVertexArray->SetVertexArray(nullptr);
    for (const Mesh& mesh : {noTriangles, noIndexArray, noVertexArray, NewPrimitive()}) {
        ON_BoundingBox box(ON_3dPoint(7, 8, 9), ON_3dPoint(-1, kNaN, 3));
        EXPECT_FALSE(mesh->CalcBoundingBox(box));
        EXPECT_TRUE(IsBox(box, {7, 8, 9}, {-1, kNaN, 3}));
    }
}

TEST(CalcBoundingBox, ForgetsWhatTheBoxHeldBefore) {
    ON_BoundingBox box(ON_3dPoint(-100, -100, -100), ON_3dPoint(100, 100, 100));
    EXPECT_TRUE(SingleTriangle()->CalcBoundingBox(box));
    EXPECT_TRUE(IsBox(box, {0, 0, 0}, {1, 1, 0}));
}

TEST(CalcBoundingBox, OfOnePointIsThatPoint) {
    EXPECT_TRUE(IsBox(BoxOfPoints({{-3, 5, 1e300}}), {-3, 5, 1e300}, {-3, 5, 1e300}));
}

TEST(CalcBoundingBox, AZeroBoundHasTheSignOfTheFirstZeroMet) {
    EXPECT_TRUE(IsBox(BoxOfPoints({{1, -1, -0.0}, {-0.0, 0.0, 1}, {0.0, -0.0, 0.0}}),
                      {-0.0, -1, -0.0}, {1, 0.0, 1}));
    EXPECT_TRUE(IsBox(BoxOfPoints({{1, -1, 0.0}, {0.0, -0.0, 1}, {-0.0, 0.0, -0.0}}),
                      {0.0, -1, 0.0}, {1, -0.0, 1}));
}

TEST(CalcBoundingBox, ANaNAfterAValidPointLeavesItsAxisAlone) {
    EXPECT_TRUE(
        IsBox(BoxOfPoints({{1, 2, 3}, {kNaN, 5, kNaN}, {0, kNaN, 7}}), {0, 2, 3}, {1, 5, 7}));
}

TEST(CalcBoundingBox, AFirstPointThatIsNotUsableIsReplaced) {
    EXPECT_TRUE(IsBox(BoxOfPoints({{kNaN, 2, 3}, {5, 6, 7}, {4, 8, 7}}), {4, 6, 7}, {5, 8, 7}));
    EXPECT_TRUE(
        IsBox(BoxOfPoints({{ON_UNSET_VALUE, 2, 3}, {5, 6, 7}, {4, 8, 7}}), {4, 6, 7}, {5, 8, 7}));
}

TEST(CalcBoundingBox, AnInfinityMakesTheBoxUnusableSoThatTheNextPointReplacesIt) {
    EXPECT_TRUE(
        IsBox(BoxOfPoints({{1, 2, 3}, {kInfinity, 0, 0}, {4, 5, 6}}), {4, 5, 6}, {4, 5, 6}));
    EXPECT_TRUE(IsBox(BoxOfPoints({{1, 2, 3}, {4, 5, 6}, {kInfinity, 0, 0}}), {1, 0, 0},
                      {kInfinity, 5, 6}));
}

TEST(CalcBoundingBox, HugeCoordinatesAreOrdinaryNumbers) {
    const double huge = std::numeric_limits<double>::max() / 4;
    EXPECT_TRUE(IsBox(BoxOfPoints({{huge, huge, huge}, {-huge, 1, 2}, {0.5, huge, -huge}}),
                      {-huge, 1, -huge}, {huge, huge, huge}));
}

TEST(GetTriangleArea, IsHalfTheLengthOfTheCrossProduct) {
    EXPECT_EQ(SingleTriangle()->GetTriangleArea(0), 0.5);
    const Mesh mesh = Box();
    EXPECT_EQ(mesh->GetTriangleArea(0), 3.0) << "half of the bottom, 2 by 3";
    EXPECT_EQ(mesh->GetTriangleArea(2), 4.0) << "half of the front, 2 by 4";
    EXPECT_EQ(mesh->GetTriangleArea(11), 3.0) << "half of the top";
}

TEST(GetTriangleArea, OfATriangleInSpaceNeedsNoSpecialPlane) {
    // Edges (1,2,2) and (2,1,-2) are perpendicular, both of length 3.
    const Mesh mesh = NewPrimitive({{1, 1, 1}, {2, 3, 3}, {3, 2, -1}}, {{{0, 1, 2}}});
    EXPECT_EQ(mesh->GetTriangleArea(0), 4.5);
}

TEST(GetTriangleArea, OfADegenerateTriangleIsZero) {
    const Mesh mesh =
        NewPrimitive({{0, 0, 0}, {1, 1, 1}, {3, 3, 3}}, {{{0, 1, 2}}, {{1, 1, 0}}, {{2, 2, 2}}});
    EXPECT_TRUE(SameBits(mesh->GetTriangleArea(0), 0.0));
    EXPECT_TRUE(SameBits(mesh->GetTriangleArea(1), 0.0));
    EXPECT_TRUE(SameBits(mesh->GetTriangleArea(2), 0.0));
}

TEST(GetTriangleArea, IsMinusOneWhereThereIsNothingToMeasure) {
    const Mesh noVertexArray = SingleTriangle();
    noVertexArray->SetVertexArray(nullptr);
    EXPECT_EQ(noVertexArray->GetTriangleArea(0), -1.0);
    const Mesh noIndexArray = SingleTriangle();
    noIndexArray->SetVertexIndexArray(nullptr);
    EXPECT_EQ(noIndexArray->GetTriangleArea(0), -1.0);
    EXPECT_EQ(NewPrimitive()->GetTriangleArea(0), -1.0);
    EXPECT_EQ(SingleTriangle()->GetTriangleArea(2), -1.0);
    EXPECT_EQ(SingleTriangle()->GetTriangleArea(std::numeric_limits<size_t>::max()), -1.0);
}

TEST(GetTriangleArea, ANumberEqualToTheCountPassesTheGuard) {
    // The second triangle stays in the storage behind the last element.
    const Mesh mesh = Square();
    mesh->GetModifiableVertexIndexArray()->pop_back();
    EXPECT_NE(mesh->GetTriangleArea(1), -1.0);
    EXPECT_EQ(mesh->GetTriangleArea(2), -1.0);
}

TEST(CalcVolume, OfAClosedBoxIsTheSameFromAnyReferencePoint) {
    // References with y a multiple of 3 keep every term a whole number, so the sum is exact.
    EXPECT_EQ(Box()->CalcVolume(ON_3dPoint(0, 0, 0)), 24.0);
    EXPECT_EQ(Box()->CalcVolume(ON_3dPoint(1, 3, 2)), 24.0);
    EXPECT_EQ(Box()->CalcVolume(ON_3dPoint(-50, 300, 7)), 24.0);
    // 12 terms of at most 40, each rounded once and added with one rounding: below 24 * 2^-48.
    EXPECT_NEAR(Box()->CalcVolume(ON_3dPoint(0.1, 1.7, -9.3)), 24.0, 24.0 * 0x1p-48);
}

TEST(CalcVolume, IsNegativeForTheOppositeWinding) {
    const Mesh mesh = Box();
    for (TriangleIndex& triangle : *mesh->GetModifiableVertexIndexArray())
        std::swap(triangle[1], triangle[2]);
    EXPECT_EQ(mesh->CalcVolume(ON_3dPoint(0, 0, 0)), -24.0);
}

TEST(CalcVolume, OfAnOpenMeshDependsOnTheReferencePoint) {
    // The triangle has area 1/2 and normal +z; the tetrahedron to height h has volume h/6 below it.
    EXPECT_EQ(SingleTriangle()->CalcVolume(ON_3dPoint(0, 0, 0)), 0.0);
    EXPECT_EQ(SingleTriangle()->CalcVolume(ON_3dPoint(5, 5, -6)), 1.0);
    EXPECT_EQ(SingleTriangle()->CalcVolume(ON_3dPoint(-1, 0, 12)), -2.0);
}

TEST(CalcVolume, DividesEachTermBeforeAdding) {
    // Two terms of 1: 1/6 + 1/6 is the double 0.33333333333333331 either way, seven are not: their
    // sum of sixths, each rounded, is one bit below 7/6.
    const Mesh mesh = SingleTriangle();
    mesh->GetModifiableVertexIndexArray()->resize(7, TriangleIndex{0, 1, 2});
    const double sixth = 1.0 / 6.0;
    double sum = 0.0;
    for (int term = 0; term < 7; ++term)
        sum += sixth;
    ASSERT_NE(sum, 7.0 / 6.0);
    EXPECT_EQ(mesh->CalcVolume(ON_3dPoint(0, 0, -1)), sum);
}

TEST(CalcVolume, IsZeroWhereThereIsNothingToMeasure) {
    const Mesh noVertexArray = SingleTriangle();
    noVertexArray->SetVertexArray(nullptr);
    const Mesh noIndexArray = SingleTriangle();
    noIndexArray->SetVertexIndexArray(nullptr);
    const Mesh noTriangles = SingleTriangle();
    noTriangles->SetVertexIndexArray(Triangles({}));
    for (const Mesh& mesh : {noVertexArray, noIndexArray, noTriangles, NewPrimitive()})
        EXPECT_TRUE(SameBits(mesh->CalcVolume(ON_3dPoint(1, 2, 3)), 0.0));
}

TEST(Measure, ReadsArraysThroughTheGettersOnceEach) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    ON_BoundingBox box;
    mesh->CalcBoundingBox(box);
    EXPECT_THAT(mesh->Calls(),
                ElementsAre("CalcBoundingBox", "GetVertexArray", "GetVertexIndexArray"));
    mesh->ClearCalls();
    mesh->GetTriangleArea(0);
    EXPECT_THAT(mesh->Calls(),
                ElementsAre("GetTriangleArea", "GetVertexArray", "GetVertexIndexArray"));
    mesh->ClearCalls();
    mesh->CalcVolume(ON_3dPoint(0, 0, 0));
    EXPECT_THAT(mesh->Calls(), ElementsAre("CalcVolume", "GetVertexArray", "GetVertexIndexArray"));
}

TEST(Measure, MeasuresWhatOverriddenGettersAnswer) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->substitutes.vertexArray = Vertices({{0, 0, 6}, {1, 0, 6}, {0, 1, 6}});
    mesh->substitutes.vertexIndexArray = Triangles({{{0, 1, 2}}});
    EXPECT_TRUE(IsBox(BoxOf(*mesh), {0, 0, 6}, {1, 1, 6}));
    EXPECT_EQ(mesh->GetTriangleArea(0), 0.5);
    EXPECT_EQ(mesh->CalcVolume(ON_3dPoint(0, 0, 0)), 1.0);
}

TEST(Measure, ChangesNothingAndKeepsNoHandle) {
    const Mesh mesh = FullSquare();
    const ArrayAddresses before = AddressesOf(*mesh);
    ON_BoundingBox box;
    mesh->CalcBoundingBox(box);
    mesh->GetTriangleArea(1);
    mesh->CalcVolume(ON_3dPoint(1, 1, 1));
    EXPECT_EQ(AddressesOf(*mesh), before);
    ExpectBitEqual(*mesh, *FullSquare());
    EXPECT_EQ(mesh->GetVertexArray().use_count(), 2);
}

TEST(FloatingPoint, MultiplyAndAddAreNotFused) {
    // (1 + 2^-30)^2 = 1 + 2^-29 + 2^-60; a double keeps 1 + 2^-29. A fused operation would answer
    // 2^-60 instead of 0.
    volatile double factor = 1.0 + 0x1p-30;
    volatile double subtrahend = -(1.0 + 0x1p-29);
    const double a = factor;
    const double b = subtrahend;
    EXPECT_EQ(a * a + b, 0.0);
    EXPECT_EQ(std::fma(a, a, b), 0x1p-60);
}

TEST(FloatingPoint, TheModulesOwnSumsAreNotFused) {
    // P1 - P0 = (a, b', 0) and P2 - P0 = (1, a, 0) give the cross product a * a - b' * 1 in z, which
    // rounds to 0 unless it is fused.
    const double a = 1.0 + 0x1p-30;
    const Mesh mesh = NewPrimitive({{0, 0, 0}, {a, 1.0 + 0x1p-29, 0}, {1, a, 0}}, {{{0, 1, 2}}});
    EXPECT_EQ(mesh->GetTriangleArea(0), 0.0);
    EXPECT_EQ(mesh->CalcVolume(ON_3dPoint(0, 0, -1)), 0.0);
}

}  // namespace

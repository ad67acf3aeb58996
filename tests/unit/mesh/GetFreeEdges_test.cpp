#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

using Edges = std::vector<std::pair<size_t, size_t>>;

Edges FreeEdgesOf(const Mesh& mesh) {
    Edges edges;
    mesh->GetFreeEdges(edges);
    return edges;
}

// Only the triangles count; the numbers address no vertices.
Edges FreeEdgesOf(std::initializer_list<TriangleIndex> triangles) {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexIndexArray(Triangles(triangles));
    return FreeEdgesOf(mesh);
}

TEST(GetFreeEdges, ASingleTriangleHasThree) {
    EXPECT_THAT(FreeEdgesOf(SingleTriangle()), ElementsAre(Pair(0, 1), Pair(1, 2), Pair(2, 0)));
}

TEST(GetFreeEdges, SharedEdgeOfASquareCancels) {
    EXPECT_THAT(FreeEdgesOf(Square()), ElementsAre(Pair(0, 1), Pair(1, 2), Pair(2, 3), Pair(3, 0)));
}

TEST(GetFreeEdges, AClosedBoxHasNone) {
    EXPECT_THAT(FreeEdgesOf(Box()), IsEmpty());
}

TEST(GetFreeEdges, ATubeHasItsTwoRimsInTheDirectionOfTheirTriangles) {
    // Seen from outside, the lower rim is walked counter-clockwise and the upper one clockwise.
    EXPECT_THAT(FreeEdgesOf(OpenTube(3)),
                ElementsAre(Pair(0, 1), Pair(1, 2), Pair(2, 3), Pair(3, 0), Pair(8, 11), Pair(9, 8),
                            Pair(10, 9), Pair(11, 10)));
}

TEST(GetFreeEdges, EdgesKeepTheDirectionOfTheirTriangle) {
    EXPECT_THAT(FreeEdgesOf({{{9, 4, 7}}}), ElementsAre(Pair(4, 7), Pair(7, 9), Pair(9, 4)));
    EXPECT_THAT(FreeEdgesOf({{{9, 7, 4}}}), ElementsAre(Pair(4, 9), Pair(7, 4), Pair(9, 7)));
}

TEST(GetFreeEdges, AscendsByFromThenByTo) {
    EXPECT_THAT(
        FreeEdgesOf({{{5, 2, 1}}, {{5, 0, 3}}}),
        ElementsAre(Pair(0, 3), Pair(1, 5), Pair(2, 1), Pair(3, 5), Pair(5, 0), Pair(5, 2)));
}

TEST(GetFreeEdges, AnEdgeSharedInOneDirectionIsFreeOnce) {
    // 0 -> 1 twice.
    EXPECT_THAT(FreeEdgesOf({{{0, 1, 2}}, {{0, 1, 3}}}),
                ElementsAre(Pair(0, 1), Pair(1, 2), Pair(1, 3), Pair(2, 0), Pair(3, 0)));
}

TEST(GetFreeEdges, ThereBackAndThereLeavesTheThird) {
    EXPECT_THAT(FreeEdgesOf({{{0, 1, 2}}, {{1, 0, 3}}, {{0, 1, 4}}}),
                ElementsAre(Pair(0, 1), Pair(0, 3), Pair(1, 2), Pair(1, 4), Pair(2, 0), Pair(3, 1),
                            Pair(4, 0)));
}

TEST(GetFreeEdges, ThereThereAndBackLeavesNothing) {
    EXPECT_THAT(
        FreeEdgesOf({{{0, 1, 2}}, {{0, 1, 4}}, {{1, 0, 3}}}),
        ElementsAre(Pair(0, 3), Pair(1, 2), Pair(1, 4), Pair(2, 0), Pair(3, 1), Pair(4, 0)));
}

TEST(GetFreeEdges, ADegenerateTriangleLeavesTheEdgeToItself) {
    EXPECT_THAT(FreeEdgesOf({{{6, 6, 8}}}), ElementsAre(Pair(6, 6)));
    // Its three edges are one: there, gone, there again.
    EXPECT_THAT(FreeEdgesOf({{{6, 6, 6}}}), ElementsAre(Pair(6, 6)));
    EXPECT_THAT(FreeEdgesOf({{{6, 6, 8}}, {{9, 6, 6}}}), IsEmpty());
}

TEST(GetFreeEdges, NumbersOfAnySizeAreOnlyCompared) {
    constexpr size_t kLast = std::numeric_limits<size_t>::max();
    EXPECT_THAT(
        FreeEdgesOf({{{kLast, 0, kLast - 1}}, {{kLast, kLast - 1, 1}}}),
        ElementsAre(Pair(0, kLast - 1), Pair(1, kLast), Pair(kLast - 1, 1), Pair(kLast, 0)));
    // Far from 0 and near each other.
    EXPECT_THAT(
        FreeEdgesOf({{{kLast, kLast - 2, kLast - 1}}}),
        ElementsAre(Pair(kLast - 2, kLast - 1), Pair(kLast - 1, kLast), Pair(kLast, kLast - 2)));
}

TEST(GetFreeEdges, AVertexOfThousandsOfTrianglesPairsToo) {
    // Rim 0 -> k -> k+1: all spokes but the first and the last cancel.
    const Edges edges = FreeEdgesOf(Fan(5000));
    ASSERT_THAT(edges, SizeIs(5002));
    EXPECT_THAT(edges.front(), Pair(0, 1));
    EXPECT_THAT(edges[1], Pair(1, 2));
    EXPECT_THAT(edges.back(), Pair(5001, 0));
}

TEST(GetFreeEdges, InALongListTheOrderOfTraversalsStillCounts) {
    const Mesh mesh = Fan(100);
    auto& triangles = *mesh->GetModifiableVertexIndexArray();
    // Spoke 0-1 was walked there; there again, then back, and it is gone.
    triangles.push_back({{0, 1, 500}});
    triangles.push_back({{1, 0, 501}});
    // Spoke 101-0 was walked there; back, then there again, and it is free.
    triangles.push_back({{0, 101, 502}});
    triangles.push_back({{101, 0, 503}});
    // An edge to itself, twice, then once.
    triangles.push_back({{0, 0, 0}});
    const Edges edges = FreeEdgesOf(mesh);
    EXPECT_THAT(edges, ::testing::Not(::testing::Contains(Pair(0, 1))));
    EXPECT_THAT(edges, ::testing::Not(::testing::Contains(Pair(1, 0))));
    EXPECT_THAT(edges, ::testing::Contains(Pair(101, 0)));
    EXPECT_THAT(edges, ::testing::Contains(Pair(0, 0)));
}

TEST(GetFreeEdges, WithoutTrianglesTheVectorStaysAsItWas) {
    Edges edges = {{7, 7}};
    edges.shrink_to_fit();
    NewPrimitive()->GetFreeEdges(edges);
    NewPrimitive({}, {})->GetFreeEdges(edges);
    EXPECT_THAT(edges, ElementsAre(Pair(7, 7)));
    EXPECT_EQ(edges.capacity(), 1u);
}

TEST(GetFreeEdges, DeliberatelyAppendsToWhatTheVectorHolds) {
    Edges edges = {{9, 9}, {0, 0}};
    SingleTriangle()->GetFreeEdges(edges);
    EXPECT_THAT(edges, ElementsAre(Pair(9, 9), Pair(0, 0), Pair(0, 1), Pair(1, 2), Pair(2, 0)));
}

TEST(GetFreeEdges, MakesRoomForItsOwnEdgesAlone) {
    Edges edges;
    SingleTriangle()->GetFreeEdges(edges);
    EXPECT_EQ(edges.capacity(), 3u);

    Edges roomy;
    roomy.reserve(10);
    SingleTriangle()->GetFreeEdges(roomy);
    EXPECT_EQ(roomy.capacity(), 10u);
}

TEST(GetFreeEdges, ReadsThroughTheGetterOnceAndChangesNothing) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->substitutes.vertexIndexArray = Triangles({{{0, 1, 2}}});
    Edges edges;
    mesh->GetFreeEdges(edges);
    EXPECT_EQ(mesh->Calls(), (std::vector<std::string>{"GetFreeEdges", "GetVertexIndexArray"}));
    EXPECT_THAT(edges, SizeIs(3));

    const Mesh square = FullSquare();
    const Mesh same = FullSquare();
    square->GetFreeEdges(edges);
    ExpectBitEqual(*square, *same);
}

}  // namespace

#include "mesh/VraMeshDegenJudge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <utility>

#include "support/Caught.h"
#include "support/DegenerateOracle.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshDegenJudge;
using TriangleIndex = VraMeshDegenJudge::TriangleIndex;
using MeshVertex = VraMeshDegenJudge::MeshVertex;
using ::testing::ElementsAre;

constexpr TriangleIndex kSound = {{4, 7, 9}};
constexpr TriangleIndex kDegenerate = {{4, 4, 7}};
const ON_2dPoint kUV(0, 0);

static_assert(!std::is_copy_constructible_v<VraMeshDegenJudge>);
static_assert(!std::is_copy_assignable_v<VraMeshDegenJudge>);
static_assert(std::has_virtual_destructor_v<VraMeshDegenJudge>);
static_assert(VraMeshDegenJudge::eJudge == 0 && VraMeshDegenJudge::eTable == 1);
static_assert(sizeof(VraMeshDegenJudge::EMode) == 4);

MeshVertex VertexOf(uint64_t key, std::initializer_list<uint64_t> triangles = {}) {
    MeshVertex vertex;
    vertex.key = key;
    vertex.triangles.assign(triangles.begin(), triangles.end());
    return vertex;
}

TEST(VraMeshDegenJudge, ANewOneMarksEveryTriangleRemoved) {
    VraMeshDegenJudge judge(3);
    EXPECT_TRUE(judge.IsExistDegen());
    EXPECT_THAT(TableOf(judge, 3), ElementsAre(kGone, kGone, kGone));
}

TEST(VraMeshDegenJudge, WithoutTrianglesNothingIsDegenerate) {
    EXPECT_FALSE(VraMeshDegenJudge(0).IsExistDegen());
}

TEST(VraMeshDegenJudge, ACountThatNoTableCanHaveIsTooLong) {
    EXPECT_EQ(CaughtFrom([] { VraMeshDegenJudge judge(std::numeric_limits<size_t>::max()); }),
              LengthError("vector too long"));
}

TEST(VraMeshDegenJudge, AnyTwoEqualCornersAreDegenerate) {
    VraMeshDegenJudge judge(5);
    EXPECT_TRUE(judge(TriangleIndex{{4, 4, 7}}));
    EXPECT_TRUE(judge(TriangleIndex{{7, 4, 4}}));
    EXPECT_TRUE(judge(TriangleIndex{{4, 7, 4}}));
    EXPECT_TRUE(judge(TriangleIndex{{4, 4, 4}}));
    EXPECT_FALSE(judge(TriangleIndex{{4, 7, 9}}));
}

TEST(VraMeshDegenJudge, JudgingNumbersTheKeptTriangles) {
    VraMeshDegenJudge judge(5);
    judge(kDegenerate);
    judge(kSound);
    judge(kSound);
    judge(kDegenerate);
    judge(kSound);
    EXPECT_THAT(TableOf(judge, 5), ElementsAre(kGone, 0, 1, kGone, 2));
}

TEST(VraMeshDegenJudge, ATriangleNotYetJudgedCountsAsRemoved) {
    VraMeshDegenJudge judge(2);
    judge(kSound);
    EXPECT_FALSE(std::as_const(judge)(size_t{0}));
    EXPECT_TRUE(std::as_const(judge)(size_t{1}));
    EXPECT_TRUE(judge.IsExistDegen());
    judge(kSound);
    EXPECT_FALSE(judge.IsExistDegen());
}

TEST(VraMeshDegenJudge, AskingByNumberMovesNothing) {
    VraMeshDegenJudge judge(2);
    judge.SetDegenTriangles({0});
    judge.SetMode(VraMeshDegenJudge::eTable);
    EXPECT_FALSE(std::as_const(judge)(size_t{1}));
    EXPECT_FALSE(std::as_const(judge)(size_t{1}));
    EXPECT_TRUE(judge(kSound));
    EXPECT_FALSE(judge(kSound));
}

TEST(VraMeshDegenJudge, TableModeReadsTheTableAndNotTheTriangle) {
    VraMeshDegenJudge judge(3);
    judge.SetDegenTriangles({1});
    judge.SetMode(VraMeshDegenJudge::eTable);
    EXPECT_FALSE(judge(kDegenerate));
    EXPECT_TRUE(judge(kSound));
    EXPECT_FALSE(judge(kDegenerate));
    EXPECT_THAT(TableOf(judge, 3), ElementsAre(0, kGone, 1));
}

TEST(VraMeshDegenJudge, EveryModeButZeroIsTableMode) {
    for (const int32_t mode : {2, -1, std::numeric_limits<int32_t>::min()}) {
        VraMeshDegenJudge judge(2);
        judge.SetDegenTriangles({0});
        judge.SetMode(static_cast<VraMeshDegenJudge::EMode>(mode));
        EXPECT_TRUE(judge(kSound)) << mode;
        EXPECT_FALSE(judge(kDegenerate)) << mode;
    }
}

TEST(VraMeshDegenJudge, TheListNeedNotBeSortedOrFreeOfRepetitions) {
    VraMeshDegenJudge judge(6);
    judge.SetDegenTriangles({5, 1, 1});
    EXPECT_THAT(TableOf(judge, 6), ElementsAre(0, kGone, 1, 2, 3, kGone));
}

TEST(VraMeshDegenJudge, ListedNumbersBeyondTheTableAreIgnored) {
    VraMeshDegenJudge judge(3);
    judge.SetDegenTriangles({9, 3, std::numeric_limits<size_t>::max()});
    EXPECT_THAT(TableOf(judge, 3), ElementsAre(0, 1, 2));
    EXPECT_FALSE(judge.IsExistDegen());
}

TEST(VraMeshDegenJudge, AListReplacesTheTableAndLeavesModeCursorAndNextNumber) {
    VraMeshDegenJudge judge(4);
    judge(kSound);
    judge(kSound);
    judge.SetDegenTriangles({3});
    judge(kSound);  // still judging, at triangle 2, as the third kept one
    EXPECT_THAT(TableOf(judge, 4), ElementsAre(0, 1, 2, kGone));
    judge.SetDegenTriangles({});
    EXPECT_THAT(TableOf(judge, 4), ElementsAre(0, 1, 2, 3));
    judge(kSound);
    EXPECT_THAT(TableOf(judge, 4), ElementsAre(0, 1, 2, 3));
}

TEST(VraMeshDegenJudge, ASecondJudgingPassNumbersOnFromTheFirst) {
    VraMeshDegenJudge judge(2);
    judge(kSound);
    judge(kSound);
    judge.ResetIndex();
    judge(kDegenerate);
    judge(kSound);
    EXPECT_THAT(TableOf(judge, 2), ElementsAre(kGone, 2));
}

TEST(VraMeshDegenJudge, ThreeCornersAnswerForOneTriangle) {
    VraMeshDegenJudge judge(2);
    judge.SetDegenTriangles({0});
    judge.ResetIndex();
    for (int corner = 0; corner < 3; ++corner)
        EXPECT_TRUE(judge(kUV)) << corner;
    for (int corner = 0; corner < 3; ++corner)
        EXPECT_FALSE(judge(kUV)) << corner;
}

TEST(VraMeshDegenJudge, CornersReadTheTableInJudgingModeToo) {
    VraMeshDegenJudge judge(1);
    judge.SetDegenTriangles({});
    judge.SetMode(VraMeshDegenJudge::eJudge);
    EXPECT_FALSE(judge(kUV));
}

TEST(VraMeshDegenJudge, ResettingForgetsAHalfReadTriangle) {
    VraMeshDegenJudge judge(2);
    judge.SetDegenTriangles({0});
    judge(kUV);
    judge(kUV);
    judge.ResetIndex();
    EXPECT_TRUE(judge(kUV));
    EXPECT_TRUE(judge(kUV));
    EXPECT_TRUE(judge(kUV));
    EXPECT_FALSE(judge(kUV));
}

TEST(VraMeshDegenJudge, TheCursorIsSharedByTrianglesAndCorners) {
    VraMeshDegenJudge judge(2);
    judge.SetDegenTriangles({1});
    judge.SetMode(VraMeshDegenJudge::eTable);
    EXPECT_FALSE(judge(kSound));
    EXPECT_TRUE(judge(kUV));
}

TEST(VraMeshDegenJudge, AVertexLosesRemovedTrianglesAndGetsNewNumbers) {
    VraMeshDegenJudge judge(3);
    judge.SetDegenTriangles({0});
    MeshVertex vertex = VertexOf(5, {0, 2});
    judge(vertex);
    EXPECT_THAT(vertex.triangles, ElementsAre(1));
    EXPECT_EQ(vertex.key, 5u);
}

TEST(VraMeshDegenJudge, AVertexKeepsTheOrderAndTheRepetitionsOfItsTriangles) {
    VraMeshDegenJudge judge(4);
    judge.SetDegenTriangles({1});
    MeshVertex vertex = VertexOf(5, {3, 1, 0, 3, 2, 1});
    judge(vertex);
    EXPECT_THAT(vertex.triangles, ElementsAre(2, 0, 2, 1));
}

TEST(VraMeshDegenJudge, ALongTriangleListIsRenumberedAsWell) {
    VraMeshDegenJudge judge(100);
    judge.SetDegenTriangles({0});
    MeshVertex vertex = VertexOf(1);
    std::vector<uint64_t> expected;
    for (uint64_t triangle = 0; triangle < 100; ++triangle) {
        vertex.triangles.push_back(triangle);
        if (triangle > 0)
            expected.push_back(triangle - 1);
    }
    judge(vertex);
    EXPECT_EQ(std::vector<uint64_t>(vertex.triangles.begin(), vertex.triangles.end()), expected);
}

TEST(VraMeshDegenJudge, ARepeatedKeyIsReported) {
    VraMeshDegenJudge judge(0);
    std::vector<bool> answers;
    for (const uint64_t key : {0u, 0u, 3u, 3u, 3u, 4u}) {
        MeshVertex vertex = VertexOf(key);
        answers.push_back(judge(vertex));
    }
    EXPECT_THAT(answers, ElementsAre(false, true, false, true, true, false));
}

TEST(VraMeshDegenJudge, AfterResettingTheFirstKeyIsNew) {
    VraMeshDegenJudge judge(0);
    MeshVertex vertex = VertexOf(3);
    judge(vertex);
    judge.ResetIndex();
    EXPECT_FALSE(judge(vertex));
}

TEST(VraMeshDegenJudge, AFirstKeyWithAllBitsSetCountsAsRepeated) {
    VraMeshDegenJudge judge(0);
    MeshVertex vertex = VertexOf(std::numeric_limits<uint64_t>::max());
    EXPECT_TRUE(judge(vertex));
}

TEST(VraMeshDegenJudge, TheLastKeyIsKeptAsASigned32BitNumber) {
    VraMeshDegenJudge judge(0);
    MeshVertex tooLarge = VertexOf(0x80000000u);
    EXPECT_FALSE(judge(tooLarge));
    EXPECT_FALSE(judge(tooLarge));  // comes back as 0xFFFFFFFF80000000

    MeshVertex negative = VertexOf(0xFFFFFFFF80000000u);
    EXPECT_TRUE(judge(negative));

    MeshVertex wide = VertexOf(0x700000003u);
    EXPECT_FALSE(judge(wide));
    MeshVertex low = VertexOf(3);
    EXPECT_TRUE(judge(low));  // only the low half of the key before was kept
}

}  // namespace

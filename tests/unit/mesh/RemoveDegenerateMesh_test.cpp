#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "mesh/VraMeshDegenJudge.h"
#include "support/Caught.h"
#include "support/DegenerateOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vr::VraMeshDegenJudge;
using Recording = boost::intrusive_ptr<RecordingPrimitive>;

constexpr TriangleIndex kFirst = {{0, 1, 2}};
constexpr TriangleIndex kDegenerate = {{3, 3, 4}};
constexpr TriangleIndex kLast = {{5, 6, 7}};

// Three triangles, the middle one degenerate.
Recording WithDegenerateTriangle() {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetVertexIndexArray(Triangles({kFirst, kDegenerate, kLast}));
    mesh->ClearCalls();
    return mesh;
}

TEST(RemoveDegenerateMesh, ATriangleThatNamesAVertexTwiceGoes) {
    const Recording mesh = WithDegenerateTriangle();
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kFirst, kLast));
}

TEST(RemoveDegenerateMesh, TheRestKeepsItsOrder) {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexIndexArray(
        Triangles({{{1, 1, 2}}, {{9, 8, 7}}, {{2, 1, 2}}, {{6, 5, 4}}, {{3, 2, 2}}, {{3, 2, 1}}}));
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(
        *mesh->GetVertexIndexArray(),
        ElementsAre(TriangleIndex{{9, 8, 7}}, TriangleIndex{{6, 5, 4}}, TriangleIndex{{3, 2, 1}}));
}

TEST(RemoveDegenerateMesh, CoincidentVerticesWithDifferentNumbersAreNotDegenerate) {
    const Mesh mesh = NewPrimitive({{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}, {{{0, 1, 2}}});
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kFirst));
}

TEST(RemoveDegenerateMesh, WithoutVertexIndicesItAnswersFalseAndTouchesNothing) {
    const Mesh mesh = NewPrimitive();
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    EXPECT_FALSE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(0, 1));
}

TEST(RemoveDegenerateMesh, WithNoTrianglesNothingHappens) {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetVertexIndexArray(Triangles({}));
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(0, 1));
}

TEST(RemoveDegenerateMesh, PerVertexListsLoseTheTripleOfTheTriangle) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->SetNormalIndexArray(PerVertex({{{0, 0, 0}}, {{1, 1, 1}}, {{2, 2, 2}}}));
    mesh->SetColorIndexArray(PerVertex({{{3, 3, 3}}, {{4, 4, 4}}, {{5, 5, 5}}}));
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(PerVertexOf(*mesh->GetNormalIndexArray()),
                ElementsAre(TriangleIndex{{0, 0, 0}}, TriangleIndex{{2, 2, 2}}));
    EXPECT_THAT(PerVertexOf(*mesh->GetColorIndexArray()),
                ElementsAre(TriangleIndex{{3, 3, 3}}, TriangleIndex{{5, 5, 5}}));
}

TEST(RemoveDegenerateMesh, PerTriangleListsAreCutByTheValueOfTheirEntries) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->SetNormalIndexArray(PerTriangle({0, 1, 1}));
    mesh->SetColorIndexArray(PerTriangle({2, 0, 2}));
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(0));
    EXPECT_THAT(PerTriangleOf(*mesh->GetColorIndexArray()), ElementsAre(2, 0, 2));
}

TEST(RemoveDegenerateMesh, TextureUVIndicesLoseTheTripleOfTheTriangle) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->SetTextureUVIndexArray(Triangles({{{8, 8, 8}}, {{7, 6, 5}}, {{9, 9, 9}}}));
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(*mesh->GetTextureUVIndexArray(),
                ElementsAre(TriangleIndex{{8, 8, 8}}, TriangleIndex{{9, 9, 9}}));
}

TEST(RemoveDegenerateMesh, AnArrayOfTwoRolesIsCutOnce) {
    const Recording mesh = WithDegenerateTriangle();
    const auto numbers = PerVertex({{{0, 0, 0}}, {{1, 1, 1}}, {{2, 2, 2}}});
    mesh->SetNormalIndexArray(numbers);
    mesh->SetColorIndexArray(numbers);
    mesh->SetTextureUVIndexArray(mesh->GetModifiableVertexIndexArray());
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kFirst, kLast));
    EXPECT_THAT(PerVertexOf(*numbers),
                ElementsAre(TriangleIndex{{0, 0, 0}}, TriangleIndex{{2, 2, 2}}));
}

// As after `DeleteFacetFaces` of the first of four triangles with a normal each.
TEST(RemoveDegenerateMesh, APerTriangleEntryThatIsNoTrianglesNumberStays) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->SetNormalIndexArray(PerTriangle({1, 2, 3}));
    mesh->SetColorIndexArray(PerTriangle({static_cast<size_t>(-1), 1, 1000000}));
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(2, 3));
    EXPECT_THAT(PerTriangleOf(*mesh->GetColorIndexArray()),
                ElementsAre(static_cast<size_t>(-1), 1000000));
}

TEST(RemoveDegenerateMesh, ValuesUVsAndArrayObjectsStay) {
    const Mesh mesh = FullSquare();
    (*mesh->GetModifiableVertexIndexArray())[1] = {{2, 2, 3}};
    const ArrayAddresses before = AddressesOf(*mesh);
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());

    EXPECT_EQ(AddressesOf(*mesh), before);
    const Mesh expected = FullSquare();
    expected->SetVertexIndexArray(Triangles({{{0, 1, 2}}}));
    expected->SetNormalIndexArray(PerVertex({{{0, 0, 1}}}));
    expected->SetColorIndexArray(PerTriangle({0}));  // the entry 1 named the removed triangle
    expected->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}}));
    ExpectBitEqual(*mesh, *expected);
}

TEST(RemoveDegenerateMesh, EverySharerSeesTheCut) {
    const Recording mesh = WithDegenerateTriangle();
    const Mesh sharer = NewPrimitive();
    mesh->ShallowCopy(sharer);
    mesh->RemoveDegenerateMesh();
    EXPECT_THAT(*sharer->GetVertexIndexArray(), ElementsAre(kFirst, kLast));
}

TEST(RemoveDegenerateMesh, StorageIsKept) {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexIndexArray(
        std::make_shared<Vr::VraMeshPrimitive::VertexIndexArray>(100, kDegenerate));
    mesh->SetNormalIndexArray(PerVertex(std::vector<TriangleIndex>(100, kFirst)));
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_EQ(mesh->GetVertexIndexArray()->size(), 0u);
    EXPECT_GE(mesh->GetVertexIndexArray()->capacity(), 100u);
    EXPECT_GE(PerVertexOf(*mesh->GetNormalIndexArray()).capacity(), 100u);
}

TEST(RemoveDegenerateMesh, EachArrayIsFetchedOnceAndInOrder) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->SetNormalIndexArray(PerTriangle({0, 1, 2}));
    mesh->SetColorIndexArray(PerTriangle({0, 1, 2}));
    mesh->SetTextureUVIndexArray(Triangles({kFirst, kFirst, kFirst}));
    mesh->ClearCalls();
    mesh->RemoveDegenerateMesh();
    EXPECT_THAT(mesh->Calls(),
                ElementsAre("GetModifiableVertexIndexArray", "OnRemoveDegenerateMesh",
                            "GetModifiableVertexIndexArray", "GetModifiableNormalIndexArray",
                            "IsNormalPerVertex", "GetModifiableColorIndexArray", "IsColorPerVertex",
                            "GetModifiableTextureUVIndexArray"));
}

TEST(RemoveDegenerateMesh, WithNothingDegenerateOtherArraysAreNotFetched) {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetVertexIndexArray(Triangles({kFirst, kLast}));
    mesh->SetNormalIndexArray(PerTriangle({0, 1, 2}));
    mesh->ClearCalls();
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(mesh->Calls(),
                ElementsAre("GetModifiableVertexIndexArray", "OnRemoveDegenerateMesh",
                            "GetModifiableVertexIndexArray"));
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kFirst, kLast));
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(0, 1, 2));
}

TEST(RemoveDegenerateMesh, ArraysAreReachedThroughTheAccessors) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->substitutes.vertexIndexArray = Triangles({kDegenerate, kLast});
    mesh->substitutes.textureUVIndexArray = Triangles({kFirst, kLast});
    EXPECT_TRUE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(**mesh->substitutes.vertexIndexArray, ElementsAre(kLast));
    EXPECT_THAT(**mesh->substitutes.textureUVIndexArray, ElementsAre(kLast));
    mesh->substitutes = {};
    EXPECT_EQ(mesh->GetVertexIndexArray()->size(), 3u);
}

// Answers with the opposite form.
class WrongForm : public RecordingPrimitive {
public:
    bool IsColorPerVertex() const override { return !RecordingPrimitive::IsColorPerVertex(); }
};

TEST(RemoveDegenerateMesh, AFormThatIsNotHeldThrowsAndEarlierCutsStay) {
    const boost::intrusive_ptr<WrongForm> mesh(new WrongForm);
    mesh->SetVertexIndexArray(Triangles({kFirst, kDegenerate, kLast}));
    mesh->SetNormalIndexArray(PerTriangle({0, 1, 2}));
    mesh->SetColorIndexArray(PerTriangle({0, 1, 2}));
    mesh->SetTextureUVIndexArray(Triangles({kFirst, kFirst, kFirst}));
    EXPECT_EQ(CaughtFrom([&] { mesh->RemoveDegenerateMesh(); }).text,
              "boost::bad_get: failed value get using boost::get");
    EXPECT_EQ(mesh->GetVertexIndexArray()->size(), 2u);
    EXPECT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()).size(), 2u);
    EXPECT_EQ(PerTriangleOf(*mesh->GetColorIndexArray()).size(), 3u);
    EXPECT_EQ(mesh->GetTextureUVIndexArray()->size(), 3u);
}

TEST(OnRemoveDegenerateMesh, APresetListRemovesSoundTriangles) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->SetNormalIndexArray(PerVertex({{{0, 0, 0}}, {{1, 1, 1}}, {{2, 2, 2}}}));
    mesh->SetColorIndexArray(PerVertex({{{0, 0, 0}}, {{1, 1, 1}}, {{2, 2, 2}}}));
    VraMeshDegenJudge judge(3);
    judge.SetDegenTriangles({0});
    EXPECT_TRUE(mesh->OnRemoveDegenerateMesh(judge, false));
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kDegenerate, kLast));
    EXPECT_THAT(PerVertexOf(*mesh->GetNormalIndexArray()),
                ElementsAre(TriangleIndex{{1, 1, 1}}, TriangleIndex{{2, 2, 2}}));
    EXPECT_THAT(PerVertexOf(*mesh->GetColorIndexArray()),
                ElementsAre(TriangleIndex{{1, 1, 1}}, TriangleIndex{{2, 2, 2}}));
}

TEST(OnRemoveDegenerateMesh, WithoutVertexIndicesTheJudgeIsLeftAlone) {
    const Recording mesh(new RecordingPrimitive);
    VraMeshDegenJudge judge(1);
    EXPECT_FALSE(mesh->OnRemoveDegenerateMesh(judge, false));
    EXPECT_TRUE(judge(kDegenerate));
    EXPECT_THAT(TableOf(judge, 1), ElementsAre(kGone));
    judge.ResetIndex();
    EXPECT_FALSE(judge(kFirst));  // still judging: the table alone would have answered true
}

TEST(OnRemoveDegenerateMesh, TheTableTellsAfterwardsWhatWentAndTheCursorIsBack) {
    const Recording mesh = WithDegenerateTriangle();
    VraMeshDegenJudge judge(3);
    EXPECT_TRUE(mesh->OnRemoveDegenerateMesh(judge, true));
    EXPECT_FALSE(judge(ON_2dPoint(0, 0)));
    judge.ResetIndex();
    EXPECT_THAT(TableOf(judge, 3), ElementsAre(0, kGone, 1));
}

TEST(OnRemoveDegenerateMesh, TheJudgeStaysJudgingWhereThereIsNoOtherIndexArray) {
    const Recording mesh = WithDegenerateTriangle();
    VraMeshDegenJudge judge(3);
    judge.SetMode(VraMeshDegenJudge::eTable);
    mesh->OnRemoveDegenerateMesh(judge, true);
    EXPECT_TRUE(judge(kDegenerate));  // entry 0 says kept
}

TEST(OnRemoveDegenerateMesh, TheJudgeStaysJudgingWhereNothingWent) {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetVertexIndexArray(Triangles({kFirst}));
    mesh->SetNormalIndexArray(PerTriangle({0}));
    VraMeshDegenJudge judge(1);
    mesh->OnRemoveDegenerateMesh(judge, true);
    EXPECT_TRUE(judge(kDegenerate));
}

TEST(OnRemoveDegenerateMesh, TheJudgeEndsInTableModeWhereAnotherArrayWasCut) {
    for (const int role : {0, 1, 2}) {
        const Recording mesh = WithDegenerateTriangle();
        if (role == 0)
            mesh->SetNormalIndexArray(PerTriangle({0}));
        else if (role == 1)
            mesh->SetColorIndexArray(PerTriangle({0}));
        else
            mesh->SetTextureUVIndexArray(Triangles({kFirst}));
        VraMeshDegenJudge judge(3);
        mesh->OnRemoveDegenerateMesh(judge, true);
        EXPECT_FALSE(judge(kDegenerate)) << role;
        EXPECT_TRUE(judge(kFirst)) << role;
    }
}

TEST(OnRemoveDegenerateMesh, JudgingNumbersOnFromWhatTheJudgeKeptBefore) {
    VraMeshDegenJudge judge(3);
    WithDegenerateTriangle()->OnRemoveDegenerateMesh(judge, true);
    WithDegenerateTriangle()->OnRemoveDegenerateMesh(judge, true);
    EXPECT_THAT(TableOf(judge, 3), ElementsAre(2, kGone, 3));
}

TEST(OnRemoveDegenerateMesh, TrianglesAreReadFromTheCursorOnAndOtherArraysFromTheStart) {
    const Recording mesh = WithDegenerateTriangle();
    mesh->SetTextureUVIndexArray(Triangles({{{0, 0, 0}}, {{1, 1, 1}}, {{2, 2, 2}}}));
    VraMeshDegenJudge judge(4);
    judge.SetDegenTriangles({1});
    judge(kFirst);  // the cursor is at entry 1
    EXPECT_TRUE(mesh->OnRemoveDegenerateMesh(judge, false));
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kDegenerate, kLast));
    EXPECT_THAT(*mesh->GetTextureUVIndexArray(),
                ElementsAre(TriangleIndex{{0, 0, 0}}, TriangleIndex{{2, 2, 2}}));
}

TEST(OnRemoveDegenerateMesh, AMarkBeyondTheTrianglesStillCutsTheOtherArrays) {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetVertexIndexArray(Triangles({kFirst}));
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    VraMeshDegenJudge judge(2);  // entry 1 keeps its first mark
    EXPECT_TRUE(mesh->OnRemoveDegenerateMesh(judge, true));
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kFirst));
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(0));
}

// Removes the first triangle, whatever it is.
class RemovesFirst : public Vr::VraMeshPrimitive {
protected:
    bool OnRemoveDegenerateMesh(VraMeshDegenJudge& judge, bool) override {
        judge.SetDegenTriangles({0});
        VraMeshPrimitive::OnRemoveDegenerateMesh(judge, false);
        return false;
    }
};

TEST(RemoveDegenerateMesh, AnOverriddenHookDecidesAndItsAnswerIsGiven) {
    const Mesh mesh(new RemovesFirst);
    mesh->SetVertexIndexArray(Triangles({kFirst, kDegenerate, kLast}));
    EXPECT_FALSE(mesh->RemoveDegenerateMesh());
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(kDegenerate, kLast));
}

}  // namespace

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Recording = boost::intrusive_ptr<RecordingPrimitive>;
using VertexIndexArray = Vr::VraMeshPrimitive::VertexIndexArray;

// A triangle that can be told from the others by its number.
TriangleIndex Numbered(size_t number) {
    return {{number, number + 10, number + 20}};
}

std::shared_ptr<VertexIndexArray> NumberedTriangles(size_t count) {
    const auto triangles = std::make_shared<VertexIndexArray>();
    for (size_t number = 0; number < count; ++number)
        triangles->push_back(Numbered(number));
    return triangles;
}

std::shared_ptr<Vr::VraMeshPrimitive::UVArray> NumberedUVs(size_t count) {
    const auto uvs = std::make_shared<Vr::VraMeshPrimitive::UVArray>();
    for (size_t number = 0; number < count; ++number)
        uvs->push_back(ON_2dPoint(static_cast<double>(number), 0));
    return uvs;
}

Recording WithTriangles(size_t count) {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetVertexIndexArray(NumberedTriangles(count));
    mesh->ClearCalls();
    return mesh;
}

TEST(DeleteFacetFaces, ListedTrianglesGoAndTheRestKeepsItsOrder) {
    const Recording mesh = WithTriangles(4);
    EXPECT_EQ(mesh->DeleteFacetFaces({0, 2}), 2u);
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(Numbered(1), Numbered(3)));
}

TEST(DeleteFacetFaces, AnEmptyListTouchesNothingAndShrinksNothing) {
    const Recording mesh = WithTriangles(3);
    mesh->GetModifiableVertexIndexArray()->reserve(100);
    mesh->SetNormalIndexArray(PerTriangle({0, 1, 2}));
    mesh->ClearCalls();
    EXPECT_EQ(mesh->DeleteFacetFaces({}), 3u);
    EXPECT_THAT(mesh->Calls(), ElementsAre("DeleteFacetFaces", "GetVertexIndexArray"));
    EXPECT_GE(mesh->GetVertexIndexArray()->capacity(), 100u);
}

TEST(DeleteFacetFaces, ARepeatedNumberBlocksTheRest) {
    const Recording mesh = WithTriangles(5);
    EXPECT_EQ(mesh->DeleteFacetFaces({2, 2, 3}), 4u);
    EXPECT_THAT(*mesh->GetVertexIndexArray(),
                ElementsAre(Numbered(0), Numbered(1), Numbered(3), Numbered(4)));
}

TEST(DeleteFacetFaces, ANumberOutOfOrderBlocksTheRest) {
    const Recording mesh = WithTriangles(5);
    EXPECT_EQ(mesh->DeleteFacetFaces({3, 1, 4}), 4u);
    EXPECT_THAT(*mesh->GetVertexIndexArray(),
                ElementsAre(Numbered(0), Numbered(1), Numbered(2), Numbered(4)));
}

TEST(DeleteFacetFaces, NumbersBeyondTheTrianglesAreIgnored) {
    EXPECT_EQ(WithTriangles(3)->DeleteFacetFaces({3}), 3u);
    const Recording mesh = WithTriangles(3);
    EXPECT_EQ(mesh->DeleteFacetFaces({1, 3, 1000}), 2u);
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(Numbered(0), Numbered(2)));
}

TEST(DeleteFacetFaces, WithoutVertexIndicesItAnswersZeroAndTouchesNothing) {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    mesh->SetUVArray(UVs({}));
    mesh->ClearCalls();
    EXPECT_EQ(mesh->DeleteFacetFaces({0}), 0u);
    EXPECT_THAT(mesh->Calls(), ElementsAre("DeleteFacetFaces", "GetVertexIndexArray"));
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(0, 1));
}

TEST(DeleteFacetFaces, WithNoTrianglesOtherIndexArraysAreStillCut) {
    const Recording mesh = WithTriangles(0);
    mesh->SetNormalIndexArray(PerTriangle({7, 8}));
    EXPECT_EQ(mesh->DeleteFacetFaces({0}), 0u);
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(8));
}

TEST(DeleteFacetFaces, PerTriangleListsLoseOneNumberATriangleByPosition) {
    const Recording mesh = WithTriangles(3);
    mesh->SetNormalIndexArray(PerTriangle({1, 0, 1}));
    mesh->SetColorIndexArray(PerTriangle({5, 6, 7}));
    mesh->DeleteFacetFaces({1});
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(1, 1));
    EXPECT_THAT(PerTriangleOf(*mesh->GetColorIndexArray()), ElementsAre(5, 7));
}

TEST(DeleteFacetFaces, PerVertexListsLoseOneTripleATriangle) {
    const Recording mesh = WithTriangles(3);
    mesh->SetNormalIndexArray(PerVertex({{{0, 1, 2}}, {{3, 4, 5}}, {{6, 7, 8}}}));
    mesh->SetColorIndexArray(PerVertex({{{1, 1, 1}}, {{2, 2, 2}}, {{3, 3, 3}}}));
    mesh->DeleteFacetFaces({0, 1});
    EXPECT_THAT(PerVertexOf(*mesh->GetNormalIndexArray()), ElementsAre(TriangleIndex{{6, 7, 8}}));
    EXPECT_THAT(PerVertexOf(*mesh->GetColorIndexArray()), ElementsAre(TriangleIndex{{3, 3, 3}}));
}

TEST(DeleteFacetFaces, TheTwoFormsMayBeMixed) {
    const Recording mesh = WithTriangles(2);
    mesh->SetNormalIndexArray(PerTriangle({4, 5}));
    mesh->SetColorIndexArray(PerVertex({{{1, 1, 1}}, {{2, 2, 2}}}));
    mesh->DeleteFacetFaces({0});
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(5));
    EXPECT_THAT(PerVertexOf(*mesh->GetColorIndexArray()), ElementsAre(TriangleIndex{{2, 2, 2}}));
}

TEST(DeleteFacetFaces, AnIndexArrayOfNormalsAndColorsIsCutOnce) {
    const Recording mesh = WithTriangles(4);
    const auto shared = PerTriangle({4, 5, 6, 7});
    mesh->SetNormalIndexArray(shared);
    mesh->SetColorIndexArray(shared);
    mesh->DeleteFacetFaces({0});
    EXPECT_THAT(PerTriangleOf(*shared), ElementsAre(5, 6, 7));
}

TEST(DeleteFacetFaces, EqualButSeparateIndexArraysAreEachCut) {
    const Recording mesh = WithTriangles(2);
    mesh->SetNormalIndexArray(PerTriangle({4, 5}));
    mesh->SetColorIndexArray(PerTriangle({4, 5}));
    mesh->DeleteFacetFaces({0});
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(5));
    EXPECT_THAT(PerTriangleOf(*mesh->GetColorIndexArray()), ElementsAre(5));
}

TEST(DeleteFacetFaces, TextureUVIndicesLoseOneTripleATriangle) {
    const Recording mesh = WithTriangles(2);
    mesh->SetTextureUVIndexArray(Triangles({{{1, 1, 1}}, {{2, 2, 2}}}));
    mesh->DeleteFacetFaces({0});
    EXPECT_THAT(*mesh->GetTextureUVIndexArray(), ElementsAre(TriangleIndex{{2, 2, 2}}));
}

TEST(DeleteFacetFaces, TextureUVIndicesThatAreTheVertexIndicesAreCutOnce) {
    const Recording mesh = WithTriangles(4);
    mesh->SetTextureUVIndexArray(mesh->GetModifiableVertexIndexArray());
    EXPECT_EQ(mesh->DeleteFacetFaces({0}), 3u);
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(Numbered(1), Numbered(2), Numbered(3)));
}

TEST(DeleteFacetFaces, IndexArraysOfOtherLengthsAreCutByTheirOwn) {
    const Recording mesh = WithTriangles(3);
    mesh->SetNormalIndexArray(PerTriangle({4, 5}));
    mesh->SetColorIndexArray(PerTriangle({4, 5, 6, 7, 8}));
    EXPECT_EQ(mesh->DeleteFacetFaces({1, 2, 4}), 1u);
    EXPECT_THAT(PerTriangleOf(*mesh->GetNormalIndexArray()), ElementsAre(4));
    EXPECT_THAT(PerTriangleOf(*mesh->GetColorIndexArray()), ElementsAre(4, 7));
}

TEST(DeleteFacetFaces, UVsOfThreeATriangleLoseThreeATriangle) {
    const Recording mesh = WithTriangles(4);
    mesh->SetUVArray(NumberedUVs(12));
    mesh->DeleteFacetFaces({0, 2});
    EXPECT_THAT(*mesh->GetUVArray(),
                ElementsAre(ON_2dPoint(3, 0), ON_2dPoint(4, 0), ON_2dPoint(5, 0), ON_2dPoint(9, 0),
                            ON_2dPoint(10, 0), ON_2dPoint(11, 0)));
}

TEST(DeleteFacetFaces, UVsOfAnyOtherCountStay) {
    for (const size_t count : {0u, 4u, 11u, 13u}) {
        const Recording mesh = WithTriangles(4);
        const auto uvs = NumberedUVs(count);
        uvs->reserve(100);
        mesh->SetUVArray(uvs);
        mesh->DeleteFacetFaces({0, 1, 2});
        EXPECT_EQ(*uvs, *NumberedUVs(count));
        EXPECT_GE(uvs->capacity(), 100u);
        EXPECT_EQ(mesh->GetUVArray(), uvs);
    }
}

TEST(DeleteFacetFaces, UVsThatAreTheTextureUVsBecomeAPrivateCopyFirst) {
    const Recording mesh = WithTriangles(2);
    const auto shared = NumberedUVs(6);
    mesh->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}, {{3, 4, 5}}}));
    mesh->SetTextureUVArray(shared);
    mesh->SetUVArray(shared);
    mesh->DeleteFacetFaces({0});
    EXPECT_EQ(mesh->GetTextureUVArray(), shared);
    EXPECT_EQ(*shared, *NumberedUVs(6));
    EXPECT_THAT(*mesh->GetUVArray(),
                ElementsAre(ON_2dPoint(3, 0), ON_2dPoint(4, 0), ON_2dPoint(5, 0)));
}

TEST(DeleteFacetFaces, UVsThatAreTheTextureUVsBecomeACopyAlsoWhenTheirCountKeepsThemWhole) {
    const Recording mesh = WithTriangles(2);
    const auto shared = NumberedUVs(5);
    mesh->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}, {{2, 3, 4}}}));
    mesh->SetTextureUVArray(shared);
    mesh->SetUVArray(shared);
    mesh->DeleteFacetFaces({7});
    EXPECT_EQ(mesh->GetTextureUVArray(), shared);
    EXPECT_NE(mesh->GetUVArray(), shared);
    EXPECT_EQ(*mesh->GetUVArray(), *shared);
}

TEST(DeleteFacetFaces, UVsStaySharedAndAreCutWhereNoTextureUVIndicesAreCut) {
    for (const bool hasTextureUVIndices : {false, true}) {
        const Recording mesh = WithTriangles(2);
        const auto shared = NumberedUVs(6);
        if (hasTextureUVIndices)
            mesh->SetTextureUVIndexArray(mesh->GetModifiableVertexIndexArray());
        mesh->SetTextureUVArray(shared);
        mesh->SetUVArray(shared);
        mesh->DeleteFacetFaces({1});
        EXPECT_EQ(mesh->GetUVArray(), shared);
        EXPECT_EQ(mesh->GetTextureUVArray(), shared);
        EXPECT_EQ(*shared, *NumberedUVs(3));
    }
}

TEST(DeleteFacetFaces, TextureUVIndicesAreCutAlsoWhereBothUVArraysAreMissing) {
    const Recording mesh = WithTriangles(2);
    mesh->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}, {{3, 4, 5}}}));
    EXPECT_EQ(mesh->DeleteFacetFaces({0}), 1u);
    EXPECT_THAT(*mesh->GetTextureUVIndexArray(), ElementsAre(TriangleIndex{{3, 4, 5}}));
    EXPECT_EQ(mesh->GetUVArray(), nullptr);
}

TEST(DeleteFacetFaces, ValueArraysAndArrayObjectsStay) {
    const Mesh mesh = FullSquare();
    const ArrayAddresses before = AddressesOf(*mesh);
    EXPECT_EQ(mesh->DeleteFacetFaces({0}), 1u);
    EXPECT_EQ(AddressesOf(*mesh), before);
    const Mesh expected = FullSquare();
    expected->SetVertexIndexArray(Triangles({{{0, 2, 3}}}));
    expected->SetNormalIndexArray(PerVertex({{{1, 0, 1}}}));
    expected->SetColorIndexArray(PerTriangle({0}));
    expected->SetTextureUVIndexArray(Triangles({{{2, 1, 0}}}));
    expected->SetUVArray(UVs({{0, 0}, {1, 1}, {0, 1}}));
    ExpectBitEqual(*mesh, *expected);
    ExpectConsistent(*mesh);
}

TEST(DeleteFacetFaces, EverySharerSeesTheCut) {
    const Recording mesh = WithTriangles(3);
    const Mesh sharer = NewPrimitive();
    mesh->ShallowCopy(sharer);
    mesh->DeleteFacetFaces({1});
    EXPECT_THAT(*sharer->GetVertexIndexArray(), ElementsAre(Numbered(0), Numbered(2)));
}

TEST(DeleteFacetFaces, DeletingAllReleasesTheStorageAndKeepsTheVertices) {
    const Mesh mesh = FullSquare();
    EXPECT_EQ(mesh->DeleteFacetFaces({0, 1}), 0u);
    EXPECT_EQ(mesh->GetVertexIndexArray()->capacity(), 0u);
    EXPECT_EQ(PerVertexOf(*mesh->GetNormalIndexArray()).capacity(), 0u);
    EXPECT_EQ(PerTriangleOf(*mesh->GetColorIndexArray()).capacity(), 0u);
    EXPECT_EQ(mesh->GetTextureUVIndexArray()->capacity(), 0u);
    EXPECT_EQ(mesh->GetUVArray()->capacity(), 0u);
    EXPECT_EQ(mesh->GetVertexArray()->size(), 4u);
}

// Triangles whose storage has room for exactly `capacity`.
Recording WithCapacity(size_t count, size_t capacity) {
    const Recording mesh(new RecordingPrimitive);
    const auto triangles = std::make_shared<VertexIndexArray>();
    triangles->reserve(capacity);
    for (size_t number = 0; number < count; ++number)
        triangles->push_back(Numbered(number));
    mesh->SetVertexIndexArray(triangles);
    return mesh;
}

size_t CapacityAfterDeleting(size_t capacity, size_t deletedCount) {
    const Recording mesh = WithCapacity(capacity, capacity);
    std::vector<size_t> faces;
    for (size_t face = 0; face < deletedCount; ++face)
        faces.push_back(face);
    mesh->DeleteFacetFaces(faces);
    const auto triangles = mesh->GetVertexIndexArray();
    EXPECT_EQ(triangles->size(), capacity - deletedCount);
    for (size_t kept = 0; kept < triangles->size(); ++kept)
        EXPECT_EQ((*triangles)[kept], Numbered(deletedCount + kept));
    return triangles->capacity();
}

TEST(DeleteFacetFaces, StorageShrinksToTheExactSizeBelowHalfRoundedDown) {
    EXPECT_EQ(CapacityAfterDeleting(10, 5), 10u);
    EXPECT_EQ(CapacityAfterDeleting(10, 6), 4u);
    EXPECT_EQ(CapacityAfterDeleting(11, 6), 11u);  // 5 is not below 11 / 2
    EXPECT_EQ(CapacityAfterDeleting(11, 7), 4u);
    EXPECT_EQ(CapacityAfterDeleting(2, 2), 0u);
}

TEST(DeleteFacetFaces, StorageForOneIsKeptSinceHalfOfItIsNone) {
    EXPECT_EQ(CapacityAfterDeleting(1, 1), 1u);
}

TEST(DeleteFacetFaces, ASparseArrayShrinksAlsoWhenNothingIsDeletedFromIt) {
    const Recording mesh = WithCapacity(4, 10);
    EXPECT_EQ(mesh->DeleteFacetFaces({9}), 4u);
    EXPECT_EQ(mesh->GetVertexIndexArray()->capacity(), 4u);
    EXPECT_EQ(*mesh->GetVertexIndexArray(), *NumberedTriangles(4));
}

TEST(DeleteFacetFaces, ArraysAreFetchedInOrderAndUVsAgainAfterTheyMayHaveBeenReplaced) {
    const Recording mesh = WithTriangles(2);
    const auto shared = NumberedUVs(6);
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    mesh->SetColorIndexArray(PerTriangle({0, 1}));
    mesh->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}, {{3, 4, 5}}}));
    mesh->SetTextureUVArray(shared);
    mesh->SetUVArray(shared);
    mesh->ClearCalls();
    mesh->DeleteFacetFaces({0});
    EXPECT_THAT(mesh->Calls(),
                ElementsAre("DeleteFacetFaces", "GetVertexIndexArray", "GetNormalIndexArray",
                            "IsNormalPerVertex", "GetColorIndexArray", "IsColorPerVertex",
                            "GetTextureUVIndexArray", "GetTextureUVArray", "GetUVArray",
                            "SetUVArray", "GetUVArray"));
}

TEST(DeleteFacetFaces, FormsAreNotAskedOfMissingArrays) {
    const Recording mesh = WithTriangles(2);
    mesh->DeleteFacetFaces({0});
    EXPECT_THAT(mesh->Calls(),
                ElementsAre("DeleteFacetFaces", "GetVertexIndexArray", "GetNormalIndexArray",
                            "GetColorIndexArray", "GetTextureUVIndexArray", "GetUVArray"));
}

TEST(DeleteFacetFaces, ArraysAreReachedThroughTheAccessors) {
    const Recording mesh = WithTriangles(3);
    mesh->substitutes.vertexIndexArray = NumberedTriangles(2);
    mesh->substitutes.uvArray = NumberedUVs(6);
    EXPECT_EQ(mesh->DeleteFacetFaces({0}), 1u);
    EXPECT_THAT(**mesh->substitutes.vertexIndexArray, ElementsAre(Numbered(1)));
    EXPECT_EQ((*mesh->substitutes.uvArray)->size(), 3u);
    mesh->substitutes = {};
    EXPECT_EQ(*mesh->GetVertexIndexArray(), *NumberedTriangles(3));
}

class WrongForm : public RecordingPrimitive {
public:
    bool IsColorPerVertex() const override { return !RecordingPrimitive::IsColorPerVertex(); }
};

TEST(DeleteFacetFaces, AFormThatIsNotHeldThrowsAndEarlierCutsStay) {
    const boost::intrusive_ptr<WrongForm> mesh(new WrongForm);
    mesh->SetVertexIndexArray(NumberedTriangles(2));
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    mesh->SetColorIndexArray(PerTriangle({0, 1}));
    mesh->SetTextureUVIndexArray(Triangles({{{0, 1, 2}}, {{3, 4, 5}}}));
    mesh->SetUVArray(NumberedUVs(6));
    EXPECT_EQ(CaughtFrom([&] { mesh->DeleteFacetFaces({0}); }).text,
              "boost::bad_get: failed value get using boost::get");
    EXPECT_EQ(mesh->GetVertexIndexArray()->size(), 1u);
    EXPECT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()).size(), 1u);
    EXPECT_EQ(PerTriangleOf(*mesh->GetColorIndexArray()).size(), 2u);
    EXPECT_EQ(mesh->GetTextureUVIndexArray()->size(), 2u);
    EXPECT_EQ(mesh->GetUVArray()->size(), 6u);
}

}  // namespace

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vr::VraMeshPrimitive;
using Recording = boost::intrusive_ptr<RecordingPrimitive>;
using VertexArray = VraMeshPrimitive::VertexArray;

// A vertex that can be told from the others by its number.
ON_3dPoint Numbered(size_t number) {
    return ON_3dPoint(static_cast<double>(number), 0.5, -static_cast<double>(number));
}

std::shared_ptr<VertexArray> NumberedVertices(size_t count) {
    const auto vertices = std::make_shared<VertexArray>();
    for (size_t number = 0; number < count; ++number)
        vertices->push_back(Numbered(number));
    return vertices;
}

Recording With(std::shared_ptr<VertexArray> vertices,
               std::shared_ptr<VraMeshPrimitive::VertexIndexArray> triangles) {
    const Recording mesh(new RecordingPrimitive);
    mesh->SetVertexArray(std::move(vertices));
    mesh->SetVertexIndexArray(std::move(triangles));
    mesh->ClearCalls();
    return mesh;
}

TEST(DeleteUnusedVertices, UnusedOnesGoAndTheRestIsRenumberedInOrder) {
    const Recording mesh = With(NumberedVertices(5), Triangles({{{4, 1, 3}}, {{3, 3, 4}}}));
    mesh->DeleteUnusedVertices();
    EXPECT_THAT(*mesh->GetVertexArray(), ElementsAre(Numbered(1), Numbered(3), Numbered(4)));
    EXPECT_THAT(*mesh->GetVertexIndexArray(),
                ElementsAre(TriangleIndex{{2, 0, 1}}, TriangleIndex{{1, 1, 2}}));
}

TEST(DeleteUnusedVertices, WithAllUsedNothingChanges) {
    const Recording mesh = With(NumberedVertices(3), Triangles({{{2, 0, 1}}}));
    mesh->DeleteUnusedVertices();
    EXPECT_EQ(*mesh->GetVertexArray(), *NumberedVertices(3));
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(TriangleIndex{{2, 0, 1}}));
}

TEST(DeleteUnusedVertices, WithoutTrianglesAllVerticesGoAndTheirStorageIsReleased) {
    const Recording mesh = With(NumberedVertices(5), Triangles({}));
    mesh->DeleteUnusedVertices();
    EXPECT_EQ(mesh->GetVertexArray()->size(), 0u);
    EXPECT_EQ(mesh->GetVertexArray()->capacity(), 0u);
}

TEST(DeleteUnusedVertices, AMissingArrayLeavesTheOtherAlone) {
    const Recording noTriangles = With(NumberedVertices(5), nullptr);
    noTriangles->DeleteUnusedVertices();
    EXPECT_EQ(*noTriangles->GetVertexArray(), *NumberedVertices(5));

    const Recording noVertices = With(nullptr, Triangles({{{7, 8, 9}}}));
    noVertices->DeleteUnusedVertices();
    EXPECT_THAT(*noVertices->GetVertexIndexArray(), ElementsAre(TriangleIndex{{7, 8, 9}}));

    With(nullptr, nullptr)->DeleteUnusedVertices();
}

TEST(DeleteUnusedVertices, AllOtherArraysAndEveryArrayObjectStay) {
    const Mesh mesh = FullSquare();
    mesh->SetVertexIndexArray(Triangles({{{0, 2, 3}}, {{3, 2, 0}}}));
    const ArrayAddresses before = AddressesOf(*mesh);
    mesh->DeleteUnusedVertices();
    EXPECT_EQ(AddressesOf(*mesh), before);
    const Mesh expected = FullSquare();
    expected->SetVertexArray(Vertices({{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}));
    expected->SetVertexIndexArray(Triangles({{{0, 1, 2}}, {{2, 1, 0}}}));
    ExpectBitEqual(*mesh, *expected);
    ExpectConsistent(*mesh);
}

size_t CapacityAfterKeeping(size_t keptCount, size_t vertexCount, size_t capacity) {
    const auto vertices = std::make_shared<VertexArray>();
    vertices->reserve(capacity);
    for (size_t number = 0; number < vertexCount; ++number)
        vertices->push_back(Numbered(number));
    const auto triangles = Triangles({});
    for (size_t vertex = vertexCount - keptCount; vertex < vertexCount; ++vertex)
        triangles->push_back({{vertex, vertex, vertex}});
    With(vertices, triangles)->DeleteUnusedVertices();
    EXPECT_EQ(vertices->size(), keptCount);
    for (size_t kept = 0; kept < keptCount; ++kept)
        EXPECT_EQ((*vertices)[kept], Numbered(vertexCount - keptCount + kept));
    return vertices->capacity();
}

TEST(DeleteUnusedVertices, StorageShrinksToTheExactSizeBelowHalfRoundedDown) {
    EXPECT_EQ(CapacityAfterKeeping(5, 10, 10), 10u);
    EXPECT_EQ(CapacityAfterKeeping(4, 10, 10), 4u);
    EXPECT_EQ(CapacityAfterKeeping(5, 11, 11), 11u);
    EXPECT_EQ(CapacityAfterKeeping(4, 11, 11), 4u);
    EXPECT_EQ(CapacityAfterKeeping(0, 1, 1), 1u);
}

TEST(DeleteUnusedVertices, ASparseArrayShrinksAlsoWhenAllAreUsed) {
    EXPECT_EQ(CapacityAfterKeeping(4, 4, 10), 4u);
    EXPECT_EQ(CapacityAfterKeeping(5, 5, 10), 10u);
}

// Blocks of vertices are numbered together; removals in front of, at and behind their borders.
TEST(DeleteUnusedVertices, NumbersAreRightAroundBlockBorders) {
    for (const size_t count : {255u, 256u, 257u, 511u, 512u, 513u, 1024u}) {
        for (const size_t unused : {0u, 254u, 255u, 256u, 257u, 510u}) {
            if (unused >= count)
                continue;
            const auto triangles = Triangles({});
            const auto expected = Triangles({});
            for (size_t vertex = 0; vertex < count; ++vertex) {
                if (vertex == unused)
                    continue;
                const size_t renumbered = vertex < unused ? vertex : vertex - 1;
                triangles->push_back({{vertex, vertex, vertex}});
                expected->push_back({{renumbered, renumbered, renumbered}});
            }
            const Recording mesh = With(NumberedVertices(count), triangles);
            mesh->DeleteUnusedVertices();
            ASSERT_EQ(*triangles, *expected) << count << " without " << unused;
            ASSERT_EQ(mesh->GetVertexArray()->size(), count - 1);
            ASSERT_EQ(mesh->GetVertexArray()->back(),
                      Numbered(unused == count - 1 ? count - 2 : count - 1));
        }
    }
}

TEST(DeleteUnusedVertices, EverySharerSeesTheEdit) {
    const Recording mesh = With(NumberedVertices(4), Triangles({{{1, 2, 3}}}));
    const Mesh sharer = NewPrimitive();
    mesh->ShallowCopy(sharer);
    mesh->DeleteUnusedVertices();
    EXPECT_EQ(sharer->GetVertexArray()->size(), 3u);
    EXPECT_THAT(*sharer->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 1, 2}}));
}

TEST(DeleteUnusedVertices, EachArrayIsFetchedOnceAndInOrder) {
    const Recording mesh = With(NumberedVertices(3), Triangles({{{0, 1, 1}}}));
    mesh->DeleteUnusedVertices();
    EXPECT_THAT(mesh->Calls(),
                ElementsAre("DeleteUnusedVertices", "GetVertexArray", "GetVertexIndexArray"));
}

TEST(DeleteUnusedVertices, ArraysAreReachedThroughTheAccessors) {
    const Recording mesh = With(NumberedVertices(3), Triangles({{{0, 1, 2}}}));
    mesh->substitutes.vertexArray = NumberedVertices(2);
    mesh->substitutes.vertexIndexArray = Triangles({{{1, 1, 1}}});
    mesh->DeleteUnusedVertices();
    EXPECT_THAT(**mesh->substitutes.vertexArray, ElementsAre(Numbered(1)));
    EXPECT_THAT(**mesh->substitutes.vertexIndexArray, ElementsAre(TriangleIndex{{0, 0, 0}}));
    mesh->substitutes = {};
    EXPECT_EQ(mesh->GetVertexArray()->size(), 3u);
}

TEST(DeleteUnusedVertices, OneAtATimeASharerOfTheVerticesIsLeftWithStaleNumbers) {
    const auto [first, second] = SharedPair();  // {0, 1, 2} and {0, 2, 3}
    first->DeleteUnusedVertices();
    EXPECT_EQ(second->GetVertexArray()->size(), 3u);
    EXPECT_THAT(*second->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 2, 3}}));
}

TEST(DeleteUnusedVerticesOfSeveral, SharersOfOneVertexArrayAreCompactedTogether) {
    const auto vertices = NumberedVertices(6);
    const Mesh first = NewPrimitive();
    const Mesh second = NewPrimitive();
    first->SetVertexArray(vertices);
    second->SetVertexArray(vertices);
    first->SetVertexIndexArray(Triangles({{{0, 2, 4}}}));
    second->SetVertexIndexArray(Triangles({{{5, 4, 2}}}));
    VraMeshPrimitive::DeleteUnusedVertices({first, second});
    EXPECT_THAT(*vertices, ElementsAre(Numbered(0), Numbered(2), Numbered(4), Numbered(5)));
    EXPECT_THAT(*first->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 1, 2}}));
    EXPECT_THAT(*second->GetVertexIndexArray(), ElementsAre(TriangleIndex{{3, 2, 1}}));
    EXPECT_EQ(second->GetVertexArray(), vertices);
}

TEST(DeleteUnusedVerticesOfSeveral, OtherVertexArraysAreCompactedEachByItself) {
    const Recording first = With(NumberedVertices(3), Triangles({{{2, 2, 2}}}));
    const Recording second = With(NumberedVertices(3), Triangles({{{0, 1, 0}}}));
    VraMeshPrimitive::DeleteUnusedVertices({first, second});
    EXPECT_THAT(*first->GetVertexArray(), ElementsAre(Numbered(2)));
    EXPECT_THAT(*first->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 0, 0}}));
    EXPECT_THAT(*second->GetVertexArray(), ElementsAre(Numbered(0), Numbered(1)));
    EXPECT_THAT(*second->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 1, 0}}));
}

TEST(DeleteUnusedVerticesOfSeveral, EqualButSeparateVertexArraysAreNotOneGroup) {
    const Recording first = With(NumberedVertices(2), Triangles({{{0, 0, 0}}}));
    const Recording second = With(NumberedVertices(2), Triangles({{{1, 1, 1}}}));
    VraMeshPrimitive::DeleteUnusedVertices({first, second});
    EXPECT_THAT(*first->GetVertexArray(), ElementsAre(Numbered(0)));
    EXPECT_THAT(*second->GetVertexArray(), ElementsAre(Numbered(1)));
}

// Five vertices of which {2, 3, 4} are used: the table is (1, 1, 0, 1, 2), where the first two ones
// stand for vertices that went.
Mesh OneListed(size_t times) {
    const Recording mesh = With(NumberedVertices(5), Triangles({{{2, 3, 4}}}));
    VraMeshPrimitive::DeleteUnusedVertices(std::vector<Mesh>(times, mesh));
    EXPECT_EQ(mesh->GetVertexArray()->size(), 3u);
    return mesh;
}

TEST(DeleteUnusedVerticesOfSeveral, AnIndexArrayListedAgainIsRenumberedAgain) {
    EXPECT_THAT(*OneListed(1)->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 1, 2}}));
    EXPECT_THAT(*OneListed(2)->GetVertexIndexArray(), ElementsAre(TriangleIndex{{1, 1, 0}}));
    EXPECT_THAT(*OneListed(3)->GetVertexIndexArray(), ElementsAre(TriangleIndex{{1, 1, 1}}));
}

TEST(DeleteUnusedVerticesOfSeveral, AnIndexArrayListedAgainStaysWhereAllVerticesAreUsed) {
    const Recording mesh = With(NumberedVertices(3), Triangles({{{2, 0, 1}}}));
    VraMeshPrimitive::DeleteUnusedVertices({mesh, mesh});
    EXPECT_THAT(*mesh->GetVertexIndexArray(), ElementsAre(TriangleIndex{{2, 0, 1}}));
}

TEST(DeleteUnusedVerticesOfSeveral, PrimitivesThatLackAnArrayTakeNoPart) {
    const Recording whole = With(NumberedVertices(3), Triangles({{{2, 2, 2}}}));
    const Recording noTriangles = With(whole->GetModifiableVertexArray(), nullptr);
    const Recording alone = With(NumberedVertices(3), nullptr);
    const Recording noVertices = With(nullptr, Triangles({{{0, 1, 2}}}));
    VraMeshPrimitive::DeleteUnusedVertices({noTriangles, whole, alone, noVertices});
    EXPECT_THAT(*whole->GetVertexArray(), ElementsAre(Numbered(2)));
    EXPECT_EQ(*alone->GetVertexArray(), *NumberedVertices(3));
    EXPECT_THAT(*noVertices->GetVertexIndexArray(), ElementsAre(TriangleIndex{{0, 1, 2}}));
}

TEST(DeleteUnusedVerticesOfSeveral, AnEmptyListIsNothingToDo) {
    VraMeshPrimitive::DeleteUnusedVertices(std::vector<Mesh>());
}

TEST(DeleteUnusedVerticesOfSeveral, EachArrayIsFetchedOnceAndTheMemberIsNotCalled) {
    const Recording first = With(NumberedVertices(3), Triangles({{{0, 1, 1}}}));
    const Recording second = With(nullptr, nullptr);
    VraMeshPrimitive::DeleteUnusedVertices({first, second});
    EXPECT_THAT(first->Calls(), ElementsAre("GetVertexArray", "GetVertexIndexArray"));
    EXPECT_THAT(second->Calls(), ElementsAre("GetVertexArray", "GetVertexIndexArray"));
}

}  // namespace

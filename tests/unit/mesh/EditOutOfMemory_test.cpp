// What the operations that cut arrays leave behind when memory is short. Linked into the program
// that replaces the global allocation functions.

#include <gtest/gtest.h>

#include <functional>

#include "support/Caught.h"
#include "support/FailingAllocation.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"

namespace {

using namespace Vr::test;

Caught CaughtWhileFailing(size_t allocation, const std::function<void()>& code) {
    const FailAllocation failure(allocation);
    return CaughtFrom(code);
}

TEST(RemoveDegenerateMesh, ShortOfMemoryNothingHasChanged) {
    const Mesh mesh = FullSquare();
    (*mesh->GetModifiableVertexIndexArray())[0] = {{1, 1, 2}};
    const Mesh expected = FullSquare();
    (*expected->GetModifiableVertexIndexArray())[0] = {{1, 1, 2}};
    EXPECT_EQ(CaughtWhileFailing(1, [&] { mesh->RemoveDegenerateMesh(); }), BadAlloc());
    ExpectBitEqual(*mesh, *expected);
}

// Ten triangles in storage for ten.
Mesh TenTriangles() {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexIndexArray(
        std::make_shared<Vr::VraMeshPrimitive::VertexIndexArray>(10, TriangleIndex{{0, 1, 2}}));
    mesh->SetNormalIndexArray(PerTriangle({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    return mesh;
}

TEST(DeleteFacetFaces, WhereStorageDoesNotShrinkNoMemoryIsNeeded) {
    const Mesh mesh = TenTriangles();
    const std::vector<size_t> faces = {0, 1, 2, 3, 4};
    EXPECT_EQ(CaughtWhileFailing(1, [&] { mesh->DeleteFacetFaces(faces); }), Nothing());
    EXPECT_EQ(mesh->GetVertexIndexArray()->size(), 5u);
}

TEST(DeleteFacetFaces, AnArrayThatCannotShrinkIsAsItWasAndEarlierOnesAreCut) {
    const std::vector<size_t> faces = {0, 1, 2, 3, 4, 5};
    for (const size_t allocation : {1u, 2u}) {
        const Mesh mesh = TenTriangles();
        EXPECT_EQ(CaughtWhileFailing(allocation, [&] { mesh->DeleteFacetFaces(faces); }),
                  BadAlloc());
        EXPECT_EQ(mesh->GetVertexIndexArray()->size(), allocation == 1 ? 10u : 4u);
        EXPECT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()),
                  (std::vector<size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    }
}

// Ten vertices in storage for ten, of which the last four are used.
Mesh FourOfTenUsed() {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(
        std::make_shared<Vr::VraMeshPrimitive::VertexArray>(10, ON_3dPoint(1, 2, 3)));
    mesh->SetVertexIndexArray(Triangles({{{6, 7, 8}}, {{7, 8, 9}}}));
    return mesh;
}

TEST(DeleteUnusedVertices, ShortOfMemoryNothingHasChanged) {
    size_t failureCount = 0;
    for (size_t allocation = 1;; ++allocation) {
        const Mesh mesh = FourOfTenUsed();
        if (CaughtWhileFailing(allocation, [&] { mesh->DeleteUnusedVertices(); }) == Nothing()) {
            EXPECT_EQ(mesh->GetVertexArray()->capacity(), 4u);
            break;
        }
        ++failureCount;
        ExpectBitEqual(*mesh, *FourOfTenUsed());
    }
    EXPECT_GE(failureCount, 3u);  // marks, block starts, the smaller storage
}

TEST(DeleteUnusedVerticesOfSeveral, ShortOfMemoryEachVertexArrayIsDoneOrAsItWas) {
    const Mesh done = FourOfTenUsed();
    done->DeleteUnusedVertices();
    const auto isDone = [&](const Mesh& mesh) { return bool(AreBitEqual(*mesh, *done)); };
    bool stoppedBetween = false;
    for (size_t allocation = 1;; ++allocation) {
        const Mesh first = FourOfTenUsed();
        const Mesh second = FourOfTenUsed();
        const std::vector<Mesh> list = {first, second};
        const Caught caught = CaughtWhileFailing(
            allocation, [&] { Vr::VraMeshPrimitive::DeleteUnusedVertices(list); });
        EXPECT_TRUE(isDone(first) || AreBitEqual(*first, *FourOfTenUsed()));
        EXPECT_TRUE(isDone(second) || AreBitEqual(*second, *FourOfTenUsed()));
        stoppedBetween = stoppedBetween || (isDone(first) && !isDone(second));
        if (caught == Nothing())
            break;
    }
    EXPECT_TRUE(stoppedBetween);
}

}  // namespace

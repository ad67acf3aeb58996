// What normals, transforms, free edges and solids leave behind when memory is short, at every
// allocation in turn. Part of the program that replaces the global allocation functions.

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "support/Caught.h"
#include "support/FailingAllocation.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;

// Lets the first, second, third... allocation of `operation` fail until none does, and calls `check`
// after each; returns how many failed.
std::size_t FailEach(const std::function<void()>& operation, const std::function<void()>& check) {
    for (std::size_t number = 1;; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        Caught caught;
        bool hasHappened = false;
        {
            const FailAllocation failure(number);
            caught = CaughtFrom(operation);
            hasHappened = failure.HasHappened();
        }
        EXPECT_EQ(caught, hasHappened ? BadAlloc() : Nothing());
        if (!hasHappened)
            return number - 1;
        check();
    }
}

TEST(CreateNormalOutOfMemory, NothingHasChanged) {
    for (const double creaseAngle : {-1.0, 0.5}) {
        const Mesh mesh = Box();
        mesh->SetCreaseAngle(creaseAngle);
        const Mesh same = Box();
        same->SetCreaseAngle(creaseAngle);
        const ArrayAddresses before = AddressesOf(*mesh);
        const auto expectUnchanged = [&] {
            EXPECT_EQ(AddressesOf(*mesh), before);
            ExpectBitEqual(*mesh, *same);
        };
        // The normals, the indices, the index array and the objects that hold them.
        EXPECT_GE(FailEach([&] { mesh->CreateNormalPerVertex(); }, expectUnchanged), 4u);
        EXPECT_NE(AddressesOf(*mesh)[kNormals], before[kNormals]);
    }
    const Mesh mesh = Box();
    const ArrayAddresses before = AddressesOf(*mesh);
    EXPECT_GE(FailEach([&] { mesh->CreateNormalPerTriangle(); },
                       [&] { EXPECT_EQ(AddressesOf(*mesh), before); }),
              4u);
}

TEST(CreateNormalOutOfMemory, NothingLeaks) {
    const Mesh mesh = Box();
    mesh->SetCreaseAngle(0.5);
    const auto failEach = [&] { FailEach([&] { mesh->CreateNormalPerVertex(); }, [] {}); };
    // The first round leaves what the test framework keeps.
    failEach();
    const std::size_t before = LiveAllocations();
    failEach();
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(GetFreeEdgesOutOfMemory, TheVectorKeepsWhatItHeld) {
    // Numbers near each other, and far apart.
    for (const std::size_t farthest : {std::size_t{3}, std::size_t{1} << 60}) {
        const Mesh mesh = NewPrimitive();
        mesh->SetVertexIndexArray(Triangles({{{0, 1, 2}}, {{0, 2, farthest}}}));
        std::vector<std::pair<std::size_t, std::size_t>> edges = {{7, 8}};
        EXPECT_GE(FailEach([&] { mesh->GetFreeEdges(edges); },
                           [&] {
                               ASSERT_FALSE(edges.empty());
                               EXPECT_EQ(edges.front().first, 7u);
                               edges.resize(1);
                               edges.shrink_to_fit();
                           }),
                  3u);
        EXPECT_EQ(edges.size(), 5u);
    }
}

// Vertices far apart are marked before they are looked at, for which no memory need be there.
TEST(CalcBoundingBoxOutOfMemory, IsFoundAllTheSame) {
    constexpr std::size_t kVertexCount = 40000;
    const Mesh mesh = NewPrimitive({}, {});
    for (std::size_t vertex = 0; vertex < kVertexCount; ++vertex)
        mesh->GetModifiableVertexArray()->push_back(
            ON_3dPoint(static_cast<double>(vertex), 1.0, -static_cast<double>(vertex)));
    while (mesh->GetVertexIndexArray()->size() < 12000)
        mesh->GetModifiableVertexIndexArray()->push_back({7, kVertexCount - 9, kVertexCount / 2});
    mesh->GetModifiableVertexIndexArray()->front() = {kVertexCount - 9, 8, 8};
    ON_BoundingBox box;
    bool hasHappened = false;
    {
        const FailAllocation failure(1);
        EXPECT_TRUE(mesh->CalcBoundingBox(box));
        hasHappened = failure.HasHappened();
    }
    EXPECT_TRUE(hasHappened);
    EXPECT_EQ(box.m_min, ON_3dPoint(7, 1, 9.0 - kVertexCount));
    EXPECT_EQ(box.m_max, ON_3dPoint(kVertexCount - 9.0, 1, -7));
}

TEST(TransformOutOfMemory, AnArrayThatDoesNotGetIntoTheSetIsNotTouched) {
    std::size_t number = 0;
    const Mesh original = FullSquare();
    const Mesh mesh = FullSquare();
    (*mesh->GetModifiableNormalArray())[0] = ON_3dVector(0, 0, 3);
    std::set<void*> done;
    FailEach(
        [&] { mesh->Transform(ON_Xform(2.0), done); },
        [&] {
            ++number;
            EXPECT_EQ(done.size(), number - 1);
            EXPECT_TRUE(SameBits(mesh->GetVertexArray().get(), original->GetVertexArray().get()));
            // The set remembers the normals; begin again.
            const ON_3dVector expected(0, 0, number == 1 ? 3 : 1);
            EXPECT_EQ((*mesh->GetNormalArray())[0], expected);
            done.clear();
        });
    EXPECT_EQ(number, 2u);
}

TEST(TransformOutOfMemory, ScaleAndReverseFacesAllocateNothing) {
    const Mesh mesh = FullSquare();
    const std::size_t before = AllocationCount();
    mesh->Scale(2);
    mesh->ReverseFaces(true);
    EXPECT_EQ(AllocationCount(), before);
}

TEST(SetDataAsConeCylinderOutOfMemory, HandlesReplacedByThenKeepTheirNewArrays) {
    for (const bool isCone : {true, false}) {
        Mesh mesh = FullSquare();
        ArrayAddresses before = AddressesOf(*mesh);
        std::set<std::size_t> replacedCounts;
        FailEach(
            [&] {
                isCone ? mesh->SetDataAsCone(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, 3)
                       : mesh->SetDataAsCylinder(ON_3dPoint(0, 0, 0), ON_3dPoint(0, 0, 1), 1, 3);
            },
            [&] {
                const ArrayAddresses after = AddressesOf(*mesh);
                EXPECT_EQ(after[kColors], nullptr);
                EXPECT_EQ(after[kColorIndices], nullptr);
                std::size_t replaced = 0;
                for (const Role role : {kVertices, kNormals, kVertexIndices, kNormalIndices})
                    replaced += after[role] != before[role] ? 1U : 0U;
                replacedCounts.insert(replaced);
                mesh = FullSquare();
                before = AddressesOf(*mesh);
            });
        EXPECT_EQ(replacedCounts, (std::set<std::size_t>{0, 1, 2, 3, 4}));
    }
}

}  // namespace

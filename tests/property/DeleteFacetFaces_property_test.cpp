// Face deletion against a slow walk, on random meshes and lists: sorted ones, unsorted ones, with
// repetitions and with numbers beyond the triangles.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/DeleteFacetFacesOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::test;

constexpr size_t kRounds = 1000;

Mesh RandomInput(Random& random, size_t round) {
    RandomMeshOptions options;
    options.maxTriangles = round % 3 == 0 ? 16 : 400;
    const Mesh mesh = RandomMesh(random, options);
    const auto triangles = mesh->GetModifiableVertexIndexArray();
    if (triangles && random.Chance(30))
        triangles->reserve(triangles->size() + random.Below(1000));
    return mesh;
}

std::vector<size_t> SortedList(Random& random, size_t bound) {
    std::vector<size_t> list;
    const unsigned percent = random.OneOf(std::vector<unsigned>{1, 10, 50, 90, 100});
    for (size_t number = 0; number < bound + 3; ++number)
        if (random.Chance(percent))
            list.push_back(number);
    return list;
}

// Half of the lists are strictly ascending, the others have a few numbers changed.
std::vector<size_t> RandomList(Random& random, size_t bound) {
    std::vector<size_t> list = SortedList(random, bound);
    if (random.Chance(50))
        for (size_t left = random.Below(4); left > 0 && !list.empty(); --left)
            list[random.Below(list.size())] = random.Below(bound + 3);
    return list;
}

size_t TriangleCountOf(const Vr::VraMeshPrimitive& mesh) {
    return mesh.GetVertexIndexArray() ? mesh.GetVertexIndexArray()->size() : 0;
}

TEST(DeleteFacetFaces, LeavesWhatTheOracleLeaves) {
    size_t deletedCount = 0;
    for (size_t round = 0; round < kRounds; ++round) {
        Random random(round);
        Random again(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomInput(random, round);
        const Mesh expected = RandomInput(again, round);
        const size_t oldCount = TriangleCountOf(*mesh);
        const std::vector<size_t> list = RandomList(random, oldCount);
        const auto triangles = mesh->GetVertexIndexArray();
        const size_t oldCapacity = triangles ? triangles->capacity() : 0;

        const size_t remaining = mesh->DeleteFacetFaces(list);
        ASSERT_EQ(remaining, OracleDeleteFacetFaces(*expected, list));
        ASSERT_TRUE(AreBitEqual(*mesh, *expected));
        ASSERT_TRUE(ShareAlike(*mesh, *expected));
        ASSERT_TRUE(IsConsistent(*mesh));
        if (triangles && !list.empty()) {
            ASSERT_EQ(triangles->capacity(), OracleCapacity(oldCapacity, remaining));
        }
        deletedCount += oldCount - remaining;
    }
    EXPECT_GT(deletedCount, 10 * kRounds);
}

TEST(DeleteFacetFaces, DeletingInTwoStepsIsTheSameAsInOne) {
    for (size_t round = 0; round < kRounds / 4; ++round) {
        Random random(round);
        Random again(round);
        SCOPED_TRACE(random.Trace());
        const Mesh inOne = RandomInput(random, round);
        const Mesh inTwo = RandomInput(again, round);
        const size_t count = TriangleCountOf(*inOne);
        const std::vector<size_t> low = SortedList(random, count / 2);
        std::vector<size_t> high = SortedList(random, count);
        high.erase(high.begin(), std::lower_bound(high.begin(), high.end(), count / 2 + 3));
        std::vector<size_t> all = low;
        all.insert(all.end(), high.begin(), high.end());

        inOne->DeleteFacetFaces(all);
        inTwo->DeleteFacetFaces(high);  // first, so that the lower numbers still hold
        inTwo->DeleteFacetFaces(low);
        ASSERT_TRUE(AreBitEqual(*inTwo, *inOne));
    }
}

}  // namespace

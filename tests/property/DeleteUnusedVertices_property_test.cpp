// Compaction against a slow table, for one primitive and for lists that share arrays and repeat
// themselves.

#include <gtest/gtest.h>

#include "support/DeleteFacetFacesOracle.h"
#include "support/DeleteUnusedVerticesOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;

constexpr size_t kRounds = 600;

Mesh RandomInput(Random& random) {
    RandomMeshOptions options;
    options.maxVertices = random.Chance(50) ? 20 : 1500;
    options.maxTriangles = random.Chance(50) ? 10 : 600;
    options.hasSpecialValues = true;
    return RandomMesh(random, options);
}

TEST(DeleteUnusedVertices, LeavesWhatTheOracleLeaves) {
    size_t deletedCount = 0;
    for (size_t round = 0; round < kRounds; ++round) {
        Random random(round);
        Random again(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomInput(random);
        const Mesh expected = RandomInput(again);
        const ArrayAddresses before = AddressesOf(*mesh);
        const auto vertices = mesh->GetVertexArray();
        const size_t oldCount = vertices ? vertices->size() : 0;
        const size_t oldCapacity = vertices ? vertices->capacity() : 0;

        mesh->DeleteUnusedVertices();
        OracleDeleteUnusedVertices({expected});
        EXPECT_EQ(AddressesOf(*mesh), before);
        ASSERT_TRUE(AreBitEqual(*mesh, *expected));
        // Where texture-UV indices are the vertex indices, they may now say fewer; never more.
        ASSERT_TRUE(IsConsistent(*mesh));
        if (vertices && mesh->GetVertexIndexArray()) {
            ASSERT_EQ(vertices->capacity(), OracleCapacity(oldCapacity, vertices->size()));
            deletedCount += oldCount - vertices->size();
        }
    }
    EXPECT_GT(deletedCount, kRounds);
}

// Some primitives of the list share vertices, some share triangles too, some stand there twice.
std::vector<Mesh> RandomList(Random& random) {
    std::vector<Mesh> list;
    for (size_t left = 1 + random.Below(5); left > 0; --left) {
        const Mesh mesh = RandomInput(random);
        if (!list.empty() && random.Chance(60)) {
            const Mesh& other = random.OneOf(list);
            const auto vertices = other->GetModifiableVertexArray();
            const auto triangles = mesh->GetModifiableVertexIndexArray();
            if (vertices && random.Chance(30)) {
                mesh->SetVertexArray(vertices);
                mesh->SetVertexIndexArray(other->GetModifiableVertexIndexArray());
            } else if (vertices && triangles && !vertices->empty()) {
                mesh->SetVertexArray(vertices);
                for (TriangleIndex& corners : *triangles)
                    for (size_t& vertex : corners.v)
                        vertex %= vertices->size();
            }
        }
        list.push_back(mesh);
        if (random.Chance(10))
            list.push_back(mesh);
    }
    return list;
}

TEST(DeleteUnusedVerticesOfSeveral, LeavesWhatTheOracleLeavesAlsoWhereArraysAreListedTwice) {
    for (size_t round = 0; round < kRounds; ++round) {
        Random random(round);
        Random again(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> list = RandomList(random);
        const std::vector<Mesh> expected = RandomList(again);
        VraMeshPrimitive::DeleteUnusedVertices(list);
        OracleDeleteUnusedVertices(expected);
        for (size_t place = 0; place < list.size(); ++place)
            ASSERT_TRUE(AreBitEqual(*list[place], *expected[place])) << place;
    }
}

TEST(DeleteUnusedVertices, EveryCornerKeepsItsPositionAndTwiceIsOnce) {
    for (size_t round = 0; round < kRounds / 3; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomInput(random);
        const auto vertices = mesh->GetVertexArray();
        const auto triangles = mesh->GetVertexIndexArray();
        if (!vertices || !triangles)
            continue;
        VraMeshPrimitive::VertexArray before;
        for (const TriangleIndex& corners : *triangles)
            for (const size_t vertex : corners.v)
                before.push_back((*vertices)[vertex]);
        mesh->DeleteUnusedVertices();
        VraMeshPrimitive::VertexArray after;
        for (const TriangleIndex& corners : *triangles)
            for (const size_t vertex : corners.v)
                after.push_back((*vertices)[vertex]);
        ASSERT_TRUE(SameBits(&after, &before));

        const VraMeshPrimitive::VertexIndexArray once = *triangles;
        mesh->DeleteUnusedVertices();
        ASSERT_EQ(*triangles, once);
    }
}

}  // namespace

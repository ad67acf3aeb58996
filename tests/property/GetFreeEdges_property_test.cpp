#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/GetFreeEdgesOracle.h"
#include "support/MeshBuilders.h"
#include "support/Random.h"

namespace {

using namespace Vr::test;

EdgeList EdgesAlreadyThere(Random& random) {
    EdgeList edges;
    edges.reserve(random.Below(40));
    for (std::size_t count = random.Below(5); count > 0; --count)
        edges.push_back({random.Below(9), random.Below(9)});
    return edges;
}

void ExpectFreeEdgesAsDefined(const Mesh& mesh, Random& random) {
    EdgeList actual = EdgesAlreadyThere(random);
    EdgeList expected = actual;
    expected.reserve(actual.capacity());
    mesh->GetFreeEdges(actual);
    AppendFreeEdgesByDefinition(*mesh->GetVertexIndexArray(), expected);
    ASSERT_EQ(actual, expected);
    ASSERT_EQ(actual.capacity(), expected.capacity());
}

// Triangles over a few numbers, so that edges are used many times in both directions.
Mesh RandomTriangles(Random& random, const std::vector<std::size_t>& numbers, std::size_t count) {
    const Mesh mesh = NewPrimitive({}, {});
    for (; count > 0; --count)
        mesh->GetModifiableVertexIndexArray()->push_back(
            {{random.OneOf(numbers), random.OneOf(numbers), random.OneOf(numbers)}});
    return mesh;
}

std::vector<std::size_t> RandomNumbers(Random& random, std::size_t below) {
    std::vector<std::size_t> numbers(1 + random.Below(40));
    for (std::size_t& number : numbers)
        number = below == 0 ? static_cast<std::size_t>(random.Next()) : random.Below(below);
    return numbers;
}

TEST(GetFreeEdgesLaws, FreeEdgesAreThoseOfTheOrderedSet) {
    for (std::size_t round = 0; round < 2000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        // Near each other, far apart, and over all numbers there are.
        const std::vector<std::size_t> ranges = {5, 50, 1000000, 0};
        const auto numbers = RandomNumbers(random, random.OneOf(ranges));
        const Mesh mesh = RandomTriangles(random, numbers, random.Below(120));
        ASSERT_NO_FATAL_FAILURE(ExpectFreeEdgesAsDefined(mesh, random));
    }
}

TEST(GetFreeEdgesLaws, FreeEdgesAroundBusyVerticesAreThoseOfTheOrderedSet) {
    for (std::size_t round = 0; round < 100; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        std::vector<std::size_t> numbers = RandomNumbers(random, 3000);
        // Most corners at two vertices: long lists with many other ends.
        numbers.insert(numbers.end(), 30, 1000);
        numbers.insert(numbers.end(), 30, 3001);
        const Mesh mesh = RandomTriangles(random, numbers, 2000);
        ASSERT_NO_FATAL_FAILURE(ExpectFreeEdgesAsDefined(mesh, random));
    }
}

TEST(GetFreeEdgesLaws, FreeEdgesOfRandomMeshesAreThoseOfTheOrderedSet) {
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomMesh(random);
        if (!mesh->GetVertexIndexArray())
            continue;
        ASSERT_NO_FATAL_FAILURE(ExpectFreeEdgesAsDefined(mesh, random));
    }
}

// A free edge of a consistently wound surface leads to where another begins.
TEST(GetFreeEdgesLaws, FreeEdgesOfATubeFormClosedWalks) {
    for (std::size_t ringCount = 2; ringCount < 30; ++ringCount) {
        EdgeList edges;
        OpenTube(ringCount)->GetFreeEdges(edges);
        ASSERT_EQ(edges.size(), 8u);
        std::vector<std::size_t> begins;
        std::vector<std::size_t> ends;
        for (const auto& [from, to] : edges) {
            begins.push_back(from);
            ends.push_back(to);
        }
        std::sort(ends.begin(), ends.end());
        EXPECT_EQ(begins, ends);
    }
}

}  // namespace

// Operations with parallel loops give the same bits for any number of threads.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "support/CreateNormalOracle.h"
#include "support/DeleteUnusedVerticesOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"

#if defined(_OPENMP)
#include <omp.h>
#endif

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;

class ThreadCounts : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override { UseThreads(GetParam()); }
    void TearDown() override {
        UseThreads(1);
        VraMeshPrimitive::SetVertexNormalWeightType(VraMeshPrimitive::Area);
    }

private:
    static void UseThreads([[maybe_unused]] int threadCount) {
#if defined(_OPENMP)
        omp_set_num_threads(threadCount);
#endif
    }
};

// A rough height field in random order, large enough to be dealt out to seven threads, with so many
// triangles that repeat a vertex and so many more vertices without a triangle.
Mesh RoughField(std::size_t repeatCount, std::size_t unusedCount, std::size_t side = 175) {
    Random random(0);
    std::vector<std::size_t> vertexAt((side + 1) * (side + 1));
    for (std::size_t place = 0; place < vertexAt.size(); ++place)
        vertexAt[place] = place;
    for (std::size_t left = vertexAt.size(); left > 1; --left)
        std::swap(vertexAt[left - 1], vertexAt[random.Below(left)]);

    const Mesh mesh = NewPrimitive({}, {});
    auto& vertices = *mesh->GetModifiableVertexArray();
    auto& triangles = *mesh->GetModifiableVertexIndexArray();
    vertices.resize(vertexAt.size() + unusedCount, ON_3dPoint(0, 0, 0));
    for (std::size_t place = 0; place < vertexAt.size(); ++place)
        vertices[vertexAt[place]] =
            ON_3dPoint(static_cast<double>(place % (side + 1)),
                       static_cast<double>(place / (side + 1)), random.Between(0, 0.7));
    for (std::size_t row = 0; row < side; ++row) {
        for (std::size_t column = 0; column < side; ++column) {
            const std::size_t low = row * (side + 1) + column;
            const std::size_t high = low + side + 1;
            triangles.push_back({{vertexAt[low], vertexAt[low + 1], vertexAt[high + 1]}});
            triangles.push_back({{vertexAt[low], vertexAt[high + 1], vertexAt[high]}});
        }
    }
    for (std::size_t repeat = 0; repeat < repeatCount; ++repeat) {
        TriangleIndex& triangle = triangles[random.Below(triangles.size())];
        triangle[random.Below(3)] = triangle[random.Below(3)];
    }
    for (std::size_t left = triangles.size(); left > 1; --left)
        std::swap(triangles[left - 1], triangles[random.Below(left)]);
    return mesh;
}

TEST_P(ThreadCounts, NormalsPerTriangleAreThoseOfEachTriangleAlone) {
    const Mesh mesh = RoughField(500, 3);
    mesh->CreateNormalPerTriangle();
    std::vector<ON_3dVector> expected;
    std::vector<std::size_t> numbers;
    for (const TriangleIndex& corners : *mesh->GetVertexIndexArray()) {
        const auto& points = *mesh->GetVertexArray();
        expected.push_back(ON_CrossProduct(points[corners[0]] - points[corners[1]],
                                           points[corners[1]] - points[corners[2]]));
        expected.back().Unitize();
        numbers.push_back(numbers.size());
    }
    EXPECT_TRUE(SameBits(mesh->GetNormalArray().get(), &expected));
    EXPECT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()), numbers);
}

TEST_P(ThreadCounts, NormalsPerVertexAreAsDefinedAndInVertexOrder) {
    for (const double creaseAngle : {-1.0, 0.5}) {
        for (const auto weightType : {VraMeshPrimitive::Area, VraMeshPrimitive::Angle}) {
            SCOPED_TRACE("crease angle " + std::to_string(creaseAngle) + ", weight type " +
                         std::to_string(weightType));
            VraMeshPrimitive::SetVertexNormalWeightType(weightType);
            const Mesh mesh = RoughField(500, 3);
            mesh->SetCreaseAngle(creaseAngle);
            mesh->CreateNormalPerVertex();
            const VertexNormals expected =
                CreateNormalOracle(*mesh->GetVertexArray(), *mesh->GetVertexIndexArray(),
                                   creaseAngle, weightType)
                    .Compute();
            EXPECT_TRUE(SameBits(mesh->GetNormalArray().get(), &expected.normals));
            EXPECT_TRUE(PerVertexOf(*mesh->GetNormalIndexArray()) == expected.indices);
            EXPECT_EQ(mesh->GetNormalArray()->capacity(), mesh->GetNormalArray()->size());
        }
    }
}

std::size_t CountUsed(const VraMeshPrimitive& mesh) {
    std::vector<bool> isUsed(mesh.GetVertexArray()->size());
    for (const TriangleIndex& corners : *mesh.GetVertexIndexArray())
        for (const std::size_t vertex : corners.v)
            isUsed[vertex] = true;
    return static_cast<std::size_t>(std::count(isUsed.begin(), isUsed.end(), true));
}

TEST_P(ThreadCounts, NormalsOfASurfaceWhereEveryVertexIsUsedAreAsDefined) {
    // Sums that fit a cache, which one worker adds up, and more of them.
    for (const std::size_t side : {std::size_t{175}, std::size_t{260}}) {
        for (const std::size_t repeatCount : {std::size_t{0}, std::size_t{20}}) {
            SCOPED_TRACE(std::to_string(side) + ", repeats " + std::to_string(repeatCount));
            const Mesh mesh = RoughField(repeatCount, 0, side);
            ASSERT_EQ(CountUsed(*mesh), mesh->GetVertexArray()->size());
            mesh->SetCreaseAngle(-1.0);
            mesh->CreateNormalPerVertex();
            const VertexNormals expected =
                CreateNormalOracle(*mesh->GetVertexArray(), *mesh->GetVertexIndexArray(), -1.0, 0)
                    .Compute();
            EXPECT_TRUE(SameBits(mesh->GetNormalArray().get(), &expected.normals));
            EXPECT_TRUE(PerVertexOf(*mesh->GetNormalIndexArray()) == expected.indices);
        }
    }
}

TEST_P(ThreadCounts, UnusedVerticesGoAsDefined) {
    const Mesh mesh = RoughField(500, 3);
    const Mesh expected = RoughField(500, 3);
    for (const Mesh& one : {mesh, expected})
        one->GetModifiableVertexIndexArray()->resize(40000);
    VraMeshPrimitive::DeleteUnusedVertices({mesh, mesh});
    OracleDeleteUnusedVertices({expected, expected});
    EXPECT_TRUE(AreBitEqual(*mesh, *expected));
}

INSTANTIATE_TEST_SUITE_P(OneToMany, ThreadCounts, ::testing::Values(1, 2, 3, 7));

}  // namespace

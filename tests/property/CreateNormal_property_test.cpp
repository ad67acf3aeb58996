#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>
#include <vector>

#include "support/CreateNormalOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;

const double kPi = std::acos(-1.0);

class CreateNormalLaws : public ::testing::Test {
protected:
    void TearDown() override { SetWeightType(0); }

    static void SetWeightType(int weightType) {
        VraMeshPrimitive::SetVertexNormalWeightType(
            static_cast<VraMeshPrimitive::VertexNormalWeightType>(weightType));
    }
};

// Runs the operation and compares with the definition.
void ExpectVertexNormalsAsDefined(const Mesh& mesh, double creaseAngle) {
    mesh->SetCreaseAngle(creaseAngle);
    ASSERT_TRUE(mesh->CreateNormalPerVertex());
    const VertexNormals expected =
        CreateNormalOracle(*mesh->GetVertexArray(), *mesh->GetVertexIndexArray(), creaseAngle,
                           VraMeshPrimitive::GetVertexNormalWeightType())
            .Compute();
    ASSERT_TRUE(SameBits(mesh->GetNormalArray().get(), &expected.normals));
    ASSERT_EQ(PerVertexOf(*mesh->GetNormalIndexArray()), expected.indices);
    ASSERT_EQ(mesh->GetNormalArray()->capacity(), mesh->GetNormalArray()->size());
    ExpectConsistent(*mesh);
}

double RandomCreaseAngle(Random& random) {
    const std::vector<double> angles = {-1.0,
                                        -0.0,
                                        0.0,
                                        1e-7,
                                        0.3,
                                        kPi / 6,
                                        kPi / 2,
                                        kPi,
                                        2.5,
                                        10.0,
                                        std::numeric_limits<double>::quiet_NaN(),
                                        std::numeric_limits<double>::infinity(),
                                        -std::numeric_limits<double>::infinity()};
    return random.OneOf(angles);
}

// Few vertices with many triangles around each, in general position.
Mesh RandomBall(Random& random, double scale) {
    const Mesh mesh = NewPrimitive({}, {});
    const std::size_t vertexCount = 3 + random.Below(12);
    for (std::size_t vertex = 0; vertex < vertexCount; ++vertex)
        mesh->GetModifiableVertexArray()->push_back(ON_3dPoint(scale * random.Between(-1, 1),
                                                               scale * random.Between(-1, 1),
                                                               scale * random.Between(-1, 1)));
    for (std::size_t triangle = random.Below(150); triangle > 0; --triangle)
        mesh->GetModifiableVertexIndexArray()->push_back(
            {{random.Below(vertexCount), random.Below(vertexCount), random.Below(vertexCount)}});
    return mesh;
}

TEST_F(CreateNormalLaws, VertexNormalsOfSmallMeshesAreAsDefined) {
    std::size_t comparedCount = 0;
    for (std::size_t round = 0; round < 1500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        RandomMeshOptions options;
        options.hasSpecialValues = random.Chance(30);
        const Mesh mesh = RandomMesh(random, options);
        if (!mesh->GetVertexArray() || !mesh->GetVertexIndexArray())
            continue;
        SetWeightType(static_cast<int>(random.Below(3)));
        ASSERT_NO_FATAL_FAILURE(ExpectVertexNormalsAsDefined(mesh, RandomCreaseAngle(random)));
        ++comparedCount;
    }
    EXPECT_GT(comparedCount, 800u);
}

TEST_F(CreateNormalLaws, VertexNormalsInGeneralPositionAreAsDefinedAtAnyScale) {
    const std::vector<double> scales = {1.0,  1e3,   1e-3,   1e-60, 1e60,   1e-65,
                                        1e65, 1e-78, 1e-100, 1e76,  1e-155, 1e155};
    for (std::size_t round = 0; round < 1500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomBall(random, random.OneOf(scales));
        SetWeightType(static_cast<int>(random.Below(3)));
        ASSERT_NO_FATAL_FAILURE(ExpectVertexNormalsAsDefined(mesh, RandomCreaseAngle(random)));
    }
}

// The crease angle whose threshold is, to the last bits, the dot product of two faces.
double CreaseAngleBetween(const VraMeshPrimitive& mesh, Random& random) {
    const auto unitNormal = [&](std::size_t triangle) {
        const TriangleIndex corners = (*mesh.GetVertexIndexArray())[triangle];
        const auto& points = *mesh.GetVertexArray();
        ON_3dVector normal = ON_CrossProduct(points[corners[1]] - points[corners[0]],
                                             points[corners[2]] - points[corners[1]]);
        normal.Unitize();
        return normal;
    };
    const std::size_t count = mesh.GetVertexIndexArray()->size();
    const double dot =
        ON_DotProduct(unitNormal(random.Below(count)), unitNormal(random.Below(count)));
    const double lastBits = 1e-16 * static_cast<double>(random.Below(21)) - 1e-15;
    return std::acos(std::min(1.0, std::max(-1.0, dot + 1e-12 + lastBits)));
}

TEST_F(CreateNormalLaws, FacesOnTheVeryThresholdAreGroupedAsDefined) {
    // The small ones have areas whose squares lose bits, or all of them.
    const std::vector<double> scales = {1.0, 0.01, 70.0, 1e-40, 1e-77, 1e-78, 1e-79, 1e40, 1e76};
    for (std::size_t round = 0; round < 2000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomBall(random, random.OneOf(scales));
        if (mesh->IsEmpty())
            continue;
        SetWeightType(static_cast<int>(random.Below(2)));
        ASSERT_NO_FATAL_FAILURE(
            ExpectVertexNormalsAsDefined(mesh, CreaseAngleBetween(*mesh, random)));
    }
}

TEST_F(CreateNormalLaws, TriangleNormalsAreTheUnitCrossProductsAtAnyScale) {
    const std::vector<double> scales = {1.0, 1e-100, 1e-154, 1e-157, 1e-162, 1e100, 1e153, 1e160};
    std::set<bool> isZeroSeen;
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        RandomMeshOptions options;
        options.hasSpecialValues = true;
        options.missingPercent = 0;
        const Mesh mesh = random.Chance(50) ? RandomMesh(random, options)
                                            : RandomBall(random, random.OneOf(scales));
        ASSERT_TRUE(mesh->CreateNormalPerTriangle());

        const std::vector<ON_3dVector> expected =
            TriangleNormalsByDefinition(*mesh->GetVertexArray(), *mesh->GetVertexIndexArray());
        std::vector<std::size_t> numbers(expected.size());
        std::iota(numbers.begin(), numbers.end(), std::size_t{0});
        for (const ON_3dVector& normal : expected)
            isZeroSeen.insert(normal == ON_3dVector(0, 0, 0));
        ASSERT_TRUE(SameBits(mesh->GetNormalArray().get(), &expected));
        ASSERT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()), numbers);
    }
    EXPECT_EQ(isZeroSeen.size(), 2u);
}

}  // namespace

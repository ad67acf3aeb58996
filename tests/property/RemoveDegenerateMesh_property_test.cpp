// The judge and the removal of degenerate triangles against slow models, on random meshes and
// random questions.

#include <gtest/gtest.h>

#include "support/DegenerateOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshDegenJudge;

constexpr size_t kRounds = 600;

std::vector<size_t> RandomNumbers(Random& random, size_t bound) {
    std::vector<size_t> numbers(random.Below(6));
    for (size_t& number : numbers)
        number = random.Below(bound + 3);
    return numbers;
}

void AskVertex(Random& random, size_t triangleCount, VraMeshDegenJudge& judge,
               JudgeOracle& oracle) {
    Vr::VraMeshPrimitive::MeshVertex vertex;
    vertex.key = random.Below(3);
    for (size_t left = triangleCount == 0 ? 0 : random.Below(40); left > 0; --left)
        vertex.triangles.push_back(random.Below(triangleCount));
    std::vector<uint64_t> expected(vertex.triangles.begin(), vertex.triangles.end());
    const bool isRepeated = oracle.AskVertex(static_cast<int64_t>(vertex.key), expected);
    EXPECT_EQ(judge(vertex), isRepeated);
    EXPECT_EQ(std::vector<uint64_t>(vertex.triangles.begin(), vertex.triangles.end()), expected);
}

// One random call on both.
void Step(Random& random, size_t triangleCount, VraMeshDegenJudge& judge, JudgeOracle& oracle) {
    switch (random.Below(12)) {
        case 0:
            oracle.isJudging = random.Chance(50);
            judge.SetMode(oracle.isJudging ? VraMeshDegenJudge::eJudge : VraMeshDegenJudge::eTable);
            return;
        case 1:
            judge.ResetIndex();
            oracle.ResetIndex();
            return;
        case 2: {
            const std::vector<size_t> triangles = RandomNumbers(random, triangleCount);
            judge.SetDegenTriangles(triangles);
            oracle.SetDegenTriangles(triangles);
            return;
        }
        case 3:
            EXPECT_EQ(judge.IsExistDegen(), oracle.IsExistDegen());
            return;
        case 4:
            AskVertex(random, triangleCount, judge, oracle);
            return;
        case 5:
            if (triangleCount > 0) {
                const size_t triangle = random.Below(triangleCount);
                EXPECT_EQ(judge(triangle), oracle.AskNumber(triangle));
            }
            return;
        case 6:
        case 7:
        case 8:
            if (oracle.HasNext()) {
                EXPECT_EQ(judge(ON_2dPoint(0, 0)), oracle.AskCorner());
            }
            return;
        default:
            if (oracle.HasNext()) {
                const TriangleIndex corners = {{random.Below(4), random.Below(4), random.Below(4)}};
                EXPECT_EQ(judge(corners), oracle.AskTriangle(corners));
            }
    }
}

TEST(VraMeshDegenJudge, AnswersAsTheOracleToAnyQuestions) {
    for (size_t round = 0; round < kRounds && !::testing::Test::HasFailure(); ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const size_t triangleCount = random.Chance(10) ? 200 + random.Below(400) : random.Below(9);
        VraMeshDegenJudge judge(triangleCount);
        JudgeOracle oracle(triangleCount);
        for (size_t left = 60; left > 0; --left)
            Step(random, triangleCount, judge, oracle);
        EXPECT_EQ(TableOf(judge, triangleCount), oracle.Table());
    }
}

// Keeps the numbers of per-triangle lists below the triangle count, as the removal requires.
void LimitPerTriangleNumbers(Vr::VraMeshPrimitive& mesh, size_t triangleCount) {
    for (const auto& numbers :
         {mesh.GetModifiableNormalIndexArray(), mesh.GetModifiableColorIndexArray()})
        if (numbers && numbers->which() == 0)
            for (size_t& number : boost::get<std::vector<size_t>>(numbers->data))
                number %= triangleCount;
}

Mesh RandomInput(Random& random, size_t round) {
    RandomMeshOptions options;
    options.maxTriangles = round % 5 == 0 ? 700 : 16;
    options.degeneratePercent = round % 3 == 0 ? 0 : 30;
    options.maxVertices = round % 3 == 0 ? 200 : 12;
    const Mesh mesh = RandomMesh(random, options);
    if (!mesh->IsEmpty())
        LimitPerTriangleNumbers(*mesh, mesh->GetVertexIndexArray()->size());
    return mesh;
}

TEST(RemoveDegenerateMesh, RemovesWhatTheOracleRemoves) {
    size_t removedCount = 0;
    for (size_t round = 0; round < kRounds; ++round) {
        Random random(round);
        Random again(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomInput(random, round);
        const Mesh expected = RandomInput(again, round);
        const ArrayAddresses before = AddressesOf(*mesh);
        const bool hasTriangles = mesh->GetVertexIndexArray() != nullptr;
        const std::set<size_t> degenerate = OracleDegenerateTriangles(*expected);
        OracleRemoveTriangles(*expected, degenerate);
        removedCount += degenerate.size();

        EXPECT_EQ(mesh->RemoveDegenerateMesh(), hasTriangles);
        EXPECT_EQ(AddressesOf(*mesh), before);
        ASSERT_TRUE(AreBitEqual(*mesh, *expected));
    }
    EXPECT_GT(removedCount, kRounds);
}

TEST(RemoveDegenerateMesh, APresetListLeavesWhatTheOracleLeavesAndTheJudgeAlike) {
    for (size_t round = 0; round < kRounds; ++round) {
        Random random(round);
        Random again(round);
        SCOPED_TRACE(random.Trace());
        const Mesh built = RandomInput(random, round);
        const Mesh expected = RandomInput(again, round);
        if (built->IsEmpty())
            continue;
        const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
        built->ShallowCopy(mesh);
        const size_t triangleCount = built->GetVertexIndexArray()->size();
        const std::vector<size_t> list = RandomNumbers(random, triangleCount);
        VraMeshDegenJudge judge(triangleCount);
        judge.SetDegenTriangles(list);
        JudgeOracle oracle(triangleCount);
        oracle.SetDegenTriangles(list);
        OracleRemoveTriangles(*expected, {list.begin(), list.end()});

        EXPECT_TRUE(mesh->OnRemoveDegenerateMesh(judge, false));
        ASSERT_TRUE(AreBitEqual(*built, *expected));
        EXPECT_EQ(TableOf(judge, triangleCount), oracle.Table());
    }
}

}  // namespace

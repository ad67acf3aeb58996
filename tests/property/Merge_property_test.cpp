// Merging of primitives against linear searches, on random lists of sources.

#include <gtest/gtest.h>

#include "support/Caught.h"
#include "support/MergePrimitivesOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Maps = std::vector<std::vector<int>>;
using Sources = std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>;

// A merge reads the values that the index arrays name, so they have to be there.
void AddMissingValues(VraMeshPrimitive& mesh) {
    if (mesh.GetVertexIndexArray() && !mesh.GetVertexIndexArray()->empty() &&
        !mesh.GetVertexArray())
        mesh.SetVertexIndexArray(nullptr);
    if (!mesh.GetNormalArray())
        mesh.SetNormalIndexArray(nullptr);
    if (!mesh.GetColorArray())
        mesh.SetColorIndexArray(nullptr);
}

Sources RandomSources(Random& random, const RandomMeshOptions& options) {
    Sources sources;
    for (size_t left = random.Below(5); left > 0; --left) {
        const Mesh mesh = RandomMesh(random, options);
        AddMissingValues(*mesh);
        sources.push_back(mesh);
        if (random.Chance(20))
            sources.push_back(sources[random.Below(sources.size())]);
    }
    return sources;
}

void ExpectLikeOracle(Random& random, const Sources& sources) {
    Maps vertexMaps(random.Below(2));
    Maps normalMaps = vertexMaps;
    Maps colorMaps = vertexMaps;
    Maps expectedMaps[3] = {vertexMaps, normalMaps, colorMaps};
    const bool wantsMaps[3] = {random.Chance(80), random.Chance(80), random.Chance(80)};
    const Mesh target = FullSquare();
    const Mesh expected = FullSquare();
    bool result = false;
    bool expectedResult = false;
    const Caught caught = CaughtFrom([&] {
        result = VraMeshPrimitive::Merge(target, sources, wantsMaps[0] ? &vertexMaps : nullptr,
                                         wantsMaps[1] ? &normalMaps : nullptr,
                                         wantsMaps[2] ? &colorMaps : nullptr);
    });
    ASSERT_EQ(caught, CaughtFrom([&] {
                  expectedResult =
                      MergeSlowly(*expected, sources, wantsMaps[0] ? &expectedMaps[0] : nullptr,
                                  wantsMaps[1] ? &expectedMaps[1] : nullptr,
                                  wantsMaps[2] ? &expectedMaps[2] : nullptr);
              }));
    ASSERT_EQ(result, expectedResult);
    ASSERT_TRUE(AreBitEqual(*target, *expected));
    ASSERT_EQ(vertexMaps.size(), expectedMaps[0].size());
    if (caught != Nothing())
        return;
    ASSERT_EQ(vertexMaps, expectedMaps[0]);
    ASSERT_EQ(normalMaps, expectedMaps[1]);
    ASSERT_EQ(colorMaps, expectedMaps[2]);
}

TEST(MergeProperty, SmallSourcesOfEveryShapeAreMergedAsByLinearSearch) {
    for (size_t round = 0; round < 1000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        RandomMeshOptions options;
        options.hasSpecialValues = random.Chance(30);
        options.missingPercent = random.Chance(50) ? 15 : 2;
        if (random.Chance(50))
            options.form = static_cast<int>(random.Below(2));
        ExpectLikeOracle(random, RandomSources(random, options));
    }
}

TEST(MergeProperty, SourcesOfManyBlocksAreMergedAsByLinearSearch) {
    for (size_t round = 0; round < 30; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        RandomMeshOptions options;
        options.hasSpecialValues = random.Chance(30);
        options.missingPercent = 2;
        options.maxVertices = 2000;
        options.maxTriangles = 3000;
        options.form = static_cast<int>(random.Below(2));
        ExpectLikeOracle(random, RandomSources(random, options));
    }
}

TEST(MergeProperty, EveryCornerKeepsItsPositionThroughItsMap) {
    for (size_t round = 0; round < 200; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        RandomMeshOptions options;
        options.missingPercent = 0;
        const Sources sources = {RandomMesh(random, options), RandomMesh(random, options)};
        const Mesh target = NewPrimitive();
        Maps maps;
        ASSERT_TRUE(VraMeshPrimitive::Merge(target, sources, &maps));
        ASSERT_TRUE(IsConsistent(*target));
        size_t triangle = 0;
        for (size_t source = 0; source < sources.size(); ++source) {
            std::vector<bool> isUsed(sources[source]->GetVertexArray()->size());
            for (const TriangleIndex& corners : *sources[source]->GetVertexIndexArray()) {
                for (size_t corner = 0; corner < 3; ++corner) {
                    const size_t merged = (*target->GetVertexIndexArray())[triangle][corner];
                    isUsed[corners[corner]] = true;
                    ASSERT_EQ(maps[source][corners[corner]], static_cast<int>(merged));
                    ASSERT_EQ((*target->GetVertexArray())[merged],
                              (*sources[source]->GetVertexArray())[corners[corner]]);
                }
                ++triangle;
            }
            for (size_t vertex = 0; vertex < isUsed.size(); ++vertex)
                ASSERT_EQ(maps[source][vertex] == -1, !isUsed[vertex]);
        }
    }
}

}  // namespace

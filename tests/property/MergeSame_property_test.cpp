// Merging of equal data against an ordered map: on small random meshes of every shape, and on many
// values spread in the ways that a sort or a hash may find hard.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "support/Caught.h"
#include "support/MergeSameOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using RecordingMesh = boost::intrusive_ptr<RecordingPrimitive>;

// A primitive with public hooks that has the arrays of another.
RecordingMesh Recording(const Mesh& mesh) {
    const RecordingMesh recording(new RecordingPrimitive);
    mesh->ShallowCopy(recording);
    recording->SetUVArray(mesh->GetModifiableUVArray());
    return recording;
}

void ExpectLikeOracle(const std::function<Mesh()>& makeMesh,
                      const std::function<void(RecordingPrimitive&)>& merge,
                      const std::function<void(VraMeshPrimitive&)>& mergeSlowly) {
    const RecordingMesh actual = Recording(makeMesh());
    const ArrayAddresses addresses = AddressesOf(*actual);
    const Mesh expected = makeMesh();
    const Caught caught = CaughtFrom([&] { merge(*actual); });
    ASSERT_EQ(caught, CaughtFrom([&] { mergeSlowly(*expected); }));
    ASSERT_TRUE(AreBitEqual(*actual, *expected));
    ASSERT_EQ(AddressesOf(*actual), addresses);
}

TEST(MergeSameProperty, SmallMeshesOfEveryShapeAreMergedAsByAnOrderedMap) {
    for (size_t round = 0; round < 1000; ++round) {
        SCOPED_TRACE(Random(round).Trace());
        const auto makeMesh = [round] {
            Random random(round);
            return RandomMesh(random);
        };
        ExpectLikeOracle(
            makeMesh, [](RecordingPrimitive& mesh) { mesh.OnMergeSameVertex(); },
            MergeVerticesSlowly);
        ExpectLikeOracle(
            makeMesh, [](RecordingPrimitive& mesh) { mesh.OnMergeSameNormal(); },
            MergeNormalsSlowly);
        ExpectLikeOracle(
            makeMesh, [](RecordingPrimitive& mesh) { mesh.OnMergeSameColor(); }, MergeColorsSlowly);
    }
}

TEST(MergeSameProperty, SpecialValuesNeverLeaveANumberOutOfRange) {
    RandomMeshOptions options;
    options.hasSpecialValues = true;
    options.missingPercent = 0;
    options.sharesRoles = false;
    options.maxVertices = 100;
    options.maxTriangles = 100;
    for (size_t round = 0; round < 300; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const RecordingMesh mesh = Recording(RandomMesh(random, options));
        mesh->SetTextureUVArray(nullptr);
        mesh->MergeSameData();
        for (const size_t* vertex : NumbersOf(*mesh->GetModifiableVertexIndexArray()))
            ASSERT_LT(*vertex, mesh->GetVertexArray()->size());
        for (const size_t* normal : NumbersOf(*mesh->GetModifiableNormalIndexArray()))
            ASSERT_LT(*normal, mesh->GetNormalArray()->size());
    }
}

// How the coordinates of many values are spread.
struct Spread {
    const char* name;
    double (*coordinate)(Random& random);
};

double Uniform(Random& random) {
    return random.Between(-1.0, 1.0);
}

const Spread kSpreads[] = {
    {"Uniform", Uniform},
    {"FewValues", [](Random& random) { return static_cast<double>(random.Below(12)); }},
    {"SignedZerosAndOnes",
     [](Random& random) {
         return random.OneOf<double>({0.0, -0.0, 1.0, -1.0, std::nextafter(1.0, 2.0)});
     }},
    {"PowersOfTwo",
     [](Random& random) {
         return std::ldexp(random.Chance(50) ? 1.0 : -1.0,
                           static_cast<int>(random.Below(2000)) - 1000);
     }},
    {"OneFarAway",
     [](Random& random) { return random.Below(5000) == 0 ? 1e300 : Uniform(random); }},
    {"ClustersOfNeighbours",
     [](Random& random) {
         return static_cast<double>(random.Below(3)) +
                static_cast<double>(random.Below(50)) * 0x1p-52;
     }},
    {"Denormals", [](Random& random) { return static_cast<double>(random.Below(5000)) * 5e-324; }},
    {"RangeBeyondTheGreatestNumber",
     [](Random& random) { return random.Between(-1.0, 1.0) * 1.7e308; }},
    {"WithInfinities",
     [](Random& random) {
         const double infinity = std::numeric_limits<double>::infinity();
         return random.Below(100) < 2 ? (random.Chance(50) ? infinity : -infinity)
                                      : Uniform(random);
     }},
    {"Constant", [](Random&) { return 4.25; }},
};

class MergeSameManyValues : public ::testing::TestWithParam<Spread> {};

// `distinctCount` points, `copies` in all of each; in every other mesh some are not used.
Mesh ManyValues(Random& random, const Spread& spread, size_t distinctCount, size_t copies,
                bool isAscending) {
    const auto textured = [&] { return random.Chance(50) ? spread.coordinate(random) : 0.5; };
    std::vector<std::pair<ON_3dPoint, ON_2dPoint>> pool;
    for (size_t i = 0; i < distinctCount; ++i) {
        const double x = spread.coordinate(random);
        const double y = spread.coordinate(random);
        const double u = textured();
        pool.push_back({ON_3dPoint(x, y, spread.coordinate(random)), ON_2dPoint(u, textured())});
    }
    if (isAscending)
        std::sort(pool.begin(), pool.end(),
                  [](const auto& a, const auto& b) { return a.first < b.first; });
    const auto vertices = Vertices({});
    const auto normals = Normals({});
    const auto colors = Colors({});
    const auto textureUVs = UVs({});
    std::vector<size_t> order;
    for (size_t i = 0; i < distinctCount * copies; ++i)
        order.push_back(i / copies);
    for (size_t i = order.size(); !isAscending && i > 1; --i)
        std::swap(order[i - 1], order[random.Below(i)]);
    for (const size_t place : order) {
        const auto& value = pool[place];
        vertices->push_back(value.first);
        textureUVs->push_back(value.second);
        normals->push_back(value.first);
        colors->push_back(ON_Color(static_cast<unsigned int>(random.Next() >> random.Below(64))));
    }
    const auto triangles = Triangles({});
    const unsigned unusedPercent = random.Chance(50) ? 20 : 0;
    for (size_t i = 0; i < vertices->size(); ++i) {
        if (random.Chance(unusedPercent))
            continue;
        const size_t vertex = random.Below(vertices->size());
        triangles->push_back({{vertex, i, random.Chance(50) ? vertex : i / 2}});
    }
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(vertices);
    mesh->SetVertexIndexArray(triangles);
    mesh->SetNormalArray(normals);
    mesh->SetNormalIndexArray(PerVertex(*triangles));
    mesh->SetColorArray(colors);
    mesh->SetColorIndexArray(PerVertex(*triangles));
    if (random.Chance(30))
        mesh->SetTextureUVArray(textureUVs);
    return mesh;
}

TEST_P(MergeSameManyValues, AreMergedAsByAnOrderedMap) {
    size_t round = 0;
    for (const size_t distinctCount : {30u, 700u, 9000u}) {
        for (const size_t copies : {1u, 2u, 6u}) {
            ++round;
            SCOPED_TRACE(Random(round).Trace() + ", " + std::to_string(distinctCount) + " times " +
                         std::to_string(copies));
            const auto makeMesh = [&] {
                Random random(round);
                const bool isAscending = random.Chance(25);
                return ManyValues(random, GetParam(), distinctCount, copies, isAscending);
            };
            ExpectLikeOracle(
                makeMesh, [](RecordingPrimitive& mesh) { mesh.MergeSameData(); },
                [](VraMeshPrimitive& mesh) {
                    MergeVerticesSlowly(mesh);
                    MergeNormalsSlowly(mesh);
                    MergeColorsSlowly(mesh);
                });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Spreads, MergeSameManyValues, ::testing::ValuesIn(kSpreads),
                         [](const auto& spread) { return std::string(spread.param.name); });

TEST(MergeSameProperty, EveryCornerKeepsItsPositionAndTheKeysAscendStrictly) {
    for (size_t round = 0; round < 200; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        RandomMeshOptions options;
        options.missingPercent = 0;
        options.maxVertices = 60;
        options.maxTriangles = 60;
        const Mesh source = RandomMesh(random, options);
        source->SetTextureUVArray(nullptr);
        const RecordingMesh mesh = Recording(source->Duplicate());
        mesh->OnMergeSameVertex();
        const auto& vertices = *mesh->GetVertexArray();
        const auto& triangles = *mesh->GetVertexIndexArray();
        for (size_t vertex = 1; vertex < vertices.size(); ++vertex)
            ASSERT_LT(vertices[vertex - 1], vertices[vertex]);
        for (size_t triangle = 0; triangle < triangles.size(); ++triangle)
            for (size_t corner = 0; corner < 3; ++corner)
                ASSERT_EQ(
                    vertices[triangles[triangle][corner]],
                    (*source
                          ->GetVertexArray())[(*source->GetVertexIndexArray())[triangle][corner]]);
    }
}

}  // namespace

// The measures beside slow, obviously right ones, bit for bit.

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;

bool SlowBox(const VraMeshPrimitive& mesh, ON_BoundingBox& box) {
    const auto vertices = mesh.GetVertexArray();
    const auto triangles = mesh.GetVertexIndexArray();
    if (!vertices || !triangles || triangles->empty())
        return false;
    box.Set(vertices->at(triangles->at(0)[0]), false);
    for (const TriangleIndex& triangle : *triangles)
        for (std::size_t corner = 0; corner < 3; ++corner)
            box.Set(vertices->at(triangle[corner]), true);
    return true;
}

double SlowArea(const VraMeshPrimitive& mesh, std::size_t triangle) {
    const auto vertices = mesh.GetVertexArray();
    const auto triangles = mesh.GetVertexIndexArray();
    if (!vertices || !triangles)
        return -1.0;
    const TriangleIndex corners = triangles->at(triangle);
    const ON_3dVector first = vertices->at(corners[1]) - vertices->at(corners[0]);
    const ON_3dVector second = vertices->at(corners[2]) - vertices->at(corners[0]);
    return ON_CrossProduct(first, second).Length() * 0.5;
}

double SlowVolume(const VraMeshPrimitive& mesh, const ON_3dPoint& reference) {
    const auto vertices = mesh.GetVertexArray();
    const auto triangles = mesh.GetVertexIndexArray();
    double volume = 0.0;
    if (!vertices || !triangles)
        return volume;
    for (const TriangleIndex& corners : *triangles) {
        const ON_3dPoint p0 = vertices->at(corners[0]);
        const ON_3dVector u = vertices->at(corners[1]) - p0;
        const ON_3dVector v = vertices->at(corners[2]) - p0;
        const ON_3dVector w = p0 - reference;
        const double crossX = u.y * v.z - v.y * u.z;
        const double crossY = u.z * v.x - v.z * u.x;
        const double crossZ = u.x * v.y - v.x * u.y;
        volume += (crossX * w.x + crossY * w.y + crossZ * w.z) / 6.0;
    }
    return volume;
}

// Every NaN is the same result: which one comes out is the processor's choice.
::testing::AssertionResult SameResult(double actual, double expected) {
    return std::isnan(actual) && std::isnan(expected) ? ::testing::AssertionSuccess()
                                                      : SameBits(actual, expected);
}

::testing::AssertionResult SameBox(const VraMeshPrimitive& mesh) {
    const ON_BoundingBox untouched(ON_3dPoint(7, -0.0, std::nan("1")), ON_3dPoint(-7, 1, 2));
    ON_BoundingBox actual = untouched;
    ON_BoundingBox expected = untouched;
    const bool isActual = mesh.CalcBoundingBox(actual);
    const bool isExpected = SlowBox(mesh, expected);
    if (isActual != isExpected)
        return ::testing::AssertionFailure() << "answered " << isActual;
    const VraMeshPrimitive::VertexArray actualCorners = {actual.m_min, actual.m_max};
    const VraMeshPrimitive::VertexArray expectedCorners = {expected.m_min, expected.m_max};
    return SameBits(&actualCorners, &expectedCorners);
}

struct MeasureCase {
    const char* name;
    std::size_t maxVertices;
    std::size_t maxTriangles;
    bool hasSpecialValues;
};

class MeasureLaw : public ::testing::TestWithParam<MeasureCase> {
protected:
    Mesh NextMesh(Random& random) const {
        RandomMeshOptions options;
        options.maxVertices = GetParam().maxVertices;
        options.maxTriangles = GetParam().maxTriangles;
        options.hasSpecialValues = GetParam().hasSpecialValues;
        options.missingPercent = 3;
        return RandomMesh(random, options);
    }
};

// Few vertices and many triangles, the other way round, and both.
INSTANTIATE_TEST_SUITE_P(Random, MeasureLaw,
                         ::testing::Values(MeasureCase{"Small", 4, 3, false},
                                           MeasureCase{"SmallSpecial", 4, 3, true},
                                           MeasureCase{"ManyTriangles", 9, 300, false},
                                           MeasureCase{"ManyTrianglesSpecial", 9, 300, true},
                                           MeasureCase{"ManyVertices", 300, 12, false},
                                           MeasureCase{"ManyVerticesSpecial", 300, 12, true},
                                           MeasureCase{"Large", 400, 800, false}),
                         [](const auto& instance) { return instance.param.name; });

TEST_P(MeasureLaw, TheBoundingBoxIsGrownPointByPoint) {
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        ASSERT_TRUE(SameBox(*NextMesh(random)));
    }
}

TEST_P(MeasureLaw, AreaAndVolumeEqualTheWrittenOutSums) {
    for (std::size_t round = 0; round < 200; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = NextMesh(random);
        const ON_3dPoint reference{random.Between(-9, 9), RandomCoordinate(random), 1e3};
        ASSERT_TRUE(SameResult(mesh->CalcVolume(reference), SlowVolume(*mesh, reference)));
        if (!mesh->GetVertexIndexArray())
            continue;
        for (std::size_t triangle = 0; triangle < mesh->GetVertexIndexArray()->size(); ++triangle)
            ASSERT_TRUE(SameResult(mesh->GetTriangleArea(triangle), SlowArea(*mesh, triangle)));
    }
}

// Triangles that jump across an array larger than a cache, with runs of used and unused vertices.
TEST(ScatteredLaw, BoxAndVolumeAreThoseOfTheTrianglesInOrder) {
    constexpr std::size_t kVertexCount = 40000;
    for (std::size_t round = 0; round < 8; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = NewPrimitive({}, {});
        for (std::size_t vertex = 0; vertex < kVertexCount; ++vertex)
            mesh->GetModifiableVertexArray()->push_back(
                ON_3dPoint{random.Between(-9, 9), random.Between(-9, 9), random.Between(-9, 9)});
        // Unused vertices that would widen the box.
        const std::size_t usedEnd = kVertexCount - random.Below(130);
        for (std::size_t vertex = usedEnd; vertex < kVertexCount; ++vertex)
            (*mesh->GetModifiableVertexArray())[vertex] = ON_3dPoint(20, -20, 20);
        const std::size_t stride = 1 + random.Below(2);
        const auto anyVertex = [&] { return random.Below(usedEnd / stride) * stride; };
        while (mesh->GetVertexIndexArray()->size() < 12000)
            mesh->GetModifiableVertexIndexArray()->push_back(
                {anyVertex(), anyVertex(), anyVertex()});
        // Two runs of which every vertex is used, with the bounds at the ends of a word of marks.
        for (std::size_t vertex = 0; vertex < 300; vertex += 3) {
            mesh->GetModifiableVertexIndexArray()->push_back({vertex, vertex + 1, vertex + 2});
            mesh->GetModifiableVertexIndexArray()->push_back(
                {usedEnd - 1 - vertex, usedEnd - 2 - vertex, usedEnd - 3 - vertex});
        }
        std::vector<ON_3dPoint>& vertices = *mesh->GetModifiableVertexArray();
        vertices[128] = ON_3dPoint(10, -10, 10);
        vertices[191] = ON_3dPoint(-10, 10, -10);
        ASSERT_TRUE(SameBox(*mesh));
        // The bounds where few vertices around are used.
        const std::size_t lone = 20000 + random.Below(64) * 2;
        mesh->GetModifiableVertexIndexArray()->push_back({lone, lone, lone + 300});
        vertices[lone] = ON_3dPoint(11, -11, 11);
        vertices[lone + 300] = ON_3dPoint(-11, 11, -11);
        ASSERT_TRUE(SameBox(*mesh));
        const ON_3dPoint reference(1, 2, 3);
        ASSERT_TRUE(SameBits(mesh->CalcVolume(reference), SlowVolume(*mesh, reference)));
        // Bounds of zero keep the sign of the zero that is met first.
        for (ON_3dPoint& point : vertices)
            point.x = point.x > 0 ? -0.0 : 0.0;
        ASSERT_TRUE(SameBox(*mesh));
    }
}

// Cross products whose largest component occurs twice or three times, in every place.
TEST(AreaLaw, EqualComponentsAreTakenInTheLengthsOrder) {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexIndexArray(Triangles({{{0, 1, 2}}}));
    const auto at = [](int number, double step) {
        return ON_3dPoint(number % 3 * step, number / 3 % 3 * 0.7, number / 9 * 0.7);
    };
    for (const double step : {0.7, 0.3}) {
        for (int first = 0; first < 27; ++first) {
            for (int second = 0; second < 27; ++second) {
                mesh->SetVertexArray(Vertices({at(13, step), at(first, step), at(second, step)}));
                ASSERT_TRUE(SameBits(mesh->GetTriangleArea(0), SlowArea(*mesh, 0)));
            }
        }
    }
}

// Zeros of both signs at the bounds, where a regrouped minimum shows.
TEST(BoundingBoxLaw, ZerosKeepTheirSigns) {
    const std::vector<double> pools[] = {{0.0, -0.0}, {0.0, -0.0, 1.0}, {0.0, -0.0, -1.0}};
    for (std::size_t round = 0; round < 2000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = NewPrimitive({}, {});
        const std::size_t vertexCount = 1 + random.Below(6);
        for (std::size_t vertex = 0; vertex < vertexCount; ++vertex)
            mesh->GetModifiableVertexArray()->push_back(
                ON_3dPoint{random.OneOf(pools[0]), random.OneOf(pools[1]), random.OneOf(pools[2])});
        const std::size_t triangleCount = 1 + random.Below(6);
        for (std::size_t triangle = 0; triangle < triangleCount; ++triangle)
            mesh->GetModifiableVertexIndexArray()->push_back(
                {random.Below(vertexCount), random.Below(vertexCount), random.Below(vertexCount)});
        ASSERT_TRUE(SameBox(*mesh));
    }
}

// One unusual coordinate at each place of a larger mesh.
TEST(BoundingBoxLaw, OneUnusualCoordinateAnywhere) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double huge = std::numeric_limits<double>::max();
    for (const double unusual : {std::nan("5"), infinity, -infinity, ON_UNSET_VALUE,
                                 -ON_UNSET_VALUE, huge, -huge, 5e-324}) {
        for (std::size_t place = 0; place < 3 * 13; ++place) {
            SCOPED_TRACE(std::to_string(unusual) + " at " + std::to_string(place));
            const Mesh mesh = Fan(11);
            (*mesh->GetModifiableVertexArray())[place / 3][static_cast<int>(place % 3)] = unusual;
            ASSERT_TRUE(SameBox(*mesh));
        }
    }
}

TEST(VolumeLaw, ReversedFacesNegateTheVolumeOfAClosedBox) {
    for (std::size_t round = 0; round < 200; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = NewPrimitive();
        const ON_3dPoint low{random.Between(-5, 0), random.Between(-5, 0), random.Between(-5, 0)};
        const ON_3dPoint high{random.Between(0, 5), random.Between(0, 5), random.Between(0, 5)};
        mesh->SetDataAsBox(ON_BoundingBox(low, high));
        const double volume = mesh->CalcVolume(ON_3dPoint(0, 0, 0));
        const double expected = (high.x - low.x) * (high.y - low.y) * (high.z - low.z);
        // 12 terms below 2 * 10^3 each, a dozen roundings a term: far below 10^-9.
        EXPECT_NEAR(volume, expected, 1e-9);
        for (TriangleIndex& triangle : *mesh->GetModifiableVertexIndexArray())
            std::swap(triangle[1], triangle[2]);
        EXPECT_TRUE(SameBits(mesh->CalcVolume(ON_3dPoint(0, 0, 0)), -volume));
    }
}

}  // namespace

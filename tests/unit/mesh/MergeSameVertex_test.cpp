#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Calls = std::vector<std::string>;
using RecordingMesh = boost::intrusive_ptr<RecordingPrimitive>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

RecordingMesh NewMesh(std::initializer_list<Point3> points,
                      std::initializer_list<TriangleIndex> triangles) {
    const RecordingMesh mesh(new RecordingPrimitive);
    mesh->SetVertexArray(Vertices(points));
    mesh->SetVertexIndexArray(Triangles(triangles));
    return mesh;
}

void ExpectVertices(const VraMeshPrimitive& mesh, std::initializer_list<Point3> points) {
    EXPECT_TRUE(SameBits(mesh.GetVertexArray().get(), Vertices(points).get()));
}

void ExpectTextureUVs(const VraMeshPrimitive& mesh, std::initializer_list<Point2> uvs) {
    EXPECT_TRUE(SameBits(mesh.GetTextureUVArray().get(), UVs(uvs).get()));
}

void ExpectTriangles(const VraMeshPrimitive& mesh, std::initializer_list<TriangleIndex> triangles) {
    EXPECT_EQ(*mesh.GetVertexIndexArray(), *Triangles(triangles));
}

TEST(MergeSameVertex, TwoTrianglesOfASoupShareTheirCommonCorners) {
    // The unit square as two triangles with three vertices of their own each.
    const RecordingMesh mesh =
        NewMesh({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 0, 0}, {1, 1, 0}, {0, 1, 0}},
                {{{0, 1, 2}}, {{3, 4, 5}}});
    mesh->OnMergeSameVertex();
    // Ascending: (0,0,0), (0,1,0), (1,0,0), (1,1,0).
    ExpectVertices(*mesh, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}});
    ExpectTriangles(*mesh, {{{0, 2, 3}}, {{0, 3, 1}}});
}

TEST(MergeSameVertex, VerticesComeOutAscendingAndNotInOrderOfUse) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {0, 5, 5}, {0, 5, 4}}, {{{0, 1, 2}}});
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{0, 5, 4}, {0, 5, 5}, {1, 0, 0}});
    ExpectTriangles(*mesh, {{{2, 1, 0}}});
}

TEST(MergeSameVertex, NegativeCoordinatesComeBeforePositiveOnes) {
    const RecordingMesh mesh =
        NewMesh({{2, 0, 0}, {-1, 0, 0}, {-2, 0, 0}, {0, 0, -1}}, {{{0, 1, 2}}, {{3, 3, 3}}});
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{-2, 0, 0}, {-1, 0, 0}, {0, 0, -1}, {2, 0, 0}});
    ExpectTriangles(*mesh, {{{3, 1, 0}}, {{2, 2, 2}}});
}

TEST(MergeSameVertex, InfinitePositionsStandAtTheEnds) {
    const RecordingMesh mesh = NewMesh(
        {{kInfinity, 0, 0}, {1e308, 0, 0}, {-kInfinity, 0, 0}, {-1e308, 0, 0}, {kInfinity, 0, 0}},
        {{{0, 1, 2}}, {{3, 4, 4}}});
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{-kInfinity, 0, 0}, {-1e308, 0, 0}, {1e308, 0, 0}, {kInfinity, 0, 0}});
    ExpectTriangles(*mesh, {{{3, 2, 0}}, {{1, 3, 3}}});
}

TEST(MergeSameVertex, VerticesThatNoTriangleUsesAreDropped) {
    const RecordingMesh mesh =
        NewMesh({{9, 9, 9}, {2, 0, 0}, {1, 0, 0}, {1, 0, 0}, {-9, 0, 0}}, {{{1, 2, 3}}});
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{1, 0, 0}, {2, 0, 0}});
    ExpectTriangles(*mesh, {{{1, 0, 0}}});
}

TEST(MergeSameVertex, WithoutTrianglesNoVertexRemains) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {2, 0, 0}}, {});
    mesh->SetTextureUVArray(UVs({{0, 0}, {1, 1}}));
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {});
    ExpectTextureUVs(*mesh, {});
}

TEST(MergeSameVertex, CornersThatFallTogetherLeaveTheTriangle) {
    const RecordingMesh mesh = NewMesh({{1, 2, 3}, {1, 2, 3}, {1, 2, 3}}, {{{0, 1, 2}}});
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{1, 2, 3}});
    ExpectTriangles(*mesh, {{{0, 0, 0}}});
}

TEST(MergeSameVertex, LastBitNeighboursStayApart) {
    const double above = std::nextafter(1.0, 2.0);
    const RecordingMesh mesh = NewMesh({{above, 0, 0}, {1, 0, above}, {1, 0, 1}}, {{{0, 1, 2}}});
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{1, 0, 1}, {1, 0, above}, {above, 0, 0}});
    ExpectTriangles(*mesh, {{{2, 1, 0}}});
}

TEST(MergeSameVertex, ZerosOfBothSignsFallTogetherAndTheFirstUsedStands) {
    // Vertex 0 is used last, so the bits of vertex 2 stay for (0,0,0) and those of 3 for (1,0,0).
    const RecordingMesh mesh =
        NewMesh({{0.0, 0.0, 0.0}, {1, 0.0, 0.0}, {-0.0, 0.0, -0.0}, {1, -0.0, 0.0}},
                {{{2, 3, 1}}, {{0, 1, 2}}});
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{-0.0, 0.0, -0.0}, {1, -0.0, 0.0}});
    ExpectTriangles(*mesh, {{{0, 1, 1}}, {{0, 1, 0}}});
}

TEST(MergeSameVertex, TextureCoordinatesKeepVerticesApart) {
    const RecordingMesh mesh =
        NewMesh({{1, 0, 0}, {1, 0, 0}, {0, 0, 0}, {1, 0, 0}}, {{{0, 1, 2}}, {{3, 3, 3}}});
    mesh->SetTextureUVArray(UVs({{0.5, 1}, {0.5, 0}, {1, 1}, {0.5, 1}}));
    mesh->OnMergeSameVertex();
    // The position decides first, then u, then v.
    ExpectVertices(*mesh, {{0, 0, 0}, {1, 0, 0}, {1, 0, 0}});
    ExpectTextureUVs(*mesh, {{1, 1}, {0.5, 0}, {0.5, 1}});
    ExpectTriangles(*mesh, {{{2, 1, 0}}, {{2, 2, 2}}});
}

TEST(MergeSameVertex, TextureCoordinatesOfBothZerosFallTogetherAndTheFirstUsedStands) {
    const RecordingMesh mesh = NewMesh({{1, 0.0, 0}, {1, -0.0, 0}}, {{{1, 0, 1}}});
    mesh->SetTextureUVArray(UVs({{0.0, 2}, {-0.0, 2}}));
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{1, -0.0, 0}});
    ExpectTextureUVs(*mesh, {{-0.0, 2}});
    ExpectTriangles(*mesh, {{{0, 0, 0}}});
}

TEST(MergeSameVertex, EmptyTextureCoordinatesDoNotCountAndStay) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {1, 0, 0}, {0, 0, 0}}, {{{0, 1, 2}}});
    const auto textureUVs = UVs({});
    mesh->SetTextureUVArray(textureUVs);
    mesh->OnMergeSameVertex();
    ExpectVertices(*mesh, {{0, 0, 0}, {1, 0, 0}});
    ExpectTriangles(*mesh, {{{1, 1, 0}}});
    EXPECT_EQ(mesh->GetTextureUVArray(), textureUVs);
}

TEST(MergeSameVertex, TextureCoordinatesBeyondTheVerticesAreDropped) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {0, 0, 0}}, {{{0, 1, 0}}});
    mesh->SetTextureUVArray(UVs({{1, 1}, {2, 2}, {3, 3}, {4, 4}}));
    mesh->OnMergeSameVertex();
    ExpectTextureUVs(*mesh, {{2, 2}, {1, 1}});
}

TEST(MergeSameVertex, AVertexNumberOutOfRangeThrowsAndChangesNothing) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {1, 0, 0}}, {{{1, 0, 1}}, {{0, 1, 2}}});
    EXPECT_EQ(CaughtFrom([&] { mesh->OnMergeSameVertex(); }),
              OutOfRange("invalid vector subscript"));
    ExpectVertices(*mesh, {{1, 0, 0}, {1, 0, 0}});
    ExpectTriangles(*mesh, {{{1, 0, 1}}, {{0, 1, 2}}});
}

TEST(MergeSameVertex, AVertexWithoutATextureCoordinateThrowsAndChangesNothing) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {1, 0, 0}, {0, 0, 0}}, {{{0, 1, 2}}});
    mesh->SetTextureUVArray(UVs({{3, 3}, {3, 3}}));
    EXPECT_EQ(CaughtFrom([&] { mesh->OnMergeSameVertex(); }),
              OutOfRange("invalid vector subscript"));
    ExpectVertices(*mesh, {{1, 0, 0}, {1, 0, 0}, {0, 0, 0}});
    ExpectTextureUVs(*mesh, {{3, 3}, {3, 3}});
    ExpectTriangles(*mesh, {{{0, 1, 2}}});
}

TEST(MergeSameVertex, AMissingArrayLeavesTheOther) {
    const RecordingMesh noTriangles = NewMesh({{1, 0, 0}, {1, 0, 0}}, {});
    noTriangles->SetVertexIndexArray(nullptr);
    noTriangles->SetTextureUVArray(UVs({{1, 1}}));
    noTriangles->OnMergeSameVertex();
    ExpectVertices(*noTriangles, {{1, 0, 0}, {1, 0, 0}});
    ExpectTextureUVs(*noTriangles, {{1, 1}});

    const RecordingMesh noVertices = NewMesh({}, {{{5, 6, 7}}});
    noVertices->SetVertexArray(nullptr);
    noVertices->OnMergeSameVertex();
    ExpectTriangles(*noVertices, {{{5, 6, 7}}});
}

TEST(MergeSameVertex, EditsTheArraysInPlaceForEveryHolder) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {0, 0, 0}}, {{{0, 1, 0}}});
    mesh->SetTextureUVArray(UVs({{0, 0}, {0, 0}}));
    const RecordingMesh sharer(new RecordingPrimitive);
    sharer->SetVertexArray(mesh->GetModifiableVertexArray());
    sharer->SetVertexIndexArray(Triangles({{{0, 0, 1}}}));
    const ArrayAddresses before = AddressesOf(*mesh);

    mesh->OnMergeSameVertex();

    EXPECT_EQ(AddressesOf(*mesh), before);
    ExpectVertices(*sharer, {{0, 0, 0}, {1, 0, 0}});
    ExpectTriangles(*sharer, {{{0, 0, 1}}});
}

TEST(MergeSameVertex, NormalsColoursAndUVsKeepTheirOrder) {
    const Mesh mesh = FullSquare();
    mesh->SetTextureUVArray(nullptr);
    const Mesh before = FullSquare();
    const RecordingMesh welded(new RecordingPrimitive);
    mesh->ShallowCopy(welded);
    welded->SetUVArray(mesh->GetModifiableUVArray());

    welded->OnMergeSameVertex();

    ExpectVertices(*welded, {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}});
    before->SetVertexArray(mesh->GetModifiableVertexArray());
    before->SetVertexIndexArray(mesh->GetModifiableVertexIndexArray());
    before->SetTextureUVArray(nullptr);
    ExpectBitEqual(*welded, *before);
}

TEST(MergeSameVertex, AnIndexArrayWithTwoRolesIsRenumberedForBoth) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {0, 0, 0}}, {{{0, 1, 0}}});
    mesh->SetTextureUVIndexArray(mesh->GetModifiableVertexIndexArray());
    mesh->OnMergeSameVertex();
    EXPECT_EQ(*mesh->GetTextureUVIndexArray(), *Triangles({{{1, 0, 1}}}));
}

TEST(MergeSameVertex, ATextureUVArrayThatIsAlsoTheUVArrayIsWeldedForBoth) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {0, 0, 0}, {1, 0, 0}}, {{{0, 1, 2}}});
    const auto uvs = UVs({{1, 1}, {2, 2}, {1, 1}});
    mesh->SetTextureUVArray(uvs);
    mesh->SetUVArray(uvs);
    mesh->OnMergeSameVertex();
    EXPECT_EQ(mesh->GetUVArray(), uvs);
    EXPECT_TRUE(SameBits(mesh->GetUVArray().get(), UVs({{2, 2}, {1, 1}}).get()));
}

TEST(MergeSameVertex, ASecondRunChangesNothing) {
    const RecordingMesh mesh =
        NewMesh({{3, 0, 0}, {1, 0, 0}, {2, 0, 0}, {1, 0, 0}}, {{{0, 1, 2}}, {{3, 2, 0}}});
    mesh->OnMergeSameVertex();
    const Mesh once = mesh->Duplicate();
    mesh->OnMergeSameVertex();
    ExpectBitEqual(*mesh, *once);
}

TEST(MergeSameVertex, NaNNeitherStopsTheRunNorLeavesANumberOutOfRange) {
    const auto vertices = Vertices({});
    const auto triangles = Triangles({});
    for (size_t i = 0; i < 9999; i += 3) {
        const double x = static_cast<double>(i % 7);
        const auto corners = Vertices({{kNaN, x, 0}, {x, -kNaN, kInfinity}, {x, kNaN, 0}});
        vertices->insert(vertices->end(), corners->begin(), corners->end());
        triangles->push_back({{i, i + 1, i + 2}});
    }
    const RecordingMesh mesh(new RecordingPrimitive);
    mesh->SetVertexArray(vertices);
    mesh->SetVertexIndexArray(triangles);
    mesh->OnMergeSameVertex();
    ASSERT_EQ(triangles->size(), 3333u);
    for (const TriangleIndex& triangle : *triangles)
        for (const size_t vertex : triangle.v)
            ASSERT_LT(vertex, vertices->size());
}

TEST(MergeSameVertex, ReachesItsArraysThroughTheReadingGetters) {
    const RecordingMesh mesh = NewMesh({{7, 7, 7}}, {{{0, 0, 0}}});
    mesh->substitutes.vertexArray = Vertices({{1, 0, 0}, {0, 0, 0}});
    mesh->substitutes.vertexIndexArray = Triangles({{{0, 1, 1}}});
    mesh->ClearCalls();
    mesh->OnMergeSameVertex();
    EXPECT_EQ(mesh->Calls(), (Calls{"OnMergeSameVertex", "GetVertexArray", "GetTextureUVArray",
                                    "GetVertexIndexArray"}));
    ExpectVertices(*mesh, {{0, 0, 0}, {1, 0, 0}});
    ExpectTriangles(*mesh, {{{1, 0, 0}}});
}

TEST(MergeSameData, RunsTheStepsForVerticesNormalsAndColoursInThisOrder) {
    const RecordingMesh mesh(new RecordingPrimitive);
    mesh->MergeSameData();
    Calls steps;
    for (const std::string& call : mesh->Calls())
        if (call.rfind("Get", 0) != 0)
            steps.push_back(call);
    EXPECT_EQ(steps, (Calls{"MergeSameData", "OnMergeSameVertex", "OnMergeSameNormal",
                            "OnMergeSameColor"}));
}

TEST(MergeSameData, LeavesDegenerateTrianglesAndMergesAllThreeKinds) {
    const RecordingMesh mesh = NewMesh({{1, 0, 0}, {1, 0, 0}, {0, 0, 0}}, {{{0, 1, 2}}});
    mesh->SetNormalArray(Normals({{0, 0, 1}, {0, 0, 1}}));
    mesh->SetNormalIndexArray(PerVertex({{{0, 1, 1}}}));
    mesh->SetColorArray(Colors({7, 7}));
    mesh->SetColorIndexArray(PerTriangle({1}));
    mesh->MergeSameData();
    ExpectTriangles(*mesh, {{{1, 1, 0}}});
    EXPECT_EQ(mesh->GetNormalArray()->size(), 1u);
    EXPECT_EQ(PerVertexOf(*mesh->GetNormalIndexArray()), *Triangles({{{0, 0, 0}}}));
    EXPECT_EQ(*mesh->GetColorArray(), *Colors({7}));
    EXPECT_EQ(PerTriangleOf(*mesh->GetColorIndexArray()), std::vector<size_t>{0});
}

TEST(MergeSameData, AnIndexArrayOfNormalsAndColoursIsRenumberedByBothSteps) {
    // Normals first: 0 -> 1, 1 -> 0. The colours are then those that the new numbers name.
    const RecordingMesh mesh(new RecordingPrimitive);
    const auto shared = PerTriangle({0, 1, 1});
    mesh->SetNormalArray(Normals({{0, 0, 2}, {0, 0, 1}}));
    mesh->SetColorArray(Colors({5, 6, 4}));
    mesh->SetNormalIndexArray(shared);
    mesh->SetColorIndexArray(shared);
    mesh->MergeSameData();
    EXPECT_EQ(*mesh->GetColorArray(), *Colors({5, 6}));
    EXPECT_EQ(PerTriangleOf(*shared), (std::vector<size_t>{1, 0, 0}));
}

}  // namespace

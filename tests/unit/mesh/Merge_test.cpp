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
using Numbers = std::vector<size_t>;
using Maps = std::vector<std::vector<int>>;
using Sources = std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>;
using RecordingMesh = boost::intrusive_ptr<RecordingPrimitive>;

const Caught kWrongForm = {"another exception", -1,
                           "boost::bad_get: failed value get using boost::get"};

Mesh Merged(const Sources& sources) {
    const Mesh target = NewPrimitive();
    EXPECT_TRUE(VraMeshPrimitive::Merge(target, sources));
    return target;
}

void ExpectVertices(const VraMeshPrimitive& mesh, std::initializer_list<Point3> points) {
    EXPECT_TRUE(SameBits(mesh.GetVertexArray().get(), Vertices(points).get()));
}

// One triangle at z with normals and colours.
Mesh TriangleWith(double z, std::shared_ptr<IndexArray> normalIndices,
                  std::shared_ptr<IndexArray> colorIndices) {
    const Mesh mesh = NewPrimitive({{0, 0, z}, {1, 0, z}, {0, 1, z}}, {{{0, 1, 2}}});
    mesh->SetNormalArray(Normals({{0, 0, 1}, {0, 0, z}}));
    mesh->SetColorArray(Colors({1, 2}));
    mesh->SetNormalIndexArray(std::move(normalIndices));
    mesh->SetColorIndexArray(std::move(colorIndices));
    return mesh;
}

TEST(Merge, WithoutSourcesNothingHappens) {
    const Mesh target = FullSquare();
    Maps maps = {{1, 2}};
    EXPECT_FALSE(VraMeshPrimitive::Merge(target, {}, &maps, &maps, &maps));
    ExpectBitEqual(*target, *FullSquare());
    EXPECT_EQ(maps, (Maps{{1, 2}}));
}

TEST(Merge, EqualPositionsOfTwoSourcesBecomeOneInOrderOfFirstUse) {
    const Mesh first = NewPrimitive({{5, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{{2, 1, 0}}});
    const Mesh second = NewPrimitive({{1, 0, 0}, {5, 0, 0}, {7, 0, 0}}, {{{1, 2, 0}}});
    const Mesh target = Merged({first, second});
    ExpectVertices(*target, {{0, 1, 0}, {1, 0, 0}, {5, 0, 0}, {7, 0, 0}});
    EXPECT_EQ(*target->GetVertexIndexArray(), *Triangles({{{0, 1, 2}}, {{2, 3, 1}}}));
}

TEST(Merge, EqualPositionsWithinOneSourceBecomeOneToo) {
    const Mesh target =
        Merged({NewPrimitive({{1, 0, 0}, {1, 0, 0}, {2, 0, 0}}, {{{0, 1, 2}}, {{1, 1, 1}}})});
    ExpectVertices(*target, {{1, 0, 0}, {2, 0, 0}});
    EXPECT_EQ(*target->GetVertexIndexArray(), *Triangles({{{0, 0, 1}}, {{0, 0, 0}}}));
}

TEST(Merge, LastBitNeighboursStayApart) {
    const double above = std::nextafter(1.0, 2.0);
    const Mesh target = Merged(
        {NewPrimitive({{1, 0, 0}}, {{{0, 0, 0}}}), NewPrimitive({{above, 0, 0}}, {{{0, 0, 0}}})});
    ExpectVertices(*target, {{1, 0, 0}, {above, 0, 0}});
}

TEST(Merge, ZerosOfBothSignsFallTogetherAndTheFirstUsedStands) {
    const Mesh target = Merged({NewPrimitive({{1, 0.0, 0}, {1, -0.0, 0}}, {{{1, 0, 0}}}),
                                NewPrimitive({{1, 0.0, -0.0}}, {{{0, 0, 0}}})});
    ExpectVertices(*target, {{1, -0.0, 0}});
    EXPECT_EQ(*target->GetVertexIndexArray(), *Triangles({{{0, 0, 0}}, {{0, 0, 0}}}));
}

TEST(Merge, APositionWithNaNIsAddedAtEachUse) {
    // NaN equals nothing, itself included; the map keeps the last of the new vertices.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Mesh source =
        NewPrimitive({{1, 0, 0}, {0, nan, 0}, {2, 0, 0}}, {{{0, 1, 1}}, {{0, 2, 1}}});
    const Mesh target = NewPrimitive();
    Maps maps;
    ASSERT_TRUE(VraMeshPrimitive::Merge(target, {source, source}, &maps));
    ExpectVertices(*target, {{1, 0, 0},
                             {0, nan, 0},
                             {0, nan, 0},
                             {2, 0, 0},
                             {0, nan, 0},
                             {0, nan, 0},
                             {0, nan, 0},
                             {0, nan, 0}});
    EXPECT_EQ(*target->GetVertexIndexArray(),
              *Triangles({{{0, 1, 2}}, {{0, 3, 4}}, {{0, 5, 6}}, {{0, 3, 7}}}));
    EXPECT_EQ(maps, (Maps{{0, 4, 3}, {0, 7, 3}}));
}

TEST(Merge, MapsTellWhereEachValueWentAndMinusOneWhereNowhere) {
    const Mesh first = TriangleWith(0, PerVertex({{{1, 1, 1}}}), PerTriangle({1}));
    first->GetModifiableVertexArray()->push_back(ON_3dPoint(9, 9, 9));
    const Mesh second = TriangleWith(0, PerVertex({{{0, 1, 0}}}), PerTriangle({0}));
    *second->GetModifiableVertexIndexArray() = *Triangles({{{2, 1, 2}}});

    Maps vertexMaps;
    Maps normalMaps;
    Maps colorMaps;
    const Mesh target = NewPrimitive();
    ASSERT_TRUE(
        VraMeshPrimitive::Merge(target, {first, second}, &vertexMaps, &normalMaps, &colorMaps));
    // Vertex 0 of the second source and vertex 3 of the first are not used.
    EXPECT_EQ(vertexMaps, (Maps{{0, 1, 2, -1}, {-1, 1, 2}}));
    EXPECT_EQ(normalMaps, (Maps{{-1, 0}, {1, 0}}));
    EXPECT_EQ(colorMaps, (Maps{{-1, 0}, {1, -1}}));
    EXPECT_EQ(*target->GetColorArray(), *Colors({2, 1}));
    EXPECT_EQ(PerVertexOf(*target->GetNormalIndexArray()), *Triangles({{{0, 0, 0}}, {{1, 0, 1}}}));
    EXPECT_EQ(PerTriangleOf(*target->GetColorIndexArray()), (Numbers{0, 1}));
}

TEST(Merge, MapsAreAppendedBehindWhatTheVectorsHold) {
    Maps vertexMaps = {{7}};
    Maps colorMaps = {{8}, {9}};
    const Mesh noVertices = NewPrimitive();
    ASSERT_TRUE(VraMeshPrimitive::Merge(NewPrimitive(), {SingleTriangle(), noVertices}, &vertexMaps,
                                        nullptr, &colorMaps));
    EXPECT_EQ(vertexMaps, (Maps{{7}, {0, 1, 2}, {}}));
    EXPECT_EQ(colorMaps, (Maps{{8}, {9}, {}, {}}));
}

TEST(Merge, MapsOfKindsThatAreNotMergedHoldMinusOne) {
    Maps normalMaps;
    ASSERT_TRUE(VraMeshPrimitive::Merge(
        NewPrimitive(),
        {TriangleWith(0, PerVertex({{{0, 1, 0}}}), nullptr), TriangleWith(0, nullptr, nullptr)},
        nullptr, &normalMaps, nullptr));
    EXPECT_EQ(normalMaps, (Maps{{-1, -1}, {-1, -1}}));
}

TEST(Merge, ASourceWithoutTrianglesGetsItsMapsAndGivesNothing) {
    const Mesh onlyVertices = NewPrimitive();
    onlyVertices->SetVertexArray(Vertices({{1, 1, 1}, {2, 2, 2}}));
    Maps vertexMaps;
    const Mesh target = NewPrimitive();
    ASSERT_TRUE(VraMeshPrimitive::Merge(target, {onlyVertices, SingleTriangle()}, &vertexMaps));
    ExpectVertices(*target, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    EXPECT_EQ(vertexMaps, (Maps{{-1, -1}, {0, 1, 2}}));
}

TEST(Merge, AllSourcesEmptyGiveEmptyArraysAndNoNormals) {
    const Mesh target = FullSquare();
    ASSERT_TRUE(VraMeshPrimitive::Merge(target, {NewPrimitive(), NewPrimitive()}));
    ExpectVertices(*target, {});
    EXPECT_TRUE(target->GetVertexIndexArray()->empty());
    EXPECT_EQ(target->GetNormalArray(), nullptr);
    EXPECT_EQ(target->GetColorIndexArray(), nullptr);
}

TEST(Merge, MixedFormsOfNormalsDropTheNormalsAndKeepTheColours) {
    const Mesh target = Merged({TriangleWith(0, PerVertex({{{0, 1, 0}}}), PerTriangle({1})),
                                TriangleWith(1, PerTriangle({0}), PerTriangle({0}))});
    EXPECT_EQ(target->GetNormalArray(), nullptr);
    EXPECT_EQ(target->GetNormalIndexArray(), nullptr);
    EXPECT_EQ(*target->GetColorArray(), *Colors({2, 1}));
    EXPECT_EQ(PerTriangleOf(*target->GetColorIndexArray()), (Numbers{0, 1}));
}

TEST(Merge, ASourceWithVerticesButWithoutColoursDropsTheColours) {
    const Mesh target = Merged({TriangleWith(0, PerTriangle({0}), PerTriangle({1})),
                                TriangleWith(1, PerTriangle({0}), nullptr)});
    EXPECT_EQ(target->GetColorArray(), nullptr);
    EXPECT_EQ(target->GetColorIndexArray(), nullptr);
    EXPECT_EQ(target->GetNormalArray()->size(), 1u);
}

TEST(Merge, ASourceWithoutAnyArrayDoesNotCountForNormalsAndColours) {
    const Mesh target =
        Merged({NewPrimitive(), TriangleWith(0, PerTriangle({0}), PerVertex({{{1, 0, 1}}}))});
    EXPECT_EQ(PerTriangleOf(*target->GetNormalIndexArray()), Numbers{0});
    EXPECT_EQ(PerVertexOf(*target->GetColorIndexArray()), *Triangles({{{0, 1, 0}}}));
}

TEST(Merge, ColoursOfBothHalvesOfTheUnsignedRangeKeepTheOrderOfFirstUse) {
    const Mesh mesh = TriangleWith(0, nullptr, PerVertex({{{1, 0, 1}}}));
    mesh->SetColorArray(Colors({1u, 0x80000000u}));
    const Mesh target = Merged({mesh});
    EXPECT_EQ(*target->GetColorArray(), *Colors({0x80000000u, 1u}));
}

TEST(Merge, DropsAllUVsAndKeepsTextureUVIndicesAndTheCreaseAngle) {
    const Mesh target = FullSquare();
    const auto textureUVIndices = target->GetTextureUVIndexArray();
    ASSERT_TRUE(VraMeshPrimitive::Merge(target, {FullSquare(), FullSquare()}));
    EXPECT_EQ(target->GetUVArray(), nullptr);
    EXPECT_EQ(target->GetTextureUVArray(), nullptr);
    EXPECT_EQ(target->GetTextureUVIndexArray(), textureUVIndices);
    EXPECT_EQ(target->GetCreaseAngle(), 0.5);
}

TEST(Merge, TheTargetMayBeASource) {
    const Mesh target = SingleTriangle();
    const auto before = target->GetVertexArray();
    ASSERT_TRUE(VraMeshPrimitive::Merge(target, {Square(), target}));
    ExpectVertices(*target, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}});
    EXPECT_EQ(*target->GetVertexIndexArray(), *Triangles({{{0, 1, 2}}, {{0, 2, 3}}, {{0, 1, 3}}}));
    EXPECT_EQ(*before, *SingleTriangle()->GetVertexArray());
}

TEST(Merge, SourcesAndArraysTheyShareStayAsTheyWere) {
    const auto [first, second] = SharedPair();
    const ArrayAddresses addresses = AddressesOf(*first);
    const Mesh target = Merged({first, second, first});
    EXPECT_EQ(AddressesOf(*first), addresses);
    ExpectBitEqual(*first, *SharedPair().first);
    ExpectBitEqual(*second, *SharedPair().second);
    EXPECT_EQ(*target->GetVertexIndexArray(), *Triangles({{{0, 1, 2}}, {{0, 2, 3}}, {{0, 1, 2}}}));
}

TEST(Merge, OneVectorForMapsOfTwoKindsGetsBothInTurn) {
    Maps maps;
    ASSERT_TRUE(VraMeshPrimitive::Merge(NewPrimitive(),
                                        {TriangleWith(0, PerTriangle({1}), PerTriangle({0})),
                                         TriangleWith(0, PerTriangle({0}), PerTriangle({0}))},
                                        &maps, &maps, nullptr));
    EXPECT_EQ(maps, (Maps{{0, 1, 2}, {-1, 0}, {0, 1, 2}, {1, -1}}));
}

// A source whose reported form of normals is not the one it holds.
class Misreporting : public RecordingPrimitive {
public:
    bool IsNormalPerVertex() const override { return !RecordingPrimitive::IsNormalPerVertex(); }
};

TEST(Merge, AFormOtherThanTheReportedOneThrowsAndLeavesTheTarget) {
    const RecordingMesh source(new Misreporting);
    TriangleWith(0, PerTriangle({0}), nullptr)->ShallowCopy(source);
    const Mesh target = FullSquare();
    EXPECT_EQ(CaughtFrom([&] { VraMeshPrimitive::Merge(target, {source}); }), kWrongForm);
    ExpectBitEqual(*target, *FullSquare());
}

TEST(Merge, TrianglesWithoutVerticesAndNormalIndicesThrowAndLeaveTheTarget) {
    // Without a vertex array the source does not keep normals from being merged, but with a vertex
    // index array it is walked.
    const Mesh source = NewPrimitive();
    source->SetVertexIndexArray(Triangles({}));
    const Mesh target = FullSquare();
    Maps maps;
    EXPECT_EQ(CaughtFrom([&] {
                  VraMeshPrimitive::Merge(
                      target, {TriangleWith(0, PerTriangle({0}), nullptr), source}, &maps);
              }),
              kWrongForm);
    ExpectBitEqual(*target, *FullSquare());
}

TEST(Merge, CallsTheGettersOfEachSourceInTheStatedOrder) {
    const RecordingMesh source(new RecordingPrimitive);
    TriangleWith(0, PerTriangle({0}), nullptr)->ShallowCopy(source);
    source->ClearCalls();
    Merged({source});
    EXPECT_EQ(source->Calls(),
              (Calls{"GetVertexArray", "GetColorIndexArray",  // No colours: the search ends here.
                     "GetVertexArray", "GetNormalIndexArray", "GetNormalIndexArray",
                     "IsNormalPerVertex", "GetVertexArray", "GetNormalArray", "GetColorArray",
                     "GetVertexIndexArray", "GetNormalIndexArray", "GetColorIndexArray"}));
}

TEST(Merge, InstallsThroughTheSettersOfTheTargetInTheStatedOrder) {
    const RecordingMesh target(new RecordingPrimitive);
    ASSERT_TRUE(VraMeshPrimitive::Merge(target, {SingleTriangle()}));
    EXPECT_EQ(target->Calls(), (Calls{"SetVertexArray", "SetVertexIndexArray", "SetNormalArray",
                                      "SetNormalIndexArray", "SetColorArray", "SetColorIndexArray",
                                      "SetUVArray", "SetTextureUVArray"}));
}

TEST(Merge, ReadsTheArraysThatOverriddenGettersAnswer) {
    const RecordingMesh source(new RecordingPrimitive);
    source->SetVertexArray(Vertices({{7, 7, 7}}));
    source->SetVertexIndexArray(Triangles({{{0, 0, 0}}}));
    source->substitutes.vertexArray = Vertices({{2, 0, 0}, {1, 0, 0}});
    source->substitutes.vertexIndexArray = Triangles({{{1, 1, 0}}, {{0, 1, 0}}});
    const Mesh target = Merged({source});
    ExpectVertices(*target, {{1, 0, 0}, {2, 0, 0}});
    EXPECT_EQ(*target->GetVertexIndexArray(), *Triangles({{{0, 0, 1}}, {{1, 0, 1}}}));
}

}  // namespace

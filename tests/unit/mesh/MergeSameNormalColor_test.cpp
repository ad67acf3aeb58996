#include <gtest/gtest.h>

#include <cmath>

#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Calls = std::vector<std::string>;
using Numbers = std::vector<size_t>;
using RecordingMesh = boost::intrusive_ptr<RecordingPrimitive>;

const char* const kWrongForm = "boost::bad_get: failed value get using boost::get";

RecordingMesh MeshWithNormals(std::initializer_list<Vector3> normals,
                              std::shared_ptr<IndexArray> indices) {
    const RecordingMesh mesh(new RecordingPrimitive);
    mesh->SetNormalArray(Normals(normals));
    mesh->SetNormalIndexArray(std::move(indices));
    return mesh;
}

RecordingMesh MeshWithColors(std::initializer_list<unsigned int> colors,
                             std::shared_ptr<IndexArray> indices) {
    const RecordingMesh mesh(new RecordingPrimitive);
    mesh->SetColorArray(Colors(colors));
    mesh->SetColorIndexArray(std::move(indices));
    return mesh;
}

void ExpectNormals(const VraMeshPrimitive& mesh, std::initializer_list<Vector3> normals) {
    EXPECT_TRUE(SameBits(mesh.GetNormalArray().get(), Normals(normals).get()));
}

// An IsNormalPerVertex and IsColorPerVertex that do not fit the arrays.
class Misreporting : public RecordingPrimitive {
public:
    bool IsNormalPerVertex() const override { return !RecordingPrimitive::IsNormalPerVertex(); }
    bool IsColorPerVertex() const override { return !RecordingPrimitive::IsColorPerVertex(); }
};

TEST(MergeSameNormal, EqualNormalsBecomeOneInAscendingOrder) {
    const RecordingMesh mesh = MeshWithNormals({{0, 0, 1}, {0, 0, -1}, {0, 0, 1}, {-1, 0, 0}},
                                               PerVertex({{{0, 1, 2}}, {{3, 3, 2}}}));
    mesh->OnMergeSameNormal();
    ExpectNormals(*mesh, {{-1, 0, 0}, {0, 0, -1}, {0, 0, 1}});
    EXPECT_EQ(PerVertexOf(*mesh->GetNormalIndexArray()), *Triangles({{{2, 1, 2}}, {{0, 0, 2}}}));
}

TEST(MergeSameNormal, ANormalThatNoTriangleUsesIsDropped) {
    const RecordingMesh mesh =
        MeshWithNormals({{0, 0, 1}, {0, 1, 0}, {0, 0, 1}}, PerTriangle({2, 0, 2}));
    mesh->OnMergeSameNormal();
    ExpectNormals(*mesh, {{0, 0, 1}});
    EXPECT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()), (Numbers{0, 0, 0}));
}

TEST(MergeSameNormal, NearlyEqualNormalsStayApartAndUnscaled) {
    const RecordingMesh mesh = MeshWithNormals(
        {{0, 0, 1.0000000001}, {0, 0, 1}, {0, 0, 7}, {0, 0, std::nextafter(1.0, 0.0)}},
        PerTriangle({0, 1, 2, 3}));
    mesh->OnMergeSameNormal();
    ExpectNormals(*mesh,
                  {{0, 0, std::nextafter(1.0, 0.0)}, {0, 0, 1}, {0, 0, 1.0000000001}, {0, 0, 7}});
    EXPECT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()), (Numbers{2, 1, 3, 0}));
}

TEST(MergeSameNormal, ZerosOfBothSignsFallTogetherAndTheFirstUsedStands) {
    const RecordingMesh mesh =
        MeshWithNormals({{0.0, 0.0, 1}, {-0.0, 0.0, 1}, {0.0, -0.0, 1}}, PerTriangle({2, 0, 1}));
    mesh->OnMergeSameNormal();
    ExpectNormals(*mesh, {{0.0, -0.0, 1}});
    EXPECT_EQ(PerTriangleOf(*mesh->GetNormalIndexArray()), (Numbers{0, 0, 0}));
}

TEST(MergeSameNormal, AnEmptyIndexArrayEmptiesTheNormalsAndKeepsItsForm) {
    for (const auto& indices : {PerTriangle({}), PerVertex({})}) {
        const int form = indices->which();
        const RecordingMesh mesh = MeshWithNormals({{0, 0, 1}}, indices);
        mesh->OnMergeSameNormal();
        ExpectNormals(*mesh, {});
        EXPECT_EQ(mesh->GetNormalIndexArray()->which(), form);
    }
}

TEST(MergeSameNormal, ANumberOutOfRangeThrowsAndChangesNothing) {
    const RecordingMesh perTriangle = MeshWithNormals({{0, 0, 1}, {0, 0, 1}}, PerTriangle({1, 2}));
    EXPECT_EQ(CaughtFrom([&] { perTriangle->OnMergeSameNormal(); }),
              OutOfRange("invalid vector subscript"));
    ExpectNormals(*perTriangle, {{0, 0, 1}, {0, 0, 1}});
    EXPECT_EQ(PerTriangleOf(*perTriangle->GetNormalIndexArray()), (Numbers{1, 2}));

    const RecordingMesh perVertex = MeshWithNormals({}, PerVertex({{{0, 0, 0}}}));
    EXPECT_EQ(CaughtFrom([&] { perVertex->OnMergeSameNormal(); }),
              OutOfRange("invalid vector subscript"));
}

TEST(MergeSameNormal, AMissingArrayLeavesTheOther) {
    const RecordingMesh noIndices = MeshWithNormals({{0, 0, 1}, {0, 0, 1}}, nullptr);
    noIndices->OnMergeSameNormal();
    ExpectNormals(*noIndices, {{0, 0, 1}, {0, 0, 1}});

    const RecordingMesh noNormals = MeshWithNormals({}, PerTriangle({4}));
    noNormals->SetNormalArray(nullptr);
    noNormals->OnMergeSameNormal();
    EXPECT_EQ(PerTriangleOf(*noNormals->GetNormalIndexArray()), Numbers{4});
}

TEST(MergeSameNormal, TheFormIsTheOneThatThePrimitiveReports) {
    const RecordingMesh mesh(new Misreporting);
    mesh->SetNormalArray(Normals({{0, 0, 1}, {0, 0, 1}}));
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    mesh->SetColorArray(Colors({1, 1}));
    mesh->SetColorIndexArray(PerVertex({{{0, 1, 1}}}));
    EXPECT_EQ(CaughtFrom([&] { mesh->OnMergeSameNormal(); }),
              (Caught{"another exception", -1, kWrongForm}));
    EXPECT_EQ(CaughtFrom([&] { mesh->OnMergeSameColor(); }),
              (Caught{"another exception", -1, kWrongForm}));
    ExpectNormals(*mesh, {{0, 0, 1}, {0, 0, 1}});
    EXPECT_EQ(*mesh->GetColorArray(), *Colors({1, 1}));
}

TEST(MergeSameNormal, EditsTheArraysInPlaceAndNothingElse) {
    const Mesh mesh = FullSquare();
    const RecordingMesh sharer(new RecordingPrimitive);
    mesh->ShallowCopy(sharer);
    const ArrayAddresses addresses = AddressesOf(*mesh);

    sharer->OnMergeSameNormal();

    EXPECT_EQ(AddressesOf(*mesh), addresses);
    const Mesh expected = FullSquare();
    expected->SetNormalArray(Normals({{0, 0, -1}, {0, 0, 1}}));
    expected->SetNormalIndexArray(PerVertex({{{1, 1, 0}}, {{0, 1, 0}}}));
    ExpectBitEqual(*mesh, *expected);
}

TEST(MergeSameNormal, ReachesItsArraysThroughTheReadingGetters) {
    const RecordingMesh mesh = MeshWithNormals({{0, 0, 5}}, PerTriangle({0}));
    mesh->substitutes.normalArray = Normals({{0, 0, 2}, {0, 0, 1}});
    mesh->substitutes.normalIndexArray = PerTriangle({0, 1});
    mesh->ClearCalls();
    mesh->OnMergeSameNormal();
    EXPECT_EQ(mesh->Calls(), (Calls{"OnMergeSameNormal", "GetNormalArray", "GetNormalIndexArray",
                                    "IsNormalPerVertex"}));
    ExpectNormals(*mesh, {{0, 0, 1}, {0, 0, 2}});
}

TEST(MergeSameColor, ColoursComeOutAscendingByTheirUnsignedValue) {
    // 0x80000000 is negative as a signed number, and still sorts after 1.
    const RecordingMesh mesh = MeshWithColors({0x80000000u, 1u, 0xFFFFFFFFu, 0x7FFFFFFFu, 1u},
                                              PerTriangle({0, 1, 2, 3, 4}));
    mesh->OnMergeSameColor();
    EXPECT_EQ(*mesh->GetColorArray(), *Colors({1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}));
    EXPECT_EQ(PerTriangleOf(*mesh->GetColorIndexArray()), (Numbers{2, 0, 3, 1, 0}));
}

TEST(MergeSameColor, ColoursThatDifferInAlphaStayApart) {
    const RecordingMesh mesh = MeshWithColors({0x01000002u, 0x00000002u}, PerVertex({{{0, 1, 0}}}));
    mesh->OnMergeSameColor();
    EXPECT_EQ(*mesh->GetColorArray(), *Colors({0x00000002u, 0x01000002u}));
    EXPECT_EQ(PerVertexOf(*mesh->GetColorIndexArray()), *Triangles({{{1, 0, 1}}}));
}

TEST(MergeSameColor, AnEmptyIndexArrayEmptiesTheColours) {
    const RecordingMesh mesh = MeshWithColors({1u, 2u}, PerVertex({}));
    mesh->OnMergeSameColor();
    EXPECT_TRUE(mesh->GetColorArray()->empty());
}

TEST(MergeSameColor, ANumberOutOfRangeThrowsAndChangesNothing) {
    const RecordingMesh mesh = MeshWithColors({2u, 1u}, PerVertex({{{0, 1, 2}}}));
    EXPECT_EQ(CaughtFrom([&] { mesh->OnMergeSameColor(); }),
              OutOfRange("invalid vector subscript"));
    EXPECT_EQ(*mesh->GetColorArray(), *Colors({2u, 1u}));
    EXPECT_EQ(PerVertexOf(*mesh->GetColorIndexArray()), *Triangles({{{0, 1, 2}}}));
}

TEST(MergeSameColor, AMissingArrayLeavesTheOther) {
    const RecordingMesh noIndices = MeshWithColors({2u, 2u}, nullptr);
    noIndices->OnMergeSameColor();
    EXPECT_EQ(*noIndices->GetColorArray(), *Colors({2u, 2u}));

    const RecordingMesh noColors = MeshWithColors({}, PerTriangle({4}));
    noColors->SetColorArray(nullptr);
    noColors->OnMergeSameColor();
    EXPECT_EQ(PerTriangleOf(*noColors->GetColorIndexArray()), Numbers{4});
}

TEST(MergeSameColor, EditsTheArraysInPlaceAndNothingElse) {
    const Mesh mesh = FullSquare();
    const RecordingMesh sharer(new RecordingPrimitive);
    mesh->ShallowCopy(sharer);
    const ArrayAddresses addresses = AddressesOf(*mesh);

    sharer->OnMergeSameColor();

    EXPECT_EQ(AddressesOf(*mesh), addresses);
    ExpectBitEqual(*mesh, *FullSquare());  // Its two colours were in order.
}

TEST(MergeSameColor, ReachesItsArraysThroughTheReadingGetters) {
    const RecordingMesh mesh = MeshWithColors({5u}, PerTriangle({0}));
    mesh->substitutes.colorArray = Colors({2u, 1u});
    mesh->substitutes.colorIndexArray = PerTriangle({0, 1});
    mesh->ClearCalls();
    mesh->OnMergeSameColor();
    EXPECT_EQ(mesh->Calls(), (Calls{"OnMergeSameColor", "GetColorArray", "GetColorIndexArray",
                                    "IsColorPerVertex"}));
    EXPECT_EQ(*mesh->GetColorArray(), *Colors({1u, 2u}));
}

}  // namespace

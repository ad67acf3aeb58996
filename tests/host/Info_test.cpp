#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::HasSubstr;
using IndexArray = VraMeshPrimitive::IndexArray;

class Info : public HostTest {
protected:
    std::string InfoOf(const std::vector<Mesh>& objects) const {
        return ExpectSuccess(RunHost({"info", StoreDocument("info.vrd", objects)}));
    }
};

TEST_F(Info, TheUnitBoxHasAreaSixAndVolumeOne) {
    // 16 header, 13 class, 8 crease angle, 7 presence bytes; 4 arrays with number and count; 8
    // points, 6 normals and 12 triangles of 24 bytes; flag and 12 numbers; end mark
    const size_t bytes = 16 + 13 + 8 + 7 + 4 * 16 + 24 * (8 + 6 + 12) + 1 + 12 * 8 + 4;
    EXPECT_EQ(InfoOf({UnitBox()}), Path("info.vrd") + ": " + std::to_string(bytes) +
                                       " bytes\n"
                                       "object 1: VraMesh\n"
                                       "  triangles: 12\n"
                                       "  vertices: 8\n"
                                       "  normals: 6 (per triangle)\n"
                                       "  colours: none\n"
                                       "  UVs: none\n"
                                       "  crease angle: 0 degrees\n"
                                       "  bounding box: (0, 0, 0) to (1, 1, 1)\n"
                                       "  area: 6\n"
                                       "  volume: 1\n"
                                       "  free edges: 0\n"
                                       "  shares: nothing\n"
                                       "total: 1 object, 12 triangles, 8 vertices, area 6, "
                                       "volume 1\n");
}

TEST_F(Info, AnEmptyPrimitiveHasNoBoxAndNoMeasures) {
    const std::string text = InfoOf({Mesh(new VraMeshPrimitive)});
    EXPECT_THAT(text, HasSubstr("object 1: VraMeshPrimitive\n  triangles: 0\n  vertices: 0\n"
                                "  normals: none\n"));
    EXPECT_THAT(text, HasSubstr("  bounding box: none\n  area: 0\n  volume: 0\n  free edges: 0\n"));
}

TEST_F(Info, ADocumentWithoutObjectsIsADocument) {
    EXPECT_EQ(InfoOf({}), Path("info.vrd") +
                              ": 20 bytes\n"
                              "total: 0 objects, 0 triangles, 0 vertices, area 0, volume 0\n");
}

TEST_F(Info, TotalsAddUpOverTheObjects) {
    const Mesh large(new VraMesh);
    large->SetDataAsBox(ON_BoundingBox(ON_3dPoint(0, 0, 0), ON_3dPoint(2, 3, 4)));
    // 2*(2*3 + 3*4 + 4*2) = 52 and 24, beside 6 and 1
    EXPECT_THAT(InfoOf({UnitBox(), large}),
                HasSubstr("total: 2 objects, 24 triangles, 16 vertices, area 58, volume 25\n"));
}

TEST_F(Info, TheCreaseAngleIsShownInDegrees) {
    const Mesh mesh = UnitBox();
    mesh->SetCreaseAngle(ON_PI / 2);
    EXPECT_THAT(InfoOf({mesh}), HasSubstr("crease angle: 90 degrees\n"));
}

TEST_F(Info, ThePerVertexFormAndAMissingIndexArrayAreTold) {
    const Mesh mesh = UnitBox();
    mesh->SetNormalIndexArray(std::make_shared<IndexArray>(*mesh->GetVertexIndexArray()));
    mesh->SetNormalArray(std::make_shared<VraMesh::NormalArray>(8, ON_3dVector(0, 0, 1)));
    mesh->SetColorArray(std::make_shared<VraMesh::ColorArray>(2));
    const std::string text = InfoOf({mesh});
    EXPECT_THAT(text, HasSubstr("  normals: 8 (per vertex)\n  colours: 2 (no index array)\n"));
}

TEST_F(Info, ArraysSharedWithAnEarlierObjectAreListedByRole) {
    const Mesh first = UnitBox();
    const Mesh second = UnitBox();
    second->SetVertexIndexArray(first->GetModifiableVertexIndexArray());
    second->SetNormalArray(first->GetModifiableNormalArray());
    const Mesh third = UnitBox();
    third->SetVertexArray(second->GetModifiableVertexArray());
    const std::string text = InfoOf({first, second, third});
    EXPECT_THAT(text, HasSubstr("  shares: nothing\nobject 2: "));
    EXPECT_THAT(text, HasSubstr("  shares: normal array with object 1; vertex index array with "
                                "object 1\nobject 3: "));
    EXPECT_THAT(text, HasSubstr("  shares: vertex array with object 2\ntotal: "));
}

TEST_F(Info, AnArrayInTwoRolesOfOneObjectIsListed) {
    const Mesh mesh = UnitBox();
    mesh->SetColorArray(std::make_shared<VraMesh::ColorArray>(6));
    mesh->SetColorIndexArray(mesh->GetModifiableNormalIndexArray());
    const Mesh other = UnitBox();
    other->SetColorArray(std::make_shared<VraMesh::ColorArray>(6));
    other->SetColorIndexArray(mesh->GetModifiableNormalIndexArray());
    const std::string text = InfoOf({mesh, other});
    EXPECT_THAT(text, HasSubstr("  shares: colour index array with its own normal index array\n"));
    EXPECT_THAT(text,
                HasSubstr("  shares: colour index array with object 1's normal index array\n"));
}

}  // namespace
}  // namespace Vr::test

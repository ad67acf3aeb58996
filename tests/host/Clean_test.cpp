#include <cmath>

#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::HasSubstr;
using IndexArray = VraMeshPrimitive::IndexArray;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;

class Clean : public EditTest {};

TEST_F(Clean, ASoupIsJoinedAndLosesItsDegenerateTriangle) {
    const auto objects = Edited({SquareSoup()}, {"clean"});
    // ascending by x, then y; (2,2,0) belonged to the degenerate triangle only
    EXPECT_EQ(Points(objects[0]),
              (std::vector<ON_3dPoint>{ON_3dPoint(0, 0, 0), ON_3dPoint(0, 1, 0),
                                       ON_3dPoint(1, 0, 0), ON_3dPoint(1, 1, 0)}));
    EXPECT_EQ(Triangles(objects[0]), (std::vector<TriangleIndex>{{{0, 2, 3}}, {{0, 3, 1}}}));
    EXPECT_THAT(printed_, HasSubstr("cleaned: 9 -> 4 vertices, 3 -> 2 triangles\nstored "));
}

TEST_F(Clean, UVsAndPerTriangleColoursGoWithTheirTriangles) {
    const Mesh soup = SquareSoup();
    soup->SetUVArray(CountedUVs(9));
    soup->SetColorArray(std::make_shared<VraMesh::ColorArray>(
        VraMesh::ColorArray{ON_Color(1u), ON_Color(2u), ON_Color(3u)}));
    soup->SetColorIndexArray(std::make_shared<IndexArray>(IndexArray::PerTriangle{2, 1, 0}));
    const auto objects = Edited({soup}, {"clean"});
    EXPECT_EQ(*objects[0]->GetUVArray(),
              (VraMesh::UVArray{ON_2dPoint(0, 0), ON_2dPoint(1, 0), ON_2dPoint(2, 0),
                                ON_2dPoint(6, 0), ON_2dPoint(7, 0), ON_2dPoint(8, 0)}));
    EXPECT_EQ(boost::get<IndexArray::PerTriangle>(objects[0]->GetColorIndexArray()->data),
              (IndexArray::PerTriangle{2, 0}));
}

// Both use the first object's triangles, with other vertices in another order.
TEST_F(Clean, ObjectsThatShareTheirTrianglesAreCleanedEachByItself) {
    const Mesh first = SquareSoup();
    const Mesh second = SquareSoup();
    second->SetVertexIndexArray(first->GetModifiableVertexIndexArray());
    for (ON_3dPoint& point : *second->GetModifiableVertexArray())
        point.x = 10 - point.x;
    const auto objects = Edited({first, second}, {"clean"});
    EXPECT_EQ(Triangles(objects[0]), (std::vector<TriangleIndex>{{{0, 2, 3}}, {{0, 3, 1}}}));
    // (9,0), (9,1), (10,0), (10,1); the corners were (10,0), (9,0), (9,1) and (10,0), (9,1), (10,1)
    EXPECT_EQ(Triangles(objects[1]), (std::vector<TriangleIndex>{{{2, 0, 1}}, {{2, 1, 3}}}));
    EXPECT_THAT(printed_, HasSubstr("copied because shared: 1 array\n"));
}

TEST_F(Clean, AnIndexArrayOfNormalsAndColoursIsRenumberedForEach) {
    const Mesh mesh = Square();
    mesh->SetNormalArray(std::make_shared<VraMesh::NormalArray>(
        VraMesh::NormalArray{ON_3dVector(0, 0, 1), ON_3dVector(0, 0, -1)}));
    mesh->SetColorArray(
        std::make_shared<VraMesh::ColorArray>(VraMesh::ColorArray{ON_Color(1u), ON_Color(2u)}));
    const auto numbers = std::make_shared<IndexArray>(IndexArray::PerTriangle{0, 1});
    mesh->SetNormalIndexArray(numbers);
    mesh->SetColorIndexArray(numbers);
    const auto objects = Edited({mesh}, {"clean"});
    // sorted, the normals change places and the colours do not
    EXPECT_EQ(boost::get<IndexArray::PerTriangle>(objects[0]->GetNormalIndexArray()->data),
              (IndexArray::PerTriangle{1, 0}));
    EXPECT_EQ(boost::get<IndexArray::PerTriangle>(objects[0]->GetColorIndexArray()->data),
              (IndexArray::PerTriangle{0, 1}));
}

TEST_F(Clean, AnEmptyObjectStaysEmpty) {
    const auto objects = Edited({Mesh(new VraMesh), SquareSoup()}, {"clean"});
    EXPECT_EQ(objects[0]->GetVertexArray(), nullptr);
    EXPECT_EQ(objects[1]->GetVertexArray()->size(), 4U);
}

TEST_F(Clean, APositionThatIsNoNumberIsRefused) {
    const Mesh mesh = SquareSoup();
    (*mesh->GetModifiableVertexArray())[5].y = std::nan("");
    ExpectRefused({UnitBox(), mesh}, {"clean"}, "object 2: a position is not finite");
}

}  // namespace
}  // namespace Vr::test

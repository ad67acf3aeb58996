#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using IndexArray = VraMeshPrimitive::IndexArray;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;

constexpr int kWrongUsage = 2;

class DeleteFaces : public EditTest {};

TEST_F(DeleteFaces, TrianglesAreCountedFromZeroAndMayBeRepeatedInAnyOrder) {
    const auto objects = Edited({UnitBox()}, {"delete-faces", "--faces", "11,0,11,1"});
    EXPECT_EQ(Triangles(objects[0]).size(), 9U);
    EXPECT_EQ(Triangles(objects[0])[0], (TriangleIndex{{0, 1, 5}}));  // triangle 2 of the box
    EXPECT_EQ(objects[0]->GetVertexArray()->size(), 8U);
    EXPECT_EQ(boost::get<IndexArray::PerTriangle>(objects[0]->GetNormalIndexArray()->data),
              (IndexArray::PerTriangle{1, 1, 2, 2, 3, 3, 4, 4, 5}));
    EXPECT_THAT(printed_, HasSubstr("deleted: 3 triangles\n"));
}

TEST_F(DeleteFaces, OnlyTheChosenObjectLosesTriangles) {
    const Mesh first = Square();
    const Mesh second(new VraMesh);
    first->ShallowCopy(second);
    const auto objects = Edited({first, second}, {"delete-faces", "--object", "2", "--faces", "0"});
    EXPECT_EQ(Triangles(objects[0]).size(), 2U);
    EXPECT_EQ(Triangles(objects[1]), std::vector<TriangleIndex>{(TriangleIndex{{0, 2, 3}})});
    EXPECT_EQ(objects[0]->GetVertexArray(), objects[1]->GetVertexArray());
}

TEST_F(DeleteFaces, CompactingDropsUnusedVertices) {
    const auto objects = Edited({Square()}, {"delete-faces", "--faces", "0", "--compact"});
    EXPECT_EQ(Points(objects[0]), (std::vector<ON_3dPoint>{ON_3dPoint(0, 0, 0), ON_3dPoint(1, 1, 0),
                                                           ON_3dPoint(0, 1, 0)}));
    EXPECT_EQ(Triangles(objects[0]), std::vector<TriangleIndex>{(TriangleIndex{{0, 1, 2}})});
}

// Vertex 1 is used by the first object only, vertex 3 by the second only, once the second has lost its
// first triangle and the first its second.
TEST_F(DeleteFaces, CompactingKeepsWhatAnotherHolderOfTheVerticesUses) {
    const Mesh first = Square();
    first->GetModifiableVertexIndexArray()->pop_back();
    const Mesh second = Square();
    second->SetVertexArray(first->GetModifiableVertexArray());
    first->GetModifiableVertexArray()->insert(first->GetModifiableVertexArray()->begin(),
                                              ON_3dPoint(9, 9, 9));
    for (const Mesh& mesh : {first, second})
        for (TriangleIndex& triangle : *mesh->GetModifiableVertexIndexArray())
            for (size_t& vertex : triangle.v)
                ++vertex;
    const auto objects =
        Edited({first, second}, {"delete-faces", "--object", "2", "--faces", "0", "--compact"});
    EXPECT_EQ(objects[0]->GetVertexArray(), objects[1]->GetVertexArray());
    EXPECT_EQ(Points(objects[0]).size(), 4U);
    EXPECT_EQ(Triangles(objects[0]), std::vector<TriangleIndex>{(TriangleIndex{{0, 1, 2}})});
    EXPECT_EQ(Triangles(objects[1]), std::vector<TriangleIndex>{(TriangleIndex{{0, 2, 3}})});
}

// Objects 1 and 2 share both arrays, object 3 has the same triangles on other vertices. Each vertex
// array is compacted once, and no index array is renumbered twice.
TEST_F(DeleteFaces, CompactingListsASharedIndexArrayOnceAVertexArray) {
    const Mesh first = Square();
    first->GetModifiableVertexIndexArray()->erase(first->GetModifiableVertexIndexArray()->begin());
    const Mesh second(new VraMesh);
    first->ShallowCopy(second);
    const Mesh third = Square();
    third->SetVertexIndexArray(first->GetModifiableVertexIndexArray());
    const Mesh fourth = Square();
    const auto objects = Edited({first, second, third, fourth},
                                {"delete-faces", "--object", "4", "--faces", "1", "--compact"});
    for (size_t object = 0; object < 3; ++object) {
        EXPECT_EQ(Triangles(objects[object]),
                  std::vector<TriangleIndex>{(TriangleIndex{{0, 1, 2}})});
        EXPECT_EQ(Points(objects[object])[2], ON_3dPoint(0, 1, 0));
    }
    EXPECT_EQ(objects[0]->GetVertexIndexArray(), objects[1]->GetVertexIndexArray());
}

TEST_F(DeleteFaces, WhatIsNotThereIsRefused) {
    ExpectRefused({UnitBox()}, {"delete-faces", "--faces", "3,12"},
                  "object 1: there is no triangle 12; it has 12, counted from 0");
    ExpectRefused({UnitBox()}, {"delete-faces", "--object", "2", "--faces", "0"},
                  "there is no object 2");
}

TEST_F(DeleteFaces, OnlyPlainWholeNumbersAreTaken) {
    StoreDocument("box.vrd", {UnitBox()});
    for (const std::string faces : {"-1", "99999999999999999999", "1.5", "0x1", "010", "", "two"}) {
        const HostResult result =
            RunHost({"delete-faces", Path("box.vrd"), "-o", Path("new.vrd"), "--faces", faces});
        EXPECT_EQ(result.status, kWrongUsage);
        EXPECT_EQ(result.err,
                  "veridane-host: --faces: '" + faces + "' is not a whole number (see --help)\n");
    }
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
}

}  // namespace
}  // namespace Vr::test

#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

// By the extension of the model.
class ExportFormat : public HostTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(ExportFormat, TheUnitBoxComesBackWithItsMeasures) {
    const std::string model = Path("box") + GetParam();
    EXPECT_EQ(ExpectSuccess(RunHost({"export", StoreDocument("box.vrd", {UnitBox()}), model})),
              "exported " + model + ": 12 triangles\n");
    ExpectSuccess(RunHost({"import", model, "-o", Path("back.vrd")}));
    const std::string info = ExpectSuccess(RunHost({"info", Path("back.vrd")}));
    EXPECT_THAT(info,
                HasSubstr("  bounding box: (0, 0, 0) to (1, 1, 1)\n  area: 6\n  volume: 1\n"));
    EXPECT_THAT(info, HasSubstr("total: 1 object, 12 triangles, "));
}

INSTANTIATE_TEST_SUITE_P(Extensions, ExportFormat,
                         ::testing::Values(".obj", ".stl", ".ply", ".gltf", ".glb", ".PLY"),
                         [](const auto& parameter) {
                             return std::string(parameter.param + 1) +
                                    (parameter.index == 5 ? "InCapitals" : "");
                         });

class Export : public HostTest {
protected:
    // Exports to a PLY, which keeps vertices as they are, and imports that.
    Mesh ThereAndBack(const Mesh& mesh) const {
        ExpectSuccess(RunHost({"export", StoreDocument("mesh.vrd", {mesh}), Path("mesh.ply")}));
        ExpectSuccess(RunHost({"import", Path("mesh.ply"), "-o", Path("back.vrd")}));
        return LoadDocument("back.vrd").at(0);
    }
};

TEST_F(Export, ACornerOfTheBoxIsRepeatedForEachOfItsThreeNormals) {
    const Mesh back = ThereAndBack(UnitBox());
    EXPECT_EQ(back->GetVertexArray()->size(), 24U);
    // the first triangle lies on the bottom
    const auto& normals = *back->GetNormalArray();
    EXPECT_EQ(normals[(*back->GetVertexIndexArray())[0][0]], ON_3dVector(0, 0, -1));
}

TEST_F(Export, WithoutNormalsEachVertexStaysOnce) {
    const Mesh mesh = UnitBox();
    mesh->SetNormalArray(nullptr);
    mesh->SetNormalIndexArray(nullptr);
    EXPECT_EQ(ThereAndBack(mesh)->GetVertexArray()->size(), 8U);
}

TEST_F(Export, AVertexNoTriangleUsesIsLeftOut) {
    const Mesh mesh = UnitBox();
    mesh->SetNormalArray(nullptr);
    mesh->SetNormalIndexArray(nullptr);
    mesh->GetModifiableVertexArray()->push_back(ON_3dPoint(9, 9, 9));
    EXPECT_EQ(ThereAndBack(mesh)->GetVertexArray()->size(), 8U);
}

TEST_F(Export, ColoursAndTextureCoordinatesComeBack) {
    ExpectSuccess(RunHost({"import", Write("cube.ply", PaintedCubePly()), "-o", Path("cube.vrd")}));
    const Mesh mesh = LoadDocument("cube.vrd").at(0);
    const Mesh back = ThereAndBack(mesh);
    ASSERT_EQ(back->GetVertexArray()->size(), 8U);
    const auto& triangles = *mesh->GetVertexIndexArray();
    const auto& backTriangles = *back->GetVertexIndexArray();
    ASSERT_EQ(backTriangles.size(), triangles.size());
    for (size_t triangle = 0; triangle < triangles.size(); ++triangle)
        for (size_t corner = 0; corner < 3; ++corner)
            EXPECT_EQ((*back->GetColorArray())[backTriangles[triangle][corner]],
                      (*mesh->GetColorArray())[triangles[triangle][corner]]);
    EXPECT_EQ(*back->GetUVArray(), *mesh->GetUVArray());
}

TEST_F(Export, AVertexWithTwoTextureCoordinatesIsRepeated) {
    const Mesh mesh(new VraMesh);
    mesh->SetVertexArray(std::make_shared<VraMesh::VertexArray>(VraMesh::VertexArray{
        ON_3dPoint(0, 0, 0), ON_3dPoint(1, 0, 0), ON_3dPoint(1, 1, 0), ON_3dPoint(0, 1, 0)}));
    mesh->SetVertexIndexArray(std::make_shared<VraMesh::VertexIndexArray>(
        VraMesh::VertexIndexArray{{{0, 1, 2}}, {{0, 2, 3}}}));
    // vertex 0 has (0,0) in both triangles, vertex 2 has (1,1) and then (5,5)
    mesh->SetUVArray(std::make_shared<VraMesh::UVArray>(
        VraMesh::UVArray{ON_2dPoint(0, 0), ON_2dPoint(1, 0), ON_2dPoint(1, 1), ON_2dPoint(0, 0),
                         ON_2dPoint(5, 5), ON_2dPoint(0, 1)}));
    const Mesh back = ThereAndBack(mesh);
    EXPECT_EQ(back->GetVertexArray()->size(), 5U);
    EXPECT_EQ(*back->GetUVArray(), *mesh->GetUVArray());
}

TEST_F(Export, ObjectsStayApartWhereTheFormatCan) {
    ExpectSuccess(
        RunHost({"export", StoreDocument("two.vrd", {UnitBox(), UnitBox()}), Path("two.obj")}));
    EXPECT_THAT(ExpectSuccess(RunHost({"import", Path("two.obj"), "-o", Path("back.vrd")})),
                HasSubstr(": 2 meshes, 24 triangles\n"));
}

TEST_F(Export, ObjectsWithoutTrianglesAreLeftOut) {
    ExpectSuccess(RunHost(
        {"export", StoreDocument("two.vrd", {Mesh(new VraMesh), UnitBox()}), Path("two.obj")}));
    EXPECT_THAT(ExpectSuccess(RunHost({"import", Path("two.obj"), "-o", Path("back.vrd")})),
                HasSubstr(": 1 mesh, 12 triangles\n"));
}

TEST_F(Export, AnUnknownExtensionFails) {
    ExpectFailure(RunHost({"export", StoreDocument("box.vrd", {UnitBox()}), Path("box.what")}),
                  Path("box.what"), "no model format is known for this extension");
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
}

TEST_F(Export, ADocumentWithoutTrianglesFails) {
    ExpectFailure(
        RunHost({"export", StoreDocument("empty.vrd", {Mesh(new VraMesh)}), Path("empty.obj")}),
        Path("empty.obj"), "the document holds no triangles to export");
}

TEST_F(Export, AFullDiskLeavesTheOldModel) {
    StoreDocument("box.vrd", {UnitBox()});
    Write("box.obj", "# the old model\n");
    const Bytes before = Read("box.obj");
    ExpectFailure(RunHost({"export", Path("box.vrd"), Path("box.obj")}, WithFileSizeLimit(100)),
                  Path("box.obj"), "File too large");
    EXPECT_EQ(Read("box.obj"), before);
    EXPECT_THAT(Names(), ElementsAre("box.obj", "box.vrd"));
}

TEST_F(Export, AMissingFolderFails) {
    ExpectFailure(
        RunHost({"export", StoreDocument("box.vrd", {UnitBox()}), Path("nowhere/box.obj")}),
        Path("nowhere/box.obj"), "No such file or directory");
}

}  // namespace
}  // namespace Vr::test

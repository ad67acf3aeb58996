#include <cmath>
#include <fstream>
#include <limits>

#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using IndexArray = VraMeshPrimitive::IndexArray;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;

class Import : public HostTest {
protected:
    // Imports one model and returns the objects of the document.
    std::vector<Mesh> Imported(const std::string& name, std::string_view model) const {
        ExpectSuccess(RunHost({"import", Write(name, model), "-o", Path("imported.vrd")}));
        return LoadDocument("imported.vrd");
    }
};

std::vector<TriangleIndex> PerVertexNumbers(const std::shared_ptr<const IndexArray>& indices) {
    return boost::get<IndexArray::PerVertex>(indices->data);
}

// A tetrahedron of volume 1/6 at (0,0,0), (1,0,0), (0,1,0), (0,0,1), with one normal for all corners,
// in a scene whose places are given.
std::string TetrahedronScene(const std::string& places) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
  <asset><unit name="meter" meter="1"/><up_axis>Y_UP</up_axis></asset>
  <library_geometries><geometry id="tetra" name="tetra"><mesh>
    <source id="p"><float_array id="pa" count="12">0 0 0 1 0 0 0 1 0 0 0 1</float_array>
      <technique_common><accessor source="#pa" count="4" stride="3">
        <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
      </accessor></technique_common></source>
    <source id="n"><float_array id="na" count="3">1 1 0</float_array>
      <technique_common><accessor source="#na" count="1" stride="3">
        <param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/>
      </accessor></technique_common></source>
    <vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
    <triangles count="4"><input semantic="VERTEX" source="#v" offset="0"/>
      <input semantic="NORMAL" source="#n" offset="1"/>
      <p>0 0 2 0 1 0  0 0 1 0 3 0  1 0 2 0 3 0  2 0 0 0 3 0</p></triangles>
  </mesh></geometry></library_geometries>
  <library_visual_scenes><visual_scene id="s">)" +
           places + R"(</visual_scene></library_visual_scenes>
  <scene><instance_visual_scene url="#s"/></scene>
</COLLADA>)";
}

std::string Place(const std::string& transform) {
    return "<node>" + transform + "<instance_geometry url=\"#tetra\"/></node>";
}

TEST_F(Import, TheCubeOfAPlyKeepsItsVerticesAndBecomesTwelveTriangles) {
    const auto objects = Imported("cube.ply", CubePly());
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_STREQ(objects[0]->GetRuntimeClass()->m_lpszClassName, "VraMesh");
    const std::vector<ON_3dPoint> corners = {
        ON_3dPoint(0, 0, 0), ON_3dPoint(1, 0, 0), ON_3dPoint(1, 1, 0), ON_3dPoint(0, 1, 0),
        ON_3dPoint(0, 0, 1), ON_3dPoint(1, 0, 1), ON_3dPoint(1, 1, 1), ON_3dPoint(0, 1, 1)};
    EXPECT_EQ(*objects[0]->GetVertexArray(), corners);
    EXPECT_EQ(objects[0]->GetVertexIndexArray()->size(), 12U);
    EXPECT_DOUBLE_EQ(objects[0]->CalcVolume(ON_3dPoint(0, 0, 0)), 1.0);
    EXPECT_EQ(objects[0]->GetColorArray(), nullptr);
    EXPECT_EQ(objects[0]->GetUVArray(), nullptr);
}

TEST_F(Import, SaysWhatCameFromWhereAndWhatWasStored) {
    const std::string model = Write("cube.ply", CubePly());
    // 16 header, class 2+2+2+7, crease angle 8, 7 presence bytes; numbers and counts of two arrays
    // 2*16, 8 points and 12 triangles of 24 bytes; end mark 4
    EXPECT_EQ(ExpectSuccess(RunHost({"import", model, "-o", Path("cube.vrd")})),
              "imported " + model + ": 1 mesh, 12 triangles\nstored " + Path("cube.vrd") +
                  ": 1 object, 560 bytes\n");
    EXPECT_EQ(Read("cube.vrd").size(), 16U + 13 + 8 + 7 + 32 + 24 * 20 + 4);
}

TEST_F(Import, ColoursGoWithTheVerticesAndOpaqueIsAlphaZero) {
    const auto objects = Imported("cube.ply", PaintedCubePly());
    const std::vector<ON_Color> colors = {ON_Color(255, 0, 0),     ON_Color(0, 255, 0),
                                          ON_Color(0, 0, 255),     ON_Color(255, 255, 0),
                                          ON_Color(255, 0, 255),   ON_Color(0, 255, 255),
                                          ON_Color(255, 255, 255), ON_Color(0, 0, 0)};
    EXPECT_EQ(*objects[0]->GetColorArray(), colors);
    EXPECT_EQ(PerVertexNumbers(objects[0]->GetColorIndexArray()),
              *objects[0]->GetVertexIndexArray());
}

TEST_F(Import, TheFirstTextureChannelBecomesOneUVACorner) {
    const auto objects = Imported("cube.ply", PaintedCubePly());
    const std::vector<ON_2dPoint> uvOfVertex = {
        ON_2dPoint(0, 0),   ON_2dPoint(1, 0),     ON_2dPoint(1, 1),    ON_2dPoint(0, 1),
        ON_2dPoint(0.5, 0), ON_2dPoint(0.5, 0.5), ON_2dPoint(0.25, 0), ON_2dPoint(0, 0.25)};
    const auto& triangles = *objects[0]->GetVertexIndexArray();
    const auto& uvs = *objects[0]->GetUVArray();
    ASSERT_EQ(uvs.size(), 36U);
    for (size_t corner = 0; corner < uvs.size(); ++corner)
        EXPECT_EQ(uvs[corner], uvOfVertex[triangles[corner / 3][corner % 3]]) << corner;
    EXPECT_EQ(objects[0]->GetTextureUVArray(), nullptr);
}

TEST_F(Import, NormalsComeInThePerVertexFormWithTheVertexNumbers) {
    const auto objects = Imported("one.stl", R"(solid one
facet normal 0 0 1
outer loop
vertex 0 0 0
vertex 1 0 0
vertex 0 1 0
endloop
endfacet
endsolid one
)");
    ASSERT_EQ(objects.size(), 1U);
    EXPECT_EQ(objects[0]->GetTriangleArea(0), 0.5);
    const std::vector<ON_3dVector> normals(3, ON_3dVector(0, 0, 1));
    EXPECT_EQ(*objects[0]->GetNormalArray(), normals);
    EXPECT_TRUE(objects[0]->IsNormalPerVertex());
    EXPECT_EQ(PerVertexNumbers(objects[0]->GetNormalIndexArray()),
              *objects[0]->GetVertexIndexArray());
}

TEST_F(Import, NormalAndColourIndexArraysAreTwoObjects) {
    const auto objects = Imported("square.ply", R"(ply
format ascii 1.0
element vertex 3
property float x
property float y
property float z
property float nx
property float ny
property float nz
property uchar red
property uchar green
property uchar blue
element face 1
property list uchar int vertex_indices
end_header
0 0 0 0 0 1 9 9 9
1 0 0 0 0 1 9 9 9
0 1 0 0 0 1 9 9 9
3 0 1 2
)");
    ASSERT_NE(objects[0]->GetNormalIndexArray(), nullptr);
    ASSERT_NE(objects[0]->GetColorIndexArray(), nullptr);
    EXPECT_NE(objects[0]->GetNormalIndexArray(), objects[0]->GetColorIndexArray());
}

TEST_F(Import, AMeshComesOnceAPlaceWithThePlacesTransform) {
    const auto objects = Imported(
        "tetra.dae",
        TetrahedronScene(Place("<translate>10 0 0</translate>") + Place("<scale>2 2 2</scale>")));
    ASSERT_EQ(objects.size(), 2U);
    ON_BoundingBox box;
    ASSERT_TRUE(objects[0]->CalcBoundingBox(box));
    EXPECT_EQ(box.m_min, ON_3dPoint(10, 0, 0));
    EXPECT_EQ(box.m_max, ON_3dPoint(11, 1, 1));
    ASSERT_TRUE(objects[1]->CalcBoundingBox(box));
    EXPECT_EQ(box.m_max, ON_3dPoint(2, 2, 2));
}

TEST_F(Import, PlacesInsidePlacesApplyTheInnerTransformFirst) {
    // (1,0,0) is scaled to (2,0,0) and then moved to (12,0,0)
    const auto objects =
        Imported("tetra.dae", TetrahedronScene("<node><translate>10 0 0</translate>" +
                                               Place("<scale>2 2 2</scale>") + "</node>"));
    ON_BoundingBox box;
    ASSERT_TRUE(objects[0]->CalcBoundingBox(box));
    EXPECT_EQ(box.m_max, ON_3dPoint(12, 2, 2));
}

TEST_F(Import, PlacesOfOneMeshShareWhatDoesNotDependOnThePlace) {
    const auto objects =
        Imported("tetra.dae", TetrahedronScene(Place("<translate>10 0 0</translate>") +
                                               Place("<translate>20 0 0</translate>")));
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0]->GetVertexIndexArray(), objects[1]->GetVertexIndexArray());
    EXPECT_EQ(objects[0]->GetNormalIndexArray(), objects[1]->GetNormalIndexArray());
    EXPECT_NE(objects[0]->GetVertexArray(), objects[1]->GetVertexArray());
    EXPECT_NE(objects[0]->GetNormalArray(), objects[1]->GetNormalArray());
}

TEST_F(Import, AMirroringPlaceTurnsTheTrianglesRoundAndKeepsTheVolumePositive) {
    const auto objects =
        Imported("tetra.dae", TetrahedronScene(Place("") + Place("<scale>-1 1 1</scale>")));
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_DOUBLE_EQ(objects[0]->CalcVolume(ON_3dPoint(0, 0, 0)), 1.0 / 6.0);
    EXPECT_DOUBLE_EQ(objects[1]->CalcVolume(ON_3dPoint(0, 0, 0)), 1.0 / 6.0);
    EXPECT_NE(objects[0]->GetVertexIndexArray(), objects[1]->GetVertexIndexArray());
}

TEST_F(Import, NormalsStayUprightWhereAPlaceStretches) {
    // (1,1,0) under diag(2,1,1): the inverse transpose gives (1/2,1,0), of length sqrt(5)/2
    const auto objects = Imported("tetra.dae", TetrahedronScene(Place("<scale>2 1 1</scale>")));
    const ON_3dVector normal = objects[0]->GetNormalArray()->front();
    EXPECT_NEAR(normal.x, 1.0 / std::sqrt(5.0), 1e-6);  // the model holds single precision
    EXPECT_NEAR(normal.y, 2.0 / std::sqrt(5.0), 1e-6);
    EXPECT_EQ(normal.z, 0.0);
}

TEST_F(Import, AFlatteningPlaceDropsTheNormalsAndSaysSo) {
    const std::string model = Write("tetra.dae", TetrahedronScene(Place("<scale>1 1 0</scale>")));
    EXPECT_THAT(ExpectSuccess(RunHost({"import", model, "-o", Path("flat.vrd")})),
                HasSubstr("\n  without normals, because their place flattens them: 1 mesh\n"));
    const auto objects = LoadDocument("flat.vrd");
    EXPECT_EQ(objects[0]->GetNormalArray(), nullptr);
    EXPECT_EQ(objects[0]->GetNormalIndexArray(), nullptr);
    EXPECT_EQ(objects[0]->GetVertexIndexArray()->size(), 4U);
}

TEST_F(Import, PointsAndLinesAreLeftOutAndCounted) {
    const std::string model = Write("mixed.obj",
                                    "v 0 0 0\nv 1 0 0\nv 0 1 0\n"
                                    "f 1 2 3\nl 1 2\nl 2 3\np 1\n");
    EXPECT_THAT(ExpectSuccess(RunHost({"import", model, "-o", Path("mixed.vrd")})),
                HasSubstr(": 1 mesh, 1 triangle\n  left out: 1 point, 2 lines\nstored "));
}

TEST_F(Import, AVertexNumberOutOfRangeFailsBeforeItIsUsed) {
    std::string model(CubePly());
    model.replace(model.rfind("4 4 5 6 7"), 9, "4 4 5 6 8");
    ExpectFailure(RunHost({"import", Write("bad.ply", model), "-o", Path("bad.vrd")}),
                  Path("bad.ply"), "damaged model: a vertex number is out of range");
}

TEST_F(Import, AFaceWithoutCornersFailsBeforeItIsTriangulated) {
    std::string model(CubePly());
    model.replace(model.rfind("4 4 5 6 7"), 9, "0");
    ExpectFailure(RunHost({"import", Write("bad.ply", model), "-o", Path("bad.vrd")}),
                  Path("bad.ply"), "damaged model: a face has no corners");
}

TEST_F(Import, SeveralModelsMakeOneDocumentInTheirOrder) {
    ExpectSuccess(RunHost({"import", Write("cube.ply", CubePly()),
                           Write("one.obj", "v 0 0 5\nv 1 0 5\nv 0 1 5\nf 1 2 3\n"), "-o",
                           Path("both.vrd")}));
    const auto objects = LoadDocument("both.vrd");
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0]->GetVertexIndexArray()->size(), 12U);
    EXPECT_EQ(objects[1]->GetVertexIndexArray()->size(), 1U);
}

TEST_F(Import, AMissingModelFailsAndStoresNothing) {
    ExpectFailure(RunHost({"import", Write("cube.ply", CubePly()), Path("missing.obj"), "-o",
                           Path("cube.vrd")}),
                  Path("missing.obj"), "No such file or directory");
    EXPECT_THAT(Names(), ElementsAre("cube.ply"));
}

TEST_F(Import, AFolderIsNoModel) {
    ExpectFailure(RunHost({"import", Path(""), "-o", Path("cube.vrd")}), Path(""),
                  "is a directory");
}

TEST_F(Import, AFileOfNoKnownFormatFailsInOneLine) {
    const HostResult result =
        RunHost({"import", Write("notes.txt", "nothing to see\n"), "-o", Path("cube.vrd")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, MatchesRegex("veridane-host: " + Path("notes.txt") +
                                         ": No suitable reader[^\n]*\n"));
    EXPECT_THAT(Names(), ElementsAre("notes.txt"));
}

TEST_F(Import, AModelThatIsCutShortFailsInOneLine) {
    const std::string model = TetrahedronScene(Place(""));
    const HostResult result = RunHost(
        {"import", Write("cut.dae", model.substr(0, model.size() / 2)), "-o", Path("cube.vrd")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, MatchesRegex("veridane-host: " + Path("cut.dae") + ": [^\n]+\n"));
    EXPECT_THAT(Names(), ElementsAre("cut.dae"));
}

TEST_F(Import, AModelWithoutTrianglesFails) {
    ExpectFailure(
        RunHost({"import", Write("line.obj", "v 0 0 0\nv 1 0 0\nl 1 2\n"), "-o", Path("line.vrd")}),
        Path("line.obj"), "the model holds no triangles");
}

TEST_F(Import, APositionThatIsNotFiniteFails) {
    std::string model = R"(ply
format binary_little_endian 1.0
element vertex 3
property float x
property float y
property float z
element face 1
property list uchar int vertex_indices
end_header
)";
    const float positions[9] = {0, 0, 0, 1, 0, 0, 0, std::numeric_limits<float>::quiet_NaN(), 0};
    model.append(reinterpret_cast<const char*>(positions), sizeof(positions));
    const std::int32_t corners[3] = {0, 1, 2};
    model.append(1, '\3').append(reinterpret_cast<const char*>(corners), sizeof(corners));
    ExpectFailure(RunHost({"import", Write("nan.ply", model), "-o", Path("nan.vrd")}),
                  Path("nan.ply"), "damaged model: a position is not finite");
}

}  // namespace
}  // namespace Vr::test

#include "host/ObjectDocument.h"

namespace Vr::test {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

// What `info` says of the curve, the surface and the material.
constexpr const char* kCurveInfo =
    ": ON_NurbsCurve\n"
    "  dimension: 3\n"
    "  domain: 0 to 1\n"
    "  start: (0, 0, 0)\n"
    "  end: (1, 2, 3)\n"
    "  bounding box: (0, 0, 0) to (1, 2, 3)\n";
// the last control point is (4, 6, 8) with weight 2
constexpr const char* kSurfaceInfo =
    ": ON_NurbsSurface\n"
    "  domain in u: 0 to 2\n"
    "  domain in v: 0 to 3\n"
    "  bounding box: (0, 0, 1) to (2, 3, 4)\n";
constexpr const char* kMaterialInfo =
    ": ON_Material\n"
    "  name: Oak\n"
    "  diffuse colour: (5, 6, 7)\n"
    "  shine: 64 of 255\n"
    "  transparency: 0.25\n";

class Objects : public HostTest {
protected:
    std::string Run(const std::vector<std::string>& arguments) const {
        return ExpectSuccess(RunHost(arguments));
    }
    std::string InfoOf(const std::string& name) const { return Run({"info", Path(name)}); }
    // A document of the box and the geometry in front of it, as the host stores them.
    std::string WriteGeometryAndBox() const {
        Write("geometry.vrd", ObjectHeader(3)
                                  .Append(CurveObject())
                                  .Append(SurfaceObject())
                                  .Append(MaterialObject())
                                  .Append(DocumentEnd())
                                  .Bytes());
        StoreDocument("box.vrd", {UnitBox()});
        Run({"join", Path("geometry.vrd"), Path("box.vrd"), "-o", Path("all.vrd")});
        return Path("all.vrd");
    }
    void ExpectSameFront(const Bytes& document, const Bytes& before, size_t length) const {
        ASSERT_GE(document.size(), length);
        EXPECT_TRUE(std::equal(before.begin(), before.begin() + static_cast<ptrdiff_t>(length),
                               document.begin()));
    }
};

// header, curve, surface and material, up to the kind of the box
const size_t kFront = 16 + (8 + 201) + (8 + 309) + (8 + 173);

TEST_F(Objects, EveryClassIsListedInOrder) {
    const std::string path = Write("all.vrd", OneOfEachKind().Bytes());
    const std::string text = Run({"info", path});
    EXPECT_THAT(text, HasSubstr(std::string("object 2") + kCurveInfo + "object 3" + kSurfaceInfo +
                                "object 4" + kMaterialInfo + "object 5: VraMesh\n"));
    EXPECT_THAT(text, HasSubstr(path + ": 780 bytes\nobject 1: VraMesh\n"));
    EXPECT_THAT(text, HasSubstr("total: 5 objects, 0 triangles, 0 vertices, area 0, volume 0\n"));
}

TEST_F(Objects, ADocumentWrittenByHandComesBackByteForByte) {
    const ByteScript document = OneOfEachKind();
    const std::string path = Write("all.vrd", document.Bytes());
    Run({"copy", path, Path("copy.vrd")});
    EXPECT_TRUE(document.Matches(Read("copy.vrd")));
    Run({"copy", "--trust", path, Path("trusted.vrd")});
    EXPECT_TRUE(document.Matches(Read("trusted.vrd")));
    EXPECT_EQ(Run({"check", path}), path + ": safe to load, 5 objects, 0 arrays\n");
}

TEST_F(Objects, MeshesAloneAreStoredInTheFormatOfMeshes) {
    const Bytes mesh = DocumentHeader(1).Append(FirstEmptyMesh()).Append(DocumentEnd()).Bytes();
    const std::string path =
        Write("mesh.vrd",
              ObjectHeader(1).Append(MeshObject(FirstEmptyMesh())).Append(DocumentEnd()).Bytes());
    Run({"copy", path, Path("copy.vrd")});
    EXPECT_EQ(Read("copy.vrd"), mesh);
}

TEST_F(Objects, ACurveThatIsNotValidIsNotMeasured) {
    Bytes bytes = ObjectHeader(1).Append(CurveObject()).Append(DocumentEnd()).Bytes();
    // the second knot becomes 0.0: nothing lies between the two
    const size_t knot = 16 + 8 + 0x81;
    bytes[knot + 6] = 0;
    bytes[knot + 7] = 0;
    EXPECT_THAT(Run({"info", Write("curve.vrd", bytes)}),
                HasSubstr("object 1: ON_NurbsCurve\n  valid: no\ntotal: 1 object, "));
}

// openNURBS 8 takes no such name from the start.
TEST_F(Objects, ControlCharactersOfANameDoNotReachTheTerminal) {
    Bytes bytes = ObjectHeader(1).Append(MaterialObject()).Append(DocumentEnd()).Bytes();
    bytes[16 + 8 + 135] = 0x1B;
    bytes[16 + 8 + 137] = 0xE4;
    const char* const name = kStoresOwnClasses ? "none" : "O\xEF\xBF\xBD\xC3\xA4";
    EXPECT_THAT(Run({"info", Write("material.vrd", bytes)}),
                HasSubstr(std::string("  name: ") + name + "\n"));
}

TEST_F(Objects, JoiningKeepsOrderAndSharing) {
    const Mesh box = UnitBox();
    const Mesh sharing(new VraMesh);
    box->ShallowCopy(sharing);
    StoreDocument("boxes.vrd", {box, sharing});
    Write("curve.vrd", ObjectHeader(1).Append(CurveObject()).Append(DocumentEnd()).Bytes());
    EXPECT_THAT(Run({"join", Path("curve.vrd"), Path("boxes.vrd"), Path("curve.vrd"), "-o",
                     Path("all.vrd")}),
                HasSubstr("stored " + Path("all.vrd") + ": 4 objects, "));
    const std::string text = InfoOf("all.vrd");
    EXPECT_THAT(text, HasSubstr(std::string("object 1") + kCurveInfo + "object 2: VraMesh\n"));
    EXPECT_THAT(text, HasSubstr(std::string("object 4") + kCurveInfo + "total: "));
    EXPECT_THAT(text, HasSubstr("  shares: vertex array with object 2; normal array with object 2; "
                                "vertex index array with object 2; normal index array with object "
                                "2\n"));
}

TEST_F(Objects, JoiningMeshesGivesADocumentOfMeshes) {
    StoreDocument("box.vrd", {UnitBox()});
    StoreDocument("both.vrd", {UnitBox(), UnitBox()});
    Run({"join", Path("box.vrd"), Path("box.vrd"), "-o", Path("joined.vrd")});
    EXPECT_EQ(Read("joined.vrd"), Read("both.vrd"));
}

TEST_F(Objects, AJoinThatFailsLeavesNothing) {
    StoreDocument("box.vrd", {UnitBox()});
    ExpectFailure(RunHost({"join", Path("box.vrd"), Path("none.vrd"), "-o", Path("all.vrd")}),
                  Path("none.vrd"), "No such file or directory");
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
}

TEST_F(Objects, EditsOfMeshesLeaveTheOthersAsTheyAre) {
    const std::string path = WriteGeometryAndBox();
    const Bytes before = Read("all.vrd");
    const std::vector<std::vector<std::string>> commands = {
        {"clean"},
        {"normals", "--flat"},
        {"reverse"},
        {"delete-faces", "--object", "4", "--faces", "0,1", "--compact"}};
    for (std::vector<std::string> command : commands) {
        SCOPED_TRACE(command.front());
        command.insert(command.begin() + 1, {path, "-o", Path("edited.vrd")});
        Run(command);
        const Bytes after = Read("edited.vrd");
        ExpectSameFront(after, before, kFront);
        EXPECT_NE(after, before);
    }
}

TEST_F(Objects, OnlyMeshesHaveFacesToDelete) {
    const std::string path = WriteGeometryAndBox();
    ExpectFailure(RunHost({"delete-faces", path, "-o", path, "--object", "2", "--faces", "0"}),
                  path, "object 2: it is no mesh");
}

TEST_F(Objects, MergingPutsTheMeshesInThePlaceOfTheFirst) {
    StoreDocument("box.vrd", {UnitBox()});
    Write("curve.vrd", ObjectHeader(1).Append(CurveObject()).Append(DocumentEnd()).Bytes());
    Write("oak.vrd", ObjectHeader(1).Append(MaterialObject()).Append(DocumentEnd()).Bytes());
    Run({"join", Path("curve.vrd"), Path("box.vrd"), Path("oak.vrd"), Path("box.vrd"),
         Path("oak.vrd"), "-o", Path("all.vrd")});
    EXPECT_THAT(Run({"merge", Path("all.vrd"), "-o", Path("merged.vrd")}),
                HasSubstr("merged: 2 objects -> 1, 8 vertices, 24 triangles\n"
                          "  left as they are: 1 curve, 2 materials\nstored "));
    EXPECT_THAT(InfoOf("merged.vrd"),
                AllOf(HasSubstr("object 1: ON_NurbsCurve\n"), HasSubstr("object 2: VraMesh\n"),
                      HasSubstr("object 3: ON_Material\n"), HasSubstr("object 4: ON_Material\n"),
                      HasSubstr("total: 4 objects, 24 triangles, 8 vertices, ")));
}

TEST_F(Objects, MergingAndExportingNeedAMesh) {
    const std::string path =
        Write("curve.vrd", ObjectHeader(1).Append(CurveObject()).Append(DocumentEnd()).Bytes());
    ExpectFailure(RunHost({"merge", path, "-o", path}), path,
                  "the document holds no meshes to merge");
    ExpectFailure(RunHost({"export", path, Path("curve.stl")}), Path("curve.stl"),
                  "the document holds no triangles to export");
}

TEST_F(Objects, ExportSaysWhatItLeavesOut) {
    const std::string path = WriteGeometryAndBox();
    EXPECT_EQ(Run({"export", path, Path("box.stl")}),
              "exported " + Path("box.stl") +
                  ": 12 triangles\n  left out: 1 curve, 1 surface, 1 material\n");
}

TEST_F(Objects, FreeEdgesAreThoseOfTheMeshesAndTheRestIsNamedBeside) {
    const std::string path = WriteGeometryAndBox();
    Run({"delete-faces", path, "-o", path, "--object", "4", "--faces", "0"});
    const HostResult result = RunHost({"edges", path});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, ::testing::MatchesRegex("(4 [0-7] [0-7]\n){3}"));
    EXPECT_EQ(result.err, "left out: 1 curve, 1 surface, 1 material\n");
}

// x, y, z become y + 10, -x, z; from (0, 0, 0) and (1, 2, 3), and from the corners of the surface.
TEST_F(Objects, CurvesAndSurfacesAreTransformedWithTheMeshes) {
    const std::string path = WriteGeometryAndBox();
    EXPECT_THAT(Run({"transform", path, "-o", path, "--matrix", "0", "1", "0", "10", "-1", "0",
                     "0",         "0",  "0",  "0",  "1",        "0", "0", "0", "0",  "1"}),
                HasSubstr("transformed: 3 objects\n"));
    const std::string text = InfoOf("all.vrd");
    EXPECT_THAT(text, HasSubstr("  start: (10, 0, 0)\n  end: (12, -1, 3)\n"));
    EXPECT_THAT(text, HasSubstr("  domain in v: 0 to 3\n"
                                "  bounding box: (10, -2, 1) to (13, 0, 4)\n"));
    EXPECT_THAT(text, HasSubstr(std::string("object 3") + kMaterialInfo));
    EXPECT_THAT(text, HasSubstr("  bounding box: (10, -1, 0) to (11, 0, 1)\n"));
}

TEST_F(Objects, APerspectiveOrAnOverflowOfACurveIsRefused) {
    const std::string path =
        Write("curve.vrd", ObjectHeader(1).Append(CurveObject()).Append(DocumentEnd()).Bytes());
    ExpectFailure(RunHost({"transform", path, "-o", path, "--matrix", "1", "0", "0", "0", "0", "1",
                           "0",         "0",  "0",  "0",  "1",        "0", "0", "0", "1", "1"}),
                  path, "object 1: curves and surfaces take no perspective");
    ExpectFailure(RunHost({"transform", path, "-o", path, "--scale", "1e308"}), path,
                  "object 1: a control point is not finite");
    EXPECT_TRUE(
        ObjectHeader(1).Append(CurveObject()).Append(DocumentEnd()).Matches(Read("curve.vrd")));
}

TEST_F(Objects, AFullDiskLeavesTheOldDocument) {
    const std::string path = Write("all.vrd", OneOfEachKind().Bytes());
    Write("old.vrd", "the old document");
    for (const size_t limit : {size_t{60}, size_t{300}, size_t{700}, size_t{779}}) {
        SCOPED_TRACE(limit);
        ExpectFailure(RunHost({"copy", path, Path("old.vrd")}, WithFileSizeLimit(limit)),
                      Path("old.vrd"), "File too large");
        EXPECT_EQ(Read("old.vrd").size(), 16u);
        EXPECT_THAT(Names(), ElementsAre("all.vrd", "old.vrd"));
    }
    ExpectSuccess(RunHost({"copy", path, Path("old.vrd")}, WithFileSizeLimit(780)));
}

}  // namespace
}  // namespace Vr::test

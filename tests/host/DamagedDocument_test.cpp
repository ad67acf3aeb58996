#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using IndexArray = VraMeshPrimitive::IndexArray;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;

constexpr const char* kEndsTooEarly = "damaged document: it ends too early";
constexpr const char* kNoDocument = "not a mesh document";
constexpr const char* kUnknownClass = "damaged document: it holds an object of an unknown class";

// The reason why a checked document is refused, and why one that is trusted fails to load.
struct Reasons {
    std::string whenChecked;
    std::string whenTrusted;
};

std::string Damaged(const std::string& finding) {
    return "damaged document: " + finding;
}

class DamagedDocument : public HostTest {
protected:
    void ExpectRefused(const Bytes& document, const std::string& reason) const {
        ExpectFailureToCopy(document, reason, {});
    }
    void ExpectRefused(const ByteScript& document, const Reasons& reasons) const {
        ExpectFailureToCopy(document.Bytes(), reasons.whenChecked, {});
        ExpectFailureToCopy(document.Bytes(), reasons.whenTrusted, {"--trust"});
    }
    // Is loaded by who trusts it, so that is not tried.
    void ExpectRefused(const Mesh& mesh, const std::string& finding) const {
        StoreDocument("damaged.vrd", {mesh});
        ExpectRefused(Read("damaged.vrd"), Damaged("object 1, " + finding));
    }

private:
    void ExpectFailureToCopy(const Bytes& document, const std::string& reason,
                             const std::vector<std::string>& options) const {
        const std::string path = Write("damaged.vrd", document);
        std::vector<std::string> arguments = {"copy", path, Path("copy.vrd")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        ExpectFailure(RunHost(arguments), path, reason);
        EXPECT_THAT(Names(), ElementsAre("damaged.vrd"));
    }
};

TEST_F(DamagedDocument, AMissingFile) {
    ExpectFailure(RunHost({"info", Path("missing.vrd")}), Path("missing.vrd"),
                  "No such file or directory");
}

TEST_F(DamagedDocument, AMissingFolder) {
    ExpectFailure(RunHost({"info", Path("nowhere/a.vrd")}), Path("nowhere/a.vrd"),
                  "No such file or directory");
}

TEST_F(DamagedDocument, AFolder) {
    ExpectFailure(RunHost({"info", Path("")}), Path(""), "Is a directory");
}

TEST_F(DamagedDocument, AFileThatMayNotBeRead) {
    const std::string path = StoreDocument("secret.vrd", {UnitBox()});
    std::filesystem::permissions(path, std::filesystem::perms::none);
    ExpectFailure(RunHost({"info", path}, ObeyPermissions), path, "Permission denied");
}

TEST_F(DamagedDocument, AnEmptyFile) {
    ExpectRefused(ByteScript(), {kNoDocument, kNoDocument});
}

TEST_F(DamagedDocument, AModelFile) {
    const std::string path = Write("cube.ply", CubePly());
    ExpectFailure(RunHost({"info", path}), path, kNoDocument);
}

TEST_F(DamagedDocument, AFormatOfTheFuture) {
    const std::string reason = "document format 3 is not known";
    ExpectRefused(ByteScript().Text("VRDM", "magic word").Dword(3, "format").Qword(0, "count"),
                  {reason, reason});
}

// Every length of the header and of a small object, where each field is cut in two.
TEST_F(DamagedDocument, EveryPrefixOfASmallDocumentIsRefused) {
    const ByteScript document = DocumentHeader(1).Append(FirstEmptyMesh()).Append(DocumentEnd());
    for (size_t length = 0; length < document.Bytes().size(); ++length) {
        SCOPED_TRACE(length);
        const std::string path = Write("damaged.vrd", document.Prefix(length));
        const bool isMagicWordThere = length >= 4;
        ExpectFailure(RunHost({"info", path, "--trust"}), path,
                      isMagicWordThere ? kEndsTooEarly : kNoDocument);
        const HostResult checked = RunHost({"info", path});
        EXPECT_EQ(checked.status, 1);
        EXPECT_EQ(checked.out, "");
        EXPECT_THAT(checked.err, HasSubstr(isMagicWordThere ? "damaged document: " : kNoDocument));
    }
}

// The painted cube ends in its UVs, behind which only the end mark stands.
TEST_F(DamagedDocument, PrefixesThatEndInColoursAndUVsAreRefused) {
    ExpectSuccess(
        RunHost({"import", Write("cube.ply", PaintedCubePly()), "-o", Path("painted.vrd")}));
    const Bytes document = Read("painted.vrd");
    std::filesystem::remove(Path("cube.ply"));
    std::filesystem::remove(Path("painted.vrd"));
    for (size_t length = 17; length < document.size(); length += 13) {
        SCOPED_TRACE(length);
        const Bytes prefix(document.begin(), document.begin() + static_cast<ptrdiff_t>(length));
        const std::string path = Write("damaged.vrd", prefix);
        ExpectFailure(RunHost({"info", path, "--trust"}), path, kEndsTooEarly);
        EXPECT_EQ(RunHost({"info", path}).status, 1);
    }
}

TEST_F(DamagedDocument, BytesBehindTheEndMark) {
    ExpectRefused(DocumentHeader(0).Append(DocumentEnd()).OneByte(0, "one too many"),
                  {Damaged("byte 16: it does not end behind its last object"),
                   Damaged("it does not end behind its last object")});
}

TEST_F(DamagedDocument, ACountBelowTheObjectsThatAreThere) {
    ExpectRefused(
        DocumentHeader(1).Append(FirstEmptyMesh()).Append(LaterEmptyMesh()).Append(DocumentEnd()),
        {Damaged("byte 44: it does not end behind its last object"),
         Damaged("it does not end behind its last object")});
}

TEST_F(DamagedDocument, ACountThatTheFileHasNoRoomFor) {
    ExpectRefused(DocumentHeader(0xFFFFFFFFFFFFFFFF).Append(FirstEmptyMesh()).Append(DocumentEnd()),
                  {Damaged("byte 8: it is too short for its 18446744073709551615 objects"),
                   Damaged("it is too short for its 18446744073709551615 objects")});
}

TEST_F(DamagedDocument, AClassThatDoesNotExist) {
    ExpectRefused(
        DocumentHeader(1)
            .NewClass(16, "VraMash", "no such class")
            .Double(0.0, "crease angle")
            .Hex("00 00 00 00 00 00 00", "seven absent arrays")
            .Append(DocumentEnd()),
        {Damaged("object 1, byte 16: class \"VraMash\" is no mesh class"), kUnknownClass});
}

TEST_F(DamagedDocument, AnUnknownClassBehindAGoodObject) {
    ExpectRefused(
        DocumentHeader(2)
            .Append(FirstEmptyMesh())
            .NewClass(16, "VraCurve", "no such class")
            .Hex("00 00 00 00 00 00 00 00", "whatever it holds")
            .Append(DocumentEnd()),
        {Damaged("object 2, byte 44: class \"VraCurve\" is no mesh class"), kUnknownClass});
}

TEST_F(DamagedDocument, ANullObject) {
    ExpectRefused(
        DocumentHeader(1)
            .Word(0, "null object")
            .Hex("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", "filler")
            .Append(DocumentEnd()),
        {Damaged("object 1, byte 16: an object is missing"), Damaged("an object is missing")});
}

TEST_F(DamagedDocument, AClassNumberThatWasNotGivenOut) {
    ExpectRefused(DocumentHeader(1)
                      .Word(0x8005, "class number 5")
                      .Hex("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", "filler")
                      .Append(DocumentEnd()),
                  {Damaged("object 1, byte 16: number 5 is no class's"),
                   Damaged("it refers to something it does not hold")});
}

TEST_F(DamagedDocument, AnArrayThatServesARoleOfAnotherKind) {
    ExpectRefused(DocumentHeader(1)
                      .NewClass(16, "VraMesh", "class is number 1")
                      .Double(0.0, "crease angle")
                      .OneByte(1, "vertex array")
                      .Qword(1, "array number 1")
                      .Qword(1, "one point")
                      .Double(0.0, "x")
                      .Double(0.0, "y")
                      .Double(0.0, "z")
                      .OneByte(0, "no normals")
                      .OneByte(1, "colour array")
                      .Qword(1, "array number 1 again, which holds points")
                      .Hex("00 00 00 00", "four absent arrays")
                      .Append(DocumentEnd())
                      .Bytes(),
                  Damaged("object 1, byte 80: array 1 holds vertices and is used for colours"));
}

TEST_F(DamagedDocument, ACountNoArrayCanHave) {
    ExpectRefused(
        DocumentHeader(1)
            .NewClass(16, "VraMesh", "class is number 1")
            .Double(0.0, "crease angle")
            .OneByte(1, "vertex array")
            .Qword(1, "array number 1")
            .Qword(0xFFFFFFFFFFFFFFFF, "point count")
            .Append(DocumentEnd()),
        {Damaged("object 1, byte 46: 18446744073709551615 vertices of 24 bytes do not fit "
                 "the 4 bytes that are left"),
         Damaged("it counts more than any memory holds")});
}

// All of them would take 800 million bytes.
TEST_F(DamagedDocument, ACountOfUVsThatAreNotThereFailsBeforeMemoryIsFilled) {
    const std::string path = Write("damaged.vrd", DocumentHeader(1)
                                                      .NewClass(16, "VraMesh", "class is number 1")
                                                      .Double(0.0, "crease angle")
                                                      .Hex("00 00 00 00 00 00", "six absent arrays")
                                                      .OneByte(1, "UV array")
                                                      .Qword(1, "array number 1")
                                                      .Qword(50000000, "UV count")
                                                      .Append(DocumentEnd())
                                                      .Bytes());
    ExpectFailure(RunHost({"info", path}), path,
                  Damaged("object 1, byte 52: 50000000 UVs of 16 bytes do not fit the 4 bytes that "
                          "are left"));
    const HostResult result = RunHost({"info", path, "--trust"});
    ExpectFailure(result, path, kEndsTooEarly);
    EXPECT_LT(result.peakMemoryBytes, size_t{400} << 20);
}

TEST_F(DamagedDocument, AVertexNumberOutOfRange) {
    const Mesh mesh = UnitBox();
    (*mesh->GetModifiableVertexIndexArray())[11][2] = 8;
    ExpectRefused(mesh, "byte 705: vertex number 8 where there are 8");
}

TEST_F(DamagedDocument, TrianglesWithoutVertices) {
    const Mesh mesh = UnitBox();
    mesh->SetVertexArray(nullptr);
    ExpectRefused(mesh, "byte 217: vertex number 0 where there are 0");
}

TEST_F(DamagedDocument, APerTriangleNormalNumberOutOfRange) {
    const Mesh mesh = UnitBox();
    boost::get<IndexArray::PerTriangle>(mesh->GetModifiableNormalIndexArray()->data)[3] = 6;
    ExpectRefused(mesh, "byte 755: normal number 6 where there are 6");
}

TEST_F(DamagedDocument, APerVertexColourNumberOutOfRange) {
    const Mesh mesh = UnitBox();
    mesh->SetColorArray(std::make_shared<VraMesh::ColorArray>(7));
    mesh->SetColorIndexArray(std::make_shared<IndexArray>(*mesh->GetVertexIndexArray()));
    ExpectRefused(mesh, "byte 1073: colour number 7 where there are 7");
}

TEST_F(DamagedDocument, AnIndexArrayOfAnotherLengthThanTheTriangles) {
    const Mesh mesh = UnitBox();
    mesh->SetNormalIndexArray(std::make_shared<IndexArray>(IndexArray::PerTriangle(11)));
    ExpectRefused(mesh, "byte 723: 11 entries of normal numbers for 12 triangles");
}

}  // namespace
}  // namespace Vr::test

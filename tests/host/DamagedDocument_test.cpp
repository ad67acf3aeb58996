#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using IndexArray = VraMeshPrimitive::IndexArray;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;

constexpr const char* kEndsTooEarly = "damaged document: it ends too early";
constexpr const char* kNoDocument = "not a mesh document";
constexpr const char* kUnknownClass = "damaged document: it holds an object of an unknown class";

class DamagedDocument : public HostTest {
protected:
    void ExpectRefused(const Bytes& document, const std::string& reason) const {
        const std::string path = Write("damaged.vrd", document);
        ExpectFailure(RunHost({"copy", path, Path("copy.vrd")}), path, reason);
        EXPECT_THAT(Names(), ElementsAre("damaged.vrd"));
    }
    void ExpectRefused(const ByteScript& document, const std::string& reason) const {
        ExpectRefused(document.Bytes(), reason);
    }
    void ExpectRefused(const Mesh& mesh, const std::string& reason) const {
        StoreDocument("damaged.vrd", {mesh});
        ExpectRefused(Read("damaged.vrd"), "damaged document: object 1: " + reason);
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
    ExpectRefused(Bytes(), kNoDocument);
}

TEST_F(DamagedDocument, AModelFile) {
    const std::string path = Write("cube.ply", CubePly());
    ExpectFailure(RunHost({"info", path}), path, kNoDocument);
}

TEST_F(DamagedDocument, AFormatOfTheFuture) {
    ExpectRefused(ByteScript().Text("VRDM", "magic word").Dword(2, "format").Qword(0, "count"),
                  "document format 2 is not known");
}

// Every length of the header and of a small object, where each field is cut in two.
TEST_F(DamagedDocument, EveryPrefixOfASmallDocumentIsRefused) {
    const ByteScript document = DocumentHeader(1).Append(FirstEmptyMesh()).Append(DocumentEnd());
    for (size_t length = 0; length < document.Bytes().size(); ++length) {
        SCOPED_TRACE(length);
        const bool isMagicWordThere = length >= 4;
        ExpectRefused(document.Prefix(length), isMagicWordThere ? kEndsTooEarly : kNoDocument);
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
        ExpectRefused(Bytes(document.begin(), document.begin() + static_cast<ptrdiff_t>(length)),
                      kEndsTooEarly);
    }
}

TEST_F(DamagedDocument, BytesBehindTheEndMark) {
    ExpectRefused(DocumentHeader(0).Append(DocumentEnd()).Byte(0, "one too many"),
                  "damaged document: it does not end behind its last object");
}

TEST_F(DamagedDocument, ACountBelowTheObjectsThatAreThere) {
    ExpectRefused(
        DocumentHeader(1).Append(FirstEmptyMesh()).Append(LaterEmptyMesh()).Append(DocumentEnd()),
        "damaged document: it does not end behind its last object");
}

TEST_F(DamagedDocument, ACountThatTheFileHasNoRoomFor) {
    ExpectRefused(DocumentHeader(0xFFFFFFFFFFFFFFFF).Append(FirstEmptyMesh()).Append(DocumentEnd()),
                  "damaged document: it is too short for its 18446744073709551615 objects");
}

TEST_F(DamagedDocument, AClassThatDoesNotExist) {
    ExpectRefused(DocumentHeader(1)
                      .NewClass(16, "VraMash", "no such class")
                      .Double(0.0, "crease angle")
                      .Hex("00 00 00 00 00 00 00", "seven absent arrays")
                      .Append(DocumentEnd()),
                  kUnknownClass);
}

TEST_F(DamagedDocument, AnUnknownClassBehindAGoodObject) {
    ExpectRefused(DocumentHeader(2)
                      .Append(FirstEmptyMesh())
                      .NewClass(16, "VraCurve", "no such class")
                      .Hex("00 00 00 00 00 00 00 00", "whatever it holds")
                      .Append(DocumentEnd()),
                  kUnknownClass);
}

TEST_F(DamagedDocument, ANullObject) {
    ExpectRefused(DocumentHeader(1)
                      .Word(0, "null object")
                      .Hex("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", "filler")
                      .Append(DocumentEnd()),
                  "damaged document: an object is missing");
}

TEST_F(DamagedDocument, AClassNumberThatWasNotGivenOut) {
    ExpectRefused(DocumentHeader(1)
                      .Word(0x8005, "class number 5")
                      .Hex("00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00", "filler")
                      .Append(DocumentEnd()),
                  "damaged document: it refers to something it does not hold");
}

TEST_F(DamagedDocument, AnArrayThatServesARoleOfAnotherKind) {
    ExpectRefused(DocumentHeader(1)
                      .NewClass(16, "VraMesh", "class is number 1")
                      .Double(0.0, "crease angle")
                      .Byte(1, "vertex array")
                      .Qword(1, "array number 1")
                      .Qword(1, "one point")
                      .Double(0.0, "x")
                      .Double(0.0, "y")
                      .Double(0.0, "z")
                      .Byte(0, "no normals")
                      .Byte(1, "colour array")
                      .Qword(1, "array number 1 again, which holds points")
                      .Hex("00 00 00 00", "four absent arrays")
                      .Append(DocumentEnd()),
                  "damaged document: object 1: an array stands for data of another kind");
}

TEST_F(DamagedDocument, ACountNoArrayCanHave) {
    ExpectRefused(DocumentHeader(1)
                      .NewClass(16, "VraMesh", "class is number 1")
                      .Double(0.0, "crease angle")
                      .Byte(1, "vertex array")
                      .Qword(1, "array number 1")
                      .Qword(0xFFFFFFFFFFFFFFFF, "point count")
                      .Append(DocumentEnd()),
                  "damaged document: it counts more than any memory holds");
}

// All of them would take 800 million bytes.
TEST_F(DamagedDocument, ACountOfUVsThatAreNotThereFailsBeforeMemoryIsFilled) {
    const std::string path = Write("damaged.vrd", DocumentHeader(1)
                                                      .NewClass(16, "VraMesh", "class is number 1")
                                                      .Double(0.0, "crease angle")
                                                      .Hex("00 00 00 00 00 00", "six absent arrays")
                                                      .Byte(1, "UV array")
                                                      .Qword(1, "array number 1")
                                                      .Qword(50000000, "UV count")
                                                      .Append(DocumentEnd())
                                                      .Bytes());
    const HostResult result = RunHost({"info", path});
    ExpectFailure(result, path, kEndsTooEarly);
    EXPECT_LT(result.peakMemoryBytes, size_t{400} << 20);
}

TEST_F(DamagedDocument, AVertexNumberOutOfRange) {
    const Mesh mesh = UnitBox();
    (*mesh->GetModifiableVertexIndexArray())[11][2] = 8;
    ExpectRefused(mesh, "a vertex number is out of range");
}

TEST_F(DamagedDocument, TrianglesWithoutVertices) {
    const Mesh mesh = UnitBox();
    mesh->SetVertexArray(nullptr);
    ExpectRefused(mesh, "a vertex number is out of range");
}

TEST_F(DamagedDocument, APerTriangleNormalNumberOutOfRange) {
    const Mesh mesh = UnitBox();
    boost::get<IndexArray::PerTriangle>(mesh->GetModifiableNormalIndexArray()->data)[3] = 6;
    ExpectRefused(mesh, "a normal number is out of range");
}

TEST_F(DamagedDocument, APerVertexColourNumberOutOfRange) {
    const Mesh mesh = UnitBox();
    mesh->SetColorArray(std::make_shared<VraMesh::ColorArray>(7));
    mesh->SetColorIndexArray(std::make_shared<IndexArray>(*mesh->GetVertexIndexArray()));
    ExpectRefused(mesh, "a colour number is out of range");
}

TEST_F(DamagedDocument, AnIndexArrayOfAnotherLengthThanTheTriangles) {
    const Mesh mesh = UnitBox();
    mesh->SetNormalIndexArray(std::make_shared<IndexArray>(IndexArray::PerTriangle(11)));
    ExpectRefused(mesh, "11 normal entries for 12 triangles");
}

}  // namespace
}  // namespace Vr::test

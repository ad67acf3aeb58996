// The tables of docs/stream-format.md, row by row: bytes written down by hand are what is stored and are
// loaded as what was stored. The last test compares the rows of the page with the list of those checked.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "serialize/VrwSerializeObserver.h"
#include "support/ByteScript.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;

Mesh NewVraMesh(double creaseAngle = 0.0) {
    const Mesh mesh(new VraMesh);
    mesh->SetCreaseAngle(creaseAngle);
    return mesh;
}

// Stores the objects and compares, then loads the bytes, which must be used up, and compares again.
std::vector<Mesh> ExpectBothWays(const ByteScript& script, const std::vector<Mesh>& objects) {
    EXPECT_TRUE(script.Matches(StoredObjects(objects)));
    LoadedFrom stream(script.Bytes());
    std::vector<Mesh> loaded;
    for (const Mesh& object : objects) {
        loaded.push_back(stream.Next());
        EXPECT_EQ(loaded.back() == nullptr, object == nullptr);
        if (loaded.back() && object) {
            EXPECT_EQ(loaded.back()->GetRuntimeClass(), object->GetRuntimeClass());
            EXPECT_TRUE(AreBitEqual(*loaded.back(), *object));
        }
    }
    stream.archive.Close();
    EXPECT_EQ(stream.file.GetPosition(), script.Bytes().size());
    return loaded;
}

ByteScript NewVraMeshClass() {
    return ByteScript()
        .Hex("FF FF", "new class")
        .Hex("10 00", "schema 16")
        .Hex("07 00", "name of 7 bytes")
        .Hex("56 72 61 4D 65 73 68", "VraMesh");
}

ByteScript EmptyBody() {
    return ByteScript()
        .Hex("00 00 00 00 00 00 00 00", "crease angle 0.0")
        .Hex("00 00 00 00 00 00 00", "no array");
}

// ---- 1. Object envelope ------------------------------------------------------------------------

TEST(StreamFormatSection1, NullPointer) {
    ExpectBothWays(ByteScript().Hex("00 00", "null"), {nullptr});
}

TEST(StreamFormatSection1, ObjectStoredBefore) {
    const Mesh first = NewVraMesh();
    const Mesh second = NewVraMesh(1.0);
    const ByteScript script = ByteScript()
                                  .Append(NewVraMeshClass())
                                  .Append(EmptyBody())
                                  .Hex("01 80", "class 1")
                                  .Hex("00 00 00 00 00 00 F0 3F", "crease angle 1.0")
                                  .Hex("00 00 00 00 00 00 00", "no array")
                                  .Hex("03 00", "object 3")
                                  .Hex("02 00", "object 2");
    const auto loaded = ExpectBothWays(script, {first, second, second, first});
    EXPECT_EQ(loaded[2], loaded[1]);
    EXPECT_EQ(loaded[3], loaded[0]);
}

TEST(StreamFormatSection1, ClassMetBefore) {
    // The primitive's class is 3, behind the object that is 2.
    const ByteScript script = ByteScript()
                                  .Append(NewVraMeshClass())
                                  .Append(EmptyBody())
                                  .Hex("FF FF 10 00 10 00", "new class, schema 16, 16 bytes")
                                  .Hex("56 72 61 4D 65 73 68 50", "VraMeshP")
                                  .Hex("72 69 6D 69 74 69 76 65", "rimitive")
                                  .Append(EmptyBody())
                                  .Hex("01 80", "class 1")
                                  .Append(EmptyBody())
                                  .Hex("03 80", "class 3")
                                  .Append(EmptyBody());
    ExpectBothWays(script, {NewVraMesh(), NewPrimitive(), NewVraMesh(), NewPrimitive()});
}

TEST(StreamFormatSection1, NewClass) {
    ExpectBothWays(NewVraMeshClass().Append(EmptyBody()), {NewVraMesh()});
}

// The host gives the numbers up to 0x7FFC to objects of its own, then come class 0x7FFD, objects 0x7FFE
// and 0x7FFF, class 0x8000 and object 0x8001.
ByteScript BigNumbers() {
    return ByteScript()
        .Append(NewVraMeshClass())
        .Append(EmptyBody())
        .Hex("FD FF", "class 0x7FFD, short")
        .Append(EmptyBody())
        .Hex("FE 7F", "object 0x7FFE, short")
        .Hex("FF 7F  FF 7F 00 00", "object 0x7FFF")
        .Hex("FF FF 10 00 10 00", "new class, schema 16, 16 bytes")
        .Hex("56 72 61 4D 65 73 68 50", "VraMeshP")
        .Hex("72 69 6D 69 74 69 76 65", "rimitive")
        .Append(EmptyBody())
        .Hex("FF 7F  00 80 00 80", "class 0x8000")
        .Append(EmptyBody())
        .Hex("FF 7F  01 80 00 00", "object 0x8001");
}

TEST(StreamFormatSection1, NumbersFrom7FFFUp) {
    const std::vector<Mesh> hostObjects = [] {
        std::vector<Mesh> objects(0x7FFC);
        std::generate(objects.begin(), objects.end(), [] { return NewPrimitive(); });
        return objects;
    }();
    const auto mapHostObjects = [&](CArchive& archive) {
        for (const Mesh& object : hostObjects)
            archive.MapObject(object.get());
    };
    const Mesh a = NewVraMesh();
    const Mesh b = NewVraMesh();
    const Mesh c = NewPrimitive();
    const Mesh d = NewPrimitive();
    EXPECT_TRUE(BigNumbers().Matches(BytesOf([&](Vr::VrmArchive& archive) {
        mapHostObjects(archive);
        for (const Mesh& mesh : {a, b, a, b, c, d, c})
            archive.WriteObject(mesh.get());
    })));

    LoadedFrom stream(BigNumbers().Bytes());
    mapHostObjects(stream.archive);
    std::vector<Mesh> loaded;
    while (loaded.size() < 7)
        loaded.push_back(stream.Next());
    EXPECT_EQ(loaded[2], loaded[0]);
    EXPECT_EQ(loaded[3], loaded[1]);
    EXPECT_EQ(loaded[5]->GetRuntimeClass(), RUNTIME_CLASS(VraMeshPrimitive));
    EXPECT_EQ(loaded[6], loaded[4]);
}

// ---- 2. Body of a mesh -------------------------------------------------------------------------

// A mesh whose only array comes behind so many missing ones; 1.0 is 3FF0..., 2.0 is 4000..., 3.0 is
// 4008..., -4.0 is C010...
ByteScript OnlyArray(std::size_t missingBefore, const ByteScript& content) {
    return NewVraMeshClass()
        .Hex("00 00 00 00 00 00 00 00", "crease angle 0.0")
        .Raw(Bytes(missingBefore, 0), "no array")
        .Hex("01", "there")
        .Hex("01 00 00 00 00 00 00 00", "array 1")
        .Append(content)
        .Raw(Bytes(6 - missingBefore, 0), "no array");
}

ByteScript OneTwoThree() {
    return ByteScript()
        .Hex("01 00 00 00 00 00 00 00", "count")
        .Hex("00 00 00 00 00 00 F0 3F", "x = 1.0")
        .Hex("00 00 00 00 00 00 00 40", "y = 2.0")
        .Hex("00 00 00 00 00 00 08 40", "z = 3.0");
}

TEST(StreamFormatSection2, CreaseAngle) {
    const ByteScript script = NewVraMeshClass()
                                  .Hex("00 00 00 00 00 00 10 C0", "crease angle -4.0")
                                  .Hex("00 00 00 00 00 00 00", "no array");
    ExpectBothWays(script, {NewVraMesh(-4.0)});
}

TEST(StreamFormatSection2, VertexArray) {
    const Mesh mesh = NewVraMesh();
    mesh->SetVertexArray(Vertices({{1, 2, 3}}));
    ExpectBothWays(OnlyArray(0, OneTwoThree()), {mesh});
}

TEST(StreamFormatSection2, NormalArray) {
    const Mesh mesh = NewVraMesh();
    mesh->SetNormalArray(Normals({{1, 2, 3}}));
    ExpectBothWays(OnlyArray(1, OneTwoThree()), {mesh});
}

TEST(StreamFormatSection2, ColorArray) {
    const Mesh mesh = NewVraMesh();
    const ON_Color halfRed(255, 0, 16, 128);
    const ON_Color opaqueBlue(0, 0, 255);
    mesh->SetColorArray(std::make_shared<VraMeshPrimitive::ColorArray>(
        VraMeshPrimitive::ColorArray{halfRed, opaqueBlue}));
    const ByteScript content = ByteScript()
                                   .Hex("02 00 00 00 00 00 00 00", "count")
                                   .Hex("FF 00 10 80", "red 255, green 0, blue 16, alpha 128")
                                   .Hex("00 00 FF 00", "blue, opaque");
    ExpectBothWays(OnlyArray(2, content), {mesh});
}

TEST(StreamFormatSection2, VertexIndexArray) {
    const Mesh mesh = NewVraMesh();
    mesh->SetVertexIndexArray(Triangles({{{2, 0x0102030405060708, 1}}}));
    const ByteScript content = ByteScript()
                                   .Hex("01 00 00 00 00 00 00 00", "count")
                                   .Hex("02 00 00 00 00 00 00 00", "first corner")
                                   .Hex("08 07 06 05 04 03 02 01", "second corner")
                                   .Hex("01 00 00 00 00 00 00 00", "third corner");
    ExpectBothWays(OnlyArray(3, content), {mesh});
}

ByteScript OneNumberATriangle() {
    return ByteScript()
        .Hex("01", "per triangle")
        .Hex("02 00 00 00 00 00 00 00", "count")
        .Hex("04 00 00 00 00 00 00 00", "of the first triangle")
        .Hex("07 00 00 00 00 00 00 00", "of the second triangle");
}

ByteScript OneNumberACorner() {
    return ByteScript()
        .Hex("00", "per vertex")
        .Hex("01 00 00 00 00 00 00 00", "count")
        .Hex("05 00 00 00 00 00 00 00", "of the first corner")
        .Hex("06 00 00 00 00 00 00 00", "of the second corner")
        .Hex("04 00 00 00 00 00 00 00", "of the third corner");
}

TEST(StreamFormatSection2, NormalIndexArray) {
    const Mesh mesh = NewVraMesh();
    mesh->SetNormalIndexArray(PerTriangle({4, 7}));
    ExpectBothWays(OnlyArray(4, OneNumberATriangle()), {mesh});
}

TEST(StreamFormatSection2, ColorIndexArray) {
    const Mesh mesh = NewVraMesh();
    mesh->SetColorIndexArray(PerTriangle({4, 7}));
    ExpectBothWays(OnlyArray(5, OneNumberATriangle()), {mesh});
}

TEST(StreamFormatSection2, UVArray) {
    const Mesh mesh = NewVraMesh();
    mesh->SetUVArray(UVs({{2, 1}}));
    const ByteScript content = ByteScript()
                                   .Hex("01 00 00 00 00 00 00 00", "count")
                                   .Hex("00 00 00 00 00 00 00 40", "u = 2.0")
                                   .Hex("00 00 00 00 00 00 F0 3F", "v = 1.0");
    ExpectBothWays(OnlyArray(6, content), {mesh});
}

// ---- 3. Shared-array envelope ------------------------------------------------------------------

TEST(StreamFormatSection3, NoArray) {
    const auto loaded = ExpectBothWays(NewVraMeshClass().Append(EmptyBody()), {NewVraMesh()});
    EXPECT_EQ(AddressesOf(*loaded[0]), ArrayAddresses());
}

TEST(StreamFormatSection3, NewArraysHaveTheNextNumber) {
    const Mesh mesh = NewVraMesh();
    mesh->SetVertexArray(Vertices({}));
    mesh->SetColorIndexArray(PerVertex({}));
    const ByteScript script = NewVraMeshClass()
                                  .Hex("00 00 00 00 00 00 00 00", "crease angle 0.0")
                                  .Hex("01  01 00 00 00 00 00 00 00", "vertices: array 1, new")
                                  .Hex("00 00 00 00 00 00 00 00", "count")
                                  .Hex("00 00 00 00", "no array")
                                  .Hex("01  02 00 00 00 00 00 00 00", "array 2, new")
                                  .Hex("00  00 00 00 00 00 00 00 00", "per vertex, count")
                                  .Hex("00", "no array");
    ExpectBothWays(script, {mesh});
}

TEST(StreamFormatSection3, ArrayStoredBefore) {
    const Mesh first = NewVraMesh();
    first->SetNormalIndexArray(PerTriangle({4, 7}));
    first->SetColorIndexArray(first->GetModifiableNormalIndexArray());
    const Mesh second = NewVraMesh();
    second->SetColorIndexArray(first->GetModifiableNormalIndexArray());
    const ByteScript script =
        NewVraMeshClass()
            .Hex("00 00 00 00 00 00 00 00", "crease angle 0.0")
            .Hex("00 00 00 00", "no array")
            .Hex("01  01 00 00 00 00 00 00 00", "normal indices: array 1, new")
            .Append(OneNumberATriangle())
            .Hex("01  01 00 00 00 00 00 00 00", "colour indices: array 1 again")
            .Hex("00", "no array")
            .Hex("01 80", "class 1")
            .Hex("00 00 00 00 00 00 00 00", "crease angle 0.0")
            .Hex("00 00 00 00 00", "no array")
            .Hex("01  01 00 00 00 00 00 00 00", "colour indices: array 1 again")
            .Hex("00", "no array");
    const auto loaded = ExpectBothWays(script, {first, second});
    EXPECT_EQ(loaded[0]->GetColorIndexArray(), loaded[0]->GetNormalIndexArray());
    EXPECT_EQ(loaded[1]->GetColorIndexArray(), loaded[0]->GetNormalIndexArray());
}

// ---- 4. Index record ---------------------------------------------------------------------------

TEST(StreamFormatSection4, PerVertex) {
    const Mesh mesh = NewVraMesh();
    mesh->SetColorIndexArray(PerVertex({{{5, 6, 4}}}));
    ExpectBothWays(OnlyArray(5, OneNumberACorner()), {mesh});
}

TEST(StreamFormatSection4, PerTriangle) {
    const Mesh mesh = NewVraMesh();
    mesh->SetNormalIndexArray(PerTriangle({4, 7}));
    ExpectBothWays(OnlyArray(4, OneNumberATriangle()), {mesh});
}

// ---- 5. Schemas --------------------------------------------------------------------------------

ByteScript MeshOfSchema(std::uint16_t schema, bool hasUVEnvelope) {
    ByteScript script;
    script.Hex("FF FF", "new class")
        .Word(schema, "schema")
        .Hex("07 00 56 72 61 4D 65 73 68", "VraMesh")
        .Hex("00 00 00 00 00 00 00 40", "crease angle 2.0")
        .Hex("00 00 00 00 00 00", "no array");
    return hasUVEnvelope ? script.Hex("00", "no UVs") : script;
}

// Loads a mesh that uses up the stream, and stores it as this library does.
void ExpectSchema(std::uint16_t schema, bool hasUVEnvelope) {
    const ByteScript script = MeshOfSchema(schema, hasUVEnvelope);
    LoadedFrom stream(script.Bytes());
    const Mesh mesh = stream.Next();
    stream.archive.Close();
    EXPECT_EQ(stream.file.GetPosition(), script.Bytes().size()) << "schema " << schema;
    ExpectBitEqual(*mesh, *NewVraMesh(2.0));
    EXPECT_TRUE(MeshOfSchema(16, true).Matches(StoredObjects({mesh})));
}

TEST(StreamFormatSection5, WithoutUVEnvelope) {
    constexpr std::uint16_t kSchemas[] = {0, 1, 10, 11};
    for (const std::uint16_t schema : kSchemas)
        ExpectSchema(schema, false);
}

TEST(StreamFormatSection5, WithUVEnvelope) {
    for (std::uint16_t schema = 2; schema < 0x200; ++schema)
        if (schema != 10 && schema != 11)
            ExpectSchema(schema, true);
    ExpectSchema(0x7FFF, true);
    ExpectSchema(0xFFFE, true);
}

// ---- 10. Failures while loading ----------------------------------------------------------------

Caught CaughtLoading(const ByteScript& script) {
    const CreatedMeshes created;
    return CaughtFrom([&] { LoadedObjects(script.Bytes(), 1); });
}

TEST(StreamFormatSection10, StreamEndsEarly) {
    EXPECT_EQ(CaughtLoading(ByteScript().Hex("FF", "half a tag")), EndOfFile());
    EXPECT_EQ(CaughtLoading(NewVraMeshClass().Hex("00 00 00", "half an angle")), EndOfFile());
}

TEST(StreamFormatSection10, WrongClass) {
    EXPECT_EQ(CaughtLoading(ByteScript().NewClass(16, "VraMash", "nobody's")),
              ArchiveException(CArchiveException::badClass));
    LoadedFrom stream(
        ByteScript().NewClass(16, "VraMeshPrimitive", "1").Append(EmptyBody()).Bytes());
    VraMesh* mesh = nullptr;
    EXPECT_EQ(CaughtFrom([&] { stream.archive >> mesh; }),
              ArchiveException(CArchiveException::badClass));
}

TEST(StreamFormatSection10, WrongClassName) {
    const Caught badClass = ArchiveException(CArchiveException::badClass);
    EXPECT_EQ(CaughtLoading(ByteScript().Hex("FF FF 10 00 07 00 56 72 61", "cut name")), badClass);
    EXPECT_EQ(CaughtLoading(ByteScript().NewClass(16, std::string(64, 'V'), "too long")), badClass);
}

TEST(StreamFormatSection10, NumberNotGivenOut) {
    const Caught badIndex = ArchiveException(CArchiveException::badIndex);
    EXPECT_EQ(CaughtLoading(ByteScript().Hex("01 00", "object 1")), badIndex);
    EXPECT_EQ(CaughtLoading(ByteScript().Hex("01 80", "class 1")), badIndex);
    EXPECT_EQ(CaughtLoading(ByteScript().Hex("00 80", "class 0")), badIndex);
    const CreatedMeshes created;
    for (const char* const tag : {"01 00", "02 80"}) {
        const ByteScript script =
            NewVraMeshClass().Append(EmptyBody()).Hex(tag, "a class's or an object's");
        EXPECT_EQ(CaughtFrom([&] { LoadedObjects(script.Bytes(), 2); }), badIndex) << tag;
    }
}

TEST(StreamFormatSection10, CountBeyondAVector) {
    const ByteScript script =
        OnlyArray(0, ByteScript().Hex("FF FF FF FF FF FF FF FF", "count 2^64 - 1"));
    EXPECT_EQ(CaughtLoading(script), LengthError("vector too long"));
}

TEST(StreamFormatSection10, CountBeyondMemory) {
    // 2^58 vertices take 6 * 2^60 bytes: within what a vector may ask for, not what there is.
    const ByteScript script =
        OnlyArray(0, ByteScript().Hex("00 00 00 00 00 00 00 04", "count 2^58"));
    EXPECT_EQ(CaughtLoading(script), BadAlloc());
}

class Canceler final : public Vr::VrwSerializeObserver {
public:
    bool IsCanceled() override { return true; }
    void OnProgress(ULONGLONG, ULONGLONG) override {}
};

TEST(StreamFormatSection10, ObserverCancels) {
    const CreatedMeshes created;
    Canceler canceler;
    LoadedFrom stream(NewVraMeshClass().Append(EmptyBody()).Bytes());
    stream.archive.SetObserver(&canceler);
    EXPECT_EQ(CaughtFrom([&] { stream.Next(); }), PlatformException("CUserException"));
}

TEST(StreamFormatSection10, WrongDirection) {
    using Vr::operator>>;
    using Vr::operator<<;
    MemoryFile file;
    CArchive storing(&file, CArchive::store);
    IndexArray indices;
    EXPECT_EQ(CaughtFrom([&] { storing >> indices; }),
              ArchiveException(CArchiveException::writeOnly));
    CArchive loading(&file, CArchive::load);
    EXPECT_EQ(CaughtFrom([&] { loading << indices; }),
              ArchiveException(CArchiveException::readOnly));
}

// ---- the page ----------------------------------------------------------------------------------

/// A row of the page, and the test that checks it; `file` is empty where that is a test of this program.
struct CheckedRow {
    std::string section;
    std::string row;
    std::string test;
    std::string file;
};

std::vector<CheckedRow> CheckedRows() {
    const std::string values = "ValueSerializers_test.cpp";
    const std::string geometry = "GeometrySerializers_test.cpp";
    const std::string objects = "ObjectSerializers_test.cpp";
    const std::string curve = "CurveSerializer, StoresTheRecordOfANurbsCurve";
    const std::string surface = "SurfaceSerializer, StoresTheRecordOfANurbsSurface";
    const std::string material = "MaterialSerializer, StoresTheBareFieldsWithoutARecord";
    std::vector<CheckedRow> rows = {
        {"1", "null pointer", "StreamFormatSection1, NullPointer", ""},
        {"1", "object stored before on this archive", "StreamFormatSection1, ObjectStoredBefore",
         ""},
        {"1", "object of a class met before", "StreamFormatSection1, ClassMetBefore", ""},
        {"1", "object of a class new to this archive", "StreamFormatSection1, NewClass", ""},
        {"1", "a number of 0x7FFF or more", "StreamFormatSection1, NumbersFrom7FFFUp", ""},
        {"2", "1", "StreamFormatSection2, CreaseAngle", ""},
        {"2", "2", "StreamFormatSection2, VertexArray", ""},
        {"2", "3", "StreamFormatSection2, NormalArray", ""},
        {"2", "4", "StreamFormatSection2, ColorArray", ""},
        {"2", "5", "StreamFormatSection2, VertexIndexArray", ""},
        {"2", "6", "StreamFormatSection2, NormalIndexArray", ""},
        {"2", "7", "StreamFormatSection2, ColorIndexArray", ""},
        {"2", "8", "StreamFormatSection2, UVArray", ""},
        {"3", "no array", "StreamFormatSection3, NoArray", ""},
        {"3", "array stored before on this archive", "StreamFormatSection3, ArrayStoredBefore", ""},
        {"3", "array met for the first time", "StreamFormatSection3, NewArraysHaveTheNextNumber",
         ""},
        {"4", "per vertex", "StreamFormatSection4, PerVertex", ""},
        {"4", "per triangle", "StreamFormatSection4, PerTriangle", ""},
        {"5", "0, 1, 10, 11", "StreamFormatSection5, WithoutUVEnvelope", ""},
        {"5", "2 to 9, 12 to 19, 20 and above", "StreamFormatSection5, WithUVEnvelope", ""},
        {"7", "`std::wstring`", "WideString, IsItsLengthAndItsUnitsWithoutATerminator", values},
        {"7", "`ON_2dPoint`", "Point2d, IsTwoDoubles", values},
        {"7", "`ON_Color`", "Color, IsRedGreenBlueAlpha", values},
        {"7", "`ON_Plane`", "PlaneSerializer, StoresOriginAxesAndEquationAsTheyStand", geometry},
        {"7", "`ON_Arc`", "ArcSerializer, StoresItsCircleThreePointsOfItAndTheAngles", geometry},
        {"7", "`ON_Xform`", "XformSerializer, StoresRowByRow", geometry},
        {"8", "`FA 7F 02 00`", curve, objects},
        {"8", "`FB FF 02 00`", curve, objects},
        {"8", "`FC FF 02 00`", curve, objects},
        {"8", "`FF 7F 02 80`", curve, objects},
        {"8", "dimension, has weights, order, number of control points *n*, 0, 0", curve, objects},
        {"8", "box: 1, 0, 0, -1, 0, 0 (no box)", curve, objects},
        {"8", "number of knots *k* = order + *n* - 2, the knots", curve, objects},
        {"8", "*n*, the control points", curve, objects},
        {"8",
         "dimension, has weights, order in u, order in v, control points *n* in u, *m* in v, 0, 0",
         surface, objects},
        {"8", "box: 1, 0, 0, -1, 0, 0 (no box)", surface, objects},
        {"8", "number of knots in u, the knots in u", surface, objects},
        {"8", "number of knots in v, the knots in v", surface, objects},
        {"8", "*n* × *m*, the control points, v running first", surface, objects},
    };
    // Rows 6 to 9 have textures, a library and a plug-in.
    for (int row = 1; row <= 10; ++row)
        rows.push_back(
            row < 6 || row > 9
                ? CheckedRow{"9", std::to_string(row), material, objects}
                : CheckedRow{"9", std::to_string(row),
                             "GoldenMaterials, AreStoredAgainByteForByteButForWhatLaterKernelsDrop",
                             "ValueDocuments_test.cpp"});
    const std::vector<CheckedRow> failures = {
        {"10", "stream ends early", "StreamFormatSection10, StreamEndsEarly", ""},
        {"10", "class unknown, or not the asked one or derived from it",
         "StreamFormatSection10, WrongClass", ""},
        {"10", "class name of 64 bytes or more, or cut short",
         "StreamFormatSection10, WrongClassName", ""},
        {"10", "object or class number not given out, or the other kind's",
         "StreamFormatSection10, NumberNotGivenOut", ""},
        {"10", "more than 0x3FFFFFFE numbers", "CArchiveNumbers, EndAtTheLimitWhenLoading",
         "CArchiveObjects_test.cpp"},
        {"10", "count beyond what a vector can hold", "StreamFormatSection10, CountBeyondAVector",
         ""},
        {"10", "count beyond memory", "StreamFormatSection10, CountBeyondMemory", ""},
        {"10", "observer cancels", "StreamFormatSection10, ObserverCancels", ""},
        {"10", "archive is storing", "StreamFormatSection10, WrongDirection", ""},
    };
    rows.insert(rows.end(), failures.begin(), failures.end());
    return rows;
}

// The first cells of all tables of the page, each behind the number of its section.
std::vector<std::string> RowsOfThePage() {
    std::ifstream page(VERIDANE_SOURCE_FOLDER "/docs/stream-format.md");
    const std::regex heading("^## (\\d+)\\. .*");
    const std::regex row("^\\| (.*?) \\| .*");
    std::vector<std::string> rows;
    std::string section;
    bool isBehindHead = false;
    for (std::string line; std::getline(page, line);) {
        std::smatch parts;
        if (std::regex_match(line, parts, heading))
            section = parts[1];
        if (line.rfind("|---", 0) == 0)
            isBehindHead = true;
        else if (!std::regex_match(line, parts, row))
            isBehindHead = false;
        else if (isBehindHead)
            rows.push_back(section + ": " + std::string(parts[1]));
    }
    return rows;
}

std::string TextOf(const std::string& file) {
    for (const char* const folder : {"docs", "golden", "unit/serialize", "unit/platform/afx"}) {
        std::ifstream source(std::string(VERIDANE_SOURCE_FOLDER "/tests/") + folder + "/" + file);
        if (source)
            return {std::istreambuf_iterator<char>(source), std::istreambuf_iterator<char>()};
    }
    return "";
}

TEST(StreamFormatTables, EveryRowOfThePageIsChecked) {
    std::vector<std::string> checked;
    for (const CheckedRow& row : CheckedRows()) {
        checked.push_back(row.section + ": " + row.row);
        const std::string file = row.file.empty() ? "StreamFormatTables_test.cpp" : row.file;
        EXPECT_NE(TextOf(file).find("TEST(" + row.test + ")"), std::string::npos)
            << row.test << " is no test of " << file;
    }
    EXPECT_EQ(RowsOfThePage(), checked);
    EXPECT_EQ(checked.size(), 58u);
}

}  // namespace

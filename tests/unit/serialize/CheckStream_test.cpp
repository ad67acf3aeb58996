#include "serialize/CheckStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <ostream>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "mesh/VraMesh.h"
#include "serialize/ValueSerializers.h"
#include "support/ByteScript.h"
#include "support/CheckedDocuments.h"
#include "support/FindingMatchers.h"
#include "support/MemoryFile.h"
#include "support/MeshBuilders.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Vr::CheckCode;
using Vr::CheckDocument;
using Vr::CheckedObject;
using Vr::CheckFinding;
using Vr::CheckLimits;
using Vr::CheckReport;
using Vr::CheckSeverity;
using Vr::CheckStream;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;

CheckReport Check(const Bytes& bytes, const CheckLimits& limits = {}) {
    return CheckDocument(bytes.data(), bytes.size(), limits);
}

// ---- pieces of a stream ------------------------------------------------------------------------

// Offsets: tag 0, schema 2, length 4, name 6; behind them byte 13.
ByteScript ClassMesh(std::uint16_t schema = 16) {
    return ByteScript().NewClass(schema, "VraMesh", "class 1");
}

// A new class and a crease angle: the envelopes begin at byte 21.
ByteScript MeshStart(std::uint16_t schema = 16) {
    return ClassMesh(schema).Double(0.5, "crease angle");
}

ByteScript& Absent(ByteScript& script, int count) {
    return script.Raw(Bytes(static_cast<size_t>(count), 0), "absent arrays");
}

ByteScript& New(ByteScript& script, std::uint64_t number, std::uint64_t count) {
    return script.OneByte(1, "present").Qword(number, "array number, new").Qword(count, "count");
}

ByteScript& NewList(ByteScript& script, std::uint64_t number, std::uint8_t form,
                    std::uint64_t count) {
    return script.OneByte(1, "present")
        .Qword(number, "array number, new")
        .OneByte(form, "form")
        .Qword(count, "count");
}

ByteScript& Known(ByteScript& script, std::uint64_t number) {
    return script.OneByte(1, "present").Qword(number, "array number, known");
}

ByteScript& Filled(ByteScript& script, size_t byteCount) {
    return script.Raw(Bytes(byteCount, 0), "elements");
}

ByteScript& Numbers(ByteScript& script, std::initializer_list<std::uint64_t> numbers) {
    for (const std::uint64_t number : numbers)
        script.Qword(number, "number");
    return script;
}

// A mesh of two vertices, three normals and the triangles (0, 1, 1) and (1, 0, 0), up to the list of
// normal numbers.
ByteScript TwoTriangles() {
    ByteScript script = MeshStart();
    Filled(New(script, 1, 2), 48);                   // 21: vertices
    Filled(New(script, 2, 3), 72);                   // 86: normals
    Absent(script, 1);                               // 175: colours
    Numbers(New(script, 3, 2), {0, 1, 1, 1, 0, 0});  // 176: triangles
    return script;                                   // 241: normal numbers
}

// ---- safe documents ----------------------------------------------------------------------------

TEST(CheckDocument, NothingIsSafe) {
    const CheckReport report = Check({});
    EXPECT_TRUE(report.IsSafe());
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_EQ(report.readCount, 0u);
    EXPECT_TRUE(CheckDocument(nullptr, 0).IsSafe());
}

TEST(CheckDocument, CountsReadsObjectsAndArrays) {
    const auto [first, second] = SharedPair();
    const CheckReport report = Check(StoredObjects({first, nullptr, second, first}));
    EXPECT_TRUE(report.IsSafe());
    EXPECT_EQ(report.readCount, 4u);
    EXPECT_EQ(report.objectCount, 2u);
    EXPECT_EQ(report.arrayCount, 3u) << "one vertex array and two of triangles";
}

TEST(CheckDocument, EveryArrayInBothFormsIsSafe) {
    const Mesh mesh = FullSquare();
    mesh->SetColorIndexArray(PerVertex({{0, 0, 0}, {0, 0, 0}}));
    const Mesh other = FullSquare();
    other->SetNormalIndexArray(PerTriangle({0, 0}));
    const Bytes bytes = StoredObjects({mesh, other});
    const CheckReport report = Check(bytes);
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_EQ(report.arrayCount, 14u);
    EXPECT_TRUE(LoadsAsReported(bytes, report));
}

TEST(CheckDocument, BothClassesAndBigNumbersAreKnown) {
    std::vector<Mesh> objects;
    while (objects.size() < 33000)
        objects.emplace_back(objects.size() % 2 == 0 ? new VraMesh : new VraMeshPrimitive);
    objects.push_back(objects[32800]);
    const Bytes bytes = StoredObjects(objects);
    const CheckReport report = Check(bytes);
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_EQ(report.readCount, 33001u);
    EXPECT_EQ(report.objectCount, 33000u);
}

TEST(CheckDocument, ALongTagOfASmallNumberIsKnownToo) {
    const ByteScript script = MeshStart()
                                  .Raw(Bytes(7, 0), "absent arrays")
                                  .Word(0x7FFF, "long tag")
                                  .Dword(2, "object 2")
                                  .Word(0x7FFF, "long tag")
                                  .Dword(0, "null")
                                  .Word(0x7FFF, "long tag")
                                  .Dword(0x80000001, "class 1")
                                  .Raw(Bytes(15, 0), "body");
    const CheckReport report = Check(script.Bytes());
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_EQ(report.readCount, 4u);
    EXPECT_TRUE(LoadsAsReported(script.Bytes(), report));
}

TEST(CheckDocument, ListsOfAMeshWithoutTrianglesMayHaveAnyLength) {
    const Mesh mesh = NewPrimitive();
    mesh->SetNormalArray(Normals({{0, 0, 1}}));
    mesh->SetNormalIndexArray(PerTriangle({0, 0, 0}));
    const Bytes bytes = StoredObjects({mesh});
    const CheckReport report = Check(bytes);
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_TRUE(LoadsAsReported(bytes, report));
}

// A list that keeps its numbers while triangles go, as face deletion leaves it.
TEST(CheckDocument, APerTriangleNumberMayExceedTheTriangleCount) {
    const Mesh mesh = Box();
    mesh->CreateNormalPerTriangle();
    mesh->DeleteFacetFaces({0, 1, 2});
    mesh->MergeSameData();
    mesh->GetModifiableVertexIndexArray()->front() = {{1, 1, 2}};
    const Bytes bytes = StoredObjects({mesh});
    const CheckReport report = Check(bytes);
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_TRUE(LoadsAsReported(bytes, report));
}

struct SchemaCase {
    std::uint16_t schema;
    bool hasUVs;
};

class CheckedSchema : public ::testing::TestWithParam<SchemaCase> {};
INSTANTIATE_TEST_SUITE_P(
    CheckDocument, CheckedSchema,
    ::testing::Values(SchemaCase{0, false}, SchemaCase{1, false}, SchemaCase{2, true},
                      SchemaCase{9, true}, SchemaCase{10, false}, SchemaCase{11, false},
                      SchemaCase{12, true}, SchemaCase{16, true}, SchemaCase{19, true},
                      SchemaCase{20, true}, SchemaCase{21, true}, SchemaCase{0xFFFF, true}),
    [](const auto& instance) { return "Schema" + std::to_string(instance.param.schema); });

TEST_P(CheckedSchema, DecidesWhetherThereAreUVs) {
    ByteScript script = MeshStart(GetParam().schema);
    Absent(script, 6);
    if (GetParam().hasUVs)
        Filled(New(script, 1, 2), 32);
    script.Word(2, "object 2 again");
    const CheckReport report = Check(script.Bytes());
    EXPECT_TRUE(report.IsSafe());
    EXPECT_EQ(report.readCount, 2u);
    EXPECT_EQ(report.arrayCount, GetParam().hasUVs ? 1u : 0u);
    EXPECT_TRUE(LoadsAsReported(script.Bytes(), report));
}

TEST(CheckDocument, TheFirstObjectsSchemaDecidesForAll) {
    ByteScript script = MeshStart(11);
    Absent(script, 6).NewClass(16, "VraMeshPrimitive", "class 3").Double(0, "crease angle");
    Absent(script, 6);
    const CheckReport report = Check(script.Bytes());
    EXPECT_THAT(report.findings,
                ElementsAre(Finding(CheckCode::MixedSchemas, 29,
                                    "schema 16 does not count, since the first object has 11")));
    EXPECT_TRUE(report.IsSafe());
    EXPECT_TRUE(LoadsAsReported(script.Bytes(), report));
}

// ---- one document for each finding -------------------------------------------------------------

struct BadDocument {
    const char* name;
    ByteScript script;
    CheckCode code;
    uint64_t offset;
    std::string text;
};

void PrintTo(const BadDocument& document, std::ostream* stream) {
    *stream << document.name;
}

std::vector<BadDocument> GrammarFaults() {
    const std::string longName(64, 'n');
    return {
        {"CutTag", ByteScript().OneByte(7, "half a tag"), CheckCode::EndOfStream, 0,
         "the stream ends 1 bytes into a value of 2"},
        {"CutLongTag", ByteScript().Word(0x7FFF, "long tag").Word(1, "half"),
         CheckCode::EndOfStream, 2, "the stream ends 2 bytes into a value of 4"},
        {"CutSchema", ByteScript().Word(0xFFFF, "new class").OneByte(1, "half"),
         CheckCode::EndOfStream, 2, "the stream ends 1 bytes into a value of 2"},
        {"CutCreaseAngle", ClassMesh().Dword(0, "half"), CheckCode::EndOfStream, 13,
         "the stream ends 4 bytes into a value of 8"},
        {"CutPresenceByte", MeshStart(), CheckCode::EndOfStream, 21,
         "the stream ends 0 bytes into a value of 1"},
        {"CutName", ByteScript().Raw(ClassMesh().Prefix(12), "class, name cut"),
         CheckCode::ClassName, 4, "a class name of 7 bytes"},
        {"LongName", ByteScript().NewClass(16, longName, "class 1"), CheckCode::ClassName, 4,
         "a class name of 64 bytes"},
        {"UnknownClass", ByteScript().NewClass(16, "VraMesg", "class 1"), CheckCode::UnknownClass,
         0, "class \"VraMesg\" is no mesh class"},
        {"ClassOfAnotherCase", ByteScript().NewClass(16, "vraMesh", "class 1"),
         CheckCode::UnknownClass, 0, "class \"vraMesh\" is no mesh class"},
        {"NameWithAnEnd",
         ByteScript().NewClass(16, std::string_view("VraMesh\0\x01", 9), "class 1"),
         CheckCode::UnknownClass, 0, "class \"VraMesh??\" is no mesh class"},
        {"RegisteredClassThatIsNoMesh", ByteScript().NewClass(16, "CObject", "class 1"),
         CheckCode::UnknownClass, 0, "class \"CObject\" is no mesh class"},
        {"ObjectNotStored", ByteScript().Word(0, "null").Word(1, "object 1"),
         CheckCode::ObjectNumber, 2, "number 1 is no object's"},
        {"ObjectNumberOfAClass",
         MeshStart().Raw(Bytes(7, 0), "absent arrays").Word(1, "class 1 as an object"),
         CheckCode::ObjectNumber, 28, "number 1 is no object's"},
        {"ClassNumberZero", ByteScript().Word(0x8000, "class 0"), CheckCode::ClassNumber, 0,
         "number 0 is no class's"},
        {"ClassNumberOfAnObject",
         MeshStart().Raw(Bytes(7, 0), "absent arrays").Word(0x8002, "object 2"),
         CheckCode::ClassNumber, 28, "number 2 is no class's"},
        {"LongClassNumber", ByteScript().Word(0x7FFF, "long tag").Dword(0xFFFFFFFF, "class"),
         CheckCode::ClassNumber, 0, "number 2147483647 is no class's"},
        {"NewerSchema", MeshStart(17).Raw(Bytes(7, 0), "absent arrays"), CheckCode::NewerSchema, 2,
         "schema 17 is newer than 16"},
    };
}

ByteScript With(const ByteScript& start, const std::function<void(ByteScript&)>& add) {
    ByteScript script = start;
    add(script);
    return script;
}

std::vector<BadDocument> BodyFaults() {
    return {
        {"PresenceByte", Absent(MeshStart().OneByte(2, "presence"), 6), CheckCode::PresenceByte, 21,
         "presence byte 2 stands for no array"},
        {"ArrayNumberOutOfTurn", With(MeshStart(), [](ByteScript& s) { Absent(New(s, 2, 0), 6); }),
         CheckCode::ArrayNumber, 22, "a new array has number 2 instead of 1"},
        {"ArrayNumberZero", With(MeshStart(), [](ByteScript& s) { Absent(New(s, 0, 0), 6); }),
         CheckCode::ArrayNumber, 22, "a new array has number 0 instead of 1"},
        {"NormalsThatAreVertices",
         With(MeshStart(), [](ByteScript& s) { Absent(Known(New(s, 1, 0), 1), 5); }),
         CheckCode::ElementType, 39, "array 1 holds vertices and is used for normals"},
        {"ListThatIsTriangles",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 3);
                  Absent(Known(New(s, 1, 0), 1), 2);
              }),
         CheckCode::ElementType, 42, "array 1 holds triangles and is used for index entries"},
        {"UVsThatAreColours",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 2);
                  Absent(New(s, 1, 0), 3);
                  Known(s, 1);
              }),
         CheckCode::ElementType, 44, "array 1 holds colours and is used for UVs"},
        {"FormByte",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 4);
                  Absent(NewList(s, 1, 2, 0), 2);
              }),
         CheckCode::FormByte, 34, "form byte 2 stands for the per-triangle form"},
        {"MoreVerticesThanBytes",
         With(MeshStart(), [](ByteScript& s) { Filled(New(s, 1, 2), 47); }),
         CheckCode::ElementCount, 30,
         "2 vertices of 24 bytes do not fit the 47 bytes that are left"},
        {"CountThatOverflows",
         With(MeshStart(), [](ByteScript& s) { Filled(New(s, 1, 0x0AAAAAAAAAAAAAABu), 8); }),
         CheckCode::ElementCount, 30,
         "768614336404564651 vertices of 24 bytes do not fit the 8 bytes that are left"},
        {"MoreNormalsThanBytes",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 1);
                  Filled(New(s, 1, 1), 23);
              }),
         CheckCode::ElementCount, 31,
         "1 normals of 24 bytes do not fit the 23 bytes that are left"},
        {"MoreColoursThanBytes",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 2);
                  Filled(New(s, 1, 3), 11);
              }),
         CheckCode::UnnoticedCount, 32,
         "3 colours of 4 bytes do not fit the 11 bytes that are left"},
        {"MoreTrianglesThanBytes",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 3);
                  Filled(New(s, 1, 2), 47);
              }),
         CheckCode::ElementCount, 33,
         "2 triangles of 24 bytes do not fit the 47 bytes that are left"},
        {"MoreTriplesThanBytes",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 4);
                  Filled(NewList(s, 1, 0, 2), 47);
              }),
         CheckCode::ElementCount, 35,
         "2 index entries of 24 bytes do not fit the 47 bytes that are left"},
        {"MoreNumbersThanBytes",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 5);
                  Filled(NewList(s, 1, 1, 2), 15);
              }),
         CheckCode::ElementCount, 36,
         "2 index entries of 8 bytes do not fit the 15 bytes that are left"},
        {"MoreUVsThanBytes",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 6);
                  Filled(New(s, 1, 2), 31);
              }),
         CheckCode::UnnoticedCount, 36, "2 UVs of 16 bytes do not fit the 31 bytes that are left"},
        {"VertexNumber",
         With(MeshStart(),
              [](ByteScript& s) {
                  Filled(New(s, 1, 2), 48);
                  Absent(s, 2);
                  Numbers(New(s, 2, 2), {0, 1, 0, 0, 2, 9});
                  Absent(s, 3);
              }),
         CheckCode::VertexNumber, 137, "vertex number 2 where there are 2"},
        {"GreatestVertexNumber",
         With(MeshStart(),
              [](ByteScript& s) {
                  Filled(New(s, 1, 2), 48);
                  Absent(s, 2);
                  Numbers(New(s, 2, 1), {0, 1, ~0ULL});
                  Absent(s, 3);
              }),
         CheckCode::VertexNumber, 121, "vertex number 18446744073709551615 where there are 2"},
        {"TrianglesWithoutVertices",
         With(MeshStart(),
              [](ByteScript& s) {
                  Absent(s, 3);
                  Absent(Numbers(New(s, 1, 1), {0, 0, 0}), 3);
              }),
         CheckCode::VertexNumber, 41, "vertex number 0 where there are 0"},
        {"NormalNumber",
         With(TwoTriangles(),
              [](ByteScript& s) {
                  Absent(Numbers(NewList(s, 4, 1, 2), {2, 3}), 2);
              }),
         CheckCode::NormalNumber, 267, "normal number 3 where there are 3"},
        {"NormalNumberOfACorner",
         With(TwoTriangles(),
              [](ByteScript& s) {
                  Absent(Numbers(NewList(s, 4, 0, 2), {0, 1, 2, 2, 1, 4}), 2);
              }),
         CheckCode::NormalNumber, 299, "normal number 4 where there are 3"},
        {"ColourNumberWithoutColours",
         With(TwoTriangles(),
              [](ByteScript& s) {
                  Absent(s, 1);
                  Absent(Numbers(NewList(s, 4, 1, 2), {0, 0}), 1);
              }),
         CheckCode::ColorNumber, 260, "colour number 0 where there are 0"},
        {"ShortList",
         With(TwoTriangles(), [](ByteScript& s) { Absent(Numbers(NewList(s, 4, 1, 1), {0}), 2); }),
         CheckCode::NormalListLength, 251, "1 entries of normal numbers for 2 triangles"},
        {"LongList",
         With(TwoTriangles(),
              [](ByteScript& s) {
                  Absent(Numbers(NewList(s, 4, 0, 3), {0, 0, 0, 0, 0, 0, 0, 0, 0}), 2);
              }),
         CheckCode::NormalListLength, 251, "3 entries of normal numbers for 2 triangles"},
        {"EmptyColourList",
         With(TwoTriangles(),
              [](ByteScript& s) {
                  Absent(s, 1);
                  Absent(NewList(s, 4, 1, 0), 1);
              }),
         CheckCode::ColorListLength, 252, "0 entries of colour numbers for 2 triangles"},
    };
}

class CheckedFault : public ::testing::TestWithParam<BadDocument> {};
INSTANTIATE_TEST_SUITE_P(Grammar, CheckedFault, ::testing::ValuesIn(GrammarFaults()),
                         [](const auto& instance) { return std::string(instance.param.name); });
INSTANTIATE_TEST_SUITE_P(Body, CheckedFault, ::testing::ValuesIn(BodyFaults()),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(CheckedFault, IsTheOnlyFinding) {
    const CheckReport report = Check(GetParam().script.Bytes());
    EXPECT_THAT(report.findings,
                ElementsAre(Finding(GetParam().code, GetParam().offset, GetParam().text)));
    EXPECT_EQ(report.findingCount, 1u);
    EXPECT_EQ(report.worst, Vr::SeverityOf(GetParam().code));
    EXPECT_EQ(report.IsSafe(), Vr::SeverityOf(GetParam().code) == CheckSeverity::Note);
}

TEST_P(CheckedFault, LoadsAsItsSeveritySays) {
    const Bytes& bytes = GetParam().script.Bytes();
    EXPECT_TRUE(LoadsAsReported(bytes, Check(bytes)));
}

// ---- several findings, references, wanted classes ----------------------------------------------

TEST(CheckDocument, EveryArrayOfASharedListIsComparedWithEachOwnersValues) {
    const Mesh first = SingleTriangle();  // three vertices
    const Mesh second = NewPrimitive({{0, 0, 0}, {1, 0, 0}}, {});
    second->SetVertexIndexArray(first->GetModifiableVertexIndexArray());
    EXPECT_THAT(Check(StoredObjects({first})).findings, IsEmpty());
    const Bytes bytes = StoredObjects({first, second});
    // From the end: UVs, colour and normal numbers absent, then the array number.
    EXPECT_THAT(Check(bytes).findings,
                ElementsAre(Finding(CheckCode::VertexNumber, bytes.size() - 3 - 8,
                                    "vertex number 2 where there are 2")));
}

TEST(CheckDocument, ASharedListIsComparedWithEachOwnersTriangles) {
    const Mesh first = FullSquare();
    const Mesh second = SingleTriangle();
    second->SetNormalArray(first->GetModifiableNormalArray());
    second->SetNormalIndexArray(first->GetModifiableNormalIndexArray());
    const Bytes bytes = StoredObjects({first, second});
    EXPECT_THAT(Check(bytes).findings,
                ElementsAre(Finding(CheckCode::NormalListLength, bytes.size() - 2 - 8,
                                    "2 entries of normal numbers for 1 triangles")));
}

TEST(CheckDocument, OneListOfNormalsAndColoursIsComparedWithBoth) {
    const Mesh mesh = Square();
    mesh->SetNormalArray(Normals({{0, 0, 1}, {0, 0, 2}}));
    mesh->SetColorArray(Colors({1}));
    mesh->SetNormalIndexArray(PerTriangle({0, 1}));
    mesh->SetColorIndexArray(mesh->GetModifiableNormalIndexArray());
    const Bytes bytes = StoredObjects({mesh});
    EXPECT_THAT(Check(bytes).findings,
                ElementsAre(Finding(CheckCode::ColorNumber, bytes.size() - 1 - 8,
                                    "colour number 1 where there are 1")));
}

TEST(CheckDocument, GoesOnBehindAFindingThatLeavesTheGrammarWhole) {
    ByteScript script = MeshStart();
    Known(New(script, 1, 0), 1);                // 21: vertices, then normals that are these
    Absent(script, 1);                          // colours
    Numbers(New(script, 2, 1), {0, 0, 5});      // 48: triangles
    Numbers(NewList(script, 3, 1, 2), {7, 8});  // 89: normal numbers
    Absent(script, 2);
    const CheckReport report = Check(script.Bytes());
    EXPECT_THAT(
        report.findings,
        ElementsAre(
            Finding(CheckCode::ElementType, 39, "array 1 holds vertices and is used for normals"),
            Finding(CheckCode::VertexNumber, 65, "vertex number 0 where there are 0"),
            Finding(CheckCode::NormalListLength, 99,
                    "2 entries of normal numbers for 1 triangles")))
        << "normal numbers cannot be compared with an array that is none of normals";
    EXPECT_EQ(report.worst, CheckSeverity::Unsafe);
    EXPECT_EQ(report.readCount, 1u);
}

TEST(CheckStream, AnObjectOfAnotherClassThanWanted) {
    const Bytes bytes = StoredObjects({NewPrimitive(), nullptr});
    CheckStream wrong(bytes.data(), bytes.size());
    EXPECT_EQ(wrong.Object(RUNTIME_CLASS(VraMesh)), CheckedObject::None);
    EXPECT_THAT(wrong.Result().findings,
                ElementsAre(Finding(CheckCode::WrongClass, 0,
                                    "an object of VraMeshPrimitive in place of VraMesh")));
    EXPECT_EQ(wrong.Object(), CheckedObject::None) << "nothing is checked behind it";
    EXPECT_EQ(wrong.Result().findingCount, 1u);

    CheckStream right(bytes.data(), bytes.size());
    EXPECT_EQ(right.Object(RUNTIME_CLASS(VraMeshPrimitive)), CheckedObject::New);
    EXPECT_EQ(right.Object(RUNTIME_CLASS(VraMesh)), CheckedObject::Null);
}

TEST(CheckStream, AKnownObjectOfAnotherClassThanWanted) {
    const Mesh mesh = NewPrimitive();
    const Bytes bytes = StoredObjects({mesh, mesh});
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_EQ(stream.Object(), CheckedObject::New);
    EXPECT_EQ(stream.Object(RUNTIME_CLASS(VraMesh)), CheckedObject::None);
    EXPECT_THAT(stream.Result().findings,
                ElementsAre(Field(&CheckFinding::code, CheckCode::WrongClass)));
}

TEST(CheckStream, ADerivedObjectIsWanted) {
    const Mesh mesh(new VraMesh);
    const Bytes bytes = StoredObjects({mesh, mesh});
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_EQ(stream.Object(RUNTIME_CLASS(VraMeshPrimitive)), CheckedObject::New);
    EXPECT_EQ(stream.Object(RUNTIME_CLASS(VraMeshPrimitive)), CheckedObject::Known);
    EXPECT_TRUE(stream.Result().IsSafe());
}

// ---- limits ------------------------------------------------------------------------------------

TEST(CheckLimits, AreTheStatedOnesUnlessTheHostSaysOtherwise) {
    const CheckLimits limits;
    EXPECT_EQ(limits.objects, 1048576u);
    EXPECT_EQ(limits.arrays, 8388608u);
    EXPECT_EQ(limits.findings, 100u);
}

TEST(CheckLimits, ObjectsAreCountedWithoutNullAndRepeatedOnes) {
    const Mesh mesh = NewPrimitive();
    const Bytes bytes = StoredObjects({mesh, nullptr, mesh, NewPrimitive(), NewPrimitive()});
    CheckLimits limits;
    limits.objects = 3;
    EXPECT_TRUE(Check(bytes, limits).IsSafe());
    limits.objects = 2;
    const CheckReport report = Check(bytes, limits);
    EXPECT_THAT(report.findings, ElementsAre(Finding(CheckCode::ObjectLimit, bytes.size() - 17,
                                                     "more than 2 objects")));
    EXPECT_FALSE(report.IsSafe());
    EXPECT_EQ(report.objectCount, 2u);
    EXPECT_EQ(report.readCount, 4u);
}

TEST(CheckLimits, ArraysAreCountedOnceEach) {
    const Bytes bytes = StoredObjects({FullSquare()});
    CheckLimits limits;
    limits.arrays = 7;
    EXPECT_TRUE(Check(bytes, limits).IsSafe());
    limits.arrays = 6;
    const CheckReport report = Check(bytes, limits);
    ASSERT_THAT(report.findings, SizeIs(1));
    EXPECT_EQ(report.findings[0].code, CheckCode::ArrayLimit);
    EXPECT_EQ(report.findings[0].text, "more than 6 arrays");
    EXPECT_EQ(report.arrayCount, 6u);
}

TEST(CheckLimits, FindingsBeyondTheirLimitAreCountedAndWeighed) {
    ByteScript script =
        MeshStart().OneByte(3, "presence").OneByte(4, "presence").OneByte(5, "presence");
    Absent(script, 4).Word(9, "no object");
    CheckLimits limits;
    limits.findings = 2;
    const CheckReport report = Check(script.Bytes(), limits);
    EXPECT_THAT(report.findings, ElementsAre(Field(&CheckFinding::code, CheckCode::PresenceByte),
                                             Field(&CheckFinding::code, CheckCode::PresenceByte)));
    EXPECT_EQ(report.findingCount, 4u);
    EXPECT_EQ(report.worst, CheckSeverity::Invalid);
    EXPECT_FALSE(report.IsSafe());
}

// ---- a host's own values -----------------------------------------------------------------------

TEST(CheckStream, ReadsTheHostsOwnValues) {
    const ByteScript script = ByteScript()
                                  .Dword(0x4D445256, "magic")
                                  .Double(2.5, "scale")
                                  .Raw({1, 2, 3}, "what the host does not look at")
                                  .Qword(2, "length of a string")
                                  .Word('h', "h")
                                  .Word('i', "i")
                                  .OneByte(9, "end");
    CheckStream stream(script.Bytes().data(), script.Bytes().size());
    DWORD magic = 0;
    double scale = 0;
    BYTE end = 0;
    EXPECT_TRUE(stream.Value(magic));
    EXPECT_TRUE(stream.Value(scale));
    EXPECT_TRUE(stream.Skip(3));
    EXPECT_EQ(stream.Position(), 15u);
    EXPECT_EQ(stream.Remaining(), 13u);
    EXPECT_TRUE(stream.WideString());
    EXPECT_TRUE(stream.Bytes(&end, 1));
    EXPECT_EQ(std::tie(magic, scale, end), std::make_tuple(0x4D445256u, 2.5, BYTE{9}));
    EXPECT_TRUE(stream.CanGoOn());
    EXPECT_TRUE(stream.Result().IsSafe());
}

TEST(CheckStream, AStringThatTheOperatorsStoredIsPassedOver) {
    using Vr::operator<<;
    const std::wstring text = L"\x00E4\x20AC end";
    const Bytes bytes =
        BytesOf([&](Vr::VrmArchive& archive) { archive << text << static_cast<BYTE>(7); });
    CheckStream stream(bytes.data(), bytes.size());
    BYTE behind = 0;
    EXPECT_TRUE(stream.WideString());
    EXPECT_TRUE(stream.Value(behind));
    EXPECT_EQ(behind, 7);
}

TEST(CheckStream, AStringBeyondTheStream) {
    const ByteScript script =
        ByteScript().OneByte(0, "x").Qword(2, "length").Raw({1, 2, 3}, "units");
    CheckStream stream(script.Bytes().data(), script.Bytes().size());
    EXPECT_TRUE(stream.Skip(1));
    EXPECT_FALSE(stream.WideString());
    EXPECT_THAT(stream.Result().findings,
                ElementsAre(Finding(CheckCode::StringLength, 1,
                                    "a string of 2 characters does not fit the 3 bytes that are "
                                    "left")));
}

TEST(CheckStream, AValueBeyondTheStreamChangesNothing) {
    const Bytes bytes = {1, 2, 3};
    for (const int step : {0, 1, 2}) {
        CheckStream stream(bytes.data(), bytes.size());
        DWORD value = 77;
        const bool isThere = step == 0   ? stream.Value(value)
                             : step == 1 ? stream.Bytes(&value, 4)
                                         : stream.Skip(4);
        EXPECT_FALSE(isThere);
        EXPECT_EQ(value, 77u);
        EXPECT_FALSE(stream.CanGoOn());
        EXPECT_FALSE(stream.Skip(1));
        EXPECT_THAT(stream.Result().findings,
                    ElementsAre(Finding(CheckCode::EndOfStream, 0,
                                        "the stream ends 3 bytes into a value of 4")));
    }
}

TEST(CheckStream, FindingsOfTheHostStandAtTheValueReadLast) {
    const Bytes bytes = {1, 2, 3, 4};
    CheckStream stream(bytes.data(), bytes.size());
    BYTE value = 0;
    stream.Value(value);
    stream.Value(value);
    stream.Report("2 is odd");
    EXPECT_TRUE(stream.CanGoOn());
    stream.Value(value);
    stream.Refuse("3 is enough");
    EXPECT_FALSE(stream.CanGoOn());
    EXPECT_FALSE(stream.Value(value));
    EXPECT_THAT(stream.Result().findings,
                ElementsAre(Finding(CheckCode::HostContent, 1, "2 is odd"),
                            Finding(CheckCode::HostContent, 2, "3 is enough")));
    EXPECT_FALSE(stream.Result().IsSafe());
}

// ---- files -------------------------------------------------------------------------------------

TEST(CheckDocumentFile, BeginsAtTheFilesPositionAndPutsItBack) {
    Bytes bytes = {9, 9, 9};
    const Bytes row = StoredObjects({SingleTriangle()});
    bytes.insert(bytes.end(), row.begin(), row.end());
    bytes.push_back(1);  // half a tag
    MemoryFile file(bytes);
    file.Seek(3, CFile::begin);
    const CheckReport report = CheckDocument(file);
    EXPECT_THAT(report.findings, ElementsAre(Finding(CheckCode::EndOfStream, bytes.size() - 1,
                                                     "the stream ends 1 bytes into a value of 2")));
    EXPECT_EQ(report.readCount, 1u);
    EXPECT_EQ(file.GetPosition(), 3u);
}

TEST(CheckDocumentFile, APositionBehindTheEndIsTheEnd) {
    MemoryFile file(Bytes{1, 2});
    file.Seek(5, CFile::begin);
    EXPECT_TRUE(CheckDocument(file).IsSafe());
    EXPECT_EQ(file.GetPosition(), 5u);
}

// Larger than the piece that is read at once, and read as little at a time as a pipe may give. The
// numbers out of range stand in the first and in the last piece, the greatest one in the first.
TEST(CheckDocumentFile, ManyPiecesSayWhatOneSays) {
    const Mesh mesh = Fan(30000);
    mesh->SetColorArray(Colors({1, 2, 3}));
    mesh->SetUVArray(std::make_shared<VraMeshPrimitive::UVArray>(100000));
    (*mesh->GetModifiableVertexIndexArray())[7] = {{0, 40000, 1}};
    (*mesh->GetModifiableVertexIndexArray())[29999] = {{0, 1, 30002}};
    const Mesh shared = Square();
    shared->SetVertexIndexArray(mesh->GetModifiableVertexIndexArray());
    const Bytes bytes = StoredObjects({mesh, shared});
    const CheckReport whole = Check(bytes);
    ASSERT_THAT(whole.findings, SizeIs(2));
    EXPECT_EQ(whole.findings[0].text, "vertex number 40000 where there are 30002");
    EXPECT_EQ(whole.findings[1].text, "vertex number 40000 where there are 4");
    for (const UINT largestRead : {1000000u, 65536u, 4099u, 7u}) {
        MemoryFile file(bytes);
        file.LimitReads(largestRead);
        const CheckReport report = CheckDocument(file);
        EXPECT_THAT(report.findings,
                    ElementsAre(Finding(CheckCode::VertexNumber, whole.findings[0].offset,
                                        whole.findings[0].text),
                                Finding(CheckCode::VertexNumber, whole.findings[1].offset,
                                        whole.findings[1].text)));
        EXPECT_EQ(report.readCount, 2u);
    }
}

TEST(CheckDocumentFile, CoordinatesAreNotRead) {
    const Mesh mesh = NewPrimitive();
    mesh->SetVertexArray(std::make_shared<VraMeshPrimitive::VertexArray>(1000000));
    MemoryFile file(StoredObjects({mesh}));
    EXPECT_TRUE(CheckDocument(file).IsSafe());
    EXPECT_LE(file.ReadCalls(), 3u);
}

// A file that says it is longer than it is.
class ShrinkingFile : public MemoryFile {
public:
    using MemoryFile::MemoryFile;
    ULONGLONG GetLength() const override { return MemoryFile::GetLength() + 1000; }
};

TEST(CheckDocumentFile, AFileShorterThanItSaysEndsThere) {
    const ByteScript script = MeshStart();
    ShrinkingFile file(script.Bytes());
    EXPECT_THAT(CheckDocument(file).findings,
                ElementsAre(Finding(CheckCode::EndOfStream, 21,
                                    "the stream ends 0 bytes into a value of 1")));
}

TEST(CheckDocumentFile, WhatTheFileThrowsReachesTheCaller) {
    MemoryFile file(StoredObjects({SingleTriangle()}));
    file.FailRead(1);
    EXPECT_EQ(CaughtFrom([&] { (void)CheckDocument(file); }),
              FileException(CFileException::hardIO));
}

// ---- names -------------------------------------------------------------------------------------

TEST(CheckNames, EveryCodeHasANameAndASeverity) {
    std::set<std::string> names;
    for (const int number : {1,  2,  3,  4,  5,  6,  7,  8,  20, 21, 22, 23, 24, 25,
                             26, 27, 28, 29, 30, 40, 41, 50, 51, 52, 53, 60, 61}) {
        names.insert(Vr::NameOf(static_cast<CheckCode>(number)));
    }
    EXPECT_THAT(names, SizeIs(27));
    EXPECT_EQ(names.count("unknown-code"), 0u);
    EXPECT_STREQ(Vr::NameOf(CheckCode::VertexNumber), "vertex-number");
    EXPECT_STREQ(Vr::NameOf(static_cast<CheckCode>(9)), "unknown-code");
    EXPECT_EQ(Vr::SeverityOf(static_cast<CheckCode>(9)), CheckSeverity::Unsafe);
}

TEST(CheckNames, SeveritiesAscend) {
    EXPECT_STREQ(Vr::NameOf(CheckSeverity::Note), "note");
    EXPECT_STREQ(Vr::NameOf(CheckSeverity::Suspicious), "suspicious");
    EXPECT_STREQ(Vr::NameOf(CheckSeverity::Invalid), "invalid");
    EXPECT_STREQ(Vr::NameOf(CheckSeverity::Unsafe), "unsafe");
    EXPECT_LT(CheckSeverity::Note, CheckSeverity::Suspicious);
    EXPECT_LT(CheckSeverity::Suspicious, CheckSeverity::Invalid);
    EXPECT_LT(CheckSeverity::Invalid, CheckSeverity::Unsafe);
}

// ---- damage ------------------------------------------------------------------------------------

std::vector<std::pair<std::string, Bytes>> SmallDocuments() {
    const Mesh lists = Square();
    lists->SetNormalArray(Normals({{0, 0, 1}, {1, 0, 0}}));
    lists->SetNormalIndexArray(PerVertex({{0, 1, 0}, {1, 0, 1}}));
    lists->SetColorArray(Colors({1, 2}));
    lists->SetColorIndexArray(PerTriangle({0, 1}));
    const auto [first, second] = SharedPair();
    const Mesh full = FullSquare();
    ByteScript old = MeshStart(10);
    Absent(old, 6).Word(2, "again").Word(0x8001, "class 1").Raw(Bytes(14, 0), "body");
    return {{"empty", StoredObjects({Mesh(new VraMesh)})},
            {"lists", StoredObjects({lists})},
            {"pair", StoredObjects({first, nullptr, second, first})},
            {"full", StoredObjects({full, full})},
            {"old", old.Bytes()}};
}

class DamagedDocument : public ::testing::TestWithParam<std::pair<std::string, Bytes>> {};
INSTANTIATE_TEST_SUITE_P(Checked, DamagedDocument, ::testing::ValuesIn(SmallDocuments()),
                         [](const auto& instance) { return instance.param.first; });

TEST_P(DamagedDocument, WithoutDamageIsSafe) {
    const CheckReport report = Check(GetParam().second);
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_TRUE(LoadsAsReported(GetParam().second, report));
}

TEST_P(DamagedDocument, EveryTruncationLoadsAsReported) {
    const Bytes& bytes = GetParam().second;
    for (size_t size = 1; size < bytes.size(); ++size) {
        const Bytes cut(bytes.begin(), bytes.begin() + static_cast<long>(size));
        const CheckReport report = Check(cut);
        ASSERT_TRUE(LoadsAsReported(cut, report)) << size << " bytes";
        // Whole objects may be left; anything else is noticed.
        ASSERT_TRUE(!report.IsSafe() || report.readCount > 0) << size << " bytes";
    }
}

TEST_P(DamagedDocument, EveryFlippedBitLoadsAsReported) {
    Bytes bytes = GetParam().second;
    size_t safeCount = 0;
    for (size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
        const auto mask = static_cast<BYTE>(1u << bit % 8);
        bytes[bit / 8] ^= mask;
        const CheckReport report = Check(bytes);
        ASSERT_TRUE(LoadsAsReported(bytes, report)) << "bit " << bit;
        safeCount += report.IsSafe();
        bytes[bit / 8] ^= mask;
    }
    EXPECT_GE(safeCount, 64u) << "a crease angle may be anything";
    EXPECT_LT(safeCount, 8 * bytes.size() - 64) << "a class name may not";
}

}  // namespace

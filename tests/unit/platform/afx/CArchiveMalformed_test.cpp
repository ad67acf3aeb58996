// Streams that no writer makes: each ends in the right exception, or is accepted where a reader
// need not insist.
#include <afx.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "ExceptionMatchers.h"
#include "TestClasses.h"
#include "support/ByteScript.h"
#include "support/MemoryFile.h"

namespace {

using Vr::test::ByteScript;
using Vr::test::MemoryFile;

constexpr char kNameOf63[] = "BBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBB";
constexpr char kNameOf64[] = "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";
static_assert(sizeof(kNameOf63) == 63 + 1 && sizeof(kNameOf64) == 64 + 1, "count of letters");

CRuntimeClass RecordOf(LPCSTR name, CObject*(PASCAL* create)()) {
    return {name, static_cast<int>(sizeof(CTestEmpty)), 3, create, &CObject::GetThisClass, nullptr};
}

// Registered, so that the length alone tells them from unknown classes.
CRuntimeClass classOf63 = RecordOf(kNameOf63, &CTestEmpty::CreateObject);
CRuntimeClass classOf64 = RecordOf(kNameOf64, &CTestEmpty::CreateObject);
CRuntimeClass classUncreatable = RecordOf("CUncreatable", nullptr);
const AFX_CLASSINIT registrationOf63(&classOf63);
const AFX_CLASSINIT registrationOf64(&classOf64);
const AFX_CLASSINIT registrationUncreatable(&classUncreatable);

using Wanted = CRuntimeClass*(PASCAL*)();

CRuntimeClass* PASCAL Any() {
    return nullptr;
}

struct MalformedStream {
    const char* name;
    ByteScript script;
    // The class wanted from each read; all but the last read succeed.
    std::vector<Wanted> wanted;
    Thrown expected;
};

void PrintTo(const MalformedStream& malformed, std::ostream* stream) {
    *stream << malformed.name;
}

ByteScript Hex(std::string_view digits) {
    return ByteScript().Hex(digits, "malformed");
}

// "CTestItem" of schema 3 with the body 0x11223344.
ByteScript OneItem() {
    return ByteScript().NewClass(3, "CTestItem", "class number 1").Dword(0x11223344, "body");
}

ByteScript OneMesh() {
    return ByteScript()
        .NewClass(16, "CTestMesh", "class number 1")
        .Double(0.0, "crease angle")
        .Hex("00000000000000", "seven absent arrays");
}

std::vector<MalformedStream> MalformedStreams() {
    const Thrown endOfFile = ArchiveFailure(CArchiveException::endOfFile);
    const Thrown badIndex = ArchiveFailure(CArchiveException::badIndex, "mesh.doc");
    const Thrown badClass = ArchiveFailure(CArchiveException::badClass, "mesh.doc");
    const Thrown badSchema = ArchiveFailure(CArchiveException::badSchema, "mesh.doc");
    const Wanted node = &CTestNode::GetThisClass;
    const Wanted item = &CTestItem::GetThisClass;
    return {
        {"Empty", Hex(""), {Any}, endOfFile},
        {"HalfATag", Hex("01"), {Any}, endOfFile},
        {"ObjectNumberBeforeAny", Hex("0100"), {Any}, badIndex},
        {"ClassNumberBeforeAny", Hex("0180"), {Any}, badIndex},
        {"ClassNumberZero", Hex("0080"), {Any}, badIndex},
        {"LongClassNumberZero", Hex("ff7f 00000080"), {Any}, badIndex},
        {"LongObjectNumberTooLarge", Hex("ff7f 00000100"), {Any}, badIndex},
        {"LargestObjectNumber", Hex("ff7f ffffff7f"), {Any}, badIndex},
        // Deliberate: all ones mean a new class as the first word only, not inside a long tag.
        {"LargestClassNumber", Hex("ff7f ffffffff"), {Any}, badIndex},
        {"LongTagCut", Hex("ff7f 0100"), {Any}, endOfFile},
        {"SchemaCut", Hex("ffff 03"), {Any}, endOfFile},
        {"NameLengthMissing", Hex("ffff 0300"), {Any}, endOfFile},
        {"NameLengthCut", Hex("ffff 0300 09"), {Any}, endOfFile},
        {"NameMissing", Hex("ffff 0300 0900"), {Any}, badClass},
        {"NameCut", Hex("ffff 0300 0900 43546573"), {Any}, badClass},
        {"NameOf64Letters", ByteScript().NewClass(3, kNameOf64, "too long"), {Any}, badClass},
        {"NameLengthHuge", Hex("ffff 0300 ffff"), {Any}, badClass},
        {"UnknownClass", ByteScript().NewClass(1, "CUnknown", "no such class"), {Any}, badClass},
        {"NameInOtherCase",
         ByteScript().NewClass(3, "CTESTITEM", "no such class"),
         {Any},
         badClass},
        {"EmptyName", Hex("ffff 0300 0000"), {Any}, badClass},
        {"NameWithATerminator",
         ByteScript().NewClass(3, std::string_view("CTestItem\0", 10), "no such class"),
         {Any},
         badClass},
        {"SchemaDiffersNotVersionable",
         ByteScript().NewClass(2, "CTestNode", "schema 1").OneByte(1, "value").Word(0, "null"),
         {Any},
         badSchema},
        {"WrongClass", OneItem(), {node}, badClass},
        {"BaseWhereDerivedIsWanted", OneMesh(), {&CTestDerivedMesh::GetThisClass}, badClass},
        {"WrongSchemaAndWrongClass",
         ByteScript().NewClass(2, "CTestNode", "schema 1").OneByte(1, "value").Word(0, "null"),
         {item},
         badSchema},
        {"ReferenceToAnObjectOfAWrongClass", OneItem().Word(2, "the item"), {Any, node}, badClass},
        {"KnownClassThatIsNotWanted", OneItem().Word(0x8001, "CTestItem"), {Any, node}, badClass},
        // Which cause real readers give is not known; numbers of the wrong kind are wrong numbers
        // here.
        {"ObjectNumberOfAClass", OneItem().Word(1, "CTestItem"), {Any, Any}, badIndex},
        {"ClassNumberOfAnObject", OneItem().Word(0x8002, "the item"), {Any, Any}, badIndex},
        {"NextObjectNumber", OneItem().Word(3, "not given out"), {Any, Any}, badIndex},
        {"NextClassNumber", OneItem().Word(0x8003, "not given out"), {Any, Any}, badIndex},
        {"BodyCut",
         ByteScript().NewClass(3, "CTestItem", "class number 1").Word(0x3344, "half a body"),
         {Any},
         endOfFile},
        {"WantedClassIsNotSerializable",
         OneItem(),
         {&CTestDynamic::GetThisClass},
         SimpleFailure("CNotSupportedException")},
        {"ClassCannotBeCreated",
         ByteScript().NewClass(3, "CUncreatable", "class number 1"),
         {Any},
         SimpleFailure("CMemoryException")},
    };
}

class MalformedArchive : public ::testing::TestWithParam<MalformedStream> {};

TEST_P(MalformedArchive, EndsInItsException) {
    const LoadedObjectsGuard guard;
    const auto& [name, script, wanted, expected] = GetParam();
    MemoryFile file(script.Bytes());
    file.SetFilePath("mesh.doc");
    CArchive archive(&file, CArchive::load);
    for (std::size_t read = 0; read + 1 < wanted.size(); ++read) {
        EXPECT_NE(nullptr, archive.ReadObject(wanted[read]()));
    }
    EXPECT_EQ(expected, ThrownBy([&, last = wanted.back()] { archive.ReadObject(last()); }));
}

INSTANTIATE_TEST_SUITE_P(CArchive, MalformedArchive, ::testing::ValuesIn(MalformedStreams()),
                         [](const auto& instance) { return instance.param.name; });

TEST(MalformedArchive, NothingIsReadBeforeTheWantedClassIsChecked) {
    MemoryFile file(OneItem().Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(SimpleFailure("CNotSupportedException"),
              ThrownBy([&] { archive.ReadObject(RUNTIME_CLASS(CTestDynamic)); }));
    EXPECT_EQ(0U, file.ReadCalls());
}

TEST(MalformedArchive, ObjectNumberWhereAClassIsReadIsABadIndex) {
    const LoadedObjectsGuard guard;
    MemoryFile file(OneItem().Word(2, "the item").Word(2, "the item").Bytes());
    CArchive archive(&file, CArchive::load);
    archive.ReadObject(nullptr);
    DWORD tag = 0;
    EXPECT_EQ(nullptr, archive.ReadClass(nullptr, nullptr, &tag));
    EXPECT_EQ(2U, tag);
    EXPECT_EQ(ArchiveFailure(CArchiveException::badIndex), ThrownBy([&] { archive.ReadClass(); }));
}

// Deliberate: others may point to an object whose body failed, so it is left to nobody.
TEST(MalformedArchive, ObjectWhoseBodyFailsIsNotDeleted) {
    const LoadedObjectsGuard guard;
    const std::size_t before = TestObject::CountOnHeap();
    MemoryFile file(ByteScript()
                        .NewClass(1, "CTestNode", "class number 1")
                        .OneByte(1, "outer value")
                        .Word(0x8001, "class number 1")
                        .Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(ArchiveFailure(CArchiveException::endOfFile),
              ThrownBy([&] { archive.ReadObject(nullptr); }));
    EXPECT_EQ(before + 2, TestObject::CountOnHeap());
}

TEST(AcceptedVariant, NameOf63Letters) {
    const LoadedObjectsGuard guard;
    MemoryFile file(ByteScript().NewClass(3, kNameOf63, "class number 1").Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_NE(nullptr, archive.ReadObject(nullptr));
}

TEST(AcceptedVariant, LongFormOfNull) {
    MemoryFile file(Hex("ff7f 00000000").Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(nullptr, archive.ReadObject(nullptr));
    archive.Close();
    EXPECT_EQ(6U, file.GetPosition());
}

TEST(AcceptedVariant, NullOfAnyWantedClass) {
    MemoryFile file(Hex("0000").Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(nullptr, archive.ReadObject(RUNTIME_CLASS(CTestNode)));
}

TEST(AcceptedVariant, LongFormOfASmallObjectNumber) {
    const LoadedObjectsGuard guard;
    MemoryFile file(OneItem().Hex("ff7f 02000000", "object number 2 in the long form").Bytes());
    CArchive archive(&file, CArchive::load);
    const CObject* const item = archive.ReadObject(nullptr);
    EXPECT_EQ(item, archive.ReadObject(nullptr));
}

TEST(AcceptedVariant, LongFormOfASmallClassNumber) {
    const LoadedObjectsGuard guard;
    MemoryFile file(OneItem()
                        .Hex("ff7f 01000080", "class number 1 in the long form")
                        .Dword(0x55667788, "body of the second item")
                        .Bytes());
    CArchive archive(&file, CArchive::load);
    CTestItem* first = nullptr;
    CTestItem* second = nullptr;
    archive >> first >> second;
    EXPECT_EQ(0x11223344U, first->value);
    EXPECT_EQ(0x55667788U, second->value);
}

TEST(AcceptedVariant, DerivedClassWhereTheBaseIsWanted) {
    const LoadedObjectsGuard guard;
    MemoryFile file(ByteScript()
                        .NewClass(16, "CTestDerivedMesh", "class number 1")
                        .Double(0.5, "crease angle")
                        .Hex("00000000000000", "seven absent arrays")
                        .Word(2, "the mesh again")
                        .Bytes());
    CArchive archive(&file, CArchive::load);
    CTestMesh* mesh = nullptr;
    CTestMesh* again = nullptr;
    archive >> mesh >> again;
    EXPECT_EQ(0.5, mesh->creaseAngle);
    EXPECT_EQ(RUNTIME_CLASS(CTestDerivedMesh), mesh->GetRuntimeClass());
    EXPECT_EQ(mesh, again);
}

}  // namespace

// Every golden archive is written and compared byte for byte, read back, read with every buffer
// size that moves a field across the buffer's end, and cut short at every byte.
#include <afx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "ExceptionMatchers.h"
#include "TestClasses.h"
#include "golden/AfxArchives.h"
#include "support/MemoryFile.h"

namespace {

using Vr::test::ByteScript;
using Vr::test::MemoryFile;

constexpr std::size_t kDummiesBeforeObject7FFF = 32765;
constexpr std::size_t kDummiesBeforeClass7FFF = 32766;
constexpr std::size_t kManyObjects = 33000;

const CObject* const kNull = nullptr;

template <class Object>
Object* ReadOne(CArchive& archive) {
    Object* object = nullptr;
    archive >> object;
    return object;
}

void ExpectItem(const CTestItem* item, DWORD value, UINT schema) {
    ASSERT_NE(nullptr, item);
    EXPECT_EQ(value, item->value);
    // Deliberate: the schema is answered once.
    EXPECT_EQ(schema, item->schemas[0]);
    EXPECT_EQ(0xFFFFFFFFU, item->schemas[1]);
}

void StoreTwoObjectsNullRepeat(CFile& file, int bufferSize) {
    const CTestItem a(0x11223344);
    const CTestItem b(0x55667788);
    CArchive archive(&file, CArchive::store, bufferSize);
    archive << &a << &b << kNull << &a;
    archive.Close();
}

void LoadTwoObjectsNullRepeat(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    const auto* const a = ReadOne<CTestItem>(archive);
    ExpectItem(a, 0x11223344, 3);
    ExpectItem(ReadOne<CTestItem>(archive), 0x55667788, 3);
    EXPECT_EQ(nullptr, ReadOne<CObject>(archive));
    EXPECT_EQ(a, ReadOne<CObject>(archive));
}

template <UINT schema>
void LoadTwoObjectsOfSchema(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    ExpectItem(ReadOne<CTestItem>(archive), 0x11223344, schema);
    ExpectItem(ReadOne<CTestItem>(archive), 0x55667788, schema);
}

void StoreNestedCycle(CFile& file, int bufferSize) {
    CTestNode n1(1);
    CTestNode n2(2);
    n1.next = &n2;
    n2.next = &n1;
    CArchive archive(&file, CArchive::store, bufferSize);
    archive << &n1 << &n2;
    archive.Close();
}

void LoadNestedCycle(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    const auto* const n1 = ReadOne<CTestNode>(archive);
    const auto* const n2 = ReadOne<CTestNode>(archive);
    ASSERT_NE(nullptr, n1);
    EXPECT_EQ(1, n1->value);
    EXPECT_EQ(n2, n1->next);
    EXPECT_EQ(2, n2->value);
    EXPECT_EQ(n1, n2->next);
}

void StoreTwoClasses(CFile& file, int bufferSize) {
    const CTestItem c(7);
    const CTestEmpty e;
    const CTestItem d(8);
    CArchive archive(&file, CArchive::store, bufferSize);
    archive << &c << &e << &d << &e << &c;
    archive.Close();
}

void LoadTwoClasses(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    const auto* const c = ReadOne<CTestItem>(archive);
    ExpectItem(c, 7, 3);
    const auto* const e = ReadOne<CTestEmpty>(archive);
    EXPECT_NE(nullptr, e);
    ExpectItem(ReadOne<CTestItem>(archive), 8, 3);
    EXPECT_EQ(e, ReadOne<CTestEmpty>(archive));
    EXPECT_EQ(c, ReadOne<CTestItem>(archive));
}

void StoreMappedObject(CFile& file, int bufferSize) {
    const CTestEmpty document;
    const CTestItem a(0x11223344);
    CArchive archive(&file, CArchive::store, bufferSize);
    archive.MapObject(&document);
    archive << &a << &document;
    archive.Close();
}

void LoadMappedObject(CFile& file, int bufferSize) {
    const CTestEmpty document;
    CArchive archive(&file, CArchive::load, bufferSize);
    archive.MapObject(&document);
    ExpectItem(ReadOne<CTestItem>(archive), 0x11223344, 3);
    EXPECT_EQ(&document, ReadOne<CTestEmpty>(archive));
}

void StoreClassAlone(CFile& file, int bufferSize) {
    const CTestItem a(0x11223344);
    CArchive archive(&file, CArchive::store, bufferSize);
    archive.WriteClass(RUNTIME_CLASS(CTestItem));
    archive.WriteClass(RUNTIME_CLASS(CTestItem));
    archive << &a;
    archive.Close();
}

void LoadClassAlone(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    for (int mention = 0; mention < 2; ++mention) {
        UINT schema = 0;
        EXPECT_EQ(RUNTIME_CLASS(CTestItem), archive.ReadClass(nullptr, &schema));
        EXPECT_EQ(3U, schema);
    }
    ExpectItem(ReadOne<CTestItem>(archive), 0x11223344, 3);
}

void StoreTwoContexts(CFile& file, int bufferSize) {
    const CTestItem a(0x11223344);
    const CTestItem b(0x55667788);
    CArchive first(&file, CArchive::store, bufferSize);
    first << &a;
    first.Close();
    CArchive second(&file, CArchive::store, bufferSize);
    second << &b;
    second.Close();
}

void LoadTwoContexts(CFile& file, int bufferSize) {
    CArchive first(&file, CArchive::load, bufferSize);
    ExpectItem(ReadOne<CTestItem>(first), 0x11223344, 3);
    first.Close();
    CArchive second(&file, CArchive::load, bufferSize);
    ExpectItem(ReadOne<CTestItem>(second), 0x55667788, 3);
}

std::vector<CTestEmpty> MapDummies(CArchive& archive, std::size_t count) {
    std::vector<CTestEmpty> dummies(count);
    for (const CTestEmpty& dummy : dummies) {
        archive.MapObject(&dummy);
    }
    return dummies;
}

void StoreLongTagsFromObjects(CFile& file, int bufferSize) {
    const CTestItem x(1);
    const CTestItem y(2);
    const CTestEmpty e;
    const CTestEmpty f;
    CArchive archive(&file, CArchive::store, bufferSize);
    const auto dummies = MapDummies(archive, kDummiesBeforeObject7FFF);
    archive << &x << &y << &x << &y << &e << &f << &e << kNull;
    archive.Close();
}

void LoadLongTagsFromObjects(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    const auto dummies = MapDummies(archive, kDummiesBeforeObject7FFF);
    const auto* const x = ReadOne<CTestItem>(archive);
    ExpectItem(x, 1, 3);
    const auto* const y = ReadOne<CTestItem>(archive);
    ExpectItem(y, 2, 3);
    EXPECT_EQ(x, ReadOne<CTestItem>(archive));
    EXPECT_EQ(y, ReadOne<CTestItem>(archive));
    const auto* const e = ReadOne<CTestEmpty>(archive);
    const auto* const f = ReadOne<CTestEmpty>(archive);
    EXPECT_NE(nullptr, f);
    EXPECT_NE(e, f);
    EXPECT_EQ(e, ReadOne<CTestEmpty>(archive));
    EXPECT_EQ(nullptr, ReadOne<CObject>(archive));
}

void StoreLongTagsFromClasses(CFile& file, int bufferSize) {
    const CTestItem x(1);
    const CTestItem y(2);
    CArchive archive(&file, CArchive::store, bufferSize);
    const auto dummies = MapDummies(archive, kDummiesBeforeClass7FFF);
    archive << &x << &y;
    archive.Close();
}

void LoadLongTagsFromClasses(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    const auto dummies = MapDummies(archive, kDummiesBeforeClass7FFF);
    ExpectItem(ReadOne<CTestItem>(archive), 1, 3);
    ExpectItem(ReadOne<CTestItem>(archive), 2, 3);
}

void StoreManyObjects(CFile& file, int bufferSize) {
    const std::vector<CTestEmpty> e(kManyObjects);
    const CTestItem i1(0xA1);
    const CTestItem i2(0xA2);
    CArchive archive(&file, CArchive::store, bufferSize);
    for (const CTestEmpty& object : e) {
        archive << &object;
    }
    archive << &e[0] << &e[32764] << &e[32765] << &e[32999] << &i1 << &i2 << &i1 << kNull;
    archive.Close();
}

void LoadManyObjects(CFile& file, int bufferSize) {
    CArchive archive(&file, CArchive::load, bufferSize);
    std::vector<const CTestEmpty*> e;
    for (std::size_t object = 0; object < kManyObjects; ++object) {
        e.push_back(ReadOne<CTestEmpty>(archive));
    }
    EXPECT_EQ(e[0], ReadOne<CTestEmpty>(archive));
    EXPECT_EQ(e[32764], ReadOne<CTestEmpty>(archive));
    EXPECT_EQ(e[32765], ReadOne<CTestEmpty>(archive));
    EXPECT_EQ(e[32999], ReadOne<CTestEmpty>(archive));
    const auto* const i1 = ReadOne<CTestItem>(archive);
    ExpectItem(i1, 0xA1, 3);
    ExpectItem(ReadOne<CTestItem>(archive), 0xA2, 3);
    EXPECT_EQ(i1, ReadOne<CTestItem>(archive));
    EXPECT_EQ(nullptr, ReadOne<CObject>(archive));
    std::sort(e.begin(), e.end());
    EXPECT_EQ(e.end(), std::adjacent_find(e.begin(), e.end()));
}

struct GoldenArchive {
    const char* name;
    ByteScript script;
    // Null for what only an older program writes.
    void (*store)(CFile& file, int bufferSize);
    void (*load)(CFile& file, int bufferSize);
};

void PrintTo(const GoldenArchive& golden, std::ostream* stream) {
    *stream << golden.name;
}

const std::vector<GoldenArchive>& ShortArchives() {
    using namespace Vr::golden;
    static const std::vector<GoldenArchive> archives = {
        {"TwoObjectsNullRepeat", TwoObjectsNullRepeat(), StoreTwoObjectsNullRepeat,
         LoadTwoObjectsNullRepeat},
        {"OlderSchema", TwoObjectsOfSchema(2), nullptr, LoadTwoObjectsOfSchema<2>},
        {"SchemaZero", TwoObjectsOfSchema(0), nullptr, LoadTwoObjectsOfSchema<0>},
        {"NestedCycle", NestedCycle(), StoreNestedCycle, LoadNestedCycle},
        {"TwoClasses", TwoClasses(), StoreTwoClasses, LoadTwoClasses},
        {"MappedObject", MappedObject(), StoreMappedObject, LoadMappedObject},
        {"ClassAlone", ClassAlone(), StoreClassAlone, LoadClassAlone},
        {"TwoContexts", TwoContexts(), StoreTwoContexts, LoadTwoContexts},
        {"LongTagsFromObjects", LongTagsFromObjects(), StoreLongTagsFromObjects,
         LoadLongTagsFromObjects},
        {"LongTagsFromClasses", LongTagsFromClasses(), StoreLongTagsFromClasses,
         LoadLongTagsFromClasses},
    };
    return archives;
}

const std::vector<GoldenArchive>& AllArchives() {
    static const std::vector<GoldenArchive> archives = [] {
        std::vector<GoldenArchive> all = ShortArchives();
        all.push_back(
            {"ManyObjects", Vr::golden::ManyObjects(), StoreManyObjects, LoadManyObjects});
        return all;
    }();
    return archives;
}

std::string NameOf(const ::testing::TestParamInfo<GoldenArchive>& instance) {
    return instance.param.name;
}

std::vector<GoldenArchive> StorableArchives() {
    std::vector<GoldenArchive> archives = AllArchives();
    archives.erase(
        std::remove_if(archives.begin(), archives.end(),
                       [](const GoldenArchive& golden) { return golden.store == nullptr; }),
        archives.end());
    return archives;
}

class StorableArchiveTest : public ::testing::TestWithParam<GoldenArchive> {};

TEST_P(StorableArchiveTest, IsWrittenByteForByte) {
    for (const int bufferSize : {128, 131, 4096, 100000}) {
        MemoryFile file;
        GetParam().store(file, bufferSize);
        EXPECT_TRUE(GetParam().script.Matches(file.Bytes())) << "buffer of " << bufferSize;
    }
}

INSTANTIATE_TEST_SUITE_P(CArchive, StorableArchiveTest, ::testing::ValuesIn(StorableArchives()),
                         NameOf);

class GoldenArchiveTest : public ::testing::TestWithParam<GoldenArchive> {};

TEST_P(GoldenArchiveTest, IsReadBackToItsEnd) {
    for (const int bufferSize : {128, 131, 4096, 100000}) {
        SCOPED_TRACE(bufferSize);
        const LoadedObjectsGuard guard;
        MemoryFile file(GetParam().script.Bytes());
        GetParam().load(file, bufferSize);
        EXPECT_EQ(file.GetLength(), file.GetPosition());
    }
}

TEST_P(GoldenArchiveTest, IsReadFromAFileThatGivesOneByteAtATime) {
    const LoadedObjectsGuard guard;
    MemoryFile file(GetParam().script.Bytes());
    file.LimitReads(1);
    GetParam().load(file, 128);
    EXPECT_EQ(file.GetLength(), file.GetPosition());
}

INSTANTIATE_TEST_SUITE_P(CArchive, GoldenArchiveTest, ::testing::ValuesIn(AllArchives()), NameOf);

// Deliberate: a class name cut short is an unknown class, all else cut short is the end of the
// file.
Thrown ExpectedOfPrefix(const ByteScript& script, std::size_t size) {
    const auto& fields = script.Fields();
    const auto cutField = std::find_if(fields.begin(), fields.end(), [size](const auto& field) {
        return field.offset <= size && size < field.offset + field.size;
    });
    const bool isName = cutField->meaning.rfind("class name", 0) == 0;
    return ArchiveFailure(isName ? CArchiveException::badClass : CArchiveException::endOfFile);
}

void ExpectPrefixToFail(const GoldenArchive& golden, std::size_t size) {
    const LoadedObjectsGuard guard;
    MemoryFile file(golden.script.Prefix(size));
    EXPECT_EQ(ExpectedOfPrefix(golden.script, size), ThrownBy([&] { golden.load(file, 4096); }))
        << "first " << size << " bytes";
}

class ShortGoldenArchiveTest : public ::testing::TestWithParam<GoldenArchive> {};

TEST_P(ShortGoldenArchiveTest, EveryPrefixEndsInItsException) {
    for (std::size_t size = 0; size < GetParam().script.Bytes().size(); ++size) {
        ExpectPrefixToFail(GetParam(), size);
    }
}

INSTANTIATE_TEST_SUITE_P(CArchive, ShortGoldenArchiveTest, ::testing::ValuesIn(ShortArchives()),
                         NameOf);

TEST(ManyObjectsArchive, PrefixesEndInTheirException) {
    const GoldenArchive& golden = AllArchives().back();
    const std::size_t length = golden.script.Bytes().size();
    ASSERT_EQ(66067U, length);
    for (std::size_t size = 5000; size < length - 60; size += 9973) {
        ExpectPrefixToFail(golden, size);
    }
    for (std::size_t size = length - 60; size < length; ++size) {
        ExpectPrefixToFail(golden, size);
    }
}

TEST(TwoContextsArchive, SecondArchiveStartsWhereTheFirstEnded) {
    MemoryFile file;
    const CTestItem a(0x11223344);
    CArchive first(&file, CArchive::store);
    first << &a;
    first.Close();
    const std::size_t endOfFirst = file.Bytes().size();
    EXPECT_EQ(19U, endOfFirst);
    EXPECT_EQ(endOfFirst, file.GetPosition());
}

}  // namespace

#include <afx.h>
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "ExceptionMatchers.h"
#include "TestClasses.h"
#include "support/ByteScript.h"
#include "support/MemoryFile.h"

namespace {

using Vr::test::ByteScript;
using Vr::test::MemoryFile;

constexpr UINT kUnknownSchema = 0xFFFFFFFF;
constexpr UINT kLastNumber = 0x3FFFFFFE;

// Asks for its schema after an object inside it has been loaded.
class COuter : public TestObject {
    DECLARE_SERIAL(COuter)

    void Serialize(CArchive& archive) override {
        if (archive.IsStoring()) {
            archive << inner;
        } else {
            archive >> inner;
            schemaAfterInner = archive.GetObjectSchema();
        }
    }

    CTestItem* inner = nullptr;
    UINT schemaAfterInner = 0;
};
IMPLEMENT_SERIAL(COuter, CObject, VERSIONABLE_SCHEMA | 7)

class CountingArchive : public CArchive {
public:
    using CArchive::CArchive;
    UINT NextNumber() const { return m_nMapCount; }
    void SetNextNumber(UINT number) { m_nMapCount = number; }
};

template <class Code>
std::vector<BYTE> StoredBy(Code code) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    code(archive);
    archive.Close();
    return file.Bytes();
}

TEST(CArchiveObjects, ExactClassIsStored) {
    CTestDerivedMesh derived;
    CTestMesh base;
    const CTestMesh* const asBase = &derived;
    const auto bytes = StoredBy([&](CArchive& archive) { archive << asBase << &base; });
    const auto script = ByteScript()
                            .NewClass(16, "CTestDerivedMesh", "class number 1")
                            .Double(0.0, "crease angle of object number 2")
                            .Hex("00000000000000", "no arrays")
                            .NewClass(16, "CTestMesh", "class number 3")
                            .Double(0.0, "crease angle of object number 4")
                            .Hex("00000000000000", "no arrays");
    EXPECT_TRUE(script.Matches(bytes));
}

TEST(CArchiveObjects, ClassWithoutASchemaIsRefusedBeforeAnythingIsWritten) {
    const CTestDynamic object;
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    const Thrown expected = SimpleFailure("CNotSupportedException");
    EXPECT_EQ(expected, ThrownBy([&] { archive << &object; }));
    EXPECT_EQ(expected, ThrownBy([&] { archive.WriteClass(RUNTIME_CLASS(CTestCreatable)); }));
    archive.Close();
    EXPECT_TRUE(file.Bytes().empty());
}

// Deliberate: an object is known by its address, so another one at the same place is not written.
TEST(CArchiveObjects, AnotherObjectAtAKnownAddressIsAReference) {
    alignas(CTestItem) unsigned char place[sizeof(CTestItem)];
    const auto bytes = StoredBy([&](CArchive& archive) {
        for (const DWORD value : {1U, 2U}) {
            auto* const item = ::new (static_cast<void*>(place)) CTestItem(value);
            archive << item;
            item->~CTestItem();
        }
    });
    const auto script = ByteScript()
                            .NewClass(3, "CTestItem", "class number 1")
                            .Dword(1, "body of the first, object number 2")
                            .Word(2, "the second, taken for the first");
    EXPECT_TRUE(script.Matches(bytes));
}

TEST(CArchiveObjects, LongNamesAreStoredWhole) {
    const std::string name(70, 'N');
    const CRuntimeClass record = {name.c_str(), 8, 0x80000012U, nullptr, nullptr, nullptr, nullptr};
    const auto bytes = StoredBy([&](CArchive& archive) { archive.WriteClass(&record); });
    EXPECT_TRUE(ByteScript().NewClass(0x12, name, "class number 1").Matches(bytes));
}

TEST(CArchiveObjects, RecordStoresAndLoadsItsDescription) {
    const auto bytes =
        StoredBy([](CArchive& archive) { RUNTIME_CLASS(CTestItem)->Store(archive); });
    const auto script =
        ByteScript().Word(3, "schema").Word(9, "length of the name").Text("CTestItem", "name");
    ASSERT_TRUE(script.Matches(bytes));
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    UINT schema = 0;
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::Load(archive, &schema));
    EXPECT_EQ(3U, schema);
}

TEST(CArchiveObjects, SerializeClassServesBothDirections) {
    const auto bytes =
        StoredBy([](CArchive& archive) { archive.SerializeClass(RUNTIME_CLASS(CTestItem)); });
    ASSERT_TRUE(ByteScript().NewClass(3, "CTestItem", "class number 1").Matches(bytes));
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    archive.SerializeClass(RUNTIME_CLASS(CTestItem));
    EXPECT_EQ(3U, archive.GetObjectSchema());
    MemoryFile other(bytes);
    CArchive otherArchive(&other, CArchive::load);
    EXPECT_EQ(ArchiveFailure(CArchiveException::badClass),
              ThrownBy([&] { otherArchive.SerializeClass(RUNTIME_CLASS(CTestNode)); }));
}

TEST(CArchiveObjects, TableParametersDoNotChangeTheBytes) {
    CTestItem item(1);
    const auto plain = StoredBy([&](CArchive& archive) { archive << &item << &item; });
    const auto tuned = StoredBy([&](CArchive& archive) {
        archive.SetStoreParams(17, 1);
        archive << &item << &item;
    });
    EXPECT_EQ(plain, tuned);
    const LoadedObjectsGuard guard;
    MemoryFile file(plain);
    CArchive archive(&file, CArchive::load);
    archive.SetLoadParams(1);
    const CObject* const first = archive.ReadObject(nullptr);
    EXPECT_EQ(first, archive.ReadObject(nullptr));
}

TEST(CArchiveObjects, PointersToConstObjectsAreReadToo) {
    CTestItem item(1);
    const LoadedObjectsGuard guard;
    MemoryFile file(StoredBy([&](CArchive& archive) { archive << &item; }));
    CArchive archive(&file, CArchive::load);
    const CObject* loaded = nullptr;
    archive >> loaded;
    ASSERT_NE(nullptr, loaded);
    EXPECT_TRUE(loaded->IsKindOf(RUNTIME_CLASS(CTestItem)));
}

TEST(CArchiveObjects, ReadingOperatorWantsItsClass) {
    CTestItem item(1);
    const LoadedObjectsGuard guard;
    MemoryFile file(StoredBy([&](CArchive& archive) { archive << &item; }));
    CArchive archive(&file, CArchive::load);
    CTestNode* node = nullptr;
    EXPECT_EQ(ArchiveFailure(CArchiveException::badClass), ThrownBy([&] { archive >> node; }));
    EXPECT_EQ(nullptr, node);
}

TEST(CArchiveNumbers, StartAtOneWithTheClass) {
    MemoryFile file;
    CountingArchive archive(&file, CArchive::store);
    const CTestItem item(1);
    archive << &item;
    EXPECT_EQ(3U, archive.NextNumber());
}

TEST(CArchiveNumbers, MappingNullOnlySetsUpTheTables) {
    MemoryFile file;
    CountingArchive archive(&file, CArchive::store);
    archive.MapObject(nullptr);
    EXPECT_EQ(1U, archive.NextNumber());
    archive.MapObject(nullptr);
    EXPECT_EQ(1U, archive.NextNumber());
    const CTestEmpty object;
    archive.MapObject(&object);
    EXPECT_EQ(2U, archive.NextNumber());
    archive << &object;
    archive.Close();
    EXPECT_TRUE(ByteScript().Word(1, "the mapped object").Matches(file.Bytes()));
}

TEST(CArchiveNumbers, EndAtTheLimitWhenStoring) {
    MemoryFile file;
    file.SetFilePath("mesh.doc");
    CountingArchive archive(&file, CArchive::store);
    const CTestItem last(1);
    const CTestItem oneTooMany(2);
    archive.WriteClass(RUNTIME_CLASS(CTestItem));
    archive.SetNextNumber(kLastNumber);
    archive << &last;
    archive.Flush();
    const std::size_t sizeBefore = file.Bytes().size();
    const Thrown expected = ArchiveFailure(CArchiveException::badIndex, "mesh.doc");
    EXPECT_EQ(expected, ThrownBy([&] { archive.CheckCount(); }));
    EXPECT_EQ(expected, ThrownBy([&] { archive << &oneTooMany; }));
    EXPECT_EQ(expected, ThrownBy([&] { archive.WriteClass(RUNTIME_CLASS(CTestNode)); }));
    EXPECT_EQ(expected, ThrownBy([&] { archive.MapObject(&oneTooMany); }));
    archive.Flush();
    // What is known can still be mentioned.
    archive << &last;
    archive.Close();
    const std::vector<BYTE> lastMention(file.Bytes().end() - 6, file.Bytes().end());
    EXPECT_GT(file.Bytes().size(), sizeBefore);
    EXPECT_TRUE(ByteScript()
                    .Word(0x7FFF, "escape")
                    .Dword(kLastNumber, "the last object number")
                    .Matches(lastMention));
}

TEST(CArchiveNumbers, EndAtTheLimitWhenLoading) {
    const LoadedObjectsGuard guard;
    CTestItem item(1);
    MemoryFile file(StoredBy([&](CArchive& archive) { archive << &item; }));
    file.SetFilePath("mesh.doc");
    CountingArchive archive(&file, CArchive::load);
    archive.MapObject(nullptr);
    archive.SetNextNumber(kLastNumber + 1);
    const Thrown expected = ArchiveFailure(CArchiveException::badIndex, "mesh.doc");
    EXPECT_EQ(expected, ThrownBy([&] { archive.MapObject(&item); }));
    EXPECT_EQ(expected, ThrownBy([&] { archive.ReadObject(nullptr); }));
    EXPECT_EQ(0U, TestObject::CountOnHeap());
}

TEST(CArchiveSchema, IsUnknownOutsideAnObject) {
    MemoryFile file;
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(kUnknownSchema, archive.GetObjectSchema());
}

TEST(CArchiveSchema, IsUnknownToASerializeThatIsCalledDirectly) {
    MemoryFile file(std::vector<BYTE>(4));
    CArchive archive(&file, CArchive::load);
    CTestItem item;
    item.Serialize(archive);
    EXPECT_EQ(kUnknownSchema, item.schemas[0]);
}

TEST(CArchiveSchema, CanBeSetForTheNextQuestion) {
    MemoryFile file;
    CArchive archive(&file, CArchive::load);
    archive.SetObjectSchema(12);
    EXPECT_EQ(12U, archive.GetObjectSchema());
    EXPECT_EQ(kUnknownSchema, archive.GetObjectSchema());
}

TEST(CArchiveSchema, IsTheOutersAgainAfterAnInnerObject) {
    CTestItem item(1);
    COuter outer;
    outer.inner = &item;
    const LoadedObjectsGuard guard;
    MemoryFile file(StoredBy([&](CArchive& archive) { archive << &outer; }));
    CArchive archive(&file, CArchive::load);
    COuter* loaded = nullptr;
    archive >> loaded;
    EXPECT_EQ(3U, loaded->inner->schemas[0]);
    EXPECT_EQ(7U, loaded->schemaAfterInner);
    EXPECT_EQ(kUnknownSchema, archive.GetObjectSchema());
}

TEST(CArchiveSchema, OfAnOlderStreamIsGivenForEveryObject) {
    const LoadedObjectsGuard guard;
    MemoryFile file(ByteScript()
                        .NewClass(10, "CTestItem", "class number 1")
                        .Dword(1, "object number 2")
                        .Word(0x8001, "class number 1")
                        .Dword(2, "object number 3")
                        .Word(0x8001, "class number 1")
                        .Dword(3, "object number 4")
                        .Bytes());
    CArchive archive(&file, CArchive::load);
    for (int object = 0; object < 3; ++object) {
        CTestItem* item = nullptr;
        archive >> item;
        EXPECT_EQ(10U, item->schemas[0]);
    }
}

TEST(CArchiveSchema, OfAnOlderStreamIsForgottenWithTheArchive) {
    const LoadedObjectsGuard guard;
    MemoryFile file(ByteScript()
                        .NewClass(2, "CTestItem", "class number 1")
                        .Dword(1, "object number 2")
                        .NewClass(3, "CTestItem", "class number 1 of the second archive")
                        .Dword(2, "object number 2 of the second archive")
                        .Word(0x8001, "class number 1 of the second archive")
                        .Dword(3, "object number 3 of the second archive")
                        .Bytes());
    CArchive first(&file, CArchive::load);
    CTestItem* item = nullptr;
    first >> item;
    first.Close();
    CArchive second(&file, CArchive::load);
    for (int object = 0; object < 2; ++object) {
        second >> item;
        EXPECT_EQ(3U, item->schemas[0]);
    }
}

TEST(CArchiveSchema, ReadClassHandsItToTheArchiveWhenNobodyTakesIt) {
    MemoryFile file(ByteScript().NewClass(2, "CTestItem", "older schema").Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), archive.ReadClass(RUNTIME_CLASS(CTestItem)));
    EXPECT_EQ(2U, archive.GetObjectSchema());
}

}  // namespace

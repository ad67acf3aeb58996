#include <afx.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>

#include "TestClasses.h"
#include "support/MemoryFile.h"

namespace {

using Vr::test::MemoryFile;

template <class Object, class = void>
struct HasNothrowNew : std::false_type {};
template <class Object>
struct HasNothrowNew<Object, std::void_t<decltype(new (std::nothrow) Object)>> : std::true_type {};

struct PlainObject {};

// The slot of a virtual function in the table. A pointer to it holds the offset of the slot, plus
// one.
template <class MemberFunction>
std::size_t SlotOf(MemberFunction function) {
    std::uintptr_t offset = 0;
    std::memcpy(&offset, &function, sizeof(offset));
    return (offset - 1) / sizeof(void*);
}

TEST(CObject, HoldsTheVirtualTableAlone) {
    EXPECT_EQ(sizeof(void*), sizeof(CObject));
}

TEST(CObject, IsNeitherMadeAloneNorCopied) {
    EXPECT_FALSE(std::is_default_constructible_v<CObject>);
    EXPECT_FALSE(std::is_copy_constructible_v<CTestItem>);
    EXPECT_FALSE(std::is_copy_assignable_v<CTestItem>);
}

TEST(CObject, NothrowNewDoesNotCompile) {
    EXPECT_FALSE(HasNothrowNew<CTestEmpty>::value);
    EXPECT_FALSE(HasNothrowNew<CMemFile>::value);
    EXPECT_TRUE(HasNothrowNew<PlainObject>::value);
}

TEST(CObject, PlacementNewUsesThePlace) {
    alignas(CMemFile) unsigned char place[sizeof(CMemFile)];
    auto* const file = new (static_cast<void*>(place)) CMemFile;
    EXPECT_EQ(static_cast<void*>(place), static_cast<void*>(file));
    file->~CMemFile();
}

TEST(CObject, DebugNewMakesAHeapObject) {
    const std::unique_ptr<CMemFile> file(new (__FILE__, __LINE__) CMemFile);
    EXPECT_EQ(0U, file->GetLength());
}

TEST(CObject, SharedPointersMakeObjects) {
    const auto file = std::make_shared<CMemFile>();
    EXPECT_TRUE(file->IsKindOf(RUNTIME_CLASS(CMemFile)));
}

TEST(CObject, KnowsItsClassAndItsBases) {
    const CTestDerivedMesh mesh;
    EXPECT_TRUE(mesh.IsKindOf(RUNTIME_CLASS(CTestDerivedMesh)));
    EXPECT_TRUE(mesh.IsKindOf(RUNTIME_CLASS(CTestMesh)));
    EXPECT_TRUE(mesh.IsKindOf(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(mesh.IsKindOf(RUNTIME_CLASS(CTestItem)));
    EXPECT_FALSE(CTestMesh().IsKindOf(RUNTIME_CLASS(CTestDerivedMesh)));
}

TEST(CObject, IsSerializableUnlessTheSchemaIsAllOnes) {
    EXPECT_TRUE(CTestItem().IsSerializable());
    EXPECT_TRUE(CTestEmpty().IsSerializable());
    EXPECT_FALSE(CTestDynamic().IsSerializable());
    EXPECT_FALSE(CTestCreatable().IsSerializable());
}

TEST(CObject, SerializeDoesNothing) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    CTestEmpty object;
    object.Serialize(archive);
    archive.Close();
    EXPECT_TRUE(file.Bytes().empty());
}

TEST(CObject, DumpPrintsTheClassName) {
    MemoryFile file;
    CDumpContext context(&file);
    const CTestItem item;
    static_cast<const CObject&>(item).Dump(context);
    EXPECT_EQ("CTestItem", std::string(file.Bytes().begin(), file.Bytes().end()));
}

// The slots are binary interface: a module built against MFC's order calls by number. The
// destructor takes two of them on this ABI.
TEST(CObject, VirtualFunctionsKeepTheirOrder) {
#if !defined(__x86_64__) || defined(_WIN32)
    GTEST_SKIP() << "the representation of member pointers is not known here";
#else
    EXPECT_EQ(0U, SlotOf(&CObject::GetRuntimeClass));
    EXPECT_EQ(3U, SlotOf(&CObject::Serialize));
    EXPECT_EQ(4U, SlotOf(&CObject::AssertValid));
    EXPECT_EQ(5U, SlotOf(&CObject::Dump));
#endif
}

TEST(CDumpContext, PrintsTextsNumbersAndObjects) {
    MemoryFile file;
    CDumpContext context(&file);
    const CTestItem item;
    const CObject* const nothing = nullptr;
    context << "a" << L"b" << -1 << 2U << -3L << 4UL << -5LL << 6ULL << 0.5 << &item << nothing;
    context.Flush();
    EXPECT_EQ("ab-12-34-560.5CTestItemNULL", std::string(file.Bytes().begin(), file.Bytes().end()));
    EXPECT_EQ(1U, file.FlushCalls());
}

TEST(CDumpContext, WithoutAFileDropsEverything) {
    CDumpContext context;
    context << "text" << 1;
    context.Flush();
    EXPECT_EQ(0, context.GetDepth());
    context.SetDepth(2);
    EXPECT_EQ(2, context.GetDepth());
}

TEST(CString, ConvertsAndCompares) {
    const CString text("mesh.doc");
    const LPCTSTR converted = text;
    EXPECT_STREQ("mesh.doc", converted);
    EXPECT_STREQ("mesh.doc", text.GetString());
    EXPECT_EQ(8, text.GetLength());
    EXPECT_TRUE(text == CString("mesh.doc"));
    EXPECT_TRUE(text == "mesh.doc");
    EXPECT_TRUE("mesh.doc" == text);
    EXPECT_TRUE(text != CString("mesh"));
    EXPECT_TRUE(text != "mesh");
    EXPECT_TRUE("mesh" != text);
    EXPECT_FALSE(text != "mesh.doc");
}

TEST(CString, NullMakesAnEmptyText) {
    CString text(nullptr);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(0, text.GetLength());
    EXPECT_STREQ("", text);
    text = "x";
    EXPECT_FALSE(text.IsEmpty());
    text.Empty();
    EXPECT_TRUE(text.IsEmpty());
}

}  // namespace

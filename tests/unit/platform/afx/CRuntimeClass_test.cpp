#include <afx.h>
#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include "TestClasses.h"

namespace {

// Constructors of objects defined before a class's own macro run before its registration. They must
// find the record complete, and what they write into its link must survive.
struct EarlyRegistration {
    EarlyRegistration();
    std::string nameSeen;
    bool wasFound = false;
};
EarlyRegistration earlyRegistration;

class CEarly : public CObject {
    DECLARE_SERIAL(CEarly)
};
IMPLEMENT_SERIAL(CEarly, CObject, 5)

EarlyRegistration::EarlyRegistration() {
    nameSeen = RUNTIME_CLASS(CEarly)->m_lpszClassName;
    AfxClassInit(RUNTIME_CLASS(CEarly));
    wasFound = CRuntimeClass::FromName("CEarly") == RUNTIME_CLASS(CEarly);
}

class CHiddenConstructor : public CObject {
    DECLARE_SERIAL(CHiddenConstructor)

private:
    CHiddenConstructor() = default;
};
IMPLEMENT_SERIAL(CHiddenConstructor, CObject, 1)

CObject* PASCAL ThrowMemoryException() {
    AfxThrowMemoryException();
}
CObject* PASCAL ThrowHeapException() {
    throw new CArchiveException(CArchiveException::badClass);
}
CObject* PASCAL ThrowBadAlloc() {
    throw std::bad_alloc();
}
CObject* PASCAL ThrowLogicError() {
    throw std::logic_error("from the constructor");
}

CRuntimeClass RecordOf(LPCSTR name, CObject*(PASCAL* create)() = nullptr) {
    return {name, 8, 1, create, &CObject::_GetBaseClass, nullptr, nullptr};
}

TEST(CRuntimeClass, SerialMacroFillsEveryField) {
    const CRuntimeClass* const record = RUNTIME_CLASS(CTestItem);
    EXPECT_STREQ("CTestItem", record->m_lpszClassName);
    EXPECT_EQ(static_cast<int>(sizeof(CTestItem)), record->m_nObjectSize);
    EXPECT_EQ(0x80000003U, record->m_wSchema);
    EXPECT_EQ(&CTestItem::CreateObject, record->m_pfnCreateObject);
    EXPECT_EQ(RUNTIME_CLASS(CObject), record->m_pfnGetBaseClass());
    EXPECT_NE(nullptr, record->m_pClassInit);
}

TEST(CRuntimeClass, DynamicMacrosMakeClassesWithoutASchema) {
    EXPECT_EQ(0xFFFFU, RUNTIME_CLASS(CTestDynamic)->m_wSchema);
    EXPECT_EQ(nullptr, RUNTIME_CLASS(CTestDynamic)->m_pfnCreateObject);
    EXPECT_EQ(nullptr, RUNTIME_CLASS(CTestDynamic)->m_pClassInit);
    EXPECT_EQ(0xFFFFU, RUNTIME_CLASS(CTestCreatable)->m_wSchema);
    EXPECT_EQ(&CTestCreatable::CreateObject, RUNTIME_CLASS(CTestCreatable)->m_pfnCreateObject);
}

TEST(CRuntimeClass, FieldsKeepTheirOrder) {
    const CRuntimeClass record = {"CName",
                                  24,
                                  0x80000010U,
                                  &CTestItem::CreateObject,
                                  &CTestMesh::GetThisClass,
                                  RUNTIME_CLASS(CTestNode)};
    EXPECT_STREQ("CName", record.m_lpszClassName);
    EXPECT_EQ(24, record.m_nObjectSize);
    EXPECT_EQ(0x80000010U, record.m_wSchema);
    EXPECT_EQ(&CTestItem::CreateObject, record.m_pfnCreateObject);
    EXPECT_EQ(&CTestMesh::GetThisClass, record.m_pfnGetBaseClass);
    EXPECT_EQ(RUNTIME_CLASS(CTestNode), record.m_pNextClass);
    EXPECT_EQ(nullptr, record.m_pClassInit);
}

TEST(CRuntimeClass, RootHasNoBaseAndNoSchema) {
    const CRuntimeClass* const root = RUNTIME_CLASS(CObject);
    EXPECT_STREQ("CObject", root->m_lpszClassName);
    EXPECT_EQ(static_cast<int>(sizeof(CObject)), root->m_nObjectSize);
    EXPECT_EQ(0xFFFFU, root->m_wSchema);
    EXPECT_EQ(nullptr, root->m_pfnCreateObject);
    EXPECT_EQ(nullptr, root->m_pfnGetBaseClass());
}

TEST(CRuntimeClass, ObjectsGiveTheRecordOfTheirExactClass) {
    const CTestDerivedMesh mesh;
    const CTestMesh& base = mesh;
    EXPECT_EQ(RUNTIME_CLASS(CTestDerivedMesh), base.GetRuntimeClass());
    EXPECT_EQ(RUNTIME_CLASS(CTestMesh), RUNTIME_CLASS(CTestDerivedMesh)->m_pfnGetBaseClass());
}

TEST(CRuntimeClass, DerivationIsBySelfAndBases) {
    const CRuntimeClass* const derived = RUNTIME_CLASS(CTestDerivedMesh);
    EXPECT_TRUE(derived->IsDerivedFrom(derived));
    EXPECT_TRUE(derived->IsDerivedFrom(RUNTIME_CLASS(CTestMesh)));
    EXPECT_TRUE(derived->IsDerivedFrom(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(RUNTIME_CLASS(CTestMesh)->IsDerivedFrom(derived));
    EXPECT_FALSE(derived->IsDerivedFrom(RUNTIME_CLASS(CTestItem)));
}

TEST(CRuntimeClass, DerivationComparesRecordsNotNames) {
    const CRuntimeClass twin = RecordOf("CTestMesh");
    EXPECT_FALSE(RUNTIME_CLASS(CTestMesh)->IsDerivedFrom(&twin));
}

TEST(CRuntimeClass, RecordWithoutBaseFunctionIsARoot) {
    CRuntimeClass record = RecordOf("CRoot");
    record.m_pfnGetBaseClass = nullptr;
    EXPECT_TRUE(record.IsDerivedFrom(&record));
    EXPECT_FALSE(record.IsDerivedFrom(RUNTIME_CLASS(CObject)));
}

TEST(CRuntimeClass, SerialClassesAreFoundByName) {
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
    EXPECT_EQ(RUNTIME_CLASS(CTestDerivedMesh), CRuntimeClass::FromName(L"CTestDerivedMesh"));
}

TEST(CRuntimeClass, OtherClassesAreNotFoundByName) {
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CTestDynamic"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CTestCreatable"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CObject"));
}

TEST(CRuntimeClass, NamesAreComparedExactly) {
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CTESTITEM"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CTestIte"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CTestItem2"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName(""));
    // U+0143 ends in the byte of 'C'.
    EXPECT_EQ(nullptr, CRuntimeClass::FromName(L"\x0143TestItem"));
}

TEST(CRuntimeClass, CreatesObjectsFromTheRecordAndByName) {
    const LoadedObjectsGuard guard;
    const CObject* const item = RUNTIME_CLASS(CTestItem)->CreateObject();
    ASSERT_NE(nullptr, item);
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), item->GetRuntimeClass());
    const CObject* const node = CRuntimeClass::CreateObject("CTestNode");
    ASSERT_NE(nullptr, node);
    EXPECT_EQ(RUNTIME_CLASS(CTestNode), node->GetRuntimeClass());
    const CObject* const empty = CRuntimeClass::CreateObject(L"CTestEmpty");
    ASSERT_NE(nullptr, empty);
    EXPECT_EQ(RUNTIME_CLASS(CTestEmpty), empty->GetRuntimeClass());
}

TEST(CRuntimeClass, CreatesThroughAPrivateConstructor) {
    const CObject* const object = CRuntimeClass::CreateObject("CHiddenConstructor");
    ASSERT_NE(nullptr, object);
    EXPECT_EQ(RUNTIME_CLASS(CHiddenConstructor), object->GetRuntimeClass());
    delete object;
}

TEST(CRuntimeClass, CreatesNothingWithoutACreationFunctionOrAClass) {
    EXPECT_EQ(nullptr, RUNTIME_CLASS(CTestDynamic)->CreateObject());
    EXPECT_EQ(nullptr, CRuntimeClass::CreateObject("CNobody"));
    EXPECT_EQ(nullptr, CRuntimeClass::CreateObject(L"CNobody"));
}

TEST(CRuntimeClass, FailedCreationGivesNull) {
    EXPECT_EQ(nullptr, RecordOf("C", &ThrowMemoryException).CreateObject());
    EXPECT_EQ(nullptr, RecordOf("C", &ThrowHeapException).CreateObject());
    EXPECT_EQ(nullptr, RecordOf("C", &ThrowBadAlloc).CreateObject());
}

TEST(CRuntimeClass, OtherExceptionsPassThroughCreation) {
    EXPECT_THROW(RecordOf("C", &ThrowLogicError).CreateObject(), std::logic_error);
}

TEST(ClassRegistration, RecordsAreCompleteBeforeConstructorsRun) {
    EXPECT_EQ("CEarly", earlyRegistration.nameSeen);
    EXPECT_TRUE(earlyRegistration.wasFound);
}

TEST(ClassRegistration, RegisteringARecordTwiceKeepsTheListWhole) {
    EXPECT_EQ(RUNTIME_CLASS(CEarly), CRuntimeClass::FromName("CEarly"));
    // Were the record linked to itself, the search for a name behind it would not end.
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CNobody"));
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
}

TEST(ClassRegistration, LastsAsLongAsItsObject) {
    CRuntimeClass record = RecordOf("CPassing");
    {
        const AFX_CLASSINIT registration(&record);
        EXPECT_EQ(&record, CRuntimeClass::FromName("CPassing"));
    }
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CPassing"));
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
}

TEST(ClassRegistration, LastRegisteredOfEqualNamesIsFoundFirst) {
    CRuntimeClass older = RecordOf("CTwin");
    CRuntimeClass newer = RecordOf("CTwin");
    const AFX_CLASSINIT olderRegistration(&older);
    {
        const AFX_CLASSINIT newerRegistration(&newer);
        EXPECT_EQ(&newer, CRuntimeClass::FromName("CTwin"));
    }
    EXPECT_EQ(&older, CRuntimeClass::FromName("CTwin"));
}

TEST(ClassRegistration, TakingOutTheMiddleOneKeepsTheOthers) {
    CRuntimeClass first = RecordOf("CFirst");
    CRuntimeClass middle = RecordOf("CMiddle");
    CRuntimeClass last = RecordOf("CLast");
    const AFX_CLASSINIT firstRegistration(&first);
    {
        AFX_CLASSINIT middleRegistration(&middle);
        AfxClassInit(&last);
    }
    EXPECT_EQ(&first, CRuntimeClass::FromName("CFirst"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CMiddle"));
    EXPECT_EQ(&last, CRuntimeClass::FromName("CLast"));
    // Takes the last one out, too, before its record goes.
    const AFX_CLASSINIT lastRegistration(&last);
}

}  // namespace

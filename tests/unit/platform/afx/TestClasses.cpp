#include "TestClasses.h"

#include <set>

namespace {

std::set<void*>& HeapObjects() {
    static std::set<void*> objects;
    return objects;
}

}  // namespace

IMPLEMENT_SERIAL(CTestItem, CObject, VERSIONABLE_SCHEMA | 3)
IMPLEMENT_SERIAL(CTestNode, CObject, 1)
IMPLEMENT_SERIAL(CTestEmpty, CObject, 1)
IMPLEMENT_DYNAMIC(CTestDynamic, CObject)
IMPLEMENT_DYNCREATE(CTestCreatable, CObject)
IMPLEMENT_SERIAL(CTestMesh, CObject, VERSIONABLE_SCHEMA | 16)
IMPLEMENT_SERIAL(CTestDerivedMesh, CTestMesh, VERSIONABLE_SCHEMA | 16)

void* TestObject::operator new(std::size_t size) {
    void* const memory = CObject::operator new(size);
    HeapObjects().insert(memory);
    return memory;
}

void TestObject::operator delete(void* memory) noexcept {
    HeapObjects().erase(memory);
    CObject::operator delete(memory);
}

void TestObject::DeleteAll() {
    while (!HeapObjects().empty()) {
        delete static_cast<TestObject*>(*HeapObjects().begin());
    }
}

std::size_t TestObject::CountOnHeap() {
    return HeapObjects().size();
}

void CTestItem::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive << value;
    } else {
        schemas[0] = archive.GetObjectSchema();
        schemas[1] = archive.GetObjectSchema();
        archive >> value;
    }
}

void CTestNode::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive << value << next;
    } else {
        archive >> value >> next;
    }
}

void CTestMesh::Serialize(CArchive& archive) {
    BYTE absent[7] = {};
    if (archive.IsStoring()) {
        archive << creaseAngle;
        archive.Write(absent, sizeof(absent));
    } else {
        archive >> creaseAngle;
        archive.EnsureRead(absent, sizeof(absent));
    }
}

void CTestDerivedMesh::Serialize(CArchive& archive) {
    CTestMesh::Serialize(archive);
}

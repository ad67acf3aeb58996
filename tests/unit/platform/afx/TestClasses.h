/// The classes that the archives of these tests hold.
#pragma once

#include <afx.h>

#include <cstddef>

/// The base of the test classes. Knows all of its objects on the heap, so that a test can delete
/// what an archive has loaded, objects of a failed load included: those are nobody's by contract.
class TestObject : public CObject {
public:
    static void* operator new(std::size_t size);
    static void operator delete(void* memory) noexcept;

    static void DeleteAll();
    static std::size_t CountOnHeap();
};

/// Deletes all test objects on the heap at the end of its life.
class LoadedObjectsGuard {
public:
    LoadedObjectsGuard() = default;
    ~LoadedObjectsGuard() { TestObject::DeleteAll(); }
    LoadedObjectsGuard(const LoadedObjectsGuard&) = delete;
    LoadedObjectsGuard& operator=(const LoadedObjectsGuard&) = delete;
};

/// Versionable schema 3. Stores a DWORD; notes the first two answers of `GetObjectSchema` on
/// loading.
class CTestItem : public TestObject {
    DECLARE_SERIAL(CTestItem)

    CTestItem() = default;
    explicit CTestItem(DWORD initialValue) : value(initialValue) {}
    void Serialize(CArchive& archive) override;

    DWORD value = 0;
    UINT schemas[2] = {};
};

/// Schema 1. Stores a BYTE and the next node.
class CTestNode : public TestObject {
    DECLARE_SERIAL(CTestNode)

    CTestNode() = default;
    explicit CTestNode(BYTE initialValue) : value(initialValue) {}
    void Serialize(CArchive& archive) override;

    BYTE value = 0;
    CTestNode* next = nullptr;
};

/// Schema 1. Stores nothing.
class CTestEmpty : public TestObject {
    DECLARE_SERIAL(CTestEmpty)
};

/// Can be asked for its class, and nothing more.
class CTestDynamic : public TestObject {
    DECLARE_DYNAMIC(CTestDynamic)
};

/// Can be created from its class, but not stored.
class CTestCreatable : public TestObject {
    DECLARE_DYNCREATE(CTestCreatable)
};

/// Versionable schema 16. Stores a double and seven zero bytes, as a mesh without arrays.
class CTestMesh : public TestObject {
    DECLARE_SERIAL(CTestMesh)

    void Serialize(CArchive& archive) override;

    double creaseAngle = 0.0;
};

class CTestDerivedMesh : public CTestMesh {
    DECLARE_SERIAL(CTestDerivedMesh)

protected:
    // An archive reaches an override through CObject, whatever its access.
    void Serialize(CArchive& archive) override;
};

// What the layer does when memory is short. The executable replaces the global allocation
// functions, so it holds these tests alone.
#include <afxwin.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {

bool isMemoryShort = false;

// Memory is short as long as this object lives.
class MemoryShortage {
public:
    MemoryShortage() { isMemoryShort = true; }
    ~MemoryShortage() { isMemoryShort = false; }
    MemoryShortage(const MemoryShortage&) = delete;
    MemoryShortage& operator=(const MemoryShortage&) = delete;
};

class CPlain : public CObject {
    DECLARE_SERIAL(CPlain)
};
IMPLEMENT_SERIAL(CPlain, CObject, 1)

}  // namespace

void* operator new(std::size_t size) {
    void* const memory = isMemoryShort ? nullptr : std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

TEST(OutOfMemory, ModuleInitialisationFailsAndLeavesTheRecordAlone) {
    static AFX_EXTENSION_MODULE record = {};
    BOOL isInitialised = TRUE;
    {
        const MemoryShortage shortage;
        isInitialised = AfxInitExtensionModule(record, nullptr);
    }
    EXPECT_FALSE(isInitialised);
    EXPECT_FALSE(record.bInitialized);
    EXPECT_EQ(nullptr, record.pFirstSharedClass);
    EXPECT_EQ(RUNTIME_CLASS(CPlain), CRuntimeClass::FromName("CPlain"));
}

TEST(OutOfMemory, NewOfAnObjectThrowsBadAlloc) {
    const MemoryShortage shortage;
    EXPECT_THROW(new CPlain, std::bad_alloc);
}

TEST(OutOfMemory, CreationByRecordGivesNull) {
    const CObject* created = nullptr;
    {
        const MemoryShortage shortage;
        created = RUNTIME_CLASS(CPlain)->CreateObject();
    }
    EXPECT_EQ(nullptr, created);
}

TEST(OutOfMemory, OpenReportsAndDoesNotThrow) {
    CFile file;
    CFileException reason;
    BOOL isOpen = TRUE;
    {
        const MemoryShortage shortage;
        isOpen = file.Open("/dev/null", CFile::modeRead, &reason);
    }
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(CFileException::genericException, reason.m_cause);
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
}

TEST(OutOfMemory, SimpleExceptionsNeedNoMemory) {
    bool isCaught = false;
    try {
        const MemoryShortage shortage;
        AfxThrowMemoryException();
    } catch (CMemoryException* exception) {
        isCaught = true;
        exception->Delete();
    }
    EXPECT_TRUE(isCaught);
}

}  // namespace

// Modules are opened as a host opens them. On Windows the system calls the entry point, and these
// tests have nothing to say there.
#if !defined(_WIN32)

#include <afxwin.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "ExceptionMatchers.h"
#include "TestClasses.h"
#include "module/ModuleInterface.h"
#include "support/ByteScript.h"
#include "support/MemoryFile.h"

namespace {

using Vr::test::ByteScript;
using Vr::test::MemoryFile;

// A module that is open as long as this object.
class OpenModule {
public:
    explicit OpenModule(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
        EXPECT_NE(nullptr, handle_) << dlerror();
    }
    ~OpenModule() { dlclose(handle_); }
    OpenModule(const OpenModule&) = delete;
    OpenModule& operator=(const OpenModule&) = delete;

    template <class Function>
    Function Find(const char* name) const {
        return reinterpret_cast<Function>(dlsym(handle_, name));
    }
    CRuntimeClass* Class(const char* function) const { return Find<ClassFunction>(function)(); }
    int CallEntryPoint(DWORD reason) const {
        // Any address serves for the instance; the module record says where the module lies.
        return Find<EntryPointFunction>("DllMain")(static_cast<HINSTANCE>(handle_), reason,
                                                   nullptr);
    }
    AFX_EXTENSION_MODULE& Record() const {
        return *Find<AFX_EXTENSION_MODULE* (*)()>("ModuleRecord")();
    }

private:
    void* handle_;
};

bool IsLoaded(const char* path) {
    void* const handle = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

TEST(ExtensionModule, ClassesAreFoundWhileTheModuleIsLoaded) {
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleItem"));
    {
        const OpenModule module(VERIDANE_TEST_MODULE);
        EXPECT_EQ(module.Class("OwnClass"), CRuntimeClass::FromName("CModuleItem"));
        EXPECT_EQ(module.Class("OwnClass"), CRuntimeClass::FromName(L"CModuleItem"));
        EXPECT_TRUE(module.Class("OwnClass")->IsDerivedFrom(RUNTIME_CLASS(CObject)));
    }
    EXPECT_FALSE(IsLoaded(VERIDANE_TEST_MODULE));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleItem"));
}

TEST(ExtensionModule, EntryPointIsCalledAtLoadAndUnload) {
    std::string notes;
    {
        const OpenModule module(VERIDANE_TEST_MODULE);
        EXPECT_TRUE(module.Record().bInitialized);
        EXPECT_NE(nullptr, module.Record().hModule);
        EXPECT_EQ(module.Record().hModule, module.Record().hResource);
        module.Find<NoteCallsFunction>("NoteCalls")(&notes);
    }
    EXPECT_EQ("D", notes);
}

TEST(ExtensionModule, ClassRegisteredBehindTheEntryPointJoinsTheModule) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    EXPECT_EQ(module.Class("LateClass"), CRuntimeClass::FromName("CModuleLate"));
    EXPECT_EQ(1, module.CallEntryPoint(DLL_PROCESS_DETACH));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleLate"));
}

TEST(ExtensionModule, TerminationTakesTheClassesOutAndInitialisationBringsThemBack) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    EXPECT_EQ(1, module.CallEntryPoint(DLL_PROCESS_DETACH));
    EXPECT_FALSE(module.Record().bInitialized);
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleItem"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleTwin"));
    EXPECT_EQ(1, module.CallEntryPoint(DLL_PROCESS_ATTACH));
    EXPECT_TRUE(module.Record().bInitialized);
    EXPECT_EQ(module.Class("OwnClass"), CRuntimeClass::FromName("CModuleItem"));
    EXPECT_EQ(module.Class("TwinClass"), CRuntimeClass::FromName("CModuleTwin"));
    EXPECT_EQ(module.Class("LateClass"), CRuntimeClass::FromName("CModuleLate"));
}

TEST(ExtensionModule, ThreadReasonsDoNothing) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    EXPECT_EQ(1, module.CallEntryPoint(DLL_THREAD_ATTACH));
    EXPECT_EQ(1, module.CallEntryPoint(DLL_THREAD_DETACH));
    EXPECT_EQ(module.Class("OwnClass"), CRuntimeClass::FromName("CModuleItem"));
}

TEST(ExtensionModule, SecondInitialisationChangesNothing) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    const AFX_EXTENSION_MODULE before = module.Record();
    EXPECT_TRUE(AfxInitExtensionModule(module.Record(), nullptr));
    EXPECT_EQ(before.hModule, module.Record().hModule);
    EXPECT_EQ(before.hResource, module.Record().hResource);
    EXPECT_EQ(before.pFirstSharedClass, module.Record().pFirstSharedClass);
}

TEST(ExtensionModule, TerminationRemovesEveryLibraryOfTheModule) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    EXPECT_EQ(1, module.CallEntryPoint(DLL_PROCESS_ATTACH));
    AfxTermExtensionModule(module.Record());
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleItem"));
    AfxTermExtensionModule(module.Record());
}

TEST(ExtensionModule, LibraryHoldsHandlesAndClasses) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    {
        const CDynLinkLibrary library(module.Record(), TRUE);
        EXPECT_EQ(module.Record().hModule, library.m_hModule);
        EXPECT_EQ(module.Record().hResource, library.m_hResource);
        EXPECT_EQ(module.Record().pFirstSharedClass, library.m_pFirstSharedClass);
        EXPECT_TRUE(library.m_bSystem);
        EXPECT_NE(nullptr, library.m_pNextDLL);
        EXPECT_TRUE(library.IsKindOf(RUNTIME_CLASS(CCmdTarget)));
    }
    EXPECT_EQ(module.Class("OwnClass"), CRuntimeClass::FromName("CModuleItem"));
}

TEST(ExtensionModule, InitialisedModuleIsFoundFromItsLibraryOn) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    AfxTermExtensionModule(module.Record());
    EXPECT_TRUE(AfxInitExtensionModule(module.Record(), module.Record().hModule));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleItem"));
    new CDynLinkLibrary(module.Record());
    EXPECT_EQ(module.Class("OwnClass"), CRuntimeClass::FromName("CModuleItem"));
}

TEST(ExtensionModule, ClassesOfTheApplicationStayItsOwn) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
    AfxTermExtensionModule(module.Record());
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
}

TEST(ExtensionModule, NewestModuleIsSearchedFirst) {
    const OpenModule older(VERIDANE_TEST_MODULE);
    EXPECT_EQ(older.Class("TwinClass"), CRuntimeClass::FromName("CModuleTwin"));
    {
        const OpenModule newer(VERIDANE_TEST_SECOND_MODULE);
        EXPECT_NE(older.Class("TwinClass"), newer.Class("TwinClass"));
        EXPECT_EQ(newer.Class("TwinClass"), CRuntimeClass::FromName("CModuleTwin"));
        EXPECT_EQ(older.Class("OwnClass"), CRuntimeClass::FromName("CModuleItem"));
        EXPECT_EQ(newer.Class("OwnClass"), CRuntimeClass::FromName("CSecondItem"));
    }
    EXPECT_EQ(older.Class("TwinClass"), CRuntimeClass::FromName("CModuleTwin"));
}

TEST(ExtensionModule, OlderModuleMayLeaveFirst) {
    const OpenModule newer(VERIDANE_TEST_SECOND_MODULE);
    {
        const OpenModule older(VERIDANE_TEST_MODULE);
        AfxTermExtensionModule(newer.Record());
        EXPECT_EQ(older.Class("TwinClass"), CRuntimeClass::FromName("CModuleTwin"));
        newer.CallEntryPoint(DLL_PROCESS_ATTACH);
    }
    EXPECT_EQ(newer.Class("TwinClass"), CRuntimeClass::FromName("CModuleTwin"));
    EXPECT_EQ(newer.Class("OwnClass"), CRuntimeClass::FromName("CSecondItem"));
}

TEST(ExtensionModule, ApplicationIsSearchedBeforeModules) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    CRuntimeClass own = {"CModuleTwin", 8, 1, nullptr, &CObject::GetThisClass, nullptr, nullptr};
    {
        const AFX_CLASSINIT registration(&own);
        EXPECT_EQ(&own, CRuntimeClass::FromName("CModuleTwin"));
    }
    EXPECT_EQ(module.Class("TwinClass"), CRuntimeClass::FromName("CModuleTwin"));
}

TEST(ExtensionModule, EachModuleHasItsOwnEntryPoint) {
    std::string firstNotes;
    std::string secondNotes;
    const OpenModule first(VERIDANE_TEST_MODULE);
    const OpenModule second(VERIDANE_TEST_SECOND_MODULE);
    first.Find<NoteCallsFunction>("NoteCalls")(&firstNotes);
    second.Find<NoteCallsFunction>("NoteCalls")(&secondNotes);
    second.CallEntryPoint(DLL_PROCESS_DETACH);
    EXPECT_EQ("", firstNotes);
    EXPECT_EQ("D", secondNotes);
    second.Find<NoteCallsFunction>("NoteCalls")(nullptr);
    first.Find<NoteCallsFunction>("NoteCalls")(nullptr);
}

TEST(ExtensionModule, TerminationOfAllLeavesNoModule) {
    const OpenModule first(VERIDANE_TEST_MODULE);
    const OpenModule second(VERIDANE_TEST_SECOND_MODULE);
    AfxTermExtensionModule(first.Record(), TRUE);
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CModuleItem"));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CSecondItem"));
    EXPECT_FALSE(first.Record().bInitialized);
    EXPECT_FALSE(second.Record().bInitialized);
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
}

// Deliberate: a constructor cannot make the load fail, so a module that refuses stays in memory.
TEST(ExtensionModule, ModuleThatRefusesIsDetachedAndUnknown) {
    const OpenModule module(VERIDANE_TEST_REFUSING_MODULE);
    EXPECT_STREQ("AD", module.Find<OwnNotesFunction>("OwnNotes")());
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CRefused"));
}

TEST(ExtensionModule, PlainLibrariesClassGoesWithTheLibrary) {
    {
        const OpenModule library(VERIDANE_TEST_PLAIN_LIBRARY);
        EXPECT_EQ(library.Class("OwnClass"), CRuntimeClass::FromName("CPlainItem"));
    }
    EXPECT_FALSE(IsLoaded(VERIDANE_TEST_PLAIN_LIBRARY));
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CPlainItem"));
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
}

TEST(ExtensionModule, ArchiveLoadsAndStoresObjectsOfTheModule) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    const auto script =
        ByteScript().NewClass(4, "CModuleItem", "class number 1").Dword(0xABCD, "object number 2");
    MemoryFile file(script.Bytes());
    CArchive loading(&file, CArchive::load);
    CObject* const object = loading.ReadObject(module.Class("OwnClass"));
    ASSERT_NE(nullptr, object);
    EXPECT_EQ(module.Class("OwnClass"), object->GetRuntimeClass());
    MemoryFile stored;
    CArchive storing(&stored, CArchive::store);
    storing << object;
    storing.Close();
    EXPECT_TRUE(script.Matches(stored.Bytes()));
    delete object;
}

TEST(ExtensionModule, ClassOfAnUnloadedModuleIsABadClass) {
    { const OpenModule module(VERIDANE_TEST_MODULE); }
    MemoryFile file(
        ByteScript().NewClass(4, "CModuleItem", "class number 1").Dword(1, "object 2").Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(ArchiveFailure(CArchiveException::badClass),
              ThrownBy([&] { archive.ReadObject(nullptr); }));
}

TEST(ExtensionModule, ExceptionsCrossModules) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    const auto throwKind = module.Find<ThrowFunction>("Throw");
    EXPECT_EQ(ArchiveFailure(CArchiveException::badClass, "module.doc"),
              ThrownBy([&] { throwKind(kThrowArchiveException); }));
    EXPECT_EQ(SimpleFailure("CUserException"), ThrownBy([&] { throwKind(kThrowUserException); }));
    EXPECT_EQ(SimpleFailure("COwnException"), ThrownBy([&] { throwKind(kThrowOwnException); }));
}

TEST(ExtensionModule, RecordOutsideAnyModuleTakesNoClasses) {
    AFX_EXTENSION_MODULE record = {};
    EXPECT_TRUE(AfxInitExtensionModule(record, nullptr));
    EXPECT_TRUE(record.bInitialized);
    EXPECT_EQ(nullptr, record.pFirstSharedClass);
    EXPECT_EQ(RUNTIME_CLASS(CTestItem), CRuntimeClass::FromName("CTestItem"));
    AfxTermExtensionModule(record);
    EXPECT_FALSE(record.bInitialized);
}

TEST(ExtensionModule, RecordOutsideAnyModuleServesTheModuleOfItsHandle) {
    const OpenModule library(VERIDANE_TEST_PLAIN_LIBRARY);
    AFX_EXTENSION_MODULE record = {};
    const auto anyAddressInside = library.Find<HMODULE>("OwnClass");
    EXPECT_TRUE(AfxInitExtensionModule(record, anyAddressInside));
    EXPECT_EQ(library.Class("OwnClass"), record.pFirstSharedClass);
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CPlainItem"));
    new CDynLinkLibrary(record);
    EXPECT_EQ(library.Class("OwnClass"), CRuntimeClass::FromName("CPlainItem"));
    AfxTermExtensionModule(record);
}

TEST(ExtensionModule, TerminationOfAnUninitialisedRecordDoesNothing) {
    const OpenModule module(VERIDANE_TEST_MODULE);
    AFX_EXTENSION_MODULE record = {};
    AfxTermExtensionModule(record, TRUE);
    EXPECT_EQ(module.Class("OwnClass"), CRuntimeClass::FromName("CModuleItem"));
}

// The registry is used from any thread. Run under a thread sanitizer this also shows a missing
// lock.
TEST(ClassRegistry, TakesRegistrationsAndQuestionsFromManyThreads) {
    std::vector<std::thread> threads;
    std::vector<int> missesOf(4, 0);
    for (std::size_t number = 0; number < missesOf.size(); ++number) {
        threads.emplace_back([number, &missesOf] {
            const std::string name = "CThread" + std::to_string(number);
            for (int round = 0; round < 500; ++round) {
                CRuntimeClass record = {name.c_str(), 8, 1, nullptr, nullptr, nullptr, nullptr};
                const AFX_CLASSINIT registration(&record);
                missesOf[number] += CRuntimeClass::FromName(name.c_str()) != &record;
                missesOf[number] +=
                    CRuntimeClass::FromName("CTestItem") != RUNTIME_CLASS(CTestItem);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::vector<int>(4, 0), missesOf);
    EXPECT_EQ(nullptr, CRuntimeClass::FromName("CThread0"));
}

}  // namespace

#endif

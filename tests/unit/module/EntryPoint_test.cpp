// The module is opened as a host opens it; this program does not link it.

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "support/ByteScript.h"
#include "support/MemoryFile.h"
#include "unit/module/OpenedModule.h"

namespace {

using namespace Vr::test;

TEST(EntryPoint, ClassesAreFoundFromLoadToUnload) {
    EXPECT_FALSE(AreClassesFound());
    {
        const OpenedModule module;
        EXPECT_TRUE(AreClassesFound());
        const std::unique_ptr<CObject> mesh(CRuntimeClass::CreateObject("VraMesh"));
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(mesh->GetRuntimeClass()->m_wSchema, 0x80000010u);
        EXPECT_STREQ(mesh->GetRuntimeClass()->m_lpszClassName, "VraMesh");
    }
    EXPECT_FALSE(IsModuleLoaded());
    EXPECT_FALSE(AreClassesFound());
}

TEST(EntryPoint, TheModuleCanBeLoadedAgain) {
    for (int round = 0; round < 3; ++round) {
        const OpenedModule module;
        EXPECT_TRUE(AreClassesFound());
    }
    EXPECT_FALSE(AreClassesFound());
}

TEST(EntryPoint, TheLastOfTwoHandlesUnloads) {
    const auto first = std::make_unique<OpenedModule>();
    { const OpenedModule second; }
    EXPECT_TRUE(AreClassesFound());
}

TEST(EntryPoint, AnArchiveOfTheHostFindsTheClassInTheOpenedModule) {
    // A null object needs no class; an unknown class is badClass, so finding one is the difference.
    const ByteScript script = ByteScript().NewClass(16, "VraMesh", "class number 1");
    const auto readClass = [&] {
        MemoryFile file(script.Bytes());
        CArchive archive(&file, CArchive::load);
        UINT schema = 0;
        CRuntimeClass* found = nullptr;
        try {
            found = archive.ReadClass(nullptr, &schema);
        } catch (CArchiveException* exception) {
            EXPECT_EQ(exception->m_cause, CArchiveException::badClass);
            exception->Delete();
        }
        return found;
    };
    EXPECT_EQ(readClass(), nullptr);
    const OpenedModule module;
    ASSERT_NE(readClass(), nullptr);
    EXPECT_STREQ(readClass()->m_lpszClassName, "VraMesh");
}

TEST(EntryPoint, ThreadReasonsAnswerOneAndChangeNothing) {
    const OpenedModule module;
    EXPECT_EQ(module.CallEntryPoint(DLL_THREAD_ATTACH), 1);
    EXPECT_TRUE(AreClassesFound());
    EXPECT_EQ(module.CallEntryPoint(DLL_THREAD_DETACH), 1);
    EXPECT_TRUE(AreClassesFound());
    std::thread([&] { EXPECT_EQ(module.CallEntryPoint(DLL_THREAD_ATTACH), 1); }).join();
    EXPECT_TRUE(AreClassesFound());
}

TEST(EntryPoint, DetachLeavesTheChainAndAttachJoinsItAgain) {
    const OpenedModule module;
    EXPECT_EQ(module.CallEntryPoint(DLL_PROCESS_DETACH), 1);
    EXPECT_FALSE(AreClassesFound());
    EXPECT_EQ(module.CallEntryPoint(DLL_PROCESS_DETACH), 1) << "a second time does nothing";
    EXPECT_EQ(module.CallEntryPoint(DLL_PROCESS_ATTACH), 1);
    EXPECT_TRUE(AreClassesFound());
}

TEST(EntryPoint, AttachWhileAttachedAnswersOneAndOneDetachUndoesBoth) {
    const OpenedModule module;
    EXPECT_EQ(module.CallEntryPoint(DLL_PROCESS_ATTACH), 1);
    EXPECT_TRUE(AreClassesFound());
    EXPECT_EQ(module.CallEntryPoint(DLL_PROCESS_DETACH), 1);
    EXPECT_FALSE(AreClassesFound());
    EXPECT_EQ(module.CallEntryPoint(DLL_PROCESS_ATTACH), 1);
}

}  // namespace

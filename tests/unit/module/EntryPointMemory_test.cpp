// Attaching while memory is short. The platform allocates for its first module only, so one test
// walks through the whole in order; it has the process to itself.

#include <gtest/gtest.h>

#include <memory>

#include "support/FailingAllocation.h"
#include "unit/module/OpenedModule.h"

namespace {

using namespace Vr::test;

TEST(EntryPoint, AFailedInitialisationAnswersZeroAndAMissingLinkDoesNot) {
    EXPECT_FALSE(AreClassesFound());

    // Loaded while nothing can be allocated: the module stays outside the chain.
    std::unique_ptr<OpenedModule> module;
    void* const keptOpen = [] {
        const FailAllocation failure(1, FailAllocation::Fails::kFromThenOn);
        return dlopen(VERIDANE_MESH_MODULE, RTLD_NOW | RTLD_LOCAL);
    }();
    ASSERT_NE(keptOpen, nullptr);
    module = std::make_unique<OpenedModule>();
    dlclose(keptOpen);
    EXPECT_TRUE(IsModuleLoaded());

    int answer = -1;
    {
        const FailAllocation failure(1, FailAllocation::Fails::kFromThenOn);
        answer = module->CallEntryPoint(DLL_PROCESS_ATTACH);
        EXPECT_TRUE(failure.HasHappened());
    }
    EXPECT_EQ(answer, 0);

    EXPECT_EQ(module->CallEntryPoint(DLL_PROCESS_ATTACH), 1);
    EXPECT_TRUE(AreClassesFound());

    // From now on the platform has room for the module, and only the link is allocated.
    EXPECT_EQ(module->CallEntryPoint(DLL_PROCESS_DETACH), 1);
    bool hasHappened = false;
    {
        const FailAllocation failure(1, FailAllocation::Fails::kFromThenOn);
        answer = module->CallEntryPoint(DLL_PROCESS_ATTACH);
        hasHappened = failure.HasHappened();
    }
    EXPECT_TRUE(hasHappened);
    EXPECT_EQ(answer, 1) << "the load succeeds without the link";
    EXPECT_EQ(module->CallEntryPoint(DLL_PROCESS_DETACH), 1);
}

}  // namespace

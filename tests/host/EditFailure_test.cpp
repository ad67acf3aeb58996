#include <algorithm>

#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Values;

constexpr int kWrongUsage = 2;

// A way to edit that would succeed: a subcommand and its options.
class EditFailure : public EditTest,
                    public ::testing::WithParamInterface<std::vector<std::string>> {
protected:
    HostResult Edit(const std::string& source, const std::vector<std::string>& output) const {
        std::vector<std::string> arguments = GetParam();
        arguments.insert(arguments.begin() + 1, source);
        arguments.insert(arguments.begin() + 2, output.begin(), output.end());
        return RunHost(arguments);
    }
};

TEST_P(EditFailure, AGoodDocumentSucceeds) {
    ExpectSuccess(Edit(StoreDocument("box.vrd", {UnitBox()}), {"-o", Path("new.vrd")}));
    EXPECT_THAT(Names(), ElementsAre("box.vrd", "new.vrd"));
}

TEST_P(EditFailure, AMissingDocumentIsNamed) {
    ExpectFailure(Edit(Path("none.vrd"), {"-o", Path("new.vrd")}), Path("none.vrd"),
                  "No such file or directory");
    EXPECT_THAT(Names(), ElementsAre());
}

TEST_P(EditFailure, AFileThatIsNoDocumentIsNamed) {
    const std::string path = Write("letter.vrd", "Dear reader, this is a letter.");
    ExpectFailure(Edit(path, {"-o", path}), path, "not a mesh document");
    EXPECT_EQ(Read("letter.vrd").size(), 30U);
}

TEST_P(EditFailure, AFolderThatIsNotThereIsNamed) {
    const HostResult result =
        Edit(StoreDocument("box.vrd", {UnitBox()}), {"-o", Path("none/new.vrd")});
    ExpectFailure(result, Path("none/new.vrd"), "No such file or directory");
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(Names(), ElementsAre("box.vrd"));
}

TEST_P(EditFailure, NoDocumentToStoreIsWrongUsage) {
    const HostResult result = Edit(StoreDocument("box.vrd", {UnitBox()}), {});
    EXPECT_EQ(result.status, kWrongUsage);
    EXPECT_EQ(result.err, "veridane-host: --output is required (see --help)\n");
}

INSTANTIATE_TEST_SUITE_P(Commands, EditFailure,
                         Values(std::vector<std::string>{"clean"},
                                std::vector<std::string>{"normals", "--flat"},
                                std::vector<std::string>{"transform", "--scale", "2"},
                                std::vector<std::string>{"reverse"},
                                std::vector<std::string>{"delete-faces", "--faces", "1"},
                                std::vector<std::string>{"merge"}),
                         [](const auto& command) {
                             std::string name = command.param.front();
                             name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                             return name;
                         });

}  // namespace
}  // namespace Vr::test

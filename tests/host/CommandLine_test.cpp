#include "host/HostTest.h"

namespace Vr::test {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class CommandLine : public HostTest {};

constexpr int kWrongUsage = 2;

TEST_F(CommandLine, HelpNamesEverySubcommandAndTheExitStatuses) {
    const std::string help = ExpectSuccess(RunHost({"--help"}));
    for (const char* const name :
         {"import", "export", "make", "check", "info", "edges", "copy", "clean", "normals",
          "transform", "reverse", "delete-faces", "merge", "join"})
        EXPECT_THAT(help, HasSubstr(std::string("\n  ") + name + " "));
    EXPECT_THAT(help, HasSubstr("0 success, 1 failure, 2 wrong usage, 130 interrupted"));
}

TEST_F(CommandLine, HelpOfASubcommandNamesItsArguments) {
    const std::string help = ExpectSuccess(RunHost({"import", "--help"}));
    EXPECT_THAT(help, HasSubstr("model"));
    EXPECT_THAT(help, HasSubstr("--output"));
}

TEST_F(CommandLine, EveryCommandThatLoadsADocumentMayTrustIt) {
    for (const char* const name : {"export", "info", "edges", "copy", "clean", "normals",
                                   "transform", "reverse", "delete-faces", "merge", "join"})
        EXPECT_THAT(ExpectSuccess(RunHost({name, "--help"})), HasSubstr("--trust")) << name;
}

TEST_F(CommandLine, VersionIsNameAndNumber) {
    EXPECT_THAT(ExpectSuccess(RunHost({"--version"})),
                MatchesRegex("veridane-host [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(CommandLine, NoSubcommandIsWrongUsage) {
    const HostResult result = RunHost({});
    EXPECT_EQ(result.status, kWrongUsage);
    EXPECT_EQ(result.err, "veridane-host: A subcommand is required (see --help)\n");
}

TEST_F(CommandLine, AMisspeltSubcommandIsWrongUsageAndNamed) {
    const HostResult result = RunHost({"inform"});
    EXPECT_EQ(result.status, kWrongUsage);
    EXPECT_THAT(result.err, MatchesRegex("veridane-host: [^\n]*inform[^\n]*\n"));
}

TEST_F(CommandLine, AMissingArgumentIsWrongUsageAndNamed) {
    const HostResult result = RunHost({"copy", "a.vrd"});
    EXPECT_EQ(result.status, kWrongUsage);
    EXPECT_EQ(result.err, "veridane-host: target is required (see --help)\n");
}

TEST_F(CommandLine, AnUnknownOptionIsWrongUsageAndNothingIsDone) {
    const HostResult result =
        RunHost({"import", Write("cube.ply", CubePly()), "-o", Path("cube.vrd"), "--fast"});
    EXPECT_EQ(result.status, kWrongUsage);
    EXPECT_THAT(result.err, MatchesRegex("veridane-host: [^\n]*--fast[^\n]*\n"));
    EXPECT_THAT(Names(), ::testing::ElementsAre("cube.ply"));
}

TEST_F(CommandLine, AFullStandardOutputIsAFailure) {
    StoreDocument("box.vrd", {UnitBox()});
    ExpectFailure(RunHost({"info", Path("box.vrd")}, PrintToFullDevice), "standard output",
                  "No space left on device");
}

}  // namespace
}  // namespace Vr::test

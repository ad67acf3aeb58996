#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;

constexpr int kWrongUsage = 2;

class Make : public EditTest {};

TEST_F(Make, ABoxBetweenAnyTwoOppositeCorners) {
    ExpectSuccess(RunHost(
        {"make", "box", "--from", "1", "0", "3", "--to", "0", "2", "0", "-o", Path("box.vrd")}));
    const std::string info = ExpectSuccess(RunHost({"info", Path("box.vrd")}));
    EXPECT_THAT(info, HasSubstr("bounding box: (0, 0, 0) to (1, 2, 3)\n"));
    EXPECT_THAT(info, HasSubstr("volume: 6\n  free edges: 0\n"));
}

TEST_F(Make, ACylinderOfFourSegments) {
    ExpectSuccess(RunHost({"make", "cylinder", "--from", "0", "0", "0", "--to", "0", "0", "5",
                           "--radius", "2", "--segments", "4", "-o", Path("cylinder.vrd")}));
    // 2n + 2 vertices, n + 2 normals, 4n triangles
    EXPECT_THAT(ExpectSuccess(RunHost({"info", Path("cylinder.vrd")})),
                HasSubstr("triangles: 16\n  vertices: 10\n  normals: 6 (per vertex)\n"));
}

TEST_F(Make, AConeOfAsManySegmentsAsIsSaid) {
    ExpectSuccess(RunHost({"make", "cone", "--from", "0", "0", "0", "--to", "0", "0", "5",
                           "--segments", "7", "-o", Path("cone.vrd")}));
    // n + 2 vertices and normals, 2n triangles
    EXPECT_THAT(ExpectSuccess(RunHost({"info", Path("cone.vrd")})),
                HasSubstr("triangles: 14\n  vertices: 9\n  normals: 9 (per vertex)\n"));
}

TEST_F(Make, ALineHasItsLengthForADomain) {
    ExpectSuccess(RunHost(
        {"make", "line", "--from", "1", "1", "0", "--to", "4", "5", "0", "-o", Path("line.vrd")}));
    EXPECT_THAT(ExpectSuccess(RunHost({"info", Path("line.vrd")})),
                HasSubstr("  dimension: 3\n  domain: 0 to 5\n  start: (1, 1, 0)\n  end: (4, 5, 0)\n"
                          "  bounding box: (1, 1, 0) to (4, 5, 0)\n"));
}

// A quarter of length pi/2 * 2, from the x axis, which is (0, 1, 0), to the y axis, which is (0, 0, 1).
TEST_F(Make, AnArcGoesFromTheXAxisToTheYAxis) {
    ExpectSuccess(RunHost({"make",     "arc",      "--center", "1",       "2",
                           "3",        "--radius", "2",        "--angle", "90",
                           "--x-axis", "0",        "5",        "0",       "--y-axis",
                           "0",        "7",        "3",        "-o",      Path("arc.vrd")}));
    EXPECT_THAT(ExpectSuccess(RunHost({"info", Path("arc.vrd")})),
                HasSubstr("  domain: 0 to 3.14159265359\n  start: (1, 4, 3)\n  end: (1, 2, 5)\n"));
}

TEST_F(Make, APolylineGoesThroughItsPoints) {
    ExpectSuccess(RunHost({"make", "polyline", "--points", "0", "0", "0", "1", "0", "0", "1", "2",
                           "0", "-o", Path("polyline.vrd")}));
    EXPECT_THAT(ExpectSuccess(RunHost({"info", Path("polyline.vrd")})),
                HasSubstr("  domain: 0 to 2\n  start: (0, 0, 0)\n  end: (1, 2, 0)\n"
                          "  bounding box: (0, 0, 0) to (1, 2, 0)\n"));
}

TEST_F(Make, APlaneIsARectangleFromItsCorner) {
    ExpectSuccess(
        RunHost({"make", "plane", "--origin", "1", "1", "1", "--x-axis", "0", "1", "0", "--y-axis",
                 "0", "0", "1", "--size", "2", "3", "-o", Path("plane.vrd")}));
    EXPECT_THAT(ExpectSuccess(RunHost({"info", Path("plane.vrd")})),
                HasSubstr("  domain in u: 0 to 2\n  domain in v: 0 to 3\n"
                          "  bounding box: (1, 1, 1) to (1, 3, 4)\n"));
}

// 0.1 is 0.100000001490116 as a float.
TEST_F(Make, AMaterialIsStoredAsItIsLoaded) {
    ExpectSuccess(
        RunHost({"make", "material", "--name", "Gr\xC3\xBCn", "--diffuse", "1", "2", "255",
                 "--shine", "0.1", "--transparency", "0.5", "-o", Path("green.vrd")}));
    EXPECT_THAT(
        ExpectSuccess(RunHost({"info", Path("green.vrd")})),
        HasSubstr("object 1: ON_Material\n  name: Gr\xC3\xBCn\n  diffuse colour: (1, 2, 255)\n"
                  "  shine: 0.10000000149 of 255\n  transparency: 0.5\n"));
    ExpectSuccess(RunHost({"copy", Path("green.vrd"), Path("copy.vrd")}));
    EXPECT_EQ(Read("copy.vrd"), Read("green.vrd"));
}

TEST_F(Make, GeometryThatIsNoneIsWrongUsage) {
    const std::string output = Path("none.vrd");
    const std::vector<std::vector<std::string>> commands = {
        {"line", "--from", "1", "2", "3", "--to", "1", "2", "3"},
        {"line", "--from", "-1e308", "0", "0", "--to", "1e308", "0", "0"},
        {"arc", "--center", "0", "0", "0", "--angle", "361"},
        {"arc", "--center", "0", "0", "0", "--y-axis", "2", "0", "0"},
        {"polyline", "--points", "0", "0", "0"},
        {"polyline", "--points", "0", "0", "0", "1", "1"},
        {"plane", "--origin", "0", "0", "0", "--size", "1", "0"},
        {"plane", "--origin", "0", "0", "0", "--x-axis", "0", "0", "0"},
        {"material", "--diffuse", "1", "2", "256"},
        {"material", "--transparency", "1.5"},
        {"material", "--name", "\xFF"}};
    for (std::vector<std::string> command : commands) {
        SCOPED_TRACE(command.front() + " " + command.back());
        command.insert(command.begin(), "make");
        command.insert(command.end(), {"-o", output});
        EXPECT_EQ(RunHost(command).status, kWrongUsage);
    }
    EXPECT_THAT(Names(), ElementsAre());
}

TEST_F(Make, AnArcOfNoLengthIsNoValidObject) {
    ExpectFailure(RunHost({"make", "arc", "--center", "0", "0", "0", "--angle", "1e-12", "-o",
                           Path("none.vrd")}),
                  Path("none.vrd"), "that makes no valid object");
    EXPECT_THAT(Names(), ElementsAre());
}

TEST_F(Make, AnAxisWithoutDirectionIsWrongUsage) {
    const HostResult result = RunHost({"make", "cylinder", "--from", "1", "2", "3", "--to", "1",
                                       "2", "3", "-o", Path("cylinder.vrd")});
    EXPECT_EQ(result.status, kWrongUsage);
    EXPECT_EQ(result.err, "veridane-host: --to: the axis has no direction (see --help)\n");
    EXPECT_THAT(Names(), ElementsAre());
}

TEST_F(Make, TwoSegmentsAndInfiniteCoordinatesAreWrongUsage) {
    EXPECT_EQ(RunHost({"make", "cone", "--from", "0", "0", "0", "--to", "0", "0", "5", "--segments",
                       "2", "-o", Path("cone.vrd")})
                  .status,
              kWrongUsage);
    const HostResult result = RunHost(
        {"make", "box", "--from", "0", "0", "0", "--to", "1", "inf", "1", "-o", Path("box.vrd")});
    EXPECT_EQ(result.status, kWrongUsage);
    EXPECT_THAT(result.err, MatchesRegex("veridane-host: [^\n]*inf[^\n]*\n"));
    EXPECT_THAT(Names(), ElementsAre());
}

}  // namespace
}  // namespace Vr::test

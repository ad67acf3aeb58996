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

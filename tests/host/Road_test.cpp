#include "host/EditTest.h"

namespace Vr::test {
namespace {

using ::testing::HasSubstr;

class Road : public EditTest {
protected:
    void Run(const std::vector<std::string>& arguments) {
        printed_ = ExpectSuccess(RunHost(arguments));
    }
};

// Two unit boxes side by side, as soups, become one box of 2 x 1 x 1 without the wall between them.
TEST_F(Road, TwoSoupsBecomeOneCleanShadedMesh) {
    const std::string room = Path("room.vrd");
    Run({"make", "box", "--from", "0", "0", "0", "--to", "1", "1", "1", "-o", room});
    Run({"export", room, Path("left.stl")});
    Run({"transform", room, "-o", room, "--translate", "1", "0", "0"});
    Run({"export", room, Path("right.stl")});
    Run({"import", Path("left.stl"), Path("right.stl"), "-o", room});
    Run({"clean", room, "-o", room});
    // three vertices a triangle; then 8 corners a box
    EXPECT_THAT(printed_, HasSubstr("cleaned: 72 -> 16 vertices, 24 -> 24 triangles\n"));
    Run({"merge", room, "-o", room});
    EXPECT_THAT(printed_, HasSubstr("merged: 2 objects -> 1, 12 vertices, 24 triangles\n"));
    // the right side of the first box and the left one of the second
    Run({"delete-faces", room, "-o", room, "--faces", "20,21,4,5", "--compact"});
    Run({"normals", room, "-o", room, "--crease-angle", "30", "--weight", "angle"});
    // three sides meet at each of 8 corners, two at each of the 4 vertices in the middle
    EXPECT_THAT(printed_, HasSubstr("made: 32 normals for 20 triangles\n"));
    Run({"info", room});
    EXPECT_THAT(printed_, HasSubstr("  triangles: 20\n  vertices: 12\n"));
    EXPECT_THAT(printed_, HasSubstr("  area: 10\n  volume: 2\n  free edges: 0\n"));
    Run({"export", room, Path("room.glb")});
}

}  // namespace
}  // namespace Vr::test

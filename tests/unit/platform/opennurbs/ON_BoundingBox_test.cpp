// Boxes against the recorded results, and what growing does to a broken one.
#include <limits>

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/Release.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::GoldenCases;
using kerneltest::GoldenLine;

namespace {

constexpr char kFile[] = "boxes.txt";

std::vector<ON_BoundingBox> Boxes(const char* keyword, size_t expectedCount) {
    std::vector<ON_BoundingBox> boxes;
    for (GoldenLine& line : GoldenCases(kFile, keyword, expectedCount)) {
        boxes.push_back(line.Box());
    }
    return boxes;
}

}  // namespace

TEST(ON_BoundingBox, DefaultIsTheRecordedInvalidBox) {
    EXPECT_SAME_BITS(ON_BoundingBox(), Boxes("default", 1).at(0));
    EXPECT_FALSE(ON_BoundingBox().IsValid());
}

TEST(ON_BoundingBox, ValidityCenterAndDiagonalAreTheRecordedOnes) {
    for (GoldenLine& line : GoldenCases(kFile, "box", 10)) {
        SCOPED_TRACE(line.Where());
        const ON_BoundingBox box = line.Box();
        EXPECT_EQ(box.IsValid(), line.Flag() && kerneltest::IsWithinLimits(box));
        EXPECT_SAME_BITS(box.Diagonal(), line.Vector());
        EXPECT_SAME_BITS(box.Center(), line.Point());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_BoundingBox, CornersAreTheRecordedOnes) {
    const std::vector<ON_BoundingBox> boxes = Boxes("box", 10);
    for (GoldenLine& line : GoldenCases(kFile, "corner", 120)) {
        SCOPED_TRACE(line.Where());
        const ON_BoundingBox& box = boxes.at(line.Count());
        const int i = line.Integer();
        const int j = line.Integer();
        const int k = line.Integer();
        EXPECT_SAME_BITS(box.Corner(i, j, k), line.Point());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_BoundingBox, GrowingGivesTheRecordedBoxes) {
    std::vector<ON_BoundingBox> growing = Boxes("start", 11);
    for (GoldenLine& line : GoldenCases(kFile, "set", 29)) {
        SCOPED_TRACE(line.Where());
        ON_BoundingBox& box = growing.at(line.Count());
        const ON_3dPoint point = line.Point();
        const int grows = line.Integer();
        EXPECT_EQ(box.Set(point, grows), line.Flag());
        EXPECT_SAME_BITS(box, line.Box());
        EXPECT_EQ(box.IsValid(), line.Flag());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_BoundingBox, GrowingAnInvalidBoxReplacesIt) {
    ON_BoundingBox inverted(ON_3dPoint(0.0, 5.0, 0.0), ON_3dPoint(9.0, 4.0, 9.0));
    EXPECT_TRUE(inverted.Set(ON_3dPoint(1.0, 2.0, 3.0), 1));
    EXPECT_SAME_BITS(inverted,
                     ON_BoundingBox(ON_3dPoint(1.0, 2.0, 3.0), ON_3dPoint(1.0, 2.0, 3.0)));
}

TEST(ON_BoundingBox, NanCoordinateLeavesItsAxisAlone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    ON_BoundingBox box(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 1.0, 1.0));
    box.Set(ON_3dPoint(nan, 2.0, -1.0), 1);
    EXPECT_SAME_BITS(box, ON_BoundingBox(ON_3dPoint(0.0, 0.0, -1.0), ON_3dPoint(1.0, 2.0, 1.0)));
}

TEST(ON_BoundingBox, InfiniteCoordinateIsStoredAndTheNextPointReplacesTheBox) {
    const double infinity = std::numeric_limits<double>::infinity();
    ON_BoundingBox box(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 1.0, 1.0));
    box.Set(ON_3dPoint(infinity, 0.0, 0.0), 1);
    EXPECT_EQ(box.m_max.x, infinity);
    EXPECT_FALSE(box.IsValid());
    box.Set(ON_3dPoint(7.0, 8.0, 9.0), 1);
    EXPECT_SAME_BITS(box, ON_BoundingBox(ON_3dPoint(7.0, 8.0, 9.0), ON_3dPoint(7.0, 8.0, 9.0)));
}

TEST(ON_BoundingBox, MinusZeroNeverReplacesZero) {
    ON_BoundingBox box(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(0.0, 0.0, 0.0));
    box.Set(ON_3dPoint(-0.0, -0.0, -0.0), 1);
    EXPECT_SAME_BITS(box, ON_BoundingBox(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(0.0, 0.0, 0.0)));
}

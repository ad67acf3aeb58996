// Planes against the recorded results, and the signs of their axes by hand.
#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::GoldenCases;
using kerneltest::GoldenLine;

namespace {

constexpr char kFile[] = "planes.txt";

ON_Plane ThroughOrigin(double x, double y, double z) {
    return ON_Plane(ON_3dPoint(0.0, 0.0, 0.0), ON_3dVector(x, y, z));
}

}  // namespace

TEST(ON_Plane, DefaultIsTheRecordedWorldPlane) {
    for (GoldenLine& line : GoldenCases(kFile, "default", 1)) {
        EXPECT_SAME_BITS(ON_Plane(), line.Plane());
    }
    EXPECT_TRUE(ON_Plane().IsValid());
}

TEST(ON_Plane, PlanesFromNormalsGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "normal", 73)) {
        SCOPED_TRACE(line.Where());
        const ON_3dPoint origin = line.Point();
        const ON_3dVector normal = line.Vector();
        const ON_Plane expected = line.Plane();
        EXPECT_SAME_BITS(ON_Plane(origin, normal), expected);
        ON_Plane created;
        created.plane_equation = ON_PlaneEquation();
        EXPECT_EQ(created.CreateFromNormal(origin, normal), line.Flag());
        EXPECT_SAME_BITS(created, expected);
        EXPECT_EQ(created.IsValid(), line.Flag());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Plane, PlanesFromFramesGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "frame", 6)) {
        SCOPED_TRACE(line.Where());
        const ON_3dPoint origin = line.Point();
        const ON_3dVector x = line.Vector();
        const ON_3dVector y = line.Vector();
        const ON_Plane expected = line.Plane();
        EXPECT_SAME_BITS(ON_Plane(origin, x, y), expected);
        ON_Plane created;
        EXPECT_EQ(created.CreateFromFrame(origin, x, y), line.Flag());
        EXPECT_SAME_BITS(created, expected);
        EXPECT_EQ(created.IsValid(), line.Flag());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Plane, AxesOfAnUpwardNormalCarryMinusZeros) {
    const ON_Plane plane = ThroughOrigin(0.0, 0.0, 1.0);
    EXPECT_SAME_BITS(plane.xaxis, ON_3dVector(1.0, 0.0, -0.0));
    EXPECT_SAME_BITS(plane.yaxis, ON_3dVector(-0.0, 1.0, 0.0));
    EXPECT_SAME_BITS(plane.plane_equation.d, -0.0);
}

TEST(ON_Plane, DownwardNormalTurnsTheXAxis) {
    EXPECT_SAME_BITS(ThroughOrigin(0.0, 0.0, -1.0).xaxis, ON_3dVector(-1.0, 0.0, -0.0));
}

TEST(ON_Plane, SidewaysNormalExchangesItsTwoLargestComponents) {
    EXPECT_SAME_BITS(ThroughOrigin(1.0, 0.0, 0.0).xaxis, ON_3dVector(-0.0, 1.0, 0.0));
    EXPECT_SAME_BITS(ThroughOrigin(0.0, 1.0, 0.0).xaxis, ON_3dVector(0.0, -0.0, 1.0));
    EXPECT_SAME_BITS(ThroughOrigin(0.0, 1.0, 0.0).yaxis, ON_3dVector(1.0, 0.0, -0.0));
}

TEST(ON_Plane, NullNormalGivesNullAxes) {
    const ON_Plane plane = ThroughOrigin(0.0, 0.0, 0.0);
    const ON_3dVector zero(0.0, 0.0, 0.0);
    EXPECT_SAME_BITS(plane.xaxis, zero);
    EXPECT_SAME_BITS(plane.yaxis, zero);
    EXPECT_SAME_BITS(plane.zaxis, zero);
    EXPECT_FALSE(plane.IsValid());
}

TEST(ON_Plane, EquationIsKeptWhenTheOriginIsNotUsable) {
    ON_Plane plane(ON_3dPoint(0.0, 0.0, 7.0), ON_3dVector(0.0, 0.0, 1.0));
    EXPECT_TRUE(
        plane.CreateFromNormal(ON_3dPoint(ON_UNSET_VALUE, 0.0, 0.0), ON_3dVector(1.0, 0.0, 0.0)));
    EXPECT_SAME_BITS(plane.zaxis, ON_3dVector(1.0, 0.0, 0.0));
    EXPECT_SAME_BITS(plane.plane_equation.d, -7.0);
}

TEST(ON_Plane, EquationIsKeptWhenThePointIsNotUsable) {
    ON_PlaneEquation equation(1.0, 2.0, 3.0, 4.0);
    EXPECT_FALSE(equation.Create(ON_3dPoint(ON_UNSET_VALUE, 0.0, 0.0), ON_3dVector(0.0, 0.0, 1.0)));
    EXPECT_SAME_BITS(ON_3dVector(equation.x, equation.y, equation.z), ON_3dVector(1.0, 2.0, 3.0));
    EXPECT_SAME_BITS(equation.d, 4.0);
}

TEST(ON_Plane, EqualityIgnoresTheEquation) {
    ON_Plane moved;
    moved.plane_equation.d = 42.0;
    EXPECT_TRUE(moved == ON_Plane());
    moved.origin.x = 1.0;
    EXPECT_TRUE(moved != ON_Plane());
}

TEST(ON_Plane, EquationThatMissesTheOriginIsInvalid) {
    ON_Plane plane;
    plane.plane_equation.d = 1e-9;
    EXPECT_FALSE(plane.IsValid());
    plane.plane_equation.d = 1e-10;
    EXPECT_TRUE(plane.IsValid());
}

TEST(ON_Plane, RoundingFarFromTheWorldOriginIsTolerated) {
    ON_Plane plane(ON_3dPoint(0.0, 0.0, 1e9), ON_3dVector(0.0, 0.0, 1.0));
    // allowed: (1e9 + 1e9) * 10 * 2^-52 = 4.4e-6
    plane.plane_equation.d += 4e-6;
    EXPECT_TRUE(plane.IsValid());
    plane.plane_equation.d += 4e-6;
    EXPECT_FALSE(plane.IsValid());
}

TEST(ON_Plane, LeftHandedFrameIsInvalid) {
    ON_Plane plane;
    plane.xaxis.Reverse();
    EXPECT_FALSE(plane.IsValid());
}

TEST(ON_Plane, SlightlySkewedFrameIsJudgedByItsVolume) {
    // A skew of 1e-6 leaves a volume of sqrt(1 - 1e-12); one of 2^-15 is refused at once.
    ON_Plane plane;
    plane.yaxis = ON_3dVector(1e-6, 1.0, 0.0);
    EXPECT_TRUE(plane.IsValid());
    plane.yaxis = ON_3dVector(3.1e-5, 1.0, 0.0);
    EXPECT_FALSE(plane.IsValid());
}

TEST(ON_Plane, PointAtAddsTheAxesInOrder) {
    const ON_Plane plane(ON_3dPoint(1.0, 2.0, 3.0), ON_3dVector(1.0, 0.0, 0.0),
                         ON_3dVector(0.0, 0.0, 1.0));
    EXPECT_SAME_BITS(plane.PointAt(10.0, 20.0), ON_3dPoint(11.0, 2.0, 23.0));
    // the z axis is x cross y = (0, -1, 0)
    EXPECT_SAME_BITS(plane.PointAt(10.0, 20.0, 30.0), ON_3dPoint(11.0, -28.0, 23.0));
}

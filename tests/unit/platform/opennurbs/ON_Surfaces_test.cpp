// The four kinds of surfaces: evaluation, ownership, and the records that need a look by hand.
#include "unit/platform/opennurbs/ControlPoint.h"
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::ControlPointOf;
using kerneltest::MemoryArchive;

namespace {

ON_LineCurve* Line(double x0, double y0, double z0, double x1, double y1, double z1) {
    return new ON_LineCurve(ON_3dPoint(x0, y0, z0), ON_3dPoint(x1, y1, z1));
}

void ExpectNear(const ON_3dPoint& actual, const ON_3dPoint& expected) {
    // a few roundings of coordinates up to 10
    EXPECT_LE(actual.DistanceTo(expected), 1e-14)
        << actual.x << " " << actual.y << " " << actual.z << " instead of " << expected.x << " "
        << expected.y << " " << expected.z;
}

// x + y/2 on [0, 1] x [0, 2], height x*y/2
ON_NurbsSurface Saddle() {
    ON_NurbsSurface saddle(3, false, 2, 2, 2, 2);
    saddle.SetKnot(0, 0, 0.0);
    saddle.SetKnot(0, 1, 1.0);
    saddle.SetKnot(1, 0, 0.0);
    saddle.SetKnot(1, 1, 2.0);
    saddle.SetCV(0, 0, ON_3dPoint(0.0, 0.0, 0.0));
    saddle.SetCV(0, 1, ON_3dPoint(0.0, 2.0, 0.0));
    saddle.SetCV(1, 0, ON_3dPoint(1.0, 0.0, 0.0));
    saddle.SetCV(1, 1, ON_3dPoint(1.0, 2.0, 1.0));
    return saddle;
}

ON_RevSurface Cylinder() {
    ON_RevSurface cylinder;
    cylinder.m_curve = Line(1.0, 0.0, 0.0, 1.0, 0.0, 2.0);
    return cylinder;
}

ON_SumSurface Slab() {
    ON_SumSurface slab;
    slab.m_curve[0] = Line(0.0, 0.0, 0.0, 2.0, 0.0, 0.0);
    slab.m_curve[1] = Line(0.0, 0.0, 0.0, 0.0, 3.0, 4.0);
    slab.m_basepoint = ON_3dVector(1.0, 1.0, 1.0);
    return slab;
}

// Checks that a surface and its NURBS form have the same corners and the same middle of both edges.
void ExpectFormMeetsSurface(const ON_Surface& surface) {
    ON_NurbsSurface form;
    ASSERT_NE(surface.GetNurbForm(form), 0);
    for (int direction = 0; direction < 2; ++direction) {
        EXPECT_SAME_BITS(form.Domain(direction), surface.Domain(direction));
    }
    for (const double u : {surface.Domain(0)[0], surface.Domain(0).Mid(), surface.Domain(0)[1]}) {
        for (const double v :
             {surface.Domain(1)[0], surface.Domain(1).Mid(), surface.Domain(1)[1]}) {
            ExpectNear(form.PointAt(u, v), surface.PointAt(u, v));
        }
    }
}

}  // namespace

TEST(ON_PlaneSurface, DomainsAreMappedOntoTheExtents) {
    ON_PlaneSurface surface{ON_Plane()};
    surface.SetDomain(0, -1.0, 3.0);
    surface.SetExtents(1, ON_Interval(10.0, 20.0), true);
    EXPECT_SAME_BITS(surface.PointAt(1.0, 15.0), ON_3dPoint(0.5, 15.0, 0.0));
    EXPECT_SAME_BITS(surface.PointAt(3.0, 20.0), ON_3dPoint(1.0, 20.0, 0.0));
    EXPECT_FALSE(surface.SetDomain(0, 1.0, 1.0));
    EXPECT_SAME_BITS(surface.Domain(0), ON_Interval(-1.0, 3.0));
    ExpectFormMeetsSurface(surface);
}

TEST(ON_PlaneSurface, RecordOfVersionOneZeroHasNoExtents) {
    ON_PlaneSurface surface{ON_Plane()};
    surface.SetDomain(0, 2.0, 5.0);
    MemoryArchive archive(ON::archive_mode::readwrite);
    ASSERT_TRUE(surface.Write(archive));
    archive.bytes[0] = 0x10;
    archive.bytes.resize(archive.bytes.size() - 32);
    archive.position = 0;
    ON_PlaneSurface copy;
    EXPECT_TRUE(copy.Read(archive));
    EXPECT_SAME_BITS(copy.Extents(0), ON_Interval(2.0, 5.0));
    EXPECT_SAME_BITS(copy.Extents(1), ON_Interval(0.0, 1.0));
}

TEST(ON_NurbsSurface, BilinearPointIsTheMeanOfTheCorners) {
    EXPECT_SAME_BITS(Saddle().PointAt(0.5, 1.0), ON_3dPoint(0.5, 1.0, 0.25));
    EXPECT_SAME_BITS(Saddle().PointAt(1.0, 2.0), ON_3dPoint(1.0, 2.0, 1.0));
}

TEST(ON_NurbsSurface, DirectionsHaveTheirOwnDegreeAndWeights) {
    // A quarter of a cylinder of radius 2 around z: the weight of the middle row is cos(pi/4).
    ON_RevSurface quarter;
    quarter.m_curve = Line(2.0, 0.0, 0.0, 2.0, 0.0, 6.0);
    quarter.m_angle = ON_Interval(0.0, 0.5 * ON_PI);
    quarter.m_t = quarter.m_angle;
    ON_NurbsSurface form;
    ASSERT_NE(quarter.GetNurbForm(form), 0);
    EXPECT_EQ(form.Order(0), 3);
    EXPECT_EQ(form.Order(1), 2);
    const double half = 2.0 * std::sqrt(0.5);
    ExpectNear(form.PointAt(0.25 * ON_PI, 3.0), ON_3dPoint(half, half, 3.0));
}

TEST(ON_NurbsSurface, TransposingExchangesTheDirections) {
    ON_NurbsSurface saddle = Saddle();
    saddle.Transpose();
    EXPECT_SAME_BITS(saddle.Domain(0), ON_Interval(0.0, 2.0));
    EXPECT_SAME_BITS(saddle.PointAt(1.5, 0.5), Saddle().PointAt(0.5, 1.5));
}

TEST(ON_NurbsSurface, CopyHasItsOwnArrays) {
    const ON_NurbsSurface saddle = Saddle();
    ON_NurbsSurface copy(saddle);
    copy.SetCV(1, 1, ON_3dPoint(9.0, 9.0, 9.0));
    EXPECT_SAME_BITS(ControlPointOf(saddle, 1, 1), ON_3dPoint(1.0, 2.0, 1.0));
}

TEST(ON_RevSurface, PointsGoAroundTheAxis) {
    const ON_RevSurface cylinder = Cylinder();
    ExpectNear(cylinder.PointAt(0.0, 0.5), ON_3dPoint(1.0, 0.0, 0.5));
    ExpectNear(cylinder.PointAt(0.5 * ON_PI, 2.0), ON_3dPoint(0.0, 1.0, 2.0));
    ExpectFormMeetsSurface(cylinder);
}

TEST(ON_RevSurface, StartAngleTurnsTheCurve) {
    ON_RevSurface part = Cylinder();
    part.m_angle = ON_Interval(0.5 * ON_PI, ON_PI);
    part.m_t = ON_Interval(0.0, 1.0);
    ExpectNear(part.PointAt(0.0, 0.0), ON_3dPoint(0.0, 1.0, 0.0));
    ExpectNear(part.PointAt(1.0, 0.0), ON_3dPoint(-1.0, 0.0, 0.0));
    ExpectFormMeetsSurface(part);
}

TEST(ON_RevSurface, TransposedDirectionsAreExchanged) {
    ON_RevSurface cylinder = Cylinder();
    cylinder.m_bTransposed = 1;
    EXPECT_SAME_BITS(cylinder.Domain(0), ON_Interval(0.0, 2.0));
    ExpectNear(cylinder.PointAt(2.0, 0.5 * ON_PI), ON_3dPoint(0.0, 1.0, 2.0));
}

TEST(ON_RevSurface, CurveThatBeginsOnTheAxisMakesAPole) {
    // 1e-11 counts as on the axis, whose nearest point is (0, 0, 0.5).
    ON_RevSurface cone;
    cone.m_curve = Line(1e-11, 0.0, 0.5, 1.0, 0.0, 2.0);
    ON_NurbsSurface form;
    ASSERT_NE(cone.GetNurbForm(form), 0);
    for (int i = 0; i < form.CVCount(0); ++i) {
        EXPECT_TRUE(ControlPointOf(form, i, 0) == ON_3dPoint(0.0, 0.0, 0.5)) << i;
    }
    EXPECT_SAME_BITS(ControlPointOf(form, 0, 1), ON_3dPoint(1.0, 0.0, 2.0));
}

TEST(ON_RevSurface, FlatCurveIsRaisedToThreeDimensions) {
    ON_RevSurface disc;
    disc.m_curve = new ON_LineCurve(ON_2dPoint(1.0, 0.0), ON_2dPoint(2.0, 0.0));
    ON_NurbsSurface form;
    EXPECT_NE(disc.GetNurbForm(form), 0);
    EXPECT_EQ(form.Dimension(), 3);
}

TEST(ON_RevSurface, RecordOfMajorVersionOneTakesTheAnglesAsParameters) {
    ON_RevSurface part = Cylinder();
    part.m_angle = ON_Interval(0.5, 2.0);
    MemoryArchive archive(ON::archive_mode::readwrite, {}, 4);
    ASSERT_TRUE(part.Write(archive));
    archive.bytes[0] = 0x10;
    // the parameters stand behind version 1, axis 48 and angles 16
    archive.bytes.erase(archive.bytes.begin() + 65, archive.bytes.begin() + 81);
    archive.position = 0;
    ON_RevSurface copy;
    EXPECT_TRUE(copy.Read(archive));
    EXPECT_SAME_BITS(copy.m_t, ON_Interval(0.5, 2.0));
    EXPECT_NE(copy.m_curve, nullptr);
}

TEST(ON_RevSurface, CopyHasItsOwnCurve) {
    const ON_RevSurface cylinder = Cylinder();
    ON_RevSurface copy;
    copy = cylinder;
    EXPECT_NE(copy.m_curve, cylinder.m_curve);
    EXPECT_TRUE(copy.IsValid());
}

TEST(ON_SumSurface, PointIsTheSumOfBothCurvesAndTheBasePoint) {
    const ON_SumSurface slab = Slab();
    EXPECT_SAME_BITS(slab.PointAt(1.0, 5.0), ON_3dPoint(2.0, 4.0, 5.0));
    ExpectFormMeetsSurface(slab);
}

TEST(ON_SumSurface, BasePointIsAddedLast) {
    // 1e16 swallows a 1, but not the 2 of both curves.
    ON_SumSurface surface;
    surface.m_curve[0] = Line(1.0, 0.0, 0.0, 2.0, 0.0, 0.0);
    surface.m_curve[1] = Line(1.0, 0.0, 0.0, 1.0, 3.0, 0.0);
    surface.m_basepoint = ON_3dVector(1e16, 0.0, 0.0);
    ON_NurbsSurface form;
    ASSERT_NE(surface.GetNurbForm(form), 0);
    EXPECT_EQ(ControlPointOf(form, 0, 0).x, 1e16 + 2.0);
}

TEST(ON_SumSurface, RationalCurveMakesARationalForm) {
    ON_SumSurface surface;
    surface.m_curve[0] = new ON_ArcCurve(ON_Arc(ON_Circle(), 1.0));
    surface.m_curve[1] = Line(0.0, 0.0, 0.0, 0.0, 0.0, 5.0);
    ExpectFormMeetsSurface(surface);
}

TEST(ON_SumSurface, CurvesOfTwoDimensionsHaveNoForm) {
    ON_SumSurface slab = Slab();
    ON_LineCurve::Cast(slab.m_curve[1])->m_dim = 2;
    ON_NurbsSurface form;
    EXPECT_EQ(slab.GetNurbForm(form), 0);
    EXPECT_FALSE(slab.IsValid());
}

TEST(ON_SumSurface, CopyHasItsOwnCurves) {
    const ON_SumSurface slab = Slab();
    ON_SumSurface copy(slab);
    EXPECT_NE(copy.m_curve[0], slab.m_curve[0]);
    EXPECT_NE(copy.m_curve[1], slab.m_curve[1]);
    EXPECT_TRUE(copy.IsValid());
}

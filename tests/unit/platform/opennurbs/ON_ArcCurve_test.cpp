// Arcs as curves.
#include "unit/platform/opennurbs/ControlPoint.h"
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

namespace {

int ControlPointCount(double angle) {
    ON_NurbsCurve form;
    EXPECT_NE(ON_ArcCurve(ON_Arc(ON_Circle(), angle)).GetNurbForm(form), 0);
    return form.CVCount();
}

}  // namespace

TEST(ON_ArcCurve, DomainIsTheLength) {
    EXPECT_SAME_BITS(ON_ArcCurve(ON_Arc(ON_Plane(), 2.5, 5.0)).Domain(), ON_Interval(0.0, 12.5));
    EXPECT_SAME_BITS(ON_ArcCurve(ON_Circle(ON_Plane(), 1.5)).Domain(),
                     ON_Interval(0.0, 3.0 * ON_PI));
}

TEST(ON_ArcCurve, SpansAreOneTwoOrFourButNeverThree) {
    EXPECT_EQ(ControlPointCount(0.5 * ON_PI), 3);
    EXPECT_EQ(ControlPointCount(0.5 * ON_PI + 1e-6), 5);
    EXPECT_EQ(ControlPointCount(ON_PI), 5);
    EXPECT_EQ(ControlPointCount(ON_PI + 1e-6), 9);
    EXPECT_EQ(ControlPointCount(1.5 * ON_PI), 9);
    EXPECT_EQ(ControlPointCount(2.0 * ON_PI), 9);
}

TEST(ON_ArcCurve, FullCircleEndsExactlyWhereItStarts) {
    const ON_Plane plane(ON_3dPoint(1.0, 2.0, 3.0), ON_3dVector(1.0, 2.0, 3.0));
    ON_NurbsCurve form;
    ASSERT_NE(ON_ArcCurve(ON_Circle(plane, 1.5)).GetNurbForm(form), 0);
    EXPECT_SAME_BITS(kerneltest::ControlPointOf(form, 8), kerneltest::ControlPointOf(form, 0));
}

TEST(ON_ArcCurve, NurbsFormStaysOnTheCircle) {
    const ON_ArcCurve arc(ON_Arc(ON_Plane(), 2.0, 5.0));
    ON_NurbsCurve form;
    ASSERT_NE(arc.GetNurbForm(form), 0);
    for (int step = 0; step <= 100; ++step) {
        // 2 times a few roundings of numbers up to 2
        EXPECT_NEAR(form.PointAt(0.1 * step).DistanceTo(ON_3dPoint(0.0, 0.0, 0.0)), 2.0, 8e-15);
    }
}

TEST(ON_ArcCurve, ParameterIsMappedToTheAngle) {
    const ON_ArcCurve arc(ON_Arc(ON_Plane(), 2.0, ON_PI), 10.0, 20.0);
    EXPECT_SAME_BITS(arc.PointAt(10.0), ON_3dPoint(2.0, 0.0, 0.0));
    // The cosine of a quarter turn is 0, or what the C library says of pi/2.
    EXPECT_LE(arc.PointAt(15.0).DistanceTo(ON_3dPoint(0.0, 2.0, 0.0)), 2e-16);
}

TEST(ON_ArcCurve, UnknownMajorVersionFails) {
    kerneltest::MemoryArchive archive(ON::archive_mode::read, {0x20, 0, 0, 0, 0});
    EXPECT_FALSE(ON_ArcCurve().Read(archive));
}

TEST(ON_ArcCurve, OddDimensionBecomesThree) {
    ON_ArcCurve arc;
    arc.m_dim = 5;
    kerneltest::MemoryArchive archive(ON::archive_mode::readwrite);
    ASSERT_TRUE(arc.Write(archive));
    archive.position = 0;
    ASSERT_TRUE(arc.Read(archive));
    EXPECT_EQ(arc.m_dim, 3);
}

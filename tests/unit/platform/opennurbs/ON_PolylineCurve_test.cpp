// Polylines as curves.
#include "unit/platform/opennurbs/Release.h"
#include "unit/platform/opennurbs/SameBits.h"

namespace {

ON_PolylineCurve Corner() {
    ON_SimpleArray<ON_3dPoint> points;
    points.Append(ON_3dPoint(0.0, 0.0, 0.0));
    points.Append(ON_3dPoint(1.0, 0.0, 0.0));
    points.Append(ON_3dPoint(1.0, 2.0, 5.0));
    return ON_PolylineCurve(points);
}

}  // namespace

TEST(ON_PolylineCurve, ParametersCountThePoints) {
    const ON_PolylineCurve corner = Corner();
    EXPECT_EQ(corner.m_t.Count(), 3);
    EXPECT_SAME_BITS(corner.Domain(), ON_Interval(0.0, 2.0));
    EXPECT_TRUE(corner.IsValid());
}

TEST(ON_PolylineCurve, PointsLieBetweenTheirNeighbours) {
    const ON_PolylineCurve corner = Corner();
    EXPECT_SAME_BITS(corner.PointAt(0.25), ON_3dPoint(0.25, 0.0, 0.0));
    EXPECT_SAME_BITS(corner.PointAt(1.0), ON_3dPoint(1.0, 0.0, 0.0));
    EXPECT_SAME_BITS(corner.PointAt(1.5), ON_3dPoint(1.0, 1.0, 2.5));
    EXPECT_SAME_BITS(corner.PointAtEnd(), ON_3dPoint(1.0, 2.0, 5.0));
}

TEST(ON_PolylineCurve, FewerThanTwoPointsAreValidButHaveNoNurbsForm) {
    ON_PolylineCurve empty;
    ON_NurbsCurve form;
    // Later releases ask for two points.
    EXPECT_EQ(empty.IsValid() != 0, !kerneltest::kIsLaterRelease);
    EXPECT_EQ(empty.GetNurbForm(form), 0);
    EXPECT_SAME_BITS(empty.PointAt(0.0), ON_UNSET_POINT);
    EXPECT_FALSE(empty.BoundingBox().IsValid());
}

TEST(ON_PolylineCurve, UnusableCoordinateHasNoNurbsForm) {
    ON_PolylineCurve corner = Corner();
    corner.m_pline[1].y = ON_UNSET_VALUE;
    ON_NurbsCurve form;
    EXPECT_EQ(corner.GetNurbForm(form), 0);
}

TEST(ON_PolylineCurve, BoxHoldsThePoints) {
    EXPECT_SAME_BITS(Corner().BoundingBox(),
                     ON_BoundingBox(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 2.0, 5.0)));
}

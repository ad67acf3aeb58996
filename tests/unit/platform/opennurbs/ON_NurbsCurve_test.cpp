// NURBS curves: storage, evaluation and the edits that keep the curve.
#include "unit/platform/opennurbs/ControlPoint.h"
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::ControlPointOf;
using kerneltest::Doubles;

namespace {

ON_NurbsCurve CurveOf(int order, const Doubles& knots, const std::vector<ON_3dPoint>& points) {
    ON_NurbsCurve curve(3, false, order, static_cast<int>(points.size()));
    std::copy(knots.begin(), knots.end(), curve.m_knot);
    for (size_t number = 0; number < points.size(); ++number) {
        curve.SetCV(static_cast<int>(number), points[number]);
    }
    return curve;
}

// x runs evenly, so that parameters can be seen in the points.
ON_NurbsCurve Parabola() {
    return CurveOf(
        3, {0.0, 0.0, 1.0, 1.0},
        {ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 2.0, 0.0), ON_3dPoint(2.0, 0.0, 0.0)});
}

// Degree 2 on the uniform knots -1, 0, 1, 2, so that the domain is [0, 1].
ON_NurbsCurve Unclamped() {
    return CurveOf(
        3, {-1.0, 0.0, 1.0, 2.0},
        {ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(2.0, 4.0, 0.0), ON_3dPoint(4.0, 0.0, 8.0)});
}

Doubles KnotsOf(const ON_NurbsCurve& curve) {
    return Doubles(curve.m_knot, curve.m_knot + curve.KnotCount());
}

}  // namespace

TEST(ON_NurbsCurve, PointIsTheMeanOfMeansOnAParabola) {
    // (P0 + 2 P1 + P2) / 4 in the middle
    EXPECT_SAME_BITS(Parabola().PointAt(0.5), ON_3dPoint(1.0, 1.0, 0.0));
    EXPECT_SAME_BITS(Parabola().PointAtStart(), ON_3dPoint(0.0, 0.0, 0.0));
    EXPECT_SAME_BITS(Parabola().PointAtEnd(), ON_3dPoint(2.0, 0.0, 0.0));
}

TEST(ON_NurbsCurve, EachSpanHasItsOwnPoints) {
    const ON_NurbsCurve polyline =
        CurveOf(2, {0.0, 1.0, 3.0},
                {ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 0.0, 0.0), ON_3dPoint(1.0, 4.0, 0.0)});
    EXPECT_SAME_BITS(polyline.PointAt(0.5), ON_3dPoint(0.5, 0.0, 0.0));
    EXPECT_SAME_BITS(polyline.PointAt(1.0), ON_3dPoint(1.0, 0.0, 0.0));
    EXPECT_SAME_BITS(polyline.PointAt(2.0), ON_3dPoint(1.0, 2.0, 0.0));
}

TEST(ON_NurbsCurve, RationalPointsAreDividedByTheirWeight) {
    ON_NurbsCurve curve(3, true, 2, 2);
    curve.SetKnot(0, 0.0);
    curve.SetKnot(1, 1.0);
    curve.SetCV(0, ON_4dPoint(0.0, 0.0, 0.0, 1.0));
    curve.SetCV(1, ON_4dPoint(6.0, 0.0, 0.0, 3.0));
    // (0 + 6) / 2 over (1 + 3) / 2
    EXPECT_SAME_BITS(curve.PointAt(0.5), ON_3dPoint(1.5, 0.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(curve, 1), ON_3dPoint(2.0, 0.0, 0.0));
    EXPECT_EQ(curve.Weight(1), 3.0);
}

TEST(ON_NurbsCurve, PaddingBetweenControlPointsIsNotWritten) {
    ON_NurbsCurve curve(3, false, 2, 2);
    curve.ReserveCVCapacity(10);
    curve.m_cv_stride = 5;
    for (int number = 0; number < 10; ++number) {
        curve.m_cv[number] = 100.0 + number;
    }
    curve.SetKnot(0, 0.0);
    curve.SetKnot(1, 1.0);
    kerneltest::MemoryArchive archive(ON::archive_mode::readwrite);
    ASSERT_TRUE(curve.Write(archive));
    archive.position = 0;
    ON_NurbsCurve copy;
    ASSERT_TRUE(copy.Read(archive));
    EXPECT_EQ(copy.m_cv_stride, 3);
    EXPECT_SAME_BITS(ControlPointOf(copy, 0), ON_3dPoint(100.0, 101.0, 102.0));
    EXPECT_SAME_BITS(ControlPointOf(copy, 1), ON_3dPoint(105.0, 106.0, 107.0));
}

TEST(ON_NurbsCurve, CopyHasItsOwnArrays) {
    const ON_NurbsCurve curve = Parabola();
    ON_NurbsCurve copy(curve);
    copy.SetCV(0, ON_3dPoint(9.0, 9.0, 9.0));
    copy.SetKnot(0, -9.0);
    EXPECT_SAME_BITS(ControlPointOf(curve, 0), ON_3dPoint(0.0, 0.0, 0.0));
    EXPECT_EQ(curve.Knot(0), 0.0);
}

TEST(ON_NurbsCurve, DomainMovesWithExactEnds) {
    ON_NurbsCurve curve = Parabola();
    // -0.3 + (0.1 + 0.3) misses 0.1.
    EXPECT_TRUE(curve.SetDomain(-0.3, 0.1));
    EXPECT_SAME_BITS(KnotsOf(curve), (Doubles{-0.3, -0.3, 0.1, 0.1}));
    EXPECT_FALSE(curve.SetDomain(1.0, 1.0));
    EXPECT_SAME_BITS(curve.Domain(), ON_Interval(-0.3, 0.1));
}

TEST(ON_NurbsCurve, ClampingPutsTheEndsOnTheCurve) {
    // A uniform parabola starts and ends in the middle of its outer edges.
    ON_NurbsCurve curve = Unclamped();
    EXPECT_TRUE(curve.ClampEnd(2));
    EXPECT_SAME_BITS(KnotsOf(curve), (Doubles{0.0, 0.0, 1.0, 1.0}));
    EXPECT_SAME_BITS(ControlPointOf(curve, 0), ON_3dPoint(1.0, 2.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(curve, 1), ON_3dPoint(2.0, 4.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(curve, 2), ON_3dPoint(3.0, 2.0, 4.0));
}

TEST(ON_NurbsCurve, RaisedLineIsDividedEvenly) {
    ON_NurbsCurve line =
        CurveOf(2, {0.0, 1.0}, {ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(3.0, 6.0, 0.0)});
    EXPECT_TRUE(line.IncreaseDegree(3));
    EXPECT_SAME_BITS(KnotsOf(line), (Doubles{0.0, 0.0, 0.0, 1.0, 1.0, 1.0}));
    // thirds, up to the rounding of 1/2 + 1/2 of them
    EXPECT_SAME_BITS(ControlPointOf(line, 0), ON_3dPoint(0.0, 0.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(line, 1), ON_3dPoint(1.0, 2.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(line, 2), ON_3dPoint(2.0, 4.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(line, 3), ON_3dPoint(3.0, 6.0, 0.0));
}

TEST(ON_NurbsCurve, RaisingTheDegreeKeepsTheCurve) {
    const ON_NurbsCurve curve =
        CurveOf(3, {0.0, 0.0, 1.0, 2.0, 2.0, 5.0, 5.0},
                {ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 2.0, 3.0), ON_3dPoint(2.0, 0.0, 1.0),
                 ON_3dPoint(4.0, 4.0, 4.0), ON_3dPoint(5.0, 0.0, 1.0), ON_3dPoint(7.0, 7.0, 0.0)});
    ON_NurbsCurve raised = curve;
    EXPECT_TRUE(raised.IncreaseDegree(5));
    EXPECT_TRUE(raised.IsValid());
    for (int step = 0; step <= 50; ++step) {
        // coordinates up to 7, some tens of roundings
        EXPECT_LT(raised.PointAt(0.1 * step).DistanceTo(curve.PointAt(0.1 * step)), 1e-13) << step;
    }
    EXPECT_FALSE(raised.IncreaseDegree(2));
}

TEST(ON_NurbsCurve, CurvesAreClampedWhereTheyAreJoined) {
    ON_NurbsCurve curve =
        CurveOf(2, {0.0, 1.0}, {ON_3dPoint(0.0, 2.0, 0.0), ON_3dPoint(1.0, 2.0, 0.0)});
    EXPECT_TRUE(curve.Append(Unclamped()));
    EXPECT_SAME_BITS(KnotsOf(curve), (Doubles{0.0, 0.0, 1.0, 1.0, 2.0, 3.0}));
    EXPECT_SAME_BITS(ControlPointOf(curve, 2), ON_3dPoint(1.0, 2.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(curve, 4), ON_3dPoint(4.0, 0.0, 8.0));
}

TEST(ON_NurbsCurve, AppendDropsTheFirstControlPointWithoutComparing) {
    ON_NurbsCurve curve =
        CurveOf(2, {0.0, 1.0}, {ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 0.0, 0.0)});
    const ON_NurbsCurve elsewhere =
        CurveOf(2, {5.0, 7.0}, {ON_3dPoint(50.0, 0.0, 0.0), ON_3dPoint(60.0, 0.0, 0.0)});
    EXPECT_TRUE(curve.Append(elsewhere));
    EXPECT_SAME_BITS(KnotsOf(curve), (Doubles{0.0, 1.0, 3.0}));
    EXPECT_SAME_BITS(ControlPointOf(curve, 1), ON_3dPoint(1.0, 0.0, 0.0));
    EXPECT_SAME_BITS(ControlPointOf(curve, 2), ON_3dPoint(60.0, 0.0, 0.0));
}

TEST(ON_NurbsCurve, WeightsOfAnAppendedCurveAreScaledToFit) {
    ON_NurbsCurve curve(3, true, 2, 2);
    curve.SetKnot(0, 0.0);
    curve.SetKnot(1, 1.0);
    curve.SetCV(0, ON_4dPoint(0.0, 0.0, 0.0, 1.0));
    curve.SetCV(1, ON_4dPoint(2.0, 0.0, 0.0, 2.0));
    ON_NurbsCurve tail =
        CurveOf(2, {0.0, 1.0}, {ON_3dPoint(1.0, 0.0, 0.0), ON_3dPoint(5.0, 0.0, 0.0)});
    EXPECT_TRUE(curve.Append(tail));
    EXPECT_EQ(curve.Weight(2), 2.0);
    EXPECT_EQ(curve.CV(2)[0], 10.0);
}

TEST(ON_NurbsCurve, DroppingADimensionKeepsTheWeight) {
    ON_NurbsCurve curve(3, true, 2, 2);
    curve.SetCV(1, ON_4dPoint(2.0, 3.0, 4.0, 5.0));
    EXPECT_TRUE(curve.ChangeDimension(2));
    EXPECT_SAME_BITS(Doubles(curve.CV(1), curve.CV(1) + 3), (Doubles{2.0, 3.0, 5.0}));
    EXPECT_TRUE(curve.ChangeDimension(3));
    EXPECT_SAME_BITS(Doubles(curve.CV(1), curve.CV(1) + 4), (Doubles{2.0, 3.0, 0.0, 5.0}));
}

TEST(ON_NurbsCurve, DecreasingOrOverfullKnotsAreInvalid) {
    ON_NurbsCurve curve = Parabola();
    EXPECT_TRUE(curve.IsValid());
    curve.SetKnot(1, 2.0);
    EXPECT_FALSE(curve.IsValid());
    curve.SetKnot(1, 1.0);
    EXPECT_FALSE(curve.IsValid());
}

TEST(ON_NurbsCurve, BoxHoldsTheControlPoints) {
    EXPECT_SAME_BITS(Parabola().BoundingBox(),
                     ON_BoundingBox(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(2.0, 2.0, 0.0)));
    EXPECT_FALSE(ON_NurbsCurve().BoundingBox().IsValid());
}

// Lines as curves.
#include "unit/platform/opennurbs/SameBits.h"

namespace {

const ON_3dPoint kStart(1.0, 1.0, 0.0);
const ON_3dPoint kEnd(4.0, 5.0, 0.0);

}  // namespace

TEST(ON_LineCurve, DomainIsTheLength) {
    // sqrt(3 * 3 + 4 * 4) = 5
    EXPECT_SAME_BITS(ON_LineCurve(kStart, kEnd).Domain(), ON_Interval(0.0, 5.0));
    EXPECT_SAME_BITS(ON_LineCurve(kStart, kStart).Domain(), ON_Interval(0.0, 1.0));
    EXPECT_SAME_BITS(ON_LineCurve(ON_Line(kStart, kEnd), -1.0, 2.0).Domain(),
                     ON_Interval(-1.0, 2.0));
}

TEST(ON_LineCurve, PointsInThePlaneMakeALineOfDimensionTwo) {
    const ON_LineCurve line(ON_2dPoint(1.0, 2.0), ON_2dPoint(3.0, 4.0));
    EXPECT_EQ(line.Dimension(), 2);
    EXPECT_SAME_BITS(line.PointAtEnd(), ON_3dPoint(3.0, 4.0, 0.0));
}

TEST(ON_LineCurve, EndsAreExact) {
    const ON_LineCurve line(ON_Line(ON_3dPoint(0.1, 0.2, 0.3), ON_3dPoint(-7.0, 8.0, 9.5)), -1.0,
                            2.0);
    EXPECT_SAME_BITS(line.PointAtStart(), ON_3dPoint(0.1, 0.2, 0.3));
    EXPECT_SAME_BITS(line.PointAtEnd(), ON_3dPoint(-7.0, 8.0, 9.5));
}

TEST(ON_LineCurve, ParameterIsMappedLinearly) {
    EXPECT_SAME_BITS(ON_LineCurve(kStart, kEnd).PointAt(2.5), ON_3dPoint(2.5, 3.0, 0.0));
}

TEST(ON_LineCurve, SharedCoordinateStaysAsItIs) {
    // Two thirds and one third of 0.9 add up to another double.
    const ON_LineCurve line(ON_Line(ON_3dPoint(0.9, 0.0, 0.0), ON_3dPoint(0.9, 3.0, 0.0)), 0.0,
                            3.0);
    EXPECT_SAME_BITS(line.PointAt(1.0).x, 0.9);
}

TEST(ON_LineCurve, DecreasingDomainHasNoNurbsForm) {
    ON_NurbsCurve form;
    EXPECT_EQ(ON_LineCurve(ON_Line(kStart, kEnd), 1.0, 0.0).GetNurbForm(form), 0);
    EXPECT_EQ(ON_LineCurve(ON_Line(kStart, kEnd), 1.0, 0.0).NurbsCurve(), nullptr);
}

TEST(ON_LineCurve, BoxHoldsBothEnds) {
    EXPECT_SAME_BITS(ON_LineCurve(kEnd, kStart).BoundingBox(), ON_BoundingBox(kStart, kEnd));
}

TEST(ON_LineCurve, LineOfNoLengthIsInvalid) {
    EXPECT_TRUE(ON_LineCurve(kStart, kEnd).IsValid());
    EXPECT_FALSE(ON_LineCurve(kStart, kStart).IsValid());
    EXPECT_FALSE(ON_LineCurve().IsValid());
}

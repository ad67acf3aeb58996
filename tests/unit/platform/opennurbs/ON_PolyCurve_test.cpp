// Joined curves.
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::Doubles;
using kerneltest::MemoryArchive;

namespace {

ON_LineCurve* LineFromZero(double x, double t0, double t1) {
    return new ON_LineCurve(ON_Line(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(x, 0.0, 0.0)), t0, t1);
}

Doubles ParametersOf(const ON_PolyCurve& curve) {
    const ON_SimpleArray<double>& parameters = curve.SegmentParameters();
    return Doubles(parameters.Array(), parameters.Array() + parameters.Count());
}

// Segments of the domains [0, 1] and [1, 3].
ON_PolyCurve TwoLines() {
    ON_PolyCurve curve;
    curve.Append(LineFromZero(1.0, 0.0, 1.0));
    curve.Append(
        new ON_LineCurve(ON_Line(ON_3dPoint(1.0, 0.0, 0.0), ON_3dPoint(1.0, 4.0, 0.0)), 1.0, 3.0));
    return curve;
}

// Writes two lines with another parameter between them, and returns what is read.
Doubles ParametersReadWith(double middle) {
    MemoryArchive archive(ON::archive_mode::readwrite, {}, 4);
    EXPECT_TRUE(TwoLines().Write(archive));
    // version 1, three numbers 12, box 48, count 4, first parameter 8
    archive.position = 1 + 12 + 48 + 4 + 8;
    archive.WriteDouble(middle);
    archive.position = 0;
    ON_PolyCurve read;
    EXPECT_TRUE(read.Read(archive));
    return ParametersOf(read);
}

}  // namespace

TEST(ON_PolyCurve, FirstSegmentBringsItsDomain) {
    ON_PolyCurve curve;
    EXPECT_TRUE(curve.Append(LineFromZero(1.0, -2.0, 5.0)));
    EXPECT_SAME_BITS(ParametersOf(curve), (Doubles{-2.0, 5.0}));
}

TEST(ON_PolyCurve, LaterSegmentsAreMovedToTheEnd) {
    ON_PolyCurve curve = TwoLines();
    EXPECT_TRUE(curve.Append(LineFromZero(1.0, 10.0, 12.5)));
    EXPECT_SAME_BITS(ParametersOf(curve), (Doubles{0.0, 1.0, 3.0, 5.5}));
}

TEST(ON_PolyCurve, UnusableSegmentStaysTheCallers) {
    ON_PolyCurve curve = TwoLines();
    const std::unique_ptr<ON_LineCurve> decreasing(LineFromZero(1.0, 1.0, 0.0));
    EXPECT_FALSE(curve.Append(decreasing.get()));
    EXPECT_FALSE(curve.Append(nullptr));
    EXPECT_FALSE(curve.Append(&curve));
    EXPECT_EQ(curve.Count(), 2);
}

TEST(ON_PolyCurve, PointsAreThoseOfTheSegments) {
    const ON_PolyCurve curve = TwoLines();
    EXPECT_SAME_BITS(curve.PointAt(0.5), ON_3dPoint(0.5, 0.0, 0.0));
    EXPECT_SAME_BITS(curve.PointAt(2.0), ON_3dPoint(1.0, 2.0, 0.0));
    EXPECT_SAME_BITS(curve.PointAtEnd(), ON_3dPoint(1.0, 4.0, 0.0));
    EXPECT_SAME_BITS(curve.Domain(), ON_Interval(0.0, 3.0));
    EXPECT_EQ(curve.Dimension(), 3);
}

TEST(ON_PolyCurve, CopyHasItsOwnSegments) {
    const ON_PolyCurve curve = TwoLines();
    ON_PolyCurve copy;
    copy = curve;
    ON_LineCurve::Cast(copy.SegmentCurve(0))->m_line.to.x = 9.0;
    EXPECT_SAME_BITS(curve.PointAt(1.0), ON_3dPoint(1.0, 0.0, 0.0));
    EXPECT_EQ(copy.Count(), 2);
    EXPECT_EQ(curve.SegmentCurve(2), nullptr);
}

TEST(ON_PolyCurve, ParameterOffByRoundingIsMovedOntoTheSegmentsEnd) {
    EXPECT_SAME_BITS(ParametersReadWith(1.0 + 1e-9), (Doubles{0.0, 1.0, 3.0}));
}

TEST(ON_PolyCurve, ParameterOffByMoreStays) {
    EXPECT_SAME_BITS(ParametersReadWith(1.0 + 1e-7), (Doubles{0.0, 1.0 + 1e-7, 3.0}));
}

TEST(ON_PolyCurve, NestedSegmentsFillTheirPlace) {
    auto* nested = new ON_PolyCurve(TwoLines());
    ON_PolyCurve curve;
    curve.Append(LineFromZero(1.0, 0.0, 4.0));
    curve.Append(nested);
    curve.RemoveNesting();
    EXPECT_EQ(curve.Count(), 3);
    EXPECT_SAME_BITS(ParametersOf(curve), (Doubles{0.0, 4.0, 5.0, 7.0}));
}

TEST(ON_PolyCurve, SegmentWithoutNurbsFormLeavesNone) {
    ON_PolyCurve curve = TwoLines();
    ON_LineCurve::Cast(curve.SegmentCurve(1))->m_t = ON_Interval(1.0, 1.0);
    ON_NurbsCurve form;
    EXPECT_EQ(curve.GetNurbForm(form), 0);
}

TEST(ON_PolyCurve, FormHasTheHighestDimensionOfTheSegments) {
    for (const int flat : {0, 1}) {
        ON_PolyCurve curve = TwoLines();
        ON_LineCurve::Cast(curve.SegmentCurve(flat))->m_dim = 2;
        ON_NurbsCurve form;
        EXPECT_NE(curve.GetNurbForm(form), 0);
        EXPECT_EQ(form.m_dim, 3);
        EXPECT_EQ(form.CVCount(), 3);
    }
}

// Small members of the value types and the curve classes: element access, signs, casts, dimensions.
#include <opennurbs.h>

#include <gtest/gtest.h>

#include "unit/platform/opennurbs/SameBits.h"

TEST(ON_Interval, EndsAreOrderedByMinAndMaxWhateverItsDirection) {
    const ON_Interval rising(1.0, 4.0);
    const ON_Interval falling(4.0, 1.0);
    for (const ON_Interval& interval : {rising, falling}) {
        EXPECT_EQ(interval.Min(), 1.0);
        EXPECT_EQ(interval.Max(), 4.0);
    }
    EXPECT_TRUE(falling.IsDecreasing());
    EXPECT_FALSE(rising.IsDecreasing());
    EXPECT_FALSE(ON_Interval(2.0, 2.0).IsDecreasing());
    EXPECT_FALSE(ON_Interval(4.0, ON_UNSET_VALUE).IsDecreasing());
    EXPECT_TRUE(rising != falling);
    EXPECT_FALSE(rising != ON_Interval(1.0, 4.0));
}

TEST(ON_2dVector, ElementsByNumberAndEquality) {
    ON_2dVector vector(3.0, 5.0);
    vector[1] = 7.0;
    const ON_2dVector& fixed = vector;
    EXPECT_EQ(fixed[0], 3.0);
    EXPECT_EQ(fixed[1], 7.0);
    EXPECT_EQ(static_cast<const double*>(fixed)[1], 7.0);
    static_cast<double*>(vector)[0] = 4.0;
    EXPECT_TRUE(vector == ON_2dVector(4.0, 7.0));
    EXPECT_TRUE(vector != ON_2dVector(4.0, 8.0));
    EXPECT_TRUE(vector != ON_2dVector(5.0, 7.0));
    EXPECT_FALSE(vector != ON_2dVector(4.0, 7.0));
    EXPECT_TRUE(ON_2dPoint(vector) == ON_2dPoint(4.0, 7.0));
}

TEST(ON_2dPoint, ElementsByNumber) {
    ON_2dPoint point(3.0, 5.0);
    point[0] = 6.0;
    static_cast<double*>(point)[1] = 8.0;
    const ON_2dPoint& fixed = point;
    EXPECT_EQ(fixed[0], 6.0);
    EXPECT_EQ(fixed[1], 8.0);
    EXPECT_EQ(static_cast<const double*>(fixed)[0], 6.0);
}

TEST(ON_3dPoint, MovesByAVectorInPlace) {
    ON_3dPoint point(1.0, 2.0, 3.0);
    point += ON_3dVector(10.0, 20.0, 30.0);
    EXPECT_SAME_BITS(point, ON_3dPoint(11.0, 22.0, 33.0));
    point -= ON_3dVector(1.0, 1.0, 2.0);
    EXPECT_SAME_BITS(point, ON_3dPoint(10.0, 21.0, 31.0));
    static_cast<double*>(point)[2] = 5.0;
    EXPECT_EQ(point.z, 5.0);
}

TEST(ON_3dVector, IsReducedInPlace) {
    ON_3dVector vector(1.0, 2.0, 3.0);
    vector -= ON_3dVector(5.0, 7.0, 11.0);
    EXPECT_SAME_BITS(vector, ON_3dVector(-4.0, -5.0, -8.0));
    static_cast<double*>(vector)[0] = 9.0;
    EXPECT_EQ(static_cast<const ON_3dVector&>(vector).x, 9.0);
}

TEST(ON_Xform, RotationBySineAndCosineOfAnyLengthTurnsAllTheSame) {
    // 3 and 4 are sine and cosine of a triangle 3, 4, 5.
    ON_Xform turn;
    turn.Rotation(3.0, 4.0, ON_3dVector(0.0, 0.0, 1.0), ON_3dPoint(0.0, 0.0, 0.0));
    const ON_3dPoint turned = turn * ON_3dPoint(1.0, 0.0, 0.0);
    EXPECT_NEAR(turned.x, 0.8, 1e-15);
    EXPECT_NEAR(turned.y, 0.6, 1e-15);
}

TEST(ON_Xform, PivotsAreAnsweredOnRequest) {
    // The pivots of a diagonal matrix are its entries.
    ON_Xform scale(1.0);
    scale[0][0] = 8.0;
    scale[1][1] = 0.5;
    scale[2][2] = 2.0;
    double pivot = 0.0;
    EXPECT_EQ(scale.Rank(&pivot), 4);
    EXPECT_EQ(pivot, 0.5);
    pivot = 0.0;
    EXPECT_EQ(scale.Determinant(&pivot), 8.0);
    EXPECT_EQ(pivot, 0.5);
    EXPECT_EQ(static_cast<const ON_Xform&>(scale)[2][2], 2.0);
}

#if defined(VERIDANE_EMBEDDED_KERNEL)

TEST(ON_Object, EachClassIsCastToItselfAndToNoOther) {
    const ON_LineCurve line;
    const ON_ArcCurve arc;
    const ON_PolyCurve poly;
    const ON_PolylineCurve polyline;
    const ON_PlaneSurface plane;
    const ON_RevSurface revolved;
    const ON_SumSurface sum;
    const ON_Object* const lineObject = &line;
    const ON_Object* const arcObject = &arc;
    EXPECT_EQ(ON_LineCurve::Cast(lineObject), &line);
    EXPECT_EQ(ON_LineCurve::Cast(arcObject), nullptr);
    EXPECT_EQ(ON_ArcCurve::Cast(arcObject), &arc);
    EXPECT_EQ(ON_ArcCurve::Cast(lineObject), nullptr);
    EXPECT_EQ(ON_PolyCurve::Cast(static_cast<const ON_Object*>(&poly)), &poly);
    EXPECT_EQ(ON_PolyCurve::Cast(lineObject), nullptr);
    EXPECT_EQ(ON_PolylineCurve::Cast(static_cast<const ON_Object*>(&polyline)), &polyline);
    EXPECT_EQ(ON_PolylineCurve::Cast(lineObject), nullptr);
    EXPECT_EQ(ON_PlaneSurface::Cast(static_cast<const ON_Object*>(&plane)), &plane);
    EXPECT_EQ(ON_PlaneSurface::Cast(lineObject), nullptr);
    EXPECT_EQ(ON_RevSurface::Cast(static_cast<const ON_Object*>(&revolved)), &revolved);
    EXPECT_EQ(ON_RevSurface::Cast(lineObject), nullptr);
    EXPECT_EQ(ON_SumSurface::Cast(static_cast<const ON_Object*>(&sum)), &sum);
    EXPECT_EQ(ON_SumSurface::Cast(lineObject), nullptr);
}

TEST(ON_Object, AMaterialIsCastToItselfAndIsAlwaysValid) {
    ON_Material material;
    ON_NurbsSurface surface;
    ON_Object* const object = &material;
    EXPECT_EQ(ON_Material::Cast(object), &material);
    EXPECT_EQ(ON_Material::Cast(static_cast<const ON_Object*>(object)), &material);
    EXPECT_EQ(ON_Material::Cast(static_cast<ON_Object*>(&surface)), nullptr);
    EXPECT_EQ(ON_NurbsSurface::Cast(object), nullptr);
    EXPECT_TRUE(material.IsValid());
}

#endif

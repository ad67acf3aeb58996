// Transformations against the recorded results and by hand.
#include <functional>
#include <map>

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/SameBits.h"
#include "unit/platform/opennurbs/Trigonometry.h"

using kerneltest::GoldenCases;
using kerneltest::GoldenLine;

namespace {

constexpr char kFile[] = "xforms.txt";

template <class Edit>
ON_Xform Made(Edit edit) {
    ON_Xform xform;
    edit(xform);
    return xform;
}

const std::map<std::string, ON_Xform>& RecordedMakes() {
    static const std::map<std::string, ON_Xform> makes = {
        {"default", ON_Xform()},
        {"fromDouble2.5", ON_Xform(2.5)},
#if !defined(ON_UNSET_POSITIVE_VALUE)
        // gone from later interfaces
        {"fromInt1", ON_Xform(1)},
        {"fromInt2", ON_Xform(2)},
        {"fromInt0", ON_Xform(0)},
        {"assignInt3", Made([](ON_Xform& x) { x = 3; })},
        {"assignDouble1", Made([](ON_Xform& x) { x = 1.0; })},
        {"zero", Made([](ON_Xform& x) { x.Zero(); })},
#else
        {"fromInt1", ON_Xform(1.0)},
        {"fromInt2", ON_Xform(2.0)},
        {"fromInt0", ON_Xform(0.0)},
        {"assignInt3", ON_Xform(3.0)},
        {"assignDouble1", ON_Xform(1.0)},
        {"zero", ON_Xform::Zero4x4},
#endif
        {"identity", Made([](ON_Xform& x) { x.Identity(); })},
        {"diagonal4", Made([](ON_Xform& x) { x.Diagonal(4.0); })},
        {"scale2,3,4", Made([](ON_Xform& x) { x.Scale(2.0, 3.0, 4.0); })},
        {"scaleVector2,1,1", Made([](ON_Xform& x) { x.Scale(ON_3dVector(2.0, 1.0, 1.0)); })},
        {"scaleAbout1,2,3", Made([](ON_Xform& x) { x.Scale(ON_3dPoint(1.0, 2.0, 3.0), 2.0); })},
        {"scaleAboutOrigin", Made([](ON_Xform& x) { x.Scale(ON_3dPoint(0.0, 0.0, 0.0), 2.0); })},
        {"translate1,2,3", Made([](ON_Xform& x) { x.Translation(1.0, 2.0, 3.0); })},
        {"translateVector-1,0.5,0",
         Made([](ON_Xform& x) { x.Translation(ON_3dVector(-1.0, 0.5, 0.0)); })}
    };
    return makes;
}

std::vector<ON_Xform> RecordedXforms() {
    std::vector<ON_Xform> xforms;
    for (GoldenLine& line : GoldenCases(kFile, "xform", 41)) {
        xforms.push_back(line.Xform());
    }
    return xforms;
}

}  // namespace

TEST(ON_Xform, ConstructorsAndSettersGiveTheRecordedEntries) {
    for (GoldenLine& line : GoldenCases(kFile, "made", 16)) {
        SCOPED_TRACE(line.Where());
        const ON_Xform& xform = RecordedMakes().at(line.Word());
        EXPECT_SAME_BITS(xform, line.Xform());
        EXPECT_EQ(xform.IsIdentity(), line.Flag());
        EXPECT_EQ(xform.IsValid(), line.Flag());
        EXPECT_SAME_BITS(xform.Determinant(), line.Number());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Xform, RotationsGiveTheRecordedEntries) {
    for (GoldenLine& line : GoldenCases(kFile, "rotation", 11)) {
        SCOPED_TRACE(line.Where());
        const double angle = line.Number();
        const double sine = line.Number();
        const double cosine = line.Number();
        const ON_3dVector axis = line.Vector();
        const ON_3dPoint center = line.Point();
        const ON_Xform expected = line.Xform();
        EXPECT_SAME_BITS(Made([&](ON_Xform& x) { x.Rotation(sine, cosine, axis, center); }),
                         expected);
        EXPECT_SAME_TRIGONOMETRY(Made([&](ON_Xform& x) { x.Rotation(angle, axis, center); }),
                                 expected);
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Xform, InversesGiveTheRecordedBitsAlsoAfterFailure) {
    const std::vector<ON_Xform> xforms = RecordedXforms();
    for (GoldenLine& line : GoldenCases(kFile, "inverse", 41)) {
        SCOPED_TRACE(line.Where());
        const ON_Xform& xform = xforms.at(line.Count());
        ON_Xform inverse = xform;
        double pivot = -1.0;
        EXPECT_EQ(inverse.Invert(&pivot), line.Flag());
        EXPECT_SAME_BITS(pivot, line.Number());
        EXPECT_EQ(xform.Rank(), line.Integer());
        EXPECT_SAME_BITS(xform.Determinant(), line.Number());
        EXPECT_SAME_BITS(inverse, line.Xform());
        ON_Xform inverseWithoutPivot = xform;
        inverseWithoutPivot.Invert();
        EXPECT_SAME_BITS(inverseWithoutPivot, inverse);
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Xform, ProductsGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "product", 20)) {
        SCOPED_TRACE(line.Where());
        const ON_Xform a = line.Xform();
        const ON_Xform b = line.Xform();
        EXPECT_SAME_BITS(a * b, line.Xform());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Xform, TransformedPointsAndVectorsAreTheRecordedOnes) {
    const std::vector<ON_Xform> xforms = RecordedXforms();
    for (GoldenLine& line : GoldenCases(kFile, "apply", 287)) {
        SCOPED_TRACE(line.Where());
        const ON_Xform& xform = xforms.at(line.Count());
        const ON_3dPoint source = line.Point();
        ON_3dPoint point = source;
        point.Transform(xform);
        EXPECT_SAME_BITS(point, line.Point());
        EXPECT_SAME_BITS(xform * source, line.Point());
        ON_3dVector vector = source;
        vector.Transform(xform);
        EXPECT_SAME_BITS(vector, line.Vector());
        EXPECT_SAME_BITS(xform * ON_3dVector(source), line.Vector());
        vector.Unitize();
        EXPECT_SAME_BITS(vector, line.Vector());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Xform, NormalsUnderTheInverseTransposeAreTheRecordedOnes) {
    const std::vector<ON_Xform> xforms = RecordedXforms();
    for (GoldenLine& line : GoldenCases(kFile, "normal", 150)) {
        SCOPED_TRACE(line.Where());
        ON_Xform inverseTranspose = xforms.at(line.Count());
        EXPECT_TRUE(inverseTranspose.Invert());
        inverseTranspose.Transpose();
        ON_3dVector normal = line.Vector();
        normal.Transform(inverseTranspose);
        const bool isUnitized = normal.Unitize();
        EXPECT_SAME_BITS(normal, line.Vector());
        EXPECT_EQ(isUnitized, line.Flag());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Xform, DefaultIsNeitherZeroNorTheIdentity) {
    const ON_Xform xform;
    EXPECT_EQ(xform.m_xform[0][0], 0.0);
    EXPECT_EQ(xform.m_xform[3][3], 1.0);
    EXPECT_FALSE(xform.IsIdentity());
}

TEST(ON_Xform, InvertHasNoToleranceForSuccess) {
    ON_Xform nearlySingular(1.0);
    nearlySingular.m_xform[0][0] = 1e-300;
    EXPECT_TRUE(nearlySingular.Invert());
    EXPECT_SAME_BITS(nearlySingular.m_xform[0][0], 1.0 / 1e-300);
}

TEST(ON_Xform, FailedInvertDestroysTheMatrix) {
    ON_Xform singular(0.0);
    singular.m_xform[0][1] = 7.0;
    double pivot = -1.0;
    EXPECT_FALSE(singular.Invert(&pivot));
    EXPECT_EQ(pivot, 0.0);
    // Columns 0 and 1 were exchanged before the second pivot was found missing.
    EXPECT_EQ(singular.m_xform[0][1], 1.0);
    EXPECT_SAME_BITS(singular.m_xform[1][0], 1.0 / 7.0);
}

TEST(ON_Xform, PointAtInfinityBecomesZeroExceptInTheProduct) {
    // The weight of (1,2,3) is 1 - 1 = 0.
    ON_Xform projective(1.0);
    projective.m_xform[3][0] = -1.0;
    const ON_3dPoint source(1.0, 2.0, 3.0);
    ON_3dPoint transformed = source;
    transformed.Transform(projective);
    EXPECT_SAME_BITS(transformed, ON_3dPoint(0.0, 0.0, 0.0));
    EXPECT_SAME_BITS(projective * source, source);
}

TEST(ON_Xform, ProductAppliesTheRightFactorFirst) {
    ON_Xform move;
    move.Translation(1.0, 0.0, 0.0);
    const ON_Xform doubled(2.0);
    EXPECT_SAME_BITS((doubled * move) * ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(2.0, 0.0, 0.0));
    EXPECT_SAME_BITS((move * doubled) * ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 0.0, 0.0));
}

TEST(ON_Xform, QuarterTurnIsExact) {
    ON_Xform turn;
    turn.Rotation(0.5 * ON_PI, ON_3dVector(0.0, 0.0, 1.0), ON_3dPoint(1.0, 0.0, 0.0));
    EXPECT_SAME_BITS(turn * ON_3dPoint(2.0, 0.0, 0.0), ON_3dPoint(1.0, 1.0, 0.0));
}

// What the embedded kernel promises beyond openNURBS, which writes outside its arrays, keeps what was
// there before or takes the memory that a stream claims.
#include <memory>

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::FirstBytes;
using kerneltest::GoldenCases;
using kerneltest::GoldenLine;
using kerneltest::MemoryArchive;

namespace {

const ON_3dPoint kOrigin(0.0, 0.0, 0.0);
const ON_Line kDiagonal(kOrigin, ON_3dPoint(1.0, 2.0, 3.0));

}  // namespace

TEST(EmbeddedKernel, AStringOfHugeCountFailsWithoutTakingItsMemory) {
    MemoryArchive archive(ON::archive_mode::read, {0xff, 0xff, 0xff, 0x7f, 'a', 0, 0, 0});
    ON_wString text;
    EXPECT_FALSE(archive.ReadString(text));
    // One block of 65536 units was asked for, not two thousand million.
    EXPECT_EQ(archive.calls.at(1), "read 131072 4");
    EXPECT_EQ(archive.calls.size(), 2u);
}

TEST(EmbeddedKernel, NumbersThatMakeNoCurveLeaveTheDefault) {
    ON_NurbsCurve curve(3, false, 2, 2);
    EXPECT_FALSE(curve.Create(3, false, 4, 3));
    EXPECT_EQ(curve.CVCount(), 0);
    EXPECT_EQ(curve.m_cv, nullptr);
    EXPECT_FALSE(curve.IsValid());
    EXPECT_SAME_BITS(curve.PointAt(0.0), ON_UNSET_POINT);
}

TEST(EmbeddedKernel, NumbersThatMakeNoSurfaceLeaveTheDefault) {
    ON_NurbsSurface surface(3, false, 2, 2, 2, 2);
    EXPECT_FALSE(surface.Create(3, false, 2, 3, 2, 2));
    EXPECT_EQ(surface.m_cv, nullptr);
    EXPECT_FALSE(surface.IsValid());
    EXPECT_FALSE(surface.BoundingBox().IsValid());
}

TEST(EmbeddedKernel, SettersRefuseNumbersOutOfRange) {
    ON_NurbsCurve curve(3, false, 2, 2);
    EXPECT_FALSE(curve.SetCV(2, kOrigin));
    EXPECT_FALSE(curve.SetCV(-1, kOrigin));
    EXPECT_FALSE(curve.SetKnot(2, 0.0));
    ON_NurbsSurface surface(3, false, 2, 2, 2, 2);
    EXPECT_FALSE(surface.SetCV(2, 0, kOrigin));
    EXPECT_FALSE(surface.SetCV(0, -1, kOrigin));
    EXPECT_FALSE(surface.SetKnot(0, 2, 0.0));
}

TEST(EmbeddedKernel, AFormThatCouldNotBeMadeIsEmpty) {
    ON_NurbsCurve form(3, false, 2, 2);
    EXPECT_EQ(ON_LineCurve(kDiagonal, 1.0, 0.0).GetNurbForm(form), 0);
    EXPECT_EQ(form.CVCount(), 0);

    ON_PolyCurve twoLines;
    twoLines.Append(new ON_LineCurve(kDiagonal));
    twoLines.Append(new ON_LineCurve(kDiagonal));
    ON_LineCurve::Cast(twoLines.SegmentCurve(1))->m_t = ON_Interval(1.0, 1.0);
    EXPECT_EQ(twoLines.GetNurbForm(form), 0);
    EXPECT_EQ(form.CVCount(), 0);
}

TEST(EmbeddedKernel, AskingForTheBoxOfARevolvedSurfaceDoesNotChangeItsRecord) {
    ON_RevSurface cone;
    cone.m_curve = new ON_LineCurve(kDiagonal);
    EXPECT_TRUE(cone.BoundingBox().IsValid());
    EXPECT_FALSE(cone.m_bbox.IsValid());
}

TEST(EmbeddedKernel, EveryPrefixOfAMaterialInTheNewerFormFails) {
    for (GoldenLine& line : GoldenCases("materials.txt", "newer", 8)) {
        SCOPED_TRACE(line.Word());
        const kerneltest::Bytes bytes = line.Stream();
        for (size_t kept = 0; kept < bytes.size(); ++kept) {
            MemoryArchive archive(ON::archive_mode::read, FirstBytes(bytes, kept));
            ON_Material material;
            EXPECT_FALSE(material.Read(archive)) << "cut to " << kept;
        }
    }
}

// The golden documents of values, curves, surfaces and materials: what they load as, how they are stored
// again and what the check says of them.
//
// Values and NURBS are the same bytes with every geometry kernel; of materials, later interfaces than
// version 4 store neither index nor library. The points of the arc are those of the C runtime's
// cos and sin.

#include <gtest/gtest.h>

#include "golden/DocumentFiles.h"
#include "golden/DocumentObjects.h"
#include "golden/OpenNurbsRecords.h"
#include "golden/ValueDocumentObjects.h"
#include "serialize/CheckStream.h"
#include "support/Kernel.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using namespace Vr::golden;
using Vr::CheckedObject;
using Vr::CheckStream;

// ---- values ------------------------------------------------------------------------------------

TEST(GoldenValues, LoadAsStated) {
    const Bytes bytes = DocumentBytes("values");
    LoadedFrom stream(bytes);
    Values values;
    Exchange(stream.archive, values);
    stream.archive.Close();
    EXPECT_EQ(stream.file.GetPosition(), bytes.size());
    EXPECT_EQ(values.text, L"M\u00F6bius \U0001F600");
    EXPECT_TRUE(SameBits(values.point.x, 1.5));
    EXPECT_TRUE(SameBits(values.point.y, -0.0));
    EXPECT_EQ(values.color, ON_Color(255, 0, 16, 128));
    EXPECT_EQ(values.plane.origin, ON_3dPoint(1, 2, 3));
    EXPECT_EQ(values.plane.xaxis, ON_3dVector(4, 5, 6));
    EXPECT_EQ(values.plane.yaxis, ON_3dVector(7, 8, 9));
    EXPECT_EQ(values.plane.zaxis, ON_3dVector(10, 11, 12));
    EXPECT_EQ(values.plane.plane_equation.x, 13);
    EXPECT_EQ(values.plane.plane_equation.d, 16);
    EXPECT_EQ(values.arc.plane.origin, ON_3dPoint(0, 0, 5));
    EXPECT_EQ(values.arc.plane.yaxis, ON_3dVector(0, 1, 0));
    EXPECT_EQ(values.arc.plane.plane_equation.d, -5);
    EXPECT_EQ(values.arc.radius, 2);
    EXPECT_EQ(values.arc.DomainRadians()[0], 0);
    EXPECT_EQ(values.arc.DomainRadians()[1], 0.5 * ON_PI);
    EXPECT_EQ(values.xf.m_xform[0][3], 3);
    EXPECT_EQ(values.xf.m_xform[2][1], 21);
    EXPECT_EQ(values.number, kHostNumber);
}

TEST(GoldenValues, AreStoredAgainByteForByte) {
    const Bytes bytes = DocumentBytes("values");
    Values values;
    LoadedFrom stream(bytes);
    Exchange(stream.archive, values);
    EXPECT_EQ(BytesOf([&](Vr::VrmArchive& archive) { Exchange(archive, values); }), bytes);
}

TEST(GoldenValues, AreSafe) {
    const Bytes bytes = DocumentBytes("values");
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_TRUE(stream.WideString());
    EXPECT_TRUE(stream.Skip(16 + 4 + 128 + 224 + 128));
    LONG number = 0;
    EXPECT_TRUE(stream.Value(number));
    EXPECT_EQ(number, kHostNumber);
    EXPECT_EQ(stream.Remaining(), 0u);
    EXPECT_EQ(stream.Result().findingCount, 0u);
}

// ---- curves and surfaces -----------------------------------------------------------------------

TEST(GoldenCurves, LoadAsStated) {
    const Bytes bytes = DocumentBytes("curves");
    LoadedFrom stream(bytes);
    Curves curves;
    Exchange(stream.archive, curves);
    stream.archive.Close();
    EXPECT_EQ(stream.file.GetPosition(), bytes.size());
    ASSERT_NE(curves.curve, nullptr);
    EXPECT_STREQ(curves.curve->ClassId()->ClassName(), "ON_NurbsCurve");
    EXPECT_EQ(curves.curve->Domain(), ON_Interval(0, 1));
    EXPECT_EQ(curves.curve->PointAt(0.5), ON_3dPoint(0.5, 1, 1.5));
    EXPECT_EQ(curves.noCurve, nullptr);
    ExpectBitEqual(*curves.mesh, *FullMesh(0.5));
    ASSERT_NE(curves.surface, nullptr);
    EXPECT_STREQ(curves.surface->ClassId()->ClassName(), "ON_NurbsSurface");
    const auto& nurbs = static_cast<const ON_NurbsSurface&>(*curves.surface);
    EXPECT_EQ(nurbs.m_is_rat, 1);
    EXPECT_EQ(nurbs.Domain(1), ON_Interval(0, 3));
    EXPECT_EQ(nurbs.CV(1, 1)[1], 6.0) << "times its weight";
    EXPECT_EQ(nurbs.CV(1, 1)[3], 2.0);
    EXPECT_EQ(curves.meshAgain, curves.mesh);
    EXPECT_EQ(curves.noSurface, nullptr);
    EXPECT_EQ(curves.number, kHostNumber);
}

TEST(GoldenCurves, AreStoredAgainByteForByte) {
    const Bytes bytes = DocumentBytes("curves");
    Curves curves;
    LoadedFrom stream(bytes);
    Exchange(stream.archive, curves);
    EXPECT_EQ(BytesOf([&](Vr::VrmArchive& archive) { Exchange(archive, curves); }), bytes);
}

TEST(GoldenCurves, AreSafe) {
    const Bytes bytes = DocumentBytes("curves");
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_EQ(stream.Curve(), CheckedObject::New);
    EXPECT_EQ(stream.Curve(), CheckedObject::Null);
    EXPECT_EQ(stream.Object(), CheckedObject::New);
    EXPECT_EQ(stream.Surface(), CheckedObject::New);
    EXPECT_EQ(stream.Object(), CheckedObject::Known);
    EXPECT_EQ(stream.Surface(), CheckedObject::Null);
    EXPECT_TRUE(stream.Skip(4));
    EXPECT_EQ(stream.Remaining(), 0u);
    EXPECT_EQ(stream.Result().findingCount, 0u);
}

TEST(GoldenCurveOfItsOwnClass, LoadsAsStatedAndIsStoredAgainByteForByte) {
    const Bytes bytes = DocumentBytes("curve_own_class");
    LoadedFrom stream(bytes);
    CurveOfItsOwnClass document;
    Exchange(stream.archive, document);
    stream.archive.Close();
    EXPECT_EQ(stream.file.GetPosition(), bytes.size());
    ASSERT_NE(document.curve, nullptr);
    ASSERT_STREQ(document.curve->ClassId()->ClassName(), "ON_LineCurve");
    const auto& line = static_cast<const ON_LineCurve&>(*document.curve);
    EXPECT_EQ(line.m_line.from, ON_3dPoint(0, 0, 0));
    EXPECT_EQ(line.m_line.to, ON_3dPoint(3, 4, 0));
    EXPECT_EQ(line.m_t, ON_Interval(0, 0));
    EXPECT_EQ(line.m_dim, 3);
    EXPECT_EQ(document.number, kHostNumber);
    EXPECT_EQ(BytesOf([&](Vr::VrmArchive& archive) { Exchange(archive, document); }), bytes);
}

TEST(GoldenCurveOfItsOwnClass, IsSafe) {
    const Bytes bytes = DocumentBytes("curve_own_class");
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_EQ(stream.Curve(), CheckedObject::New);
    EXPECT_TRUE(stream.Skip(4));
    EXPECT_EQ(stream.Remaining(), 0u);
    EXPECT_EQ(stream.Result().findingCount, 0u);
}

// ---- materials ---------------------------------------------------------------------------------

TEST(GoldenMaterials, LoadAsStated) {
    const Bytes bytes = DocumentBytes("materials");
    LoadedFrom stream(bytes);
    Materials materials;
    Exchange(stream.archive, materials);
    stream.archive.Close();
    EXPECT_EQ(stream.file.GetPosition(), bytes.size());
    const ON_Material& oak = *materials.oak;
    EXPECT_EQ(oak.m_ambient, ON_Color(1, 2, 3, 4));
    EXPECT_EQ(ShineOf(oak), 64.0);
    EXPECT_EQ(NameOf(oak), L"Oak");
    EXPECT_EQ(IndexOf(oak), 7);
    EXPECT_EQ(oak.m_textures.Count(), 0);
    const ON_Material& wood = *materials.wood;
    EXPECT_EQ(wood.m_diffuse, ON_Color(4, 5, 6));
    EXPECT_EQ(wood.m_transparent, ON_Color(16, 17, 18));
    EXPECT_EQ(TransparencyOf(wood), 0.5);
    EXPECT_EQ(wood.m_index_of_refraction, 1.25);
    EXPECT_EQ(NameOf(wood), L"Wood");
    EXPECT_EQ(IndexOf(wood), 3);
    EXPECT_EQ(IdOf(wood).Data1, 0x11121314u);
    ASSERT_EQ(wood.m_textures.Count(), 3);
    EXPECT_TRUE(wood.m_textures[0].m_mode == decltype(wood.m_textures[0].m_mode)(2));
    EXPECT_EQ(wood.m_textures[1].m_bump_scale[1], 2.5);
    ExpectBitEqual(*materials.mesh, *FullMesh(0.5));
    EXPECT_EQ(materials.meshAgain, materials.mesh);
}

TEST(GoldenMaterials, AreStoredAgainByteForByteButForWhatLaterKernelsDrop) {
    const Bytes bytes = DocumentBytes("materials");
    Materials materials;
    LoadedFrom stream(bytes);
    Exchange(stream.archive, materials);
    const Bytes stored = BytesOf([&](Vr::VrmArchive& archive) { Exchange(archive, materials); });
    const auto behindOak =
        bytes.begin() + static_cast<std::ptrdiff_t>(OakMaterial().Bytes().size());
    // Behind the other material stands the object number of the mesh.
    const auto behindMesh =
        bytes.end() - static_cast<std::ptrdiff_t>(TexturedMaterial().Bytes().size() + 2);
    Bytes expected = OakMaterial(StoredMaterialIndex(7)).Bytes();
    expected.insert(expected.end(), behindOak, behindMesh);
    const Bytes textured = TexturedMaterial(StoredMaterialIndex(3), kHasMaterialLibrary).Bytes();
    expected.insert(expected.end(), textured.begin(), textured.end());
    expected.insert(expected.end(), bytes.end() - 2, bytes.end());
    EXPECT_EQ(stored, expected);
}

TEST(GoldenMaterials, AreSafeBetweenObjects) {
    const Bytes bytes = DocumentBytes("materials");
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_TRUE(stream.Material());
    EXPECT_EQ(stream.Object(), CheckedObject::New);
    EXPECT_TRUE(stream.Material());
    EXPECT_EQ(stream.Object(), CheckedObject::Known);
    EXPECT_EQ(stream.Remaining(), 0u);
    EXPECT_EQ(stream.Result().findingCount, 0u);
}

}  // namespace

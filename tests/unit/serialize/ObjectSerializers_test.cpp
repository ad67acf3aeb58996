// Curves, surfaces and materials on an archive: openNURBS's records, whole, damaged and cut short.

#include <gtest/gtest.h>
#include <opennurbs.h>

#include <memory>
#include <string>
#include <vector>

#include "golden/OpenNurbsRecords.h"
#include "serialize/MeshSerializers.h"
#include "serialize/ValueSerializers.h"
#include "serialize/VrmArchive.h"
#include "support/Caught.h"
#include "support/Kernel.h"
#include "support/MemoryFile.h"
#include "support/MeshBuilders.h"

namespace {

using namespace Vr::test;
using namespace Vr::golden;
using Bytes = std::vector<BYTE>;
using Curve = std::shared_ptr<ON_Curve>;
using Surface = std::shared_ptr<ON_Surface>;
using Material = std::shared_ptr<ON_Material>;

constexpr std::size_t kRecordSize = 201;  // of StraightCurve
constexpr std::size_t kIdCrc = 32;
constexpr std::size_t kDataCrc = 189;

std::shared_ptr<ON_NurbsCurve> NewStraightCurve() {
    const auto curve = std::make_shared<ON_NurbsCurve>(3, false, 2, 2);
    curve->m_knot[0] = 0.0;
    curve->m_knot[1] = 1.0;
    curve->SetCV(0, ON_3dPoint(0.0, 0.0, 0.0));
    curve->SetCV(1, ON_3dPoint(1.0, 2.0, 3.0));
    return curve;
}

std::shared_ptr<ON_NurbsSurface> NewWeightedSurface() {
    const auto surface = std::make_shared<ON_NurbsSurface>(3, true, 2, 2, 2, 2);
    const double ends[2] = {2.0, 3.0};
    for (int direction = 0; direction < 2; ++direction) {
        surface->m_knot[direction][0] = 0.0;
        surface->m_knot[direction][1] = ends[direction];
    }
    for (int i = 0; i < 2; ++i) {
        for (int j = 0; j < 2; ++j) {
            const double weight = i == 1 && j == 1 ? 2.0 : 1.0;
            double* const point = surface->CV(i, j);
            point[0] = 2.0 * i * weight;
            point[1] = 3.0 * j * weight;
            point[2] = (1.0 + i + 2.0 * j) * weight;
            point[3] = weight;
        }
    }
    return surface;
}

Material NewOak() {
    const auto oak = std::make_shared<ON_Material>();
    oak->m_ambient = ON_Color(0x04030201u);
    oak->m_diffuse = ON_Color(0x08070605u);
    oak->m_emission = ON_Color(0x0c0b0a09u);
    oak->m_specular = ON_Color(0x100f0e0du);
    oak->m_reflection = ON_Color(0x14131211u);
    oak->m_transparent = ON_Color(0x18171615u);
    oak->m_index_of_refraction = 1.5;
    SetShine(*oak, 64.0);
    SetTransparency(*oak, 0.25);
    SetIdentity(*oak, {0x01020304, 0x0506, 0x0708, {9, 10, 11, 12, 13, 14, 15, 16}}, 7, L"Oak");
    return oak;
}

template <class... Objects>
CArchive& StoreOrLoad(CArchive& archive, std::shared_ptr<Objects>&... handles) {
    using Vr::operator&;
    return (archive & ... & handles);
}

template <class Object>
Bytes Stored(std::shared_ptr<Object> handle) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    StoreOrLoad(archive, handle);
    archive.Close();
    return file.Bytes();
}

// Loads into `handle` and returns where the file stands afterwards.
template <class Object>
ULONGLONG Load(const Bytes& bytes, std::shared_ptr<Object>& handle) {
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    StoreOrLoad(archive, handle);
    return file.GetPosition();
}

// The class of what a handle holds, whatever the handle's type says.
template <class Object>
std::string ClassOf(const std::shared_ptr<Object>& handle) {
    const void* const address = handle.get();
    return address ? static_cast<const ON_Object*>(address)->ClassId()->ClassName() : "none";
}

void ExpectStraight(const Curve& curve) {
    ASSERT_EQ(ClassOf(curve), "ON_NurbsCurve");
    const auto& nurbs = static_cast<const ON_NurbsCurve&>(*curve);
    EXPECT_EQ(nurbs.m_dim, 3);
    EXPECT_EQ(nurbs.m_is_rat, 0);
    EXPECT_EQ(nurbs.m_order, 2);
    ASSERT_EQ(nurbs.m_cv_count, 2);
    EXPECT_EQ(nurbs.m_knot[0], 0.0);
    EXPECT_EQ(nurbs.m_knot[1], 1.0);
    EXPECT_EQ(curve->PointAt(0.0), ON_3dPoint(0.0, 0.0, 0.0));
    EXPECT_EQ(curve->PointAt(1.0), ON_3dPoint(1.0, 2.0, 3.0));
}

TEST(CurveSerializer, StoresTheRecordOfANurbsCurve) {
    EXPECT_TRUE(StraightCurve().Matches(Stored<ON_Curve>(NewStraightCurve())));
}

TEST(CurveSerializer, LoadsIntoANewObjectAndLetsGoOfTheOldOne) {
    Curve curve = std::make_shared<ON_LineCurve>();
    const std::weak_ptr<ON_Curve> old = curve;
    EXPECT_EQ(Load(StraightCurve().Bytes(), curve), kRecordSize);
    ExpectStraight(curve);
    EXPECT_TRUE(old.expired());
}

TEST(CurveSerializer, AnotherHolderKeepsTheOldObject) {
    const Curve other = std::make_shared<ON_LineCurve>();
    Curve curve = other;
    Load(StraightCurve().Bytes(), curve);
    EXPECT_NE(curve, other);
    EXPECT_EQ(ClassOf(other), "ON_LineCurve");
}

TEST(CurveSerializer, AnEmptyHandleStoresARecordWithoutClass) {
    EXPECT_TRUE(NoObject().Matches(Stored(Curve())));
}

TEST(CurveSerializer, ARecordWithoutClassLoadsAsAnEmptyHandle) {
    Curve curve = NewStraightCurve();
    EXPECT_EQ(Load(NoObject().Bytes(), curve), 36u);
    EXPECT_EQ(curve, nullptr);
    EXPECT_EQ(curve.use_count(), 0);
}

// Depends on the kernel: openNURBS 8 and later store each class as its own.
TEST(CurveSerializer, ALineIsStoredAsItsNurbsFormUpToVersion4AndAsALineLater) {
    Curve line =
        std::make_shared<ON_LineCurve>(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(3.0, 4.0, 0.0));
    const Bytes bytes = Stored(line);
    EXPECT_EQ(bytes.size(), kStoresOwnClasses ? 125u : 201u);
    EXPECT_EQ(Load(bytes, line), bytes.size());
    EXPECT_EQ(ClassOf(line), kStoresOwnClasses ? "ON_LineCurve" : "ON_NurbsCurve");
    EXPECT_EQ(line->PointAt(0.0), ON_3dPoint(0.0, 0.0, 0.0));
    EXPECT_EQ(line->PointAt(5.0), ON_3dPoint(3.0, 4.0, 0.0));
}

TEST(CurveSerializer, ALineRecordOfItsOwnClassIsLoadedByEveryKernel) {
    const ByteScript record = LineRecord(5.0, "2025f577");
    Curve curve;
    EXPECT_EQ(Load(record.Bytes(), curve), 125u);
    ASSERT_EQ(ClassOf(curve), "ON_LineCurve");
    EXPECT_EQ(static_cast<const ON_LineCurve&>(*curve).m_line.to, ON_3dPoint(3.0, 4.0, 0.0));
}

TEST(SurfaceSerializer, StoresTheRecordOfANurbsSurface) {
    EXPECT_TRUE(WeightedSurface().Matches(Stored<ON_Surface>(NewWeightedSurface())));
}

TEST(SurfaceSerializer, LoadsIntoANewObject) {
    Surface surface;
    EXPECT_EQ(Load(WeightedSurface().Bytes(), surface), 309u);
    ASSERT_EQ(ClassOf(surface), "ON_NurbsSurface");
    EXPECT_TRUE(WeightedSurface().Matches(Stored(surface)));
}

TEST(SurfaceSerializer, AnEmptyHandleStoresARecordWithoutClass) {
    EXPECT_TRUE(NoObject().Matches(Stored(Surface())));
}

TEST(ObjectSerializers, TheClassIsNotChecked) {
    Curve curve;
    EXPECT_EQ(Load(WeightedSurface().Bytes(), curve), 309u);
    EXPECT_EQ(ClassOf(curve), "ON_NurbsSurface");
    Surface surface;
    EXPECT_EQ(Load(StraightCurve().Bytes(), surface), kRecordSize);
    EXPECT_EQ(ClassOf(surface), "ON_NurbsCurve");
}

TEST(ObjectSerializers, AnUnknownClassLeavesAnEmptyHandleAndIsSkipped) {
    Bytes bytes = StraightCurve().Bytes();
    bytes[16] ^= 0xFF;
    Curve curve = NewStraightCurve();
    EXPECT_EQ(Load(bytes, curve), kRecordSize);
    EXPECT_EQ(curve, nullptr);
}

TEST(ObjectSerializers, WrongChecksumsAreNotReported) {
    for (const std::size_t damaged : {kIdCrc, kDataCrc}) {
        Bytes bytes = StraightCurve().Bytes();
        bytes[damaged] ^= 0xFF;
        Curve curve;
        EXPECT_EQ(Load(bytes, curve), kRecordSize);
        ExpectStraight(curve);
    }
}

TEST(ObjectSerializers, ARecordCutInsideItsDataLeavesAnEmptyHandleAndNoException) {
    Curve curve = NewStraightCurve();
    EXPECT_EQ(Load(StraightCurve().Prefix(180), curve), kRecordSize);  // the record's own end
    EXPECT_EQ(curve, nullptr);
}

TEST(ObjectSerializers, ARecordCutBehindItsDataStillGivesTheObject) {
    Curve curve;
    EXPECT_EQ(Load(StraightCurve().Prefix(kRecordSize - 1), curve), kRecordSize);
    ExpectStraight(curve);
}

TEST(ObjectSerializers, TheCutShowsAtTheNextValue) {
    MemoryFile file(StraightCurve().Prefix(180));
    CArchive archive(&file, CArchive::load);
    Curve curve;
    StoreOrLoad(archive, curve);
    int behind = 0;
    EXPECT_EQ(CaughtFrom([&] { archive >> behind; }), EndOfFile());
}

TEST(ObjectSerializers, AStreamWithoutARecordLeavesAnEmptyHandle) {
    Curve curve = NewStraightCurve();
    EXPECT_EQ(Load({}, curve), 0u);
    EXPECT_EQ(curve, nullptr);
    Surface surface = NewWeightedSurface();
    Load(Bytes(64, 0), surface);
    EXPECT_EQ(surface, nullptr);
}

TEST(ObjectSerializers, AFaultyFileThrowsWhereverItFailsAndTheHandleStays) {
    std::size_t failingRead = 1;
    for (bool hasFailed = true; hasFailed; ++failingRead) {
        MemoryFile file(StraightCurve().Bytes());
        file.FailRead(failingRead, CFileException::hardIO);
        CArchive archive(&file, CArchive::load);
        const Curve old = NewStraightCurve();
        Curve curve = old;
        const Caught caught = CaughtFrom([&] { StoreOrLoad(archive, curve); });
        hasFailed = caught != Nothing();
        EXPECT_EQ(caught, hasFailed ? FileException(CFileException::hardIO) : Nothing());
        EXPECT_EQ(curve == old, hasFailed) << "read " << failingRead;
    }
    EXPECT_GT(failingRead, 5u);
}

TEST(ObjectSerializers, AFullDiskThrows) {
    MemoryFile file;
    file.FailWrite(3, CFileException::diskFull, MemoryFile::Fails::kFromThenOn);
    CArchive archive(&file, CArchive::store);
    Curve curve = NewStraightCurve();
    EXPECT_EQ(CaughtFrom([&] { StoreOrLoad(archive, curve); }),
              FileException(CFileException::diskFull));
    archive.Abort();
}

class ObjectSerializersBuffer : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Bytes, ObjectSerializersBuffer, testing::Values(128, 131, 4096));

TEST_P(ObjectSerializersBuffer, ObjectsBetweenMeshesDisturbNothing) {
    MemoryFile file;
    Vr::VrmArchive storing(&file, CArchive::store, GetParam());
    const Mesh square = Square();
    Curve curve = NewStraightCurve();
    Surface surface = NewWeightedSurface();
    Material material = NewOak();
    storing << BYTE{1} << square.get();
    StoreOrLoad(storing, curve, surface, material);
    storing << square.get() << 4711;
    storing.Close();
    file.SeekToBegin();

    Vr::VrmArchive loading(&file, CArchive::load, GetParam());
    using Vr::operator>>;
    BYTE one = 0;
    Vr::VraMeshPrimitive* mesh = nullptr;
    Vr::VraMeshPrimitive* again = nullptr;
    Curve loadedCurve;
    Surface loadedSurface;
    Material loadedMaterial = std::make_shared<ON_Material>();
    int behind = 0;
    loading >> one >> mesh;
    const Mesh owner(mesh);
    StoreOrLoad(loading, loadedCurve, loadedSurface, loadedMaterial);
    loading >> again >> behind;
    EXPECT_EQ(one, 1);
    EXPECT_EQ(*mesh->GetVertexArray(), *square->GetVertexArray());
    EXPECT_EQ(again, mesh);
    ExpectStraight(loadedCurve);
    EXPECT_TRUE(WeightedSurface().Matches(Stored(loadedSurface)));
    EXPECT_TRUE(OakMaterial(StoredMaterialIndex(7)).Matches(Stored(loadedMaterial)));
    EXPECT_EQ(behind, 4711);
}

TEST(MaterialSerializer, StoresTheBareFieldsWithoutARecord) {
    EXPECT_TRUE(OakMaterial(StoredMaterialIndex(7)).Matches(Stored(NewOak())));
}

TEST(MaterialSerializer, LoadsIntoTheObjectThatTheHandleHolds) {
    const Material held = std::make_shared<ON_Material>();
    Material handle = held;
    EXPECT_EQ(Load(OakMaterial().Bytes(), handle), 173u);
    EXPECT_EQ(handle, held);
    EXPECT_EQ(held->m_ambient, ON_Color(0x04030201u));
    EXPECT_EQ(held->m_diffuse, ON_Color(0x08070605u));
    EXPECT_EQ(held->m_emission, ON_Color(0x0c0b0a09u));
    EXPECT_EQ(held->m_specular, ON_Color(0x100f0e0du));
    EXPECT_EQ(held->m_reflection, ON_Color(0x14131211u));
    EXPECT_EQ(held->m_transparent, ON_Color(0x18171615u));
    EXPECT_EQ(held->m_index_of_refraction, 1.5);
    EXPECT_EQ(ShineOf(*held), 64.0);
    EXPECT_EQ(TransparencyOf(*held), 0.25);
    EXPECT_EQ(NameOf(*held), L"Oak");
    EXPECT_EQ(IndexOf(*held), 7);
    EXPECT_EQ(IdOf(*held).Data1, 0x01020304u);
}

TEST(MaterialSerializer, ShineComesBackRoundedToFloatAndReflectivityNotAtAll) {
    Material material = NewOak();
    SetShine(*material, 33.3);
    SetReflectivity(*material, 0.5);
    Load(Stored(material), material);
    EXPECT_EQ(ShineOf(*material), static_cast<double>(33.3f));
    EXPECT_EQ(ReflectivityOf(*material), 0.0);
}

TEST(MaterialSerializer, AShortStreamIsNotReportedAndWhatDidNotComeIsDefault) {
    Material material = NewOak();
    EXPECT_EQ(Load(OakMaterial().Prefix(1 + 8), material), 9u);
    EXPECT_EQ(material->m_ambient, ON_Color(0x04030201u));
    EXPECT_EQ(material->m_diffuse, ON_Color(0x08070605u));
    EXPECT_EQ(material->m_specular, ON_Material().m_specular);
    EXPECT_EQ(material->m_index_of_refraction, 1.0);
    EXPECT_EQ(ShineOf(*material), 0.0);
}

TEST(MaterialSerializer, AFaultyFileThrows) {
    MemoryFile file(OakMaterial().Bytes());
    file.FailRead(2, CFileException::hardIO);
    CArchive archive(&file, CArchive::load);
    Material material = NewOak();
    EXPECT_EQ(CaughtFrom([&] { StoreOrLoad(archive, material); }),
              FileException(CFileException::hardIO));
}

}  // namespace

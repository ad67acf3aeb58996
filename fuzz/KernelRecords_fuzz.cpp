// Any bytes as a record of a kernel object, or as the bare fields of a material: reading ends, and what
// it hands out can be evaluated, copied, stored and read again. A record that the check calls safe loads
// as what it was checked for or as none, and ends where the check says; so does a material.

#include <opennurbs.h>

#include <memory>

#include "Fuzz.h"
#include "serialize/CheckStream.h"
#include "serialize/ValueSerializers.h"
#include "support/MemoryFile.h"
#include "unit/platform/opennurbs/MemoryArchive.h"

namespace {

using kerneltest::MemoryArchive;
using Bytes = std::vector<unsigned char>;

std::unique_ptr<ON_Object> ReadRecord(const Bytes& bytes, int version) {
    MemoryArchive archive(ON::archive_mode::read, bytes, version);
    ON_Object* object = nullptr;
    archive.ReadObject(&object);
    return std::unique_ptr<ON_Object>(object);
}

// Inside its ends, at them and beyond.
constexpr double kPlaces[] = {0.0, 0.25, 1.0, 1.5};

double PlaceIn(const ON_Interval& domain, double place) {
    return (1.0 - place) * domain[0] + place * domain[1];
}

void UseCurve(const ON_Curve& curve) {
    curve.BoundingBox();
    for (const double place : kPlaces)
        curve.PointAt(PlaceIn(curve.Domain(), place));
    const std::unique_ptr<ON_Curve> copy(curve.DuplicateCurve());
    const std::unique_ptr<ON_NurbsCurve> nurbs(curve.NurbsCurve());
}

void UseSurface(const ON_Surface& surface) {
    surface.BoundingBox();
    for (const double place : kPlaces)
        surface.PointAt(PlaceIn(surface.Domain(0), place), PlaceIn(surface.Domain(1), 1.0 - place));
    const std::unique_ptr<ON_Surface> copy(surface.DuplicateSurface());
    const std::unique_ptr<ON_NurbsSurface> nurbs(surface.NurbsSurface());
}

void Use(const ON_Object& object) {
    object.IsValid();
    if (const ON_Curve* const curve = ON_Curve::Cast(&object))
        UseCurve(*curve);
    if (const ON_Surface* const surface = ON_Surface::Cast(&object))
        UseSurface(*surface);
}

void StoreAndRead(const ON_Object& object, int version) {
    MemoryArchive archive(ON::archive_mode::write, {}, version);
    archive.WriteObject(object);
    ReadRecord(archive.bytes, version);
}

void ReadMaterial(const Bytes& bytes) {
    MemoryArchive archive(ON::archive_mode::read, bytes);
    ON_Material material;
    material.Read(archive);
    MemoryArchive stored(ON::archive_mode::write);
    material.Write(stored);
}

void LoadMaterialAsChecked(const Bytes& bytes) {
    using Vr::operator&;
    Vr::CheckStream stream(bytes.data(), bytes.size());
    stream.Material();
    if (!stream.Result().IsSafe())
        return;
    Vr::test::MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    auto material = std::make_shared<ON_Material>();
    archive& material;
    archive.Close();
    if (file.GetPosition() != stream.Position())
        Vr::fuzz::Fail("a checked material ends elsewhere");
}

// As a curve or as a surface; `check` is the step for it.
template <class Geometry>
void LoadAsChecked(const Bytes& bytes, Vr::CheckedObject (Vr::CheckStream::*check)()) {
    using Vr::operator&;
    Vr::CheckStream stream(bytes.data(), bytes.size());
    (stream.*check)();
    if (!stream.Result().IsSafe())
        return;
    Vr::test::MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    std::shared_ptr<Geometry> object;
    archive& object;
    archive.Close();
    if (file.GetPosition() != stream.Position())
        Vr::fuzz::Fail("a checked record ends elsewhere");
    if (object && !Geometry::Cast(static_cast<ON_Object*>(object.get())))
        Vr::fuzz::Fail("a checked record is of another class");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
    if (byteCount < 1)
        return 0;
    const Bytes record(bytes + 1, bytes + byteCount);
    if (bytes[0] % 4 == 3) {
        ReadMaterial(record);
        LoadMaterialAsChecked(record);
        return 0;
    }
    LoadAsChecked<ON_Curve>(record, &Vr::CheckStream::Curve);
    LoadAsChecked<ON_Surface>(record, &Vr::CheckStream::Surface);
    const int version = bytes[0] % 4 == 2 ? 50 : 0;
    const std::unique_ptr<ON_Object> object = ReadRecord(record, version);
    if (object) {
        Use(*object);
        StoreAndRead(*object, version);
    }
    return 0;
}

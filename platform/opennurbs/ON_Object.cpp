// Defaults of the bases, and the one table of all classes. A table instead of registration by static
// objects: it is complete in a static library too, and nothing runs before main.
#include "ON_Object.h"

#include "ON_ArcCurve.h"
#include "ON_LineCurve.h"
#include "ON_Material.h"
#include "ON_NurbsCurve.h"
#include "ON_NurbsSurface.h"
#include "ON_PlaneSurface.h"
#include "ON_PolyCurve.h"
#include "ON_PolylineCurve.h"
#include "ON_RevSurface.h"
#include "ON_SumSurface.h"
#include "ON_Texture.h"

namespace {

template <class Class>
ON_Object* CreateObject() {
    return new Class();
}

// The two families of identifiers differ in their first numbers only.
constexpr ON_UUID GeometryId(std::uint32_t data1) noexcept {
    return {data1, 0xe947, 0x11d3, {0xbf, 0xe5, 0x00, 0x10, 0x83, 0x01, 0x22, 0xf0}};
}

constexpr ON_UUID ObjectId(std::uint32_t data1) noexcept {
    return {data1, 0xe660, 0x11d3, {0xbf, 0xe4, 0x00, 0x10, 0x83, 0x01, 0x22, 0xf0}};
}

}  // namespace

const ON_ClassId ON_Object::m_ON_Object_class_id("ON_Object", "0", ObjectId(0x60b5dbbd), nullptr);
const ON_ClassId ON_Geometry::m_ON_Geometry_class_id("ON_Geometry", "ON_Object",
                                                     GeometryId(0x4ed7d4da), nullptr);
const ON_ClassId ON_Curve::m_ON_Curve_class_id("ON_Curve", "ON_Geometry", GeometryId(0x4ed7d4d7),
                                               nullptr);
const ON_ClassId ON_Surface::m_ON_Surface_class_id("ON_Surface", "ON_Geometry",
                                                   GeometryId(0x4ed7d4e1), nullptr);
const ON_ClassId ON_LineCurve::m_ON_LineCurve_class_id("ON_LineCurve", "ON_Curve",
                                                       GeometryId(0x4ed7d4db),
                                                       &CreateObject<ON_LineCurve>);
const ON_ClassId ON_ArcCurve::m_ON_ArcCurve_class_id(
    "ON_ArcCurve", "ON_Curve",
    {0xcf33be2a, 0x09b4, 0x11d4, {0xbf, 0xfb, 0x00, 0x10, 0x83, 0x01, 0x22, 0xf0}},
    &CreateObject<ON_ArcCurve>);
const ON_ClassId ON_PolylineCurve::m_ON_PolylineCurve_class_id("ON_PolylineCurve", "ON_Curve",
                                                               GeometryId(0x4ed7d4e6),
                                                               &CreateObject<ON_PolylineCurve>);
const ON_ClassId ON_PolyCurve::m_ON_PolyCurve_class_id("ON_PolyCurve", "ON_Curve",
                                                       GeometryId(0x4ed7d4e0),
                                                       &CreateObject<ON_PolyCurve>);
const ON_ClassId ON_NurbsCurve::m_ON_NurbsCurve_class_id("ON_NurbsCurve", "ON_Curve",
                                                         GeometryId(0x4ed7d4dd),
                                                         &CreateObject<ON_NurbsCurve>);
const ON_ClassId ON_PlaneSurface::m_ON_PlaneSurface_class_id("ON_PlaneSurface", "ON_Surface",
                                                             GeometryId(0x4ed7d4df),
                                                             &CreateObject<ON_PlaneSurface>);
const ON_ClassId ON_NurbsSurface::m_ON_NurbsSurface_class_id("ON_NurbsSurface", "ON_Surface",
                                                             GeometryId(0x4ed7d4de),
                                                             &CreateObject<ON_NurbsSurface>);
const ON_ClassId ON_RevSurface::m_ON_RevSurface_class_id(
    "ON_RevSurface", "ON_Surface",
    {0xa16220d3, 0x163b, 0x11d4, {0x80, 0x00, 0x00, 0x10, 0x83, 0x01, 0x22, 0xf0}},
    &CreateObject<ON_RevSurface>);
const ON_ClassId ON_SumSurface::m_ON_SumSurface_class_id(
    "ON_SumSurface", "ON_Surface",
    {0xc4cd5359, 0x446d, 0x4690, {0x9f, 0xf5, 0x29, 0x05, 0x97, 0x32, 0x47, 0x2b}},
    &CreateObject<ON_SumSurface>);
const ON_ClassId ON_Material::m_ON_Material_class_id("ON_Material", "ON_Object",
                                                     ObjectId(0x60b5dbbc),
                                                     &CreateObject<ON_Material>);
const ON_ClassId ON_Texture::m_ON_Texture_class_id(
    "ON_Texture", "ON_Object",
    {0xd6ff106d, 0x329b, 0x4f29, {0x97, 0xe2, 0xfd, 0x28, 0x2a, 0x61, 0x80, 0x20}},
    &CreateObject<ON_Texture>);

const ON_ClassId* ON_ClassId::ClassId(const ON_UUID& id) noexcept {
    static const ON_ClassId* const classes[] = {&ON_Object::m_ON_Object_class_id,
                                                &ON_Geometry::m_ON_Geometry_class_id,
                                                &ON_Curve::m_ON_Curve_class_id,
                                                &ON_Surface::m_ON_Surface_class_id,
                                                &ON_LineCurve::m_ON_LineCurve_class_id,
                                                &ON_ArcCurve::m_ON_ArcCurve_class_id,
                                                &ON_PolylineCurve::m_ON_PolylineCurve_class_id,
                                                &ON_PolyCurve::m_ON_PolyCurve_class_id,
                                                &ON_NurbsCurve::m_ON_NurbsCurve_class_id,
                                                &ON_PlaneSurface::m_ON_PlaneSurface_class_id,
                                                &ON_NurbsSurface::m_ON_NurbsSurface_class_id,
                                                &ON_RevSurface::m_ON_RevSurface_class_id,
                                                &ON_SumSurface::m_ON_SumSurface_class_id,
                                                &ON_Material::m_ON_Material_class_id,
                                                &ON_Texture::m_ON_Texture_class_id};
    for (const ON_ClassId* known : classes) {
        if (known->m_id == id) {
            return known;
        }
    }
    return nullptr;
}

ON_Object::~ON_Object() = default;

const ON_ClassId* ON_Object::ClassId() const noexcept {
    return &m_ON_Object_class_id;
}

ON_BOOL32 ON_Object::Write(ON_BinaryArchive&) const {
    return 0;
}

ON_BOOL32 ON_Object::Read(ON_BinaryArchive&) {
    return 0;
}

const ON_ClassId* ON_Geometry::ClassId() const noexcept {
    return &m_ON_Geometry_class_id;
}
const ON_ClassId* ON_Curve::ClassId() const noexcept {
    return &m_ON_Curve_class_id;
}
const ON_ClassId* ON_Surface::ClassId() const noexcept {
    return &m_ON_Surface_class_id;
}
const ON_ClassId* ON_LineCurve::ClassId() const noexcept {
    return &m_ON_LineCurve_class_id;
}
const ON_ClassId* ON_ArcCurve::ClassId() const noexcept {
    return &m_ON_ArcCurve_class_id;
}
const ON_ClassId* ON_PolyCurve::ClassId() const noexcept {
    return &m_ON_PolyCurve_class_id;
}
const ON_ClassId* ON_NurbsCurve::ClassId() const noexcept {
    return &m_ON_NurbsCurve_class_id;
}
const ON_ClassId* ON_RevSurface::ClassId() const noexcept {
    return &m_ON_RevSurface_class_id;
}
const ON_ClassId* ON_SumSurface::ClassId() const noexcept {
    return &m_ON_SumSurface_class_id;
}
const ON_ClassId* ON_Material::ClassId() const noexcept {
    return &m_ON_Material_class_id;
}
const ON_ClassId* ON_Texture::ClassId() const noexcept {
    return &m_ON_Texture_class_id;
}
const ON_ClassId* ON_PolylineCurve::ClassId() const noexcept {
    return &m_ON_PolylineCurve_class_id;
}
const ON_ClassId* ON_PlaneSurface::ClassId() const noexcept {
    return &m_ON_PlaneSurface_class_id;
}
const ON_ClassId* ON_NurbsSurface::ClassId() const noexcept {
    return &m_ON_NurbsSurface_class_id;
}

/// What tests must know of the geometry kernel at hand. The newer headers are told by a constant that
/// the version 4 interface lacks.
#pragma once

#include <opennurbs.h>

#include <cstdint>
#include <string>

namespace Vr::test {

#if defined(ON_UNSET_POSITIVE_VALUE)

/// Whether curves and surfaces are stored as their own class, not as their NURBS form.
constexpr bool kStoresOwnClasses = true;

/// The index that a material is stored with. It is taken from the archive's list of materials here, and
/// unset without one.
constexpr std::uint32_t StoredMaterialIndex(std::uint32_t) {
    return 0x80000001;
}

inline void SetShine(ON_Material& material, double shine) {
    material.SetShine(shine);
}
inline double ShineOf(const ON_Material& material) {
    return material.Shine();
}
inline void SetTransparency(ON_Material& material, double transparency) {
    material.SetTransparency(transparency);
}
inline double TransparencyOf(const ON_Material& material) {
    return material.Transparency();
}
inline double ReflectivityOf(const ON_Material& material) {
    return material.Reflectivity();
}
inline void SetReflectivity(ON_Material& material, double reflectivity) {
    material.SetReflectivity(reflectivity);
}
inline void SetIdentity(ON_Material& material, const ON_UUID& id, int index, const wchar_t* name) {
    material.SetId(id);
    material.SetIndex(index);
    material.SetName(name);
}
inline std::wstring NameOf(const ON_Material& material) {
    return static_cast<const wchar_t*>(material.Name());
}
inline int IndexOf(const ON_Material& material) {
    return material.Index();
}
inline ON_UUID IdOf(const ON_Material& material) {
    return material.Id();
}

#else

constexpr bool kStoresOwnClasses = false;

constexpr std::uint32_t StoredMaterialIndex(std::uint32_t index) {
    return index;
}

inline void SetShine(ON_Material& material, double shine) {
    material.m_shine = shine;
}
inline double ShineOf(const ON_Material& material) {
    return material.m_shine;
}
inline void SetTransparency(ON_Material& material, double transparency) {
    material.m_transparency = transparency;
}
inline double TransparencyOf(const ON_Material& material) {
    return material.m_transparency;
}
inline double ReflectivityOf(const ON_Material& material) {
    return material.m_reflectivity;
}
inline void SetReflectivity(ON_Material& material, double reflectivity) {
    material.m_reflectivity = reflectivity;
}
inline void SetIdentity(ON_Material& material, const ON_UUID& id, int index, const wchar_t* name) {
    material.m_material_id = id;
    material.m_material_index = index;
    material.m_material_name = name;
}
inline std::wstring NameOf(const ON_Material& material) {
    return static_cast<const wchar_t*>(material.m_material_name);
}
inline int IndexOf(const ON_Material& material) {
    return material.m_material_index;
}
inline ON_UUID IdOf(const ON_Material& material) {
    return material.m_material_id;
}

#endif

}  // namespace Vr::test

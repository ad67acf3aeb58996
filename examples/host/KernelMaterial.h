/// Members of a material that openNURBS has renamed since version 4. The newer headers are told by a
/// constant that the older ones lack.
#pragma once

#include <opennurbs.h>

namespace Host {

constexpr double kGreatestShine = 255.0;

#if defined(ON_UNSET_POSITIVE_VALUE)

inline ON_wString NameOf(const ON_Material& material) {
    return material.Name();
}
inline double ShineOf(const ON_Material& material) {
    return material.Shine();
}
inline double TransparencyOf(const ON_Material& material) {
    return material.Transparency();
}
inline void SetName(ON_Material& material, const wchar_t* name) {
    material.SetName(name);
}
inline void SetShine(ON_Material& material, double shine) {
    material.SetShine(shine);
}
inline void SetTransparency(ON_Material& material, double transparency) {
    material.SetTransparency(transparency);
}

#else

inline ON_wString NameOf(const ON_Material& material) {
    return material.m_material_name;
}
inline double ShineOf(const ON_Material& material) {
    return material.m_shine;
}
inline double TransparencyOf(const ON_Material& material) {
    return material.m_transparency;
}
inline void SetName(ON_Material& material, const wchar_t* name) {
    material.m_material_name = name;
}
inline void SetShine(ON_Material& material, double shine) {
    material.m_shine = shine;
}
inline void SetTransparency(ON_Material& material, double transparency) {
    material.m_transparency = transparency;
}

#endif

}  // namespace Host

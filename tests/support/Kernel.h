/// What tests must know of the geometry kernel at hand. The newer headers are told by a constant that
/// the version 4 interface lacks.
#pragma once

#include <opennurbs.h>

#include <array>
#include <cstdint>
#include <string>

namespace Vr::test {

/// The characters of a string; an empty one can have none to point at.
inline std::wstring CharactersOf(const ON_wString& text) {
    return text.IsEmpty() ? std::wstring() : static_cast<const wchar_t*>(text);
}

#if defined(ON_UNSET_POSITIVE_VALUE)

/// Whether curves and surfaces are stored as their own class, not as their NURBS form.
constexpr bool kStoresOwnClasses = true;

/// The index that a material is stored with. It is taken from the archive's list of materials here, and
/// unset without one.
constexpr std::uint32_t StoredMaterialIndex(std::uint32_t) {
    return 0x80000001;
}

/// Whether materials have the name of a library.
constexpr bool kHasMaterialLibrary = false;

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
    return CharactersOf(material.Name());
}
inline int IndexOf(const ON_Material& material) {
    return material.Index();
}
inline ON_UUID IdOf(const ON_Material& material) {
    return material.Id();
}

inline void SetLibrary(ON_Material&, const wchar_t*) {}
inline std::wstring LibraryOf(const ON_Material&) {
    return {};
}
inline void SetPlugIn(ON_Material& material, const ON_UUID& id) {
    material.SetMaterialPlugInId(id);
}
inline ON_UUID PlugInOf(const ON_Material& material) {
    return material.MaterialPlugInId();
}
inline void SetFlags(ON_Material& material, bool isShared, bool isUnlit) {
    material.SetShareable(isShared);
    material.SetDisableLighting(isUnlit);
}
inline bool IsShared(const ON_Material& material) {
    return material.Shareable();
}
inline bool IsUnlit(const ON_Material& material) {
    return material.DisableLighting();
}
inline void SetFileName(ON_Texture& texture, const wchar_t* name) {
    texture.m_image_file_reference.SetFullPath(name, false);
}
inline std::wstring FileNameOf(const ON_Texture& texture) {
    const ON_FileReference& file = texture.m_image_file_reference;
    return CharactersOf(file.FullPath().IsEmpty() ? file.RelativePath() : file.FullPath());
}
/// The factors of a texture's blending: four of alpha, four of the colours.
template <class Texture>
auto BlendFactorsOf(Texture& texture) {
    return std::array{&texture.m_blend_A0,   &texture.m_blend_A1,   &texture.m_blend_A2,
                      &texture.m_blend_A3,   &texture.m_blend_RGB0, &texture.m_blend_RGB1,
                      &texture.m_blend_RGB2, &texture.m_blend_RGB3};
}

/// Has materials stored with the index they have, without the archive's list of materials.
inline void KeepMaterialIndexes(ON_BinaryArchive& archive) {
    archive.SetReferencedComponentIndexMapping(false);
}

#else

constexpr bool kStoresOwnClasses = false;

constexpr std::uint32_t StoredMaterialIndex(std::uint32_t index) {
    return index;
}

constexpr bool kHasMaterialLibrary = true;

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
    return CharactersOf(material.m_material_name);
}
inline int IndexOf(const ON_Material& material) {
    return material.m_material_index;
}
inline ON_UUID IdOf(const ON_Material& material) {
    return material.m_material_id;
}

inline void SetLibrary(ON_Material& material, const wchar_t* library) {
    material.m_flamingo_library = library;
}
inline std::wstring LibraryOf(const ON_Material& material) {
    return CharactersOf(material.m_flamingo_library);
}
inline void SetPlugIn(ON_Material& material, const ON_UUID& id) {
    material.m_plugin_id = id;
}
inline ON_UUID PlugInOf(const ON_Material& material) {
    return material.m_plugin_id;
}
inline void SetFlags(ON_Material& material, bool isShared, bool isUnlit) {
    material.m_bShared = isShared;
    material.m_bDisableLighting = isUnlit;
}
inline bool IsShared(const ON_Material& material) {
    return material.m_bShared;
}
inline bool IsUnlit(const ON_Material& material) {
    return material.m_bDisableLighting;
}
inline void SetFileName(ON_Texture& texture, const wchar_t* name) {
    texture.m_filename = name;
}
inline std::wstring FileNameOf(const ON_Texture& texture) {
    return CharactersOf(texture.m_filename);
}
template <class Texture>
auto BlendFactorsOf(Texture& texture) {
    return std::array{&texture.m_blend_A[0],   &texture.m_blend_A[1],   &texture.m_blend_A[2],
                      &texture.m_blend_A[3],   &texture.m_blend_RGB[0], &texture.m_blend_RGB[1],
                      &texture.m_blend_RGB[2], &texture.m_blend_RGB[3]};
}

inline void KeepMaterialIndexes(ON_BinaryArchive&) {}

#endif

}  // namespace Vr::test

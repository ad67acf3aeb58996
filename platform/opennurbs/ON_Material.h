/// Materials.
#pragma once

#include "ON_Array.h"
#include "ON_Texture.h"

/// An identifier with a number.
struct ON_UuidIndex {
    ON_UUID m_id = ON_nil_uuid;
    int m_i = 0;
};

class VERIDANE_OPENNURBS_API ON_Material : public ON_Object {
public:
    static const ON_ClassId m_ON_Material_class_id;

    ON_UUID m_material_id = ON_nil_uuid;
    int m_material_index = 0;
    ON_wString m_material_name;
    ON_wString m_flamingo_library;
    ON_Color m_ambient;
    ON_Color m_diffuse = ON_Color(128, 128, 128);
    ON_Color m_emission;
    ON_Color m_specular = ON_Color(255, 255, 255);
    ON_Color m_reflection = ON_Color(255, 255, 255);
    ON_Color m_transparent = ON_Color(255, 255, 255);
    double m_index_of_refraction = 1.0;
    double m_reflectivity = 0.0;
    double m_shine = 0.0;
    double m_transparency = 0.0;
    bool m_bShared = false;
    bool m_bDisableLighting = false;
    ON_ObjectArray<ON_Texture> m_textures;
    ON_SimpleArray<ON_UuidIndex> m_material_channel;
    ON_UUID m_plugin_id = ON_nil_uuid;

    static constexpr double MaxShine() noexcept { return 255.0; }

    static ON_Material* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_Material*>(object);
    }
    static const ON_Material* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_Material*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override { return 1; }

    /// Writes the material, without a chunk around it.
    ///
    /// - Deliberate: an archive before version 4, and so a new one, gets an older form without
    ///   reflectivity, flags, channels, and all of the textures but the file name and mode of one
    ///   bitmap, one bump map and one environment map.
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;

    /// Reads either form into a material that is first reset to the defaults.
    ///
    /// - Result: false for a short stream; the fields read so far are set then, the others have
    ///   their defaults.
    /// - Deliberate: the older form limits shine to [0, 255] and transparency to [0, 1] and rounds
    ///   both to float. Another major version succeeds with nothing read.
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;

private:
    bool WriteOlderForm(ON_BinaryArchive& archive) const;
    bool WriteTextureRow(ON_BinaryArchive& archive, ON_Texture::TYPE type) const;
    bool WriteNewerForm(ON_BinaryArchive& archive) const;
    bool WriteTextures(ON_BinaryArchive& archive) const;

    bool ReadOlderForm(ON_BinaryArchive& archive, int minor);
    bool ReadOlderLighting(ON_BinaryArchive& archive);
    bool ReadTextureRow(ON_BinaryArchive& archive, ON_Texture::TYPE type);
    bool ReadNewerForm(ON_BinaryArchive& archive);
    bool ReadNewerFields(ON_BinaryArchive& archive, int minor);
    bool ReadTextures(ON_BinaryArchive& archive);
    bool ReadChannels(ON_BinaryArchive& archive);
};

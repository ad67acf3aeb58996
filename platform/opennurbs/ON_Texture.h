/// Textures of a material.
#pragma once

#include "ON_Color.h"
#include "ON_Object.h"
#include "ON_String.h"
#include "ON_Xform.h"

class VERIDANE_OPENNURBS_API ON_Texture : public ON_Object {
public:
    static const ON_ClassId m_ON_Texture_class_id;

    /// @name Values that a stream may hold; others are kept as numbers
    /// @{
    enum TYPE : int {
        no_texture_type = 0,
        bitmap_texture = 1,
        bump_texture = 2,
        transparency_texture = 3,
        emap_texture = 86
    };
    enum MODE : int {
        no_texture_mode = 0,
        modulate_texture = 1,
        decal_texture = 2,
        blend_texture = 3
    };
    enum FILTER : int { nearest_filter = 0, linear_filter = 1 };
    enum WRAP : int { repeat_wrap = 0, clamp_wrap = 1 };
    /// @}

    ON_UUID m_texture_id = ON_nil_uuid;
    int m_mapping_channel_id = 0;
    ON_wString m_filename;
    bool m_bOn = true;
    TYPE m_type = no_texture_type;
    MODE m_mode = modulate_texture;
    FILTER m_minfilter = linear_filter;
    FILTER m_magfilter = linear_filter;
    WRAP m_wrapu = repeat_wrap;
    WRAP m_wrapv = repeat_wrap;
    WRAP m_wrapw = repeat_wrap;
    ON_Xform m_uvw = ON_Xform(1.0);
    ON_Color m_border_color = ON_Color(ON_UNSET_COLOR);
    ON_Color m_transparent_color = ON_Color(ON_UNSET_COLOR);
    ON_UUID m_transparency_texture_id = ON_nil_uuid;
    ON_Interval m_bump_scale = ON_Interval(0.0, 1.0);
    double m_blend_constant_A = 1.0;
    double m_blend_A[4] = {1.0, 1.0, 0.0, 0.0};
    ON_Color m_blend_constant_RGB;
    double m_blend_RGB[4] = {1.0, 1.0, 0.0, 0.0};
    int m_blend_order = 0;

    static ON_Texture* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_Texture*>(object);
    }
    static const ON_Texture* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_Texture*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override { return 1; }
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;

private:
    bool WriteFields(ON_BinaryArchive& archive) const;
    bool ReadFields(ON_BinaryArchive& archive);
};

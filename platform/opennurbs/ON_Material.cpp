// Two forms of one record: the older one is a fixed row of fields, the newer one a versioned chunk with
// the textures as records of their own.
#include "ON_Material.h"

#include <memory>

#include "ON_BinaryArchive.h"
#include "detail/Typecodes.h"

namespace {

// The older form held single precision.
double LimitedToFloat(double value, double maximum) noexcept {
    const double limited = value < 0.0 ? 0.0 : (value > maximum ? maximum : value);
    return static_cast<double>(static_cast<float>(limited));
}

const ON_Texture* FirstTexture(const ON_Material& material, ON_Texture::TYPE type) noexcept {
    for (int number = 0; number < material.m_textures.Count(); ++number) {
        if (material.m_textures[number].m_type == type) {
            return &material.m_textures[number];
        }
    }
    return nullptr;
}

// The settings that `WriteUnused` writes; no reader has a use for them.
bool ReadUnused(ON_BinaryArchive& archive) {
    char flag = 0;
    ON_Color color;
    short count = 0;
    double interval[2] = {0.0, 0.0};
    return archive.ReadChar(&flag) && archive.ReadChar(&flag) && archive.ReadChar(&flag) &&
           archive.ReadChar(&flag) && archive.ReadColor(color) && archive.ReadShort(&count) &&
           archive.ReadShort(&count) && archive.ReadDouble(&interval[0]) &&
           archive.ReadDouble(&interval[1]);
}

// Settings that the older form has kept without a meaning.
bool WriteUnused(ON_BinaryArchive& archive) {
    return archive.WriteChar(1) && archive.WriteChar(1) && archive.WriteChar(0) &&
           archive.WriteChar(2) && archive.WriteColor(ON_Color()) && archive.WriteShort(0) &&
           archive.WriteShort(0) && archive.WriteDouble(0.0) && archive.WriteDouble(1.0);
}

}  // namespace

ON_BOOL32 ON_Material::Write(ON_BinaryArchive& archive) const {
    const bool isWritten =
        archive.Archive3dmVersion() <= 3 ? WriteOlderForm(archive) : WriteNewerForm(archive);
    return isWritten ? 1 : 0;
}

bool ON_Material::WriteOlderForm(ON_BinaryArchive& archive) const {
    return archive.Write3dmChunkVersion(1, 1) && archive.WriteColor(m_ambient) &&
           archive.WriteColor(m_diffuse) && archive.WriteColor(m_emission) &&
           archive.WriteColor(m_specular) && archive.WriteDouble(m_shine) &&
           archive.WriteDouble(m_transparency) && WriteUnused(archive) &&
           WriteTextureRow(archive, ON_Texture::bitmap_texture) &&
           WriteTextureRow(archive, ON_Texture::bump_texture) &&
           WriteTextureRow(archive, ON_Texture::emap_texture) &&
           archive.WriteInt(m_material_index) && archive.WriteUuid(m_plugin_id) &&
           archive.WriteString(m_flamingo_library) && archive.WriteString(m_material_name) &&
           archive.WriteUuid(m_material_id) && archive.WriteColor(m_reflection) &&
           archive.WriteColor(m_transparent) && archive.WriteDouble(m_index_of_refraction);
}

bool ON_Material::WriteTextureRow(ON_BinaryArchive& archive, ON_Texture::TYPE type) const {
    const ON_Texture* texture = FirstTexture(*this, type);
    if (texture && texture->m_filename.IsEmpty()) {
        texture = nullptr;
    }
    int mode = 0;
    if (texture) {
        mode = texture->m_mode == ON_Texture::decal_texture ? 2 : 1;
    }
    const bool isWritten = archive.WriteString(texture ? texture->m_filename : ON_wString()) &&
                           archive.WriteInt(mode) && archive.WriteInt(0);
    if (type != ON_Texture::bump_texture) {
        return isWritten;
    }
    return isWritten && archive.WriteDouble(texture ? texture->m_bump_scale[1] : 1.0);
}

bool ON_Material::WriteNewerForm(ON_BinaryArchive& archive) const {
    if (!archive.Write3dmChunkVersion(2, 0) ||
        !archive.BeginWrite3dmChunk(kernel_detail::kAnonymousChunk, 1, 3)) {
        return false;
    }
    bool isWritten = archive.WriteUuid(m_material_id) && archive.WriteInt(m_material_index) &&
                     archive.WriteString(m_material_name) && archive.WriteUuid(m_plugin_id) &&
                     archive.WriteColor(m_ambient) && archive.WriteColor(m_diffuse) &&
                     archive.WriteColor(m_emission) && archive.WriteColor(m_specular) &&
                     archive.WriteColor(m_reflection) && archive.WriteColor(m_transparent) &&
                     archive.WriteDouble(m_index_of_refraction) &&
                     archive.WriteDouble(m_reflectivity) && archive.WriteDouble(m_shine) &&
                     archive.WriteDouble(m_transparency) && WriteTextures(archive) &&
                     archive.WriteString(m_flamingo_library) &&
                     archive.WriteInt(m_material_channel.Count());
    for (int number = 0; isWritten && number < m_material_channel.Count(); ++number) {
        isWritten = archive.WriteUuid(m_material_channel[number].m_id) &&
                    archive.WriteInt(m_material_channel[number].m_i);
    }
    isWritten = isWritten && archive.WriteBool(m_bShared) && archive.WriteBool(m_bDisableLighting);
    return archive.EndWrite3dmChunk() && isWritten;
}

bool ON_Material::WriteTextures(ON_BinaryArchive& archive) const {
    if (!archive.BeginWrite3dmChunk(kernel_detail::kAnonymousChunk, 1, 0)) {
        return false;
    }
    bool isWritten = archive.WriteInt(m_textures.Count());
    for (int number = 0; isWritten && number < m_textures.Count(); ++number) {
        isWritten = archive.WriteObject(m_textures[number]);
    }
    return archive.EndWrite3dmChunk() && isWritten;
}

ON_BOOL32 ON_Material::Read(ON_BinaryArchive& archive) {
    *this = ON_Material();
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    switch (major) {
        case 1:
            return ReadOlderForm(archive, minor) ? 1 : 0;
        case 2:
            return ReadNewerForm(archive) ? 1 : 0;
        default:
            return 1;
    }
}

bool ON_Material::ReadOlderForm(ON_BinaryArchive& archive, int minor) {
    if (!ReadOlderLighting(archive) || !ReadTextureRow(archive, ON_Texture::bitmap_texture) ||
        !ReadTextureRow(archive, ON_Texture::bump_texture) ||
        !ReadTextureRow(archive, ON_Texture::emap_texture) || !archive.ReadInt(&m_material_index) ||
        !archive.ReadUuid(m_plugin_id) || !archive.ReadString(m_flamingo_library) ||
        !archive.ReadString(m_material_name)) {
        return false;
    }
    return minor < 1 ||
           (archive.ReadUuid(m_material_id) && archive.ReadColor(m_reflection) &&
            archive.ReadColor(m_transparent) && archive.ReadDouble(&m_index_of_refraction));
}

bool ON_Material::ReadOlderLighting(ON_BinaryArchive& archive) {
    if (!archive.ReadColor(m_ambient) || !archive.ReadColor(m_diffuse) ||
        !archive.ReadColor(m_emission) || !archive.ReadColor(m_specular)) {
        return false;
    }
    double number = 0.0;
    if (!archive.ReadDouble(&number)) {
        return false;
    }
    m_shine = LimitedToFloat(number, MaxShine());
    if (!archive.ReadDouble(&number)) {
        return false;
    }
    m_transparency = LimitedToFloat(number, 1.0);
    return ReadUnused(archive);
}

bool ON_Material::ReadTextureRow(ON_BinaryArchive& archive, ON_Texture::TYPE type) {
    ON_Texture texture;
    texture.m_type = type;
    int mode = 0;
    int unused = 0;
    if (!archive.ReadString(texture.m_filename) || !archive.ReadInt(&mode) ||
        !archive.ReadInt(&unused)) {
        return false;
    }
    if (type == ON_Texture::bump_texture && !archive.ReadDouble(&texture.m_bump_scale[1])) {
        return false;
    }
    texture.m_mode = mode == 2 ? ON_Texture::decal_texture : ON_Texture::modulate_texture;
    if (!texture.m_filename.IsEmpty()) {
        m_textures.Append(std::move(texture));
    }
    return true;
}

bool ON_Material::ReadNewerForm(ON_BinaryArchive& archive) {
    int major = 0;
    int minor = 0;
    if (!archive.BeginRead3dmChunk(kernel_detail::kAnonymousChunk, &major, &minor)) {
        return false;
    }
    const bool isRead = major != 1 || ReadNewerFields(archive, minor);
    return archive.EndRead3dmChunk() && isRead;
}

bool ON_Material::ReadNewerFields(ON_BinaryArchive& archive, int minor) {
    if (!archive.ReadUuid(m_material_id) || !archive.ReadInt(&m_material_index) ||
        !archive.ReadString(m_material_name) || !archive.ReadUuid(m_plugin_id) ||
        !archive.ReadColor(m_ambient) || !archive.ReadColor(m_diffuse) ||
        !archive.ReadColor(m_emission) || !archive.ReadColor(m_specular) ||
        !archive.ReadColor(m_reflection) || !archive.ReadColor(m_transparent) ||
        !archive.ReadDouble(&m_index_of_refraction) || !archive.ReadDouble(&m_reflectivity) ||
        !archive.ReadDouble(&m_shine) || !archive.ReadDouble(&m_transparency)) {
        return false;
    }
    // Writers before this version left the old default in a colour that nobody had chosen.
    constexpr int kTransparentColorVersion = 200912010;
    if (archive.ArchiveOpenNURBSVersion() < kTransparentColorVersion &&
        m_transparent == ON_Color(128, 128, 128)) {
        m_transparent = m_diffuse;
    }
    if (!ReadTextures(archive) || (minor >= 1 && !archive.ReadString(m_flamingo_library)) ||
        (minor >= 2 && !ReadChannels(archive))) {
        return false;
    }
    return minor < 3 || (archive.ReadBool(&m_bShared) && archive.ReadBool(&m_bDisableLighting));
}

bool ON_Material::ReadTextures(ON_BinaryArchive& archive) {
    int major = 0;
    int minor = 0;
    if (!archive.BeginRead3dmChunk(kernel_detail::kAnonymousChunk, &major, &minor)) {
        return false;
    }
    int count = 0;
    bool isRead = archive.ReadInt(&count);
    for (int number = 0; isRead && number < count; ++number) {
        ON_Object* read = nullptr;
        isRead = archive.ReadObject(&read) == 1;
        const std::unique_ptr<ON_Object> object(read);
        if (const ON_Texture* const texture = ON_Texture::Cast(object.get())) {
            m_textures.Append(*texture);
        }
    }
    return archive.EndRead3dmChunk() && isRead;
}

bool ON_Material::ReadChannels(ON_BinaryArchive& archive) {
    int count = 0;
    bool isRead = archive.ReadInt(&count);
    for (int number = 0; isRead && number < count; ++number) {
        ON_UuidIndex channel;
        isRead = archive.ReadUuid(channel.m_id) && archive.ReadInt(&channel.m_i);
        if (isRead) {
            m_material_channel.Append(channel);
        }
    }
    return isRead;
}

// The record of a texture: one versioned chunk that holds the fields in their order.
#include "ON_Texture.h"

#include "ON_BinaryArchive.h"
#include "detail/Typecodes.h"

namespace {

template <class Enumeration>
bool ReadEnumeration(ON_BinaryArchive& archive, Enumeration& value) {
    int number = 0;
    if (!archive.ReadInt(&number)) {
        return false;
    }
    value = static_cast<Enumeration>(number);
    return true;
}

}  // namespace

ON_BOOL32 ON_Texture::Write(ON_BinaryArchive& archive) const {
    if (!archive.BeginWrite3dmChunk(kernel_detail::kAnonymousChunk, 1, 0)) {
        return 0;
    }
    const bool isWritten = WriteFields(archive);
    return archive.EndWrite3dmChunk() && isWritten ? 1 : 0;
}

bool ON_Texture::WriteFields(ON_BinaryArchive& archive) const {
    bool isWritten = archive.WriteUuid(m_texture_id) && archive.WriteInt(m_mapping_channel_id) &&
                     archive.WriteString(m_filename) && archive.WriteBool(m_bOn);
    for (const int number :
         {static_cast<int>(m_type), static_cast<int>(m_mode), static_cast<int>(m_minfilter),
          static_cast<int>(m_magfilter), static_cast<int>(m_wrapu), static_cast<int>(m_wrapv),
          static_cast<int>(m_wrapw)}) {
        isWritten = isWritten && archive.WriteInt(number);
    }
    return isWritten && archive.WriteXform(m_uvw) && archive.WriteColor(m_border_color) &&
           archive.WriteColor(m_transparent_color) &&
           archive.WriteUuid(m_transparency_texture_id) && archive.WriteInterval(m_bump_scale) &&
           archive.WriteDouble(m_blend_constant_A) && archive.WriteDouble(4, m_blend_A) &&
           archive.WriteColor(m_blend_constant_RGB) && archive.WriteDouble(4, m_blend_RGB) &&
           archive.WriteInt(m_blend_order);
}

ON_BOOL32 ON_Texture::Read(ON_BinaryArchive& archive) {
    *this = ON_Texture();
    int major = 0;
    int minor = 0;
    if (!archive.BeginRead3dmChunk(kernel_detail::kAnonymousChunk, &major, &minor)) {
        return 0;
    }
    const bool isRead = major != 1 || ReadFields(archive);
    return archive.EndRead3dmChunk() && isRead ? 1 : 0;
}

bool ON_Texture::ReadFields(ON_BinaryArchive& archive) {
    return archive.ReadUuid(m_texture_id) && archive.ReadInt(&m_mapping_channel_id) &&
           archive.ReadString(m_filename) && archive.ReadBool(&m_bOn) &&
           ReadEnumeration(archive, m_type) && ReadEnumeration(archive, m_mode) &&
           ReadEnumeration(archive, m_minfilter) && ReadEnumeration(archive, m_magfilter) &&
           ReadEnumeration(archive, m_wrapu) && ReadEnumeration(archive, m_wrapv) &&
           ReadEnumeration(archive, m_wrapw) && archive.ReadXform(m_uvw) &&
           archive.ReadColor(m_border_color) && archive.ReadColor(m_transparent_color) &&
           archive.ReadUuid(m_transparency_texture_id) && archive.ReadInterval(m_bump_scale) &&
           archive.ReadDouble(&m_blend_constant_A) && archive.ReadDouble(4, m_blend_A) &&
           archive.ReadColor(m_blend_constant_RGB) && archive.ReadDouble(4, m_blend_RGB) &&
           archive.ReadInt(&m_blend_order);
}

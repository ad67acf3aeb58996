// Materials: recorded bytes of both forms, what they keep, and short streams.
#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::Bytes;
using kerneltest::FirstBytes;
using kerneltest::GoldenCases;
using kerneltest::GoldenLine;
using kerneltest::MemoryArchive;

namespace {

constexpr char kFile[] = "materials.txt";
constexpr size_t kMaterialCount = 8;

// A texture's id that another kernel has made up is nil here, which has no generator of them.
ON_UUID TextureIdFrom(GoldenLine& line) {
    GoldenLine ahead = line;
    if (ahead.Word() == "generated") {
        line.Word();
        return ON_nil_uuid;
    }
    return line.Uuid();
}

ON_Texture TextureFrom(GoldenLine& line) {
    ON_Texture texture;
    texture.m_texture_id = TextureIdFrom(line);
    texture.m_mapping_channel_id = line.Integer();
    texture.m_filename = line.String();
    texture.m_bOn = line.Flag();
    texture.m_type = static_cast<ON_Texture::TYPE>(line.Integer());
    texture.m_mode = static_cast<ON_Texture::MODE>(line.Integer());
    texture.m_minfilter = static_cast<ON_Texture::FILTER>(line.Integer());
    texture.m_magfilter = static_cast<ON_Texture::FILTER>(line.Integer());
    texture.m_wrapu = static_cast<ON_Texture::WRAP>(line.Integer());
    texture.m_wrapv = static_cast<ON_Texture::WRAP>(line.Integer());
    texture.m_wrapw = static_cast<ON_Texture::WRAP>(line.Integer());
    texture.m_uvw = line.Xform();
    texture.m_border_color = line.Packed();
    texture.m_transparent_color = line.Packed();
    texture.m_transparency_texture_id = line.Uuid();
    texture.m_bump_scale = line.Interval();
    texture.m_blend_constant_A = line.Number();
    for (double& factor : texture.m_blend_A) {
        factor = line.Number();
    }
    texture.m_blend_constant_RGB = line.Packed();
    for (double& factor : texture.m_blend_RGB) {
        factor = line.Number();
    }
    texture.m_blend_order = line.Integer();
    return texture;
}

ON_Material MaterialFrom(GoldenLine& line) {
    ON_Material material;
    material.m_material_id = line.Uuid();
    material.m_material_index = line.Integer();
    material.m_material_name = line.String();
    material.m_flamingo_library = line.String();
    material.m_ambient = line.Packed();
    material.m_diffuse = line.Packed();
    material.m_emission = line.Packed();
    material.m_specular = line.Packed();
    material.m_reflection = line.Packed();
    material.m_transparent = line.Packed();
    material.m_index_of_refraction = line.Number();
    material.m_reflectivity = line.Number();
    material.m_shine = line.Number();
    material.m_transparency = line.Number();
    material.m_plugin_id = line.Uuid();
    for (size_t left = line.Count(); left > 0; --left) {
        material.m_textures.Append(TextureFrom(line));
    }
    EXPECT_TRUE(line.IsAtEnd()) << line.Where();
    return material;
}

void ExpectSame(const ON_Texture& actual, const ON_Texture& expected) {
    EXPECT_TRUE(actual.m_texture_id == expected.m_texture_id);
    EXPECT_EQ(actual.m_mapping_channel_id, expected.m_mapping_channel_id);
    EXPECT_TRUE(actual.m_filename == expected.m_filename);
    EXPECT_EQ(actual.m_bOn, expected.m_bOn);
    EXPECT_EQ(actual.m_type, expected.m_type);
    EXPECT_EQ(actual.m_mode, expected.m_mode);
    EXPECT_EQ(actual.m_minfilter, expected.m_minfilter);
    EXPECT_EQ(actual.m_magfilter, expected.m_magfilter);
    EXPECT_EQ(actual.m_wrapu, expected.m_wrapu);
    EXPECT_EQ(actual.m_wrapv, expected.m_wrapv);
    EXPECT_EQ(actual.m_wrapw, expected.m_wrapw);
    EXPECT_SAME_BITS(actual.m_uvw, expected.m_uvw);
    EXPECT_EQ(actual.m_border_color, expected.m_border_color);
    EXPECT_EQ(actual.m_transparent_color, expected.m_transparent_color);
    EXPECT_TRUE(actual.m_transparency_texture_id == expected.m_transparency_texture_id);
    EXPECT_SAME_BITS(actual.m_bump_scale, expected.m_bump_scale);
    EXPECT_SAME_BITS(actual.m_blend_constant_A, expected.m_blend_constant_A);
    EXPECT_EQ(actual.m_blend_constant_RGB, expected.m_blend_constant_RGB);
    for (int factor = 0; factor < 4; ++factor) {
        EXPECT_SAME_BITS(actual.m_blend_A[factor], expected.m_blend_A[factor]);
        EXPECT_SAME_BITS(actual.m_blend_RGB[factor], expected.m_blend_RGB[factor]);
    }
    EXPECT_EQ(actual.m_blend_order, expected.m_blend_order);
}

void ExpectSame(const ON_Material& actual, const ON_Material& expected) {
    EXPECT_TRUE(actual.m_material_id == expected.m_material_id);
    EXPECT_EQ(actual.m_material_index, expected.m_material_index);
    EXPECT_TRUE(actual.m_material_name == expected.m_material_name);
    EXPECT_TRUE(actual.m_flamingo_library == expected.m_flamingo_library);
    EXPECT_EQ(actual.m_ambient, expected.m_ambient);
    EXPECT_EQ(actual.m_diffuse, expected.m_diffuse);
    EXPECT_EQ(actual.m_emission, expected.m_emission);
    EXPECT_EQ(actual.m_specular, expected.m_specular);
    EXPECT_EQ(actual.m_reflection, expected.m_reflection);
    EXPECT_EQ(actual.m_transparent, expected.m_transparent);
    EXPECT_SAME_BITS(actual.m_index_of_refraction, expected.m_index_of_refraction);
    EXPECT_SAME_BITS(actual.m_reflectivity, expected.m_reflectivity);
    EXPECT_SAME_BITS(actual.m_shine, expected.m_shine);
    EXPECT_SAME_BITS(actual.m_transparency, expected.m_transparency);
    EXPECT_TRUE(actual.m_plugin_id == expected.m_plugin_id);
    ASSERT_EQ(actual.m_textures.Count(), expected.m_textures.Count());
    for (int number = 0; number < actual.m_textures.Count(); ++number) {
        ExpectSame(actual.m_textures[number], expected.m_textures[number]);
    }
}

std::map<std::string, Bytes> StreamsOf(const char* keyword) {
    std::map<std::string, Bytes> streams;
    for (GoldenLine& line : GoldenCases(kFile, keyword, kMaterialCount)) {
        const std::string label = line.Word();
        streams[label] = line.Stream();
    }
    return streams;
}

// A material that differs from the default where a reset would show.
ON_Material MaterialBefore() {
    ON_Material material;
    material.m_material_name = L"before";
    material.m_index_of_refraction = 9.0;
    return material;
}

Bytes Written(const ON_Material& material, int version) {
    MemoryArchive archive(ON::archive_mode::write, {}, version);
    EXPECT_TRUE(material.Write(archive));
    return archive.bytes;
}

ON_Material ReadFrom(const Bytes& bytes) {
    MemoryArchive archive(ON::archive_mode::read, bytes);
    ON_Material material = MaterialBefore();
    EXPECT_TRUE(material.Read(archive));
    EXPECT_EQ(archive.position, bytes.size());
    EXPECT_EQ(archive.BadCRCCount(), 0);
    return material;
}

}  // namespace

TEST(ON_Material, WritesTheRecordedBytesOfTheOlderForm) {
    const auto streams = StreamsOf("older");
    for (GoldenLine& line : GoldenCases(kFile, "material", kMaterialCount)) {
        const std::string label = line.Word();
        SCOPED_TRACE(label);
        const ON_Material material = MaterialFrom(line);
        EXPECT_EQ(Written(material, 0), streams.at(label));
        EXPECT_EQ(Written(material, 3), streams.at(label));
    }
}

TEST(ON_Material, WritesTheRecordedBytesOfTheNewerForm) {
    const auto streams = StreamsOf("newer");
    for (GoldenLine& line : GoldenCases(kFile, "material", kMaterialCount)) {
        const std::string label = line.Word();
        SCOPED_TRACE(label);
        EXPECT_EQ(Written(MaterialFrom(line), 4), streams.at(label));
    }
}

TEST(ON_Material, WritesTheRecordedRecord) {
    const auto streams = StreamsOf("record");
    for (GoldenLine& line : GoldenCases(kFile, "material", kMaterialCount)) {
        const std::string label = line.Word();
        SCOPED_TRACE(label);
        MemoryArchive archive(ON::archive_mode::write);
        EXPECT_TRUE(archive.WriteObject(MaterialFrom(line)));
        EXPECT_EQ(archive.bytes, streams.at(label));
    }
}

TEST(ON_Material, OlderFormReadsBackAsRecorded) {
    const auto streams = StreamsOf("older");
    for (GoldenLine& line : GoldenCases(kFile, "olderRead", kMaterialCount)) {
        const std::string label = line.Word();
        SCOPED_TRACE(label);
        EXPECT_TRUE(line.Flag());
        EXPECT_EQ(streams.at(label).size(), line.Count());
        ExpectSame(ReadFrom(streams.at(label)), MaterialFrom(line));
    }
}

TEST(ON_Material, NewerFormReadsBackAsRecorded) {
    const auto streams = StreamsOf("newer");
    for (GoldenLine& line : GoldenCases(kFile, "newerRead", kMaterialCount)) {
        const std::string label = line.Word();
        SCOPED_TRACE(label);
        EXPECT_TRUE(line.Flag());
        ExpectSame(ReadFrom(streams.at(label)), MaterialFrom(line));
    }
}

TEST(ON_Material, ShortStreamKeepsWhatWasReadAndResetsTheRest) {
    Bytes whole;
    for (GoldenLine& line : GoldenCases(kFile, "whole", 1)) {
        whole = line.Stream();
    }
    for (GoldenLine& line : GoldenCases(kFile, "cut", 8)) {
        const size_t kept = line.Count();
        SCOPED_TRACE(kept);
        MemoryArchive archive(ON::archive_mode::read, FirstBytes(whole, kept));
        ON_Material material = MaterialBefore();
        EXPECT_EQ(material.Read(archive) != 0, line.Flag());
        EXPECT_EQ(archive.position, line.Count());
        ExpectSame(material, MaterialFrom(line));
    }
}

TEST(ON_Material, OlderFormLosesReflectivityAndRoundsShineToFloat) {
    ON_Material material;
    material.m_reflectivity = 0.25;
    material.m_shine = 33.3;
    material.m_transparency = 0.1;
    material.m_bShared = true;
    const ON_Material copy = ReadFrom(Written(material, 0));
    EXPECT_EQ(copy.m_reflectivity, 0.0);
    EXPECT_EQ(copy.m_shine, static_cast<double>(33.3f));
    EXPECT_EQ(copy.m_transparency, static_cast<double>(0.1f));
    EXPECT_FALSE(copy.m_bShared);
}

TEST(ON_Material, NewerFormKeepsFlagsAndChannels) {
    ON_Material material;
    material.m_bShared = true;
    material.m_bDisableLighting = true;
    ON_UuidIndex channel;
    channel.m_id = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    channel.m_i = -7;
    material.m_material_channel.Append(channel);
    const ON_Material copy = ReadFrom(Written(material, 4));
    EXPECT_TRUE(copy.m_bShared);
    EXPECT_TRUE(copy.m_bDisableLighting);
    ASSERT_EQ(copy.m_material_channel.Count(), 1);
    EXPECT_TRUE(copy.m_material_channel[0].m_id == channel.m_id);
    EXPECT_EQ(copy.m_material_channel[0].m_i, -7);
}

TEST(ON_Material, GreyTransparentColorOfTheNewerFormBecomesTheDiffuseOne) {
    ON_Material material;
    material.m_diffuse = ON_Color(1, 2, 3);
    material.m_transparent = ON_Color(128, 128, 128);
    EXPECT_EQ(ReadFrom(Written(material, 4)).m_transparent, ON_Color(1, 2, 3));
    EXPECT_EQ(ReadFrom(Written(material, 0)).m_transparent, ON_Color(128, 128, 128));
}

TEST(ON_Material, VersionOneZeroEndsBeforeTheIdentifier) {
    ON_Material material;
    material.m_material_name = L"Oak";
    material.m_index_of_refraction = 1.5;
    Bytes bytes = Written(material, 0);
    bytes[0] = 0x10;
    bytes.resize(bytes.size() - 32);
    const ON_Material copy = ReadFrom(bytes);
    EXPECT_TRUE(copy.m_material_name == L"Oak");
    EXPECT_EQ(copy.m_index_of_refraction, 1.0);
}

TEST(ON_Material, UnknownMajorVersionSucceedsWithTheDefaults) {
    const ON_Material material = ReadFrom({0x30});
    EXPECT_TRUE(material.m_material_name.IsEmpty());
    EXPECT_EQ(material.m_index_of_refraction, 1.0);
}

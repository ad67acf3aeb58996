// Archives of meshes byte by byte, in both directions: what is stored, and what comes back.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "golden/MeshArchives.h"
#include "support/ByteScript.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
namespace golden = Vr::golden;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;

Mesh NewMesh(double creaseAngle) {
    const Mesh mesh(new VraMesh);
    mesh->SetCreaseAngle(creaseAngle);
    return mesh;
}

// What a loaded copy of the mesh looks like: the texture arrays are not stored.
void DropTextures(VraMeshPrimitive& mesh) {
    mesh.SetTextureUVIndexArray(nullptr);
    mesh.SetTextureUVArray(nullptr);
}

// Loads `count` objects, which must use up the whole script.
std::vector<Mesh> LoadAll(const ByteScript& script, std::size_t count) {
    LoadedFrom loaded(script.Bytes());
    std::vector<Mesh> objects;
    while (objects.size() < count)
        objects.push_back(loaded.Next());
    loaded.archive.Close();
    EXPECT_EQ(loaded.file.GetPosition(), script.Bytes().size());
    return objects;
}

// Stores the objects and compares, then loads the script and compares again.
std::vector<Mesh> ExpectBothWays(const ByteScript& script, const std::vector<Mesh>& objects) {
    EXPECT_TRUE(script.Matches(StoredObjects(objects)));
    const std::vector<Mesh> loaded = LoadAll(script, objects.size());
    for (std::size_t number = 0; number < objects.size(); ++number) {
        EXPECT_EQ(loaded[number] == nullptr, objects[number] == nullptr);
        if (!loaded[number] || !objects[number])
            continue;
        EXPECT_EQ(loaded[number]->GetRuntimeClass(), objects[number]->GetRuntimeClass());
        DropTextures(*objects[number]);
        EXPECT_TRUE(AreBitEqual(*loaded[number], *objects[number])) << "object " << number;
    }
    return loaded;
}

TEST(MeshArchive, TwoDefaultPrimitivesANullAndARepeat) {
    const Mesh p = NewPrimitive();
    const std::vector<Mesh> loaded =
        ExpectBothWays(golden::DefaultPrimitives(), {p, NewPrimitive(), nullptr, p});
    EXPECT_EQ(loaded[3], loaded[0]);
    EXPECT_NE(loaded[1], loaded[0]);
}

TEST(MeshArchive, AMeshAndAPrimitiveAreTwoClasses) {
    const Mesh mesh = NewMesh(0.5);
    const std::vector<Mesh> loaded =
        ExpectBothWays(golden::MeshAndPrimitive(), {mesh, NewPrimitive(), mesh});
    EXPECT_EQ(loaded[2], loaded[0]);
}

TEST(MeshArchive, ArraysSharedByRolesAndByObjectsAreStoredOnce) {
    const Mesh r = NewPrimitive({{1, 2, 3}}, {{{0, 0, 0}}});
    r->SetNormalIndexArray(PerTriangle({4, 7}));
    r->SetColorIndexArray(r->GetModifiableNormalIndexArray());
    const Mesh s = NewMesh(0.25);
    s->SetVertexArray(r->GetModifiableVertexArray());
    const std::vector<Mesh> loaded = ExpectBothWays(golden::SharedArrays(), {r, s});
    EXPECT_EQ(loaded[0]->GetNormalIndexArray(), loaded[0]->GetColorIndexArray());
    EXPECT_EQ(loaded[1]->GetVertexArray(), loaded[0]->GetVertexArray());
}

TEST(MeshArchive, OfSchemaTenHasNoUVEnvelope) {
    const std::vector<Mesh> loaded = LoadAll(golden::MeshOfSchema10(), 2);
    ExpectBitEqual(*loaded[0], *NewMesh(0.5));
    EXPECT_EQ(loaded[1], nullptr);
}

ByteScript FullSquareArchive() {
    return ByteScript()
        .NewClass(16, "VraMeshPrimitive", "class number 1")
        .Double(0.5, "crease angle")
        .OneByte(1, "vertices: present")
        .Qword(1, "array number 1, new")
        .Qword(4, "vertex count")
        .Double(0, "x of vertex 0")
        .Double(0, "y")
        .Double(0, "z")
        .Double(1, "x of vertex 1")
        .Double(0, "y")
        .Double(0, "z")
        .Double(1, "x of vertex 2")
        .Double(1, "y")
        .Double(0, "z")
        .Double(0, "x of vertex 3")
        .Double(1, "y")
        .Double(0, "z")
        .OneByte(1, "normals: present")
        .Qword(2, "array number 2, new")
        .Qword(2, "normal count")
        .Double(0, "x of normal 0")
        .Double(0, "y")
        .Double(1, "z")
        .Double(0, "x of normal 1")
        .Double(0, "y")
        .Double(-1, "z")
        .OneByte(1, "colours: present")
        .Qword(3, "array number 3, new")
        .Qword(2, "colour count")
        .Hex("00 00 FF 00", "colour 0: red, green, blue, alpha")
        .Hex("00 FF 00 80", "colour 1")
        .OneByte(1, "vertex indices: present")
        .Qword(4, "array number 4, new")
        .Qword(2, "triangle count")
        .Qword(0, "corner 0 of triangle 0")
        .Qword(1, "corner 1")
        .Qword(2, "corner 2")
        .Qword(0, "corner 0 of triangle 1")
        .Qword(2, "corner 1")
        .Qword(3, "corner 2")
        .OneByte(1, "normal indices: present")
        .Qword(5, "array number 5, new")
        .OneByte(0, "flag: per vertex")
        .Qword(2, "count")
        .Qword(0, "corner 0 of triangle 0")
        .Qword(0, "corner 1")
        .Qword(1, "corner 2")
        .Qword(1, "corner 0 of triangle 1")
        .Qword(0, "corner 1")
        .Qword(1, "corner 2")
        .OneByte(1, "colour indices: present")
        .Qword(6, "array number 6, new")
        .OneByte(1, "flag: per triangle")
        .Qword(2, "count")
        .Qword(1, "index of triangle 0")
        .Qword(0, "index of triangle 1")
        .OneByte(1, "UVs: present")
        .Qword(7, "array number 7, new")
        .Qword(6, "UV count")
        .Double(0, "u of corner 0")
        .Double(0, "v")
        .Double(1, "u of corner 1")
        .Double(0, "v")
        .Double(1, "u of corner 2")
        .Double(1, "v")
        .Double(0, "u of corner 3")
        .Double(0, "v")
        .Double(1, "u of corner 4")
        .Double(1, "v")
        .Double(0, "u of corner 5")
        .Double(1, "v");
}

TEST(MeshArchive, WithEveryArrayNumbersThemInTheOrderOfTheBody) {
    ExpectBothWays(FullSquareArchive(), {FullSquare()});
}

ByteScript EmptyArray(const std::string& name, std::uint64_t number) {
    return ByteScript()
        .OneByte(1, name + ": present")
        .Qword(number, "array number, new")
        .Qword(0, "count");
}

ByteScript EmptyIndices(const std::string& name, std::uint64_t number, std::uint8_t flag) {
    return ByteScript()
        .OneByte(1, name + ": present")
        .Qword(number, "array number, new")
        .OneByte(flag, "flag")
        .Qword(0, "count");
}

TEST(MeshArchive, EmptyArraysAreNotMissingOnes) {
    const Mesh empty = NewMesh(-0.0);
    empty->SetVertexArray(Vertices({}));
    empty->SetNormalArray(Normals({}));
    empty->SetColorArray(Colors({}));
    empty->SetVertexIndexArray(Triangles({}));
    empty->SetNormalIndexArray(PerTriangle({}));
    empty->SetColorIndexArray(PerVertex({}));
    empty->SetUVArray(UVs({}));
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(-0.0, "crease angle")
                                  .Append(EmptyArray("vertices", 1))
                                  .Append(EmptyArray("normals", 2))
                                  .Append(EmptyArray("colours", 3))
                                  .Append(EmptyArray("vertex indices", 4))
                                  .Append(EmptyIndices("normal indices", 5, 1))
                                  .Append(EmptyIndices("colour indices", 6, 0))
                                  .Append(EmptyArray("UVs", 7));
    ExpectBothWays(script, {empty});
}

TEST(MeshArchive, MissingArraysTakeNoNumber) {
    const Mesh mesh = NewMesh(0.0);
    mesh->SetNormalArray(Normals({}));
    mesh->SetUVArray(UVs({}));
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(0.0, "crease angle")
                                  .OneByte(0, "vertices: absent")
                                  .Append(EmptyArray("normals", 1))
                                  .Raw({0, 0, 0, 0}, "colours and three kinds of indices: absent")
                                  .Append(EmptyArray("UVs", 2));
    ExpectBothWays(script, {mesh});
}

TEST(MeshArchive, TextureArraysAreNotStoredAndTakeNoNumber) {
    const Mesh mesh = NewMesh(0.0);
    mesh->SetTextureUVIndexArray(Triangles({{{1, 2, 3}}}));
    mesh->SetTextureUVArray(UVs({{1, 2}}));
    const Mesh after = NewPrimitive();
    after->SetVertexArray(Vertices({}));
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(0.0, "crease angle")
                                  .Append(golden::NoArrays())
                                  .NewClass(16, "VraMeshPrimitive", "class number 3")
                                  .Double(0.0, "crease angle of the next object")
                                  .Append(EmptyArray("vertices", 1))
                                  .Raw(Bytes(6, 0), "the others: absent");
    ExpectBothWays(script, {mesh, after});
}

TEST(MeshArchive, AnArrayThatIsAlsoATextureArrayIsStoredForItsOtherRoleOnly) {
    const Mesh mesh = NewMesh(0.0);
    mesh->SetVertexIndexArray(Triangles({{{2, 1, 0}}}));
    mesh->SetTextureUVIndexArray(mesh->GetModifiableVertexIndexArray());
    mesh->SetUVArray(UVs({{0.5, 0.25}}));
    mesh->SetTextureUVArray(mesh->GetModifiableUVArray());
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(0.0, "crease angle")
                                  .Raw({0, 0, 0}, "vertices, normals, colours: absent")
                                  .OneByte(1, "vertex indices: present")
                                  .Qword(1, "array number 1, new")
                                  .Qword(1, "triangle count")
                                  .Qword(2, "corner 0")
                                  .Qword(1, "corner 1")
                                  .Qword(0, "corner 2")
                                  .Raw({0, 0}, "normal and colour indices: absent")
                                  .OneByte(1, "UVs: present")
                                  .Qword(2, "array number 2, new")
                                  .Qword(1, "UV count")
                                  .Double(0.5, "u")
                                  .Double(0.25, "v");
    ExpectBothWays(script, {mesh});
}

TEST(MeshArchive, AnArrayMayChangeItsRoleFromObjectToObject) {
    const Mesh first = NewMesh(0.0);
    first->SetColorArray(Colors({0x04030201u}));
    first->SetNormalIndexArray(PerVertex({{{1, 2, 3}}}));
    const Mesh second = NewMesh(1.0);
    second->SetColorArray(first->GetModifiableColorArray());
    second->SetNormalIndexArray(PerTriangle({9}));
    second->SetColorIndexArray(first->GetModifiableNormalIndexArray());
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(0.0, "crease angle of the first")
                                  .Raw({0, 0}, "vertices, normals: absent")
                                  .OneByte(1, "colours: present")
                                  .Qword(1, "array number 1, new")
                                  .Qword(1, "colour count")
                                  .Hex("01 02 03 04", "red, green, blue, alpha")
                                  .OneByte(0, "vertex indices: absent")
                                  .OneByte(1, "normal indices: present")
                                  .Qword(2, "array number 2, new")
                                  .OneByte(0, "flag: per vertex")
                                  .Qword(1, "count")
                                  .Qword(1, "corner 0")
                                  .Qword(2, "corner 1")
                                  .Qword(3, "corner 2")
                                  .Raw({0, 0}, "colour indices, UVs: absent")
                                  .Word(0x8001, "class number 1")
                                  .Double(1.0, "crease angle of the second")
                                  .Raw({0, 0}, "vertices, normals: absent")
                                  .OneByte(1, "colours: present")
                                  .Qword(1, "array number 1, content already stored")
                                  .OneByte(0, "vertex indices: absent")
                                  .OneByte(1, "normal indices: present")
                                  .Qword(3, "array number 3, new")
                                  .OneByte(1, "flag: per triangle")
                                  .Qword(1, "count")
                                  .Qword(9, "index of triangle 0")
                                  .OneByte(1, "colour indices: present")
                                  .Qword(2, "array number 2, content already stored")
                                  .OneByte(0, "UVs: absent");
    const std::vector<Mesh> loaded = ExpectBothWays(script, {first, second});
    EXPECT_EQ(loaded[1]->GetColorArray(), loaded[0]->GetColorArray());
    EXPECT_EQ(loaded[1]->GetColorIndexArray(), loaded[0]->GetNormalIndexArray());
}

TEST(MeshArchive, KeepsTheBitsOfUnusualNumbers) {
    const double quiet = std::nan("123");
    const double infinity = std::numeric_limits<double>::infinity();
    const Mesh mesh = NewMesh(quiet);
    mesh->SetVertexArray(Vertices({{-0.0, infinity, 5e-324}}));
    mesh->SetNormalIndexArray(PerTriangle({~std::size_t{0}}));
    mesh->SetUVArray(UVs({{-quiet, -infinity}}));
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Hex("7B 00 00 00 00 00 F8 7F", "crease angle: NaN, payload 123")
                                  .OneByte(1, "vertices: present")
                                  .Qword(1, "array number 1, new")
                                  .Qword(1, "vertex count")
                                  .Hex("00 00 00 00 00 00 00 80", "x: -0.0")
                                  .Hex("00 00 00 00 00 00 F0 7F", "y: infinity")
                                  .Hex("01 00 00 00 00 00 00 00", "z: the smallest denormal")
                                  .Raw({0, 0, 0}, "normals, colours, vertex indices: absent")
                                  .OneByte(1, "normal indices: present")
                                  .Qword(2, "array number 2, new")
                                  .OneByte(1, "flag: per triangle")
                                  .Qword(1, "count")
                                  .Hex("FF FF FF FF FF FF FF FF", "the largest index")
                                  .OneByte(0, "colour indices: absent")
                                  .OneByte(1, "UVs: present")
                                  .Qword(3, "array number 3, new")
                                  .Qword(1, "UV count")
                                  .Hex("7B 00 00 00 00 00 F8 FF", "u: NaN with its sign")
                                  .Hex("00 00 00 00 00 00 F0 FF", "v: -infinity");
    ExpectBothWays(script, {mesh});
}

// The rest are streams that this library does not write.

TEST(MeshArchive, PresenceBytesOtherThanOneMeanNoArray) {
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(0.5, "crease angle")
                                  .OneByte(2, "vertices: neither 0 nor 1, so absent")
                                  .OneByte(255, "normals")
                                  .OneByte(128, "colours")
                                  .OneByte(3, "vertex indices")
                                  .OneByte(2, "normal indices")
                                  .OneByte(254, "colour indices")
                                  .OneByte(2, "UVs");
    ExpectBitEqual(*LoadAll(script, 1)[0], *NewMesh(0.5));
}

TEST(MeshArchive, ArrayNumbersComeInAnyOrderAndZeroIsOneOfThem) {
    const std::uint64_t huge = std::uint64_t{1} << 63;
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(0.0, "crease angle of the first")
                                  .Append(EmptyArray("vertices, number 7", 7))
                                  .Append(EmptyArray("normals, number 3", 3))
                                  .Append(EmptyArray("colours, number 0", 0))
                                  .Append(EmptyArray("vertex indices, number 2^63", huge))
                                  .Append(EmptyIndices("normal indices, number 5", 5, 0))
                                  .OneByte(1, "colour indices: present")
                                  .Qword(5, "array number 5, known")
                                  .OneByte(0, "UVs: absent")
                                  .Word(0x8001, "class number 1")
                                  .Double(0.0, "crease angle of the second")
                                  .OneByte(1, "vertices: present")
                                  .Qword(7, "array number 7, known")
                                  .OneByte(1, "normals: present")
                                  .Qword(3, "array number 3, known")
                                  .OneByte(1, "colours: present")
                                  .Qword(0, "array number 0, known")
                                  .OneByte(1, "vertex indices: present")
                                  .Qword(huge, "array number 2^63, known")
                                  .Raw({0, 0, 0}, "the others: absent");
    const std::vector<Mesh> loaded = LoadAll(script, 2);
    const ArrayAddresses first = AddressesOf(*loaded[0]);
    const ArrayAddresses second = AddressesOf(*loaded[1]);
    for (const Role role : {kVertices, kNormals, kColors, kVertexIndices}) {
        EXPECT_NE(first[role], nullptr) << NameOf(role);
        EXPECT_EQ(first[role], second[role]) << NameOf(role);
    }
    EXPECT_EQ(first[kNormalIndices], first[kColorIndices]);
    EXPECT_TRUE(loaded[0]->IsColorPerVertex());
}

TEST(MeshArchive, AFlagOtherThanZeroOrOneIsPerTriangle) {
    const ByteScript script = ByteScript()
                                  .NewClass(16, "VraMesh", "class number 1")
                                  .Double(0.0, "crease angle")
                                  .Raw({0, 0, 0, 0}, "vertices to vertex indices: absent")
                                  .OneByte(1, "normal indices: present")
                                  .Qword(1, "array number 1, new")
                                  .OneByte(2, "flag: not 0, so per triangle")
                                  .Qword(2, "count")
                                  .Qword(4, "index of triangle 0")
                                  .Qword(7, "index of triangle 1")
                                  .Append(EmptyIndices("colour indices", 2, 255))
                                  .OneByte(0, "UVs: absent");
    const Mesh expected = NewMesh(0.0);
    expected->SetNormalIndexArray(PerTriangle({4, 7}));
    expected->SetColorIndexArray(PerTriangle({}));
    ExpectBitEqual(*LoadAll(script, 1)[0], *expected);
}

// Two meshes of one class, with or without a UV envelope, then a null.
ByteScript ArchiveOfSchema(std::uint16_t schema, bool hasUVs) {
    ByteScript script;
    script.NewClass(schema, "VraMesh", "class number 1")
        .Double(0.5, "crease angle of the first")
        .Raw(Bytes(6, 0), "vertices to colour indices: absent");
    if (hasUVs)
        script.OneByte(1, "UVs: present")
            .Qword(1, "array number 1, new")
            .Qword(1, "count")
            .Double(0.25, "u")
            .Double(0.75, "v");
    script.Word(0x8001, "class number 1")
        .Double(0.5, "crease angle of the second")
        .Raw(Bytes(6, 0), "vertices to colour indices: absent");
    if (hasUVs)
        script.OneByte(1, "UVs: present").Qword(1, "array number 1, known");
    return script.Word(0x0000, "null");
}

struct SchemaCase {
    std::uint16_t schema;
    bool hasUVs;
};

class MeshArchiveOfSchema : public ::testing::TestWithParam<SchemaCase> {};

INSTANTIATE_TEST_SUITE_P(
    Golden, MeshArchiveOfSchema,
    ::testing::Values(SchemaCase{0, false}, SchemaCase{1, false}, SchemaCase{2, true},
                      SchemaCase{9, true}, SchemaCase{10, false}, SchemaCase{11, false},
                      SchemaCase{12, true}, SchemaCase{16, true}, SchemaCase{19, true},
                      SchemaCase{20, true}, SchemaCase{21, true}, SchemaCase{0xFFFE, true}),
    [](const auto& instance) { return "Schema" + std::to_string(instance.param.schema); });

TEST_P(MeshArchiveOfSchema, HasTheUVEnvelopeOrNot) {
    const Mesh expected = NewMesh(0.5);
    if (GetParam().hasUVs)
        expected->SetUVArray(UVs({{0.25, 0.75}}));
    const std::vector<Mesh> loaded =
        LoadAll(ArchiveOfSchema(GetParam().schema, GetParam().hasUVs), 3);
    ExpectBitEqual(*loaded[0], *expected);
    ExpectBitEqual(*loaded[1], *expected);
    EXPECT_EQ(loaded[0]->GetUVArray(), loaded[1]->GetUVArray());
    EXPECT_EQ(loaded[2], nullptr);
}

TEST_P(MeshArchiveOfSchema, IsStoredAgainWithSchemaSixteen) {
    const std::vector<Mesh> loaded =
        LoadAll(ArchiveOfSchema(GetParam().schema, GetParam().hasUVs), 3);
    ByteScript expected = ArchiveOfSchema(16, true);
    if (!GetParam().hasUVs)
        expected = ByteScript()
                       .NewClass(16, "VraMesh", "class number 1")
                       .Double(0.5, "crease angle of the first")
                       .Append(golden::NoArrays())
                       .Word(0x8001, "class number 1")
                       .Double(0.5, "crease angle of the second")
                       .Append(golden::NoArrays())
                       .Word(0x0000, "null");
    EXPECT_TRUE(expected.Matches(StoredObjects(loaded)));
}

TEST(MeshArchive, TheFirstObjectsSchemaDecidesForClassesOfOtherSchemasToo) {
    const ByteScript oldFirst = ByteScript()
                                    .NewClass(10, "VraMesh", "class number 1")
                                    .Double(0.5, "crease angle of the mesh")
                                    .Raw(Bytes(6, 0), "six absent arrays")
                                    .NewClass(16, "VraMeshPrimitive", "class number 3")
                                    .Double(0.25, "crease angle of the primitive")
                                    .Raw(Bytes(6, 0), "six absent arrays, though of schema 16")
                                    .Word(0x0002, "object number 2, the mesh");
    const std::vector<Mesh> loaded = LoadAll(oldFirst, 3);
    EXPECT_EQ(loaded[2], loaded[0]);

    const ByteScript newFirst = ByteScript()
                                    .NewClass(16, "VraMesh", "class number 1")
                                    .Double(0.5, "crease angle of the mesh")
                                    .Append(golden::NoArrays())
                                    .NewClass(10, "VraMeshPrimitive", "class number 3")
                                    .Double(0.25, "crease angle of the primitive")
                                    .Append(golden::NoArrays())
                                    .Word(0x0002, "object number 2, the mesh");
    const std::vector<Mesh> loadedNew = LoadAll(newFirst, 3);
    EXPECT_EQ(loadedNew[2], loadedNew[0]);
}

}  // namespace

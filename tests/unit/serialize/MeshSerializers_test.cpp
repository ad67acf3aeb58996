#include "serialize/MeshSerializers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "serialize/VrwSerializeObserver.h"
#include "support/ByteScript.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"
#include "support/StoreLoad.h"

// Another class of the host's, which is no mesh.
class CHostNote : public CObject {
    DECLARE_SERIAL(CHostNote)
};
IMPLEMENT_SERIAL(CHostNote, CObject, 1)

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;
using Vr::VrmArchive;

// Runs `read(archive)` on a plain loading archive over these bytes.
template <class Read>
void LoadFrom(const ByteScript& script, const Read& read) {
    MemoryFile file(script.Bytes());
    CArchive archive(&file, CArchive::load);
    read(archive);
}

template <class Value>
Bytes StoredPlainly(const Value& value) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    EXPECT_EQ(&(archive << value), &archive);
    archive.Close();
    return file.Bytes();
}

TEST(TriangleIndexOperators, StoreThreeNumbersOf64Bits) {
    const ByteScript script =
        ByteScript().Qword(1, "first").Qword(2, "second").Qword(0xFFFFFFFFFFFFFFFEu, "third");
    const TriangleIndex triangle{1, 2, 0xFFFFFFFFFFFFFFFEu};
    EXPECT_TRUE(script.Matches(StoredPlainly(triangle)));
    TriangleIndex loaded{};
    LoadFrom(script, [&](CArchive& archive) { EXPECT_EQ(&(archive >> loaded), &archive); });
    EXPECT_EQ(loaded, triangle);
}

TEST(TriangleIndexOperators, ACutStreamKeepsTheNumbersThatCame) {
    TriangleIndex loaded{7, 8, 9};
    LoadFrom(ByteScript().Qword(1, "first").Dword(2, "half of the second"), [&](CArchive& archive) {
        EXPECT_EQ(CaughtFrom([&] { archive >> loaded; }), EndOfFile());
    });
    EXPECT_EQ(loaded, (TriangleIndex{1, 8, 9}));
}

ByteScript PerTriangleScript() {
    return ByteScript()
        .OneByte(1, "flag: per triangle, alternative 0")
        .Qword(2, "count")
        .Qword(4, "index of triangle 0")
        .Qword(7, "index of triangle 1");
}

ByteScript PerVertexScript() {
    return ByteScript()
        .OneByte(0, "flag: per vertex, alternative 1")
        .Qword(1, "count")
        .Qword(4, "corner 0")
        .Qword(7, "corner 1")
        .Qword(5, "corner 2");
}

TEST(IndexArrayOperators, TheFlagIsTheReverseOfTheAlternative) {
    EXPECT_TRUE(PerTriangleScript().Matches(StoredPlainly(*PerTriangle({4, 7}))));
    EXPECT_TRUE(PerVertexScript().Matches(StoredPlainly(*PerVertex({{4, 7, 5}}))));
}

TEST(IndexArrayOperators, EmptyOnesStoreTheirFormAndAZeroCount) {
    EXPECT_EQ(StoredPlainly(IndexArray()), (Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(StoredPlainly(*PerVertex({})), Bytes(9, 0));
}

TEST(IndexArrayOperators, LoadingReplacesFormAndContent) {
    IndexArray indices(IndexArray::PerVertex{{1, 1, 1}, {2, 2, 2}});
    LoadFrom(PerTriangleScript(), [&](CArchive& archive) { archive >> indices; });
    EXPECT_THAT(PerTriangleOf(indices), ElementsAre(4, 7));
    LoadFrom(PerTriangleScript(), [&](CArchive& archive) { archive >> indices; });
    EXPECT_THAT(PerTriangleOf(indices), ElementsAre(4, 7)) << "not appended";
    LoadFrom(PerVertexScript(), [&](CArchive& archive) { archive >> indices; });
    EXPECT_THAT(PerVertexOf(indices), ElementsAre(TriangleIndex{4, 7, 5}));
    LoadFrom(PerVertexScript(), [&](CArchive& archive) { archive >> indices; });
    EXPECT_THAT(PerVertexOf(indices), ElementsAre(TriangleIndex{4, 7, 5})) << "not appended";
}

class FlagByte : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(OtherThanZero, FlagByte, ::testing::Values(1, 2, 127, 128, 255));

TEST_P(FlagByte, MeansPerTriangle) {
    IndexArray indices(IndexArray::PerVertex{});
    LoadFrom(ByteScript()
                 .OneByte(static_cast<std::uint8_t>(GetParam()), "flag")
                 .Qword(1, "count")
                 .Qword(6, "index"),
             [&](CArchive& archive) { archive >> indices; });
    EXPECT_THAT(PerTriangleOf(indices), ElementsAre(6));
}

TEST(IndexArrayOperators, ACutStreamLeavesTheStoredFormAndTheElementsThatCameWhole) {
    IndexArray indices(IndexArray::PerTriangle{9, 9, 9});
    const ByteScript twoTriples = ByteScript()
                                      .OneByte(0, "flag")
                                      .Qword(2, "count")
                                      .Qword(1, "corner 0 of triangle 0")
                                      .Qword(2, "corner 1 of triangle 0")
                                      .Qword(3, "corner 2 of triangle 0")
                                      .Qword(4, "corner 0 of triangle 1");
    LoadFrom(twoTriples, [&](CArchive& archive) {
        EXPECT_EQ(CaughtFrom([&] { archive >> indices; }), EndOfFile());
    });
    EXPECT_THAT(PerVertexOf(indices), ElementsAre(TriangleIndex{1, 2, 3}));

    LoadFrom(ByteScript().OneByte(1, "flag").Dword(0, "half a count"), [&](CArchive& archive) {
        EXPECT_EQ(CaughtFrom([&] { archive >> indices; }), EndOfFile());
    });
    EXPECT_TRUE(PerTriangleOf(indices).empty());
}

TEST(IndexArrayOperators, ACutFlagChangesNothing) {
    IndexArray indices(IndexArray::PerVertex{{1, 2, 3}});
    LoadFrom(ByteScript(), [&](CArchive& archive) {
        EXPECT_EQ(CaughtFrom([&] { archive >> indices; }), EndOfFile());
    });
    EXPECT_THAT(PerVertexOf(indices), ElementsAre(TriangleIndex{1, 2, 3}));
}

TEST(IndexArrayOperators, ACountNoVectorCanHaveThrowsVectorTooLong) {
    const ULONGLONG tooManyTriples = std::vector<TriangleIndex>().max_size() + 1ULL;
    const ULONGLONG tooManyNumbers = std::vector<size_t>().max_size() + 1ULL;
    const auto load = [](std::uint8_t flag, ULONGLONG count) {
        return CaughtFrom([&] {
            LoadFrom(ByteScript().OneByte(flag, "flag").Qword(count, "count"),
                     [](CArchive& archive) {
                         IndexArray indices;
                         archive >> indices;
                     });
        });
    };
    EXPECT_EQ(load(0, tooManyTriples), LengthError("vector too long"));
    EXPECT_EQ(load(0, ~0ULL), LengthError("vector too long"));
    EXPECT_EQ(load(1, tooManyNumbers), LengthError("vector too long"));
    EXPECT_EQ(load(1, ~0ULL), LengthError("vector too long"));
    EXPECT_EQ(load(1, tooManyNumbers - 1), BadAlloc()) << "a vector could, memory cannot";
    EXPECT_EQ(load(0, tooManyTriples - 1), BadAlloc());
}

TEST(IndexArrayOperators, ReserveExactlyTheCount) {
    IndexArray indices;
    LoadFrom(PerTriangleScript(), [&](CArchive& archive) { archive >> indices; });
    EXPECT_EQ(PerTriangleOf(indices).capacity(), 2u);
}

// Loading asks for 64 KiB at a time: 2730 triangles, vertices or normals, 8192 numbers.
class ElementCount : public ::testing::TestWithParam<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(AroundThePieces, ElementCount,
                         ::testing::Values(2729, 2730, 2731, 5460, 5461, 8192, 8193, 16385, 30000));

std::vector<TriangleIndex> CountedTriangles(std::size_t count) {
    std::vector<TriangleIndex> triangles;
    for (std::size_t i = 0; i < count; ++i)
        triangles.push_back({3 * i, 3 * i + 1, 3 * i + 2});
    return triangles;
}

TEST_P(ElementCount, TriplesAreStoredOneAfterTheOtherAndLoadedBack) {
    const std::vector<TriangleIndex> triangles = CountedTriangles(GetParam());
    ByteScript script = ByteScript().OneByte(0, "form").Qword(GetParam(), "count");
    for (std::size_t number = 0; number < 3 * GetParam(); ++number)
        script.Qword(number, "number");
    EXPECT_TRUE(script.Matches(StoredPlainly(IndexArray(IndexArray::PerVertex(triangles)))));
    IndexArray loaded;
    LoadFrom(script.OneByte(9, "behind"), [&](CArchive& archive) {
        archive >> loaded;
        BYTE behind = 0;
        archive >> behind;
        EXPECT_EQ(behind, 9);
    });
    EXPECT_TRUE(PerVertexOf(loaded) == triangles);
}

TEST_P(ElementCount, NumbersAreStoredOneAfterTheOtherAndLoadedBack) {
    std::vector<std::size_t> numbers;
    ByteScript script = ByteScript().OneByte(1, "form").Qword(GetParam(), "count");
    for (std::size_t number = 0; number < GetParam(); ++number) {
        script.Qword(number + 7, "number");
        numbers.push_back(number + 7);
    }
    EXPECT_TRUE(script.Matches(StoredPlainly(IndexArray(IndexArray::PerTriangle(numbers)))));
    IndexArray loaded;
    LoadFrom(script, [&](CArchive& archive) { archive >> loaded; });
    EXPECT_TRUE(PerTriangleOf(loaded) == numbers);
}

TEST_P(ElementCount, OfACutStreamTheWholeTriplesAreLoaded) {
    const std::vector<TriangleIndex> triangles = CountedTriangles(GetParam());
    Bytes bytes = StoredPlainly(IndexArray(IndexArray::PerVertex(triangles)));
    bytes.resize(bytes.size() - 24 - 5);
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    IndexArray loaded;
    EXPECT_EQ(CaughtFrom([&] { archive >> loaded; }),
              ArchiveException(CArchiveException::endOfFile, ""));
    EXPECT_TRUE(PerVertexOf(loaded) == CountedTriangles(GetParam() - 2));
    archive.Abort();
}

TEST_P(ElementCount, VerticesAndNormalsOfAMeshAreLoadedBack) {
    const Mesh mesh = NewPrimitive({}, {});
    mesh->SetNormalArray(Normals({}));
    for (std::size_t i = 0; i < GetParam(); ++i) {
        const double x = static_cast<double>(i);
        mesh->GetModifiableVertexArray()->push_back(ON_3dPoint(x, -x, 0.25));
        mesh->GetModifiableNormalArray()->push_back(ON_3dVector(0.5, x, -x));
    }
    const std::vector<Mesh> loaded = LoadedObjects(StoredObjects({mesh}), 1);
    EXPECT_TRUE(SameBits(loaded[0]->GetVertexArray().get(), mesh->GetVertexArray().get()));
    EXPECT_TRUE(SameBits(loaded[0]->GetNormalArray().get(), mesh->GetNormalArray().get()));
}

template <class Value>
class IndexModeCheck : public ::testing::Test {};
using IndexTypes = ::testing::Types<TriangleIndex, IndexArray>;
TYPED_TEST_SUITE(IndexModeCheck, IndexTypes, );

TYPED_TEST(IndexModeCheck, TheWrongDirectionThrowsWithTheFilesName) {
    MemoryFile file(Bytes(40, 7));
    file.SetFilePath(_T("mesh.doc"));
    CArchive loading(&file, CArchive::load);
    const TypeParam stored{};
    EXPECT_EQ(CaughtFrom([&] { loading << stored; }),
              ArchiveException(CArchiveException::readOnly, "mesh.doc"));
    CArchive storing(&file, CArchive::store);
    TypeParam value{};
    EXPECT_EQ(CaughtFrom([&] { storing >> value; }),
              ArchiveException(CArchiveException::writeOnly, "mesh.doc"));
    storing.Close();
    EXPECT_EQ(file.Bytes(), Bytes(40, 7));
}

TEST(IndexArrayOperators, AStoringArchiveLeavesTheIndicesAsTheyWere) {
    MemoryFile file;
    CArchive storing(&file, CArchive::store);
    IndexArray indices(IndexArray::PerVertex{{1, 2, 3}});
    CaughtFrom([&] { storing >> indices; });
    EXPECT_THAT(PerVertexOf(indices), ElementsAre(TriangleIndex{1, 2, 3}));
}

TEST(StoreMesh, ADefaultBodyIsFifteenZeroBytes) {
    EXPECT_EQ(StoredBody(*NewPrimitive()), Bytes(15, 0));
}

TEST(StoreMesh, WorksOnTheMembersAndNotThroughAccessors) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    mesh->substitutes.vertexArray = Vertices({{1, 2, 3}});
    EXPECT_EQ(StoredBody(*mesh), Bytes(15, 0));
    EXPECT_THAT(mesh->Calls(), ElementsAre("Serialize"));

    mesh->ClearCalls();
    LoadedFrom loaded(StoredBody(*FullSquare()));
    SerializeBody(*mesh, loaded.archive);
    EXPECT_THAT(mesh->Calls(), ElementsAre("Serialize"));
}

TEST(StoreMesh, ChangesNothingAndKeepsNoHandle) {
    const Mesh mesh = FullSquare();
    const ArrayAddresses before = AddressesOf(*mesh);
    StoredObjects({mesh});
    EXPECT_EQ(AddressesOf(*mesh), before);
    ExpectBitEqual(*mesh, *FullSquare());
    EXPECT_EQ(mesh->GetVertexArray().use_count(), 2);
}

TEST(StoreMesh, EqualButSeparateArraysAreStoredTwice) {
    const Mesh mesh = NewPrimitive();
    mesh->SetNormalIndexArray(PerTriangle({4}));
    mesh->SetColorIndexArray(PerTriangle({4}));
    const Mesh loaded = LoadedObjects(StoredObjects({mesh}), 1)[0];
    EXPECT_NE(loaded->GetNormalIndexArray(), loaded->GetColorIndexArray());
    ExpectBitEqual(*loaded, *mesh);
}

TEST(LoadMesh, GivesBackAllArraysButThoseOfTheTextures) {
    const Mesh mesh = FullSquare();
    const Mesh loaded = LoadedObjects(StoredObjects({mesh}), 1)[0];
    EXPECT_EQ(loaded->GetTextureUVIndexArray(), nullptr);
    EXPECT_EQ(loaded->GetTextureUVArray(), nullptr);
    mesh->SetTextureUVIndexArray(nullptr);
    mesh->SetTextureUVArray(nullptr);
    ExpectBitEqual(*loaded, *mesh);
    ExpectConsistent(*loaded);
}

TEST(LoadMesh, AnObjectComesWithCountZeroAndTheArchiveHoldsItsArrays) {
    std::weak_ptr<const VraMeshPrimitive::VertexArray> watched;
    {
        LoadedFrom loaded(StoredObjects({SingleTriangle()}));
        Mesh mesh = loaded.Next();
        watched = mesh->GetVertexArray();
        EXPECT_EQ(watched.use_count(), 2) << "the mesh and the archive";
        mesh.reset();
        EXPECT_EQ(watched.use_count(), 1) << "the first pointer was the only owner";
    }
    EXPECT_TRUE(watched.expired());
}

TEST(LoadMesh, SharingAcrossObjectsOfOneArchiveComesBack) {
    const auto [first, second] = SharedPair();
    const std::vector<Mesh> loaded = LoadedObjects(StoredObjects({first, second}), 2);
    EXPECT_EQ(loaded[0]->GetVertexArray(), loaded[1]->GetVertexArray());
    EXPECT_NE(loaded[0]->GetVertexIndexArray(), loaded[1]->GetVertexIndexArray());
    ExpectBitEqual(*loaded[0], *first);
    ExpectBitEqual(*loaded[1], *second);
}

TEST(LoadMesh, SharingDoesNotCrossArchives) {
    const auto [first, second] = SharedPair();
    MemoryFile file;
    for (const Mesh& mesh : {first, second}) {
        VrmArchive archive(&file, CArchive::store);
        archive.WriteObject(mesh.get());
        archive.Close();
    }
    file.SeekToBegin();
    std::vector<Mesh> loaded;
    for (int number = 0; number < 2; ++number) {
        VrmArchive archive(&file, CArchive::load);
        VraMeshPrimitive* mesh = nullptr;
        archive >> mesh;
        loaded.emplace_back(mesh);
        archive.Close();
    }
    EXPECT_NE(loaded[0]->GetVertexArray(), loaded[1]->GetVertexArray());
    ExpectBitEqual(*loaded[1], *second);
    EXPECT_EQ(file.GetPosition(), file.Bytes().size());
}

TEST(LoadMesh, AnObjectStoredTwiceIsOneObjectAgain) {
    const Mesh mesh = SingleTriangle();
    const std::vector<Mesh> loaded = LoadedObjects(StoredObjects({mesh, nullptr, mesh}), 3);
    EXPECT_EQ(loaded[0], loaded[2]);
    EXPECT_EQ(loaded[1], nullptr);
}

TEST(LoadMesh, HandlesThatTheStreamNamesAreReplacedAndTextureArraysStay) {
    const Mesh target = FullSquare();
    const auto textureUVIndices = target->GetTextureUVIndexArray();
    const auto textureUVs = target->GetTextureUVArray();
    const auto oldVertices = target->GetVertexArray();
    LoadedFrom loaded(StoredBody(*SingleTriangle()));
    SerializeBody(*target, loaded.archive);
    EXPECT_EQ(target->GetTextureUVIndexArray(), textureUVIndices);
    EXPECT_EQ(target->GetTextureUVArray(), textureUVs);
    EXPECT_EQ(target->GetNormalArray(), nullptr);
    EXPECT_EQ(target->GetUVArray(), nullptr);
    EXPECT_EQ(target->GetVertexArray()->size(), 3u);
    EXPECT_NE(target->GetVertexArray(), oldVertices);
    EXPECT_EQ(oldVertices->size(), 4u) << "an array held by others is left to them";
}

TEST(LoadMesh, AStreamWithoutUVsLeavesTheUVArrayAsItWas) {
    const Mesh target = FullSquare();
    const auto uvs = target->GetUVArray();
    Bytes body = StoredBody(*NewPrimitive());
    body.pop_back();
    LoadedFrom loaded(body);
    loaded.archive.SetObjectSchema(11);
    SerializeBody(*target, loaded.archive);
    EXPECT_EQ(target->GetUVArray(), uvs);
    EXPECT_EQ(target->GetVertexArray(), nullptr);
}

TEST(LoadMesh, ADirectCallWithoutASchemaReadsUVs) {
    const Mesh mesh = NewPrimitive();
    mesh->SetUVArray(UVs({{1, 2}}));
    LoadedFrom loaded(StoredBody(*mesh));
    const Mesh target = NewPrimitive();
    SerializeBody(*target, loaded.archive);
    ExpectBitEqual(*target, *mesh);
    EXPECT_EQ(loaded.archive.GetVrmObjectSchema(), 0xFFFFFFFFu);
}

struct SchemaCase {
    UINT schema;
    bool hasUVs;
};

class SchemaRule : public ::testing::TestWithParam<SchemaCase> {};
INSTANTIATE_TEST_SUITE_P(
    LoadMesh, SchemaRule,
    ::testing::Values(SchemaCase{0, false}, SchemaCase{1, false}, SchemaCase{2, true},
                      SchemaCase{8, true}, SchemaCase{9, true}, SchemaCase{10, false},
                      SchemaCase{11, false}, SchemaCase{12, true}, SchemaCase{16, true},
                      SchemaCase{19, true}, SchemaCase{20, true}, SchemaCase{21, true},
                      SchemaCase{30, true}, SchemaCase{31, true}, SchemaCase{110, true},
                      SchemaCase{0xFFFF, true}),
    [](const auto& instance) { return "Schema" + std::to_string(instance.param.schema); });

// The numbers from the object schema as the platform hands it out, and with the versionable bit.
TEST_P(SchemaRule, DecidesWhetherThereAreUVs) {
    const ByteScript body = ByteScript()
                                .Double(0.5, "crease angle")
                                .Raw(Bytes(6, 0), "six absent arrays")
                                .OneByte(1, "UVs: present, or the next value of the host")
                                .Qword(1, "array number")
                                .Qword(0, "count");
    for (const UINT bit : {0u, VERSIONABLE_SCHEMA}) {
        LoadedFrom loaded(body.Bytes());
        loaded.archive.SetObjectSchema(GetParam().schema | bit);
        const Mesh mesh = NewPrimitive();
        SerializeBody(*mesh, loaded.archive);
        EXPECT_EQ(mesh->GetUVArray() != nullptr, GetParam().hasUVs);
        loaded.archive.Close();
        EXPECT_EQ(loaded.file.GetPosition(), GetParam().hasUVs ? body.Bytes().size() : 14u);
    }
}

// A loaded vertex array that a reference by another role leads to.
TEST(LoadMesh, ANumberOfAnArrayOfAnotherTypeIsTakenAsItIs) {
    const ByteScript body = ByteScript()
                                .Double(0.0, "crease angle")
                                .OneByte(1, "vertices: present")
                                .Qword(1, "array number 1, new")
                                .Qword(0, "count")
                                .OneByte(1, "normals: present")
                                .Qword(1, "array number 1, an array of points")
                                .Raw(Bytes(5, 0), "five absent arrays");
    LoadedFrom loaded(body.Bytes());
    const Mesh mesh = NewPrimitive();
    SerializeBody(*mesh, loaded.archive);
    EXPECT_EQ(AddressesOf(*mesh)[kNormals], AddressesOf(*mesh)[kVertices]);
}

TEST(LoadMesh, CountsThatDoNotMatchTheTrianglesAreAccepted) {
    const Mesh mesh = SingleTriangle();
    mesh->SetNormalIndexArray(PerTriangle({77, 78, 79}));
    const Mesh loaded = LoadedObjects(StoredObjects({mesh}), 1)[0];
    ExpectBitEqual(*loaded, *mesh);
}

TEST(ReadObject, TheWantedClassOrOneDerivedFromItIsAccepted) {
    const Bytes bytes = StoredObjects({Mesh(new VraMesh), NewPrimitive()});
    const std::vector<Mesh> loaded = LoadedObjects(bytes, 2);
    EXPECT_EQ(loaded[0]->GetRuntimeClass(), RUNTIME_CLASS(VraMesh));
    EXPECT_EQ(loaded[1]->GetRuntimeClass(), RUNTIME_CLASS(VraMeshPrimitive));

    LoadedFrom asMesh(bytes);
    VraMesh* mesh = nullptr;
    EXPECT_EQ(&(asMesh.archive >> mesh), &asMesh.archive);
    EXPECT_EQ(Mesh(mesh)->GetRuntimeClass(), RUNTIME_CLASS(VraMesh));
}

TEST(ReadObject, AnotherClassThrowsBadClassAndLeavesThePointer) {
    LoadedFrom loaded(StoredObjects({NewPrimitive()}));
    loaded.archive.m_strFileName = CString(_T("mesh.doc"));
    const boost::intrusive_ptr<VraMesh> untouched(new VraMesh);
    VraMesh* mesh = untouched.get();
    EXPECT_EQ(CaughtFrom([&] { loaded.archive >> mesh; }),
              ArchiveException(CArchiveException::badClass, "mesh.doc"));
    EXPECT_EQ(mesh, untouched.get());

    const CHostNote note;
    LoadedFrom notes(BytesOf([&](VrmArchive& archive) { archive.WriteObject(&note); }));
    VraMeshPrimitive* primitive = untouched.get();
    EXPECT_EQ(CaughtFrom([&] { notes.archive >> primitive; }),
              ArchiveException(CArchiveException::badClass));
    EXPECT_EQ(primitive, untouched.get());
}

TEST(ReadObject, ANullObjectGivesANullPointer) {
    const Bytes bytes = StoredObjects({nullptr, nullptr});
    LoadedFrom loaded(bytes);
    const boost::intrusive_ptr<VraMesh> old(new VraMesh);
    VraMesh* mesh = old.get();
    VraMeshPrimitive* primitive = old.get();
    loaded.archive >> mesh >> primitive;
    EXPECT_EQ(mesh, nullptr);
    EXPECT_EQ(primitive, nullptr);
}

TEST(ReadObject, AFailingLoadLeavesThePointer) {
    const CreatedMeshes created;
    Bytes bytes = StoredObjects({SingleTriangle()});
    bytes.resize(bytes.size() - 1);
    LoadedFrom loaded(bytes);
    const Mesh untouched = NewPrimitive();
    VraMeshPrimitive* mesh = untouched.get();
    EXPECT_EQ(CaughtFrom([&] { loaded.archive >> mesh; }), EndOfFile());
    EXPECT_EQ(mesh, untouched.get());
}

TEST(WriteObject, OfAMeshIsTheSameAsTheStreamOperator) {
    const Mesh mesh = FullSquare();
    const CObject* const object = mesh.get();
    EXPECT_EQ(BytesOf([&](VrmArchive& archive) { archive << object; }), StoredObjects({mesh}));
}

TEST(PartlyLoaded, ArraysReadSoFarAreInstalledAndTheRestAreAsTheyWere) {
    // Cut in the second of two normals.
    const Mesh source = NewPrimitive();
    source->SetVertexArray(Vertices({{1, 2, 3}}));
    source->SetNormalArray(Normals({{0, 0, 1}, {0, 1, 0}}));
    Bytes body = StoredBody(*source);
    // angle, vertex envelope with one point, normal envelope with one vector, 20 bytes of the next
    body.resize(8 + (1 + 8 + 8 + 24) + (1 + 8 + 8 + 24) + 20);
    LoadedFrom loaded(body);
    const Mesh target = FullSquare();
    const ArrayAddresses before = AddressesOf(*target);
    EXPECT_EQ(CaughtFrom([&] { SerializeBody(*target, loaded.archive); }), EndOfFile());
    EXPECT_EQ(target->GetCreaseAngle(), 0.0);
    EXPECT_EQ(*target->GetVertexArray(), *source->GetVertexArray());
    EXPECT_EQ(*target->GetNormalArray(), *Normals({{0, 0, 1}})) << "the element that came whole";
    const ArrayAddresses after = AddressesOf(*target);
    for (std::size_t role = kColors; role < kRoleCount; ++role)
        EXPECT_EQ(after[role], before[role]) << NameOf(Role(role));
}

TEST(PartlyLoaded, ANewArrayIsInstalledBeforeItsContentIsRead) {
    const ByteScript body = ByteScript()
                                .Double(0.25, "crease angle")
                                .OneByte(1, "vertices: present")
                                .Qword(1, "array number 1, new");
    LoadedFrom loaded(body.Bytes());
    const Mesh target = FullSquare();
    EXPECT_EQ(CaughtFrom([&] { SerializeBody(*target, loaded.archive); }), EndOfFile());
    ASSERT_NE(target->GetVertexArray(), nullptr);
    EXPECT_TRUE(target->GetVertexArray()->empty());
    EXPECT_EQ(target->GetVertexArray().use_count(), 3) << "the archive knows it already";
}

TEST(PartlyLoaded, ACountNoVectorCanHaveThrowsVectorTooLong) {
    const auto loadWithCount = [](std::size_t absentBefore, ULONGLONG count) {
        LoadedFrom loaded(ByteScript()
                              .Double(0.0, "crease angle")
                              .Raw(Bytes(absentBefore, 0), "absent arrays")
                              .OneByte(1, "present")
                              .Qword(1, "array number")
                              .Qword(count, "count")
                              .Bytes());
        const Mesh target = NewPrimitive();
        return CaughtFrom([&] { SerializeBody(*target, loaded.archive); });
    };
    const Caught tooLong = LengthError("vector too long");
    EXPECT_EQ(loadWithCount(0, std::vector<ON_3dPoint>().max_size() + 1ULL), tooLong);
    EXPECT_EQ(loadWithCount(1, std::vector<ON_3dVector>().max_size() + 1ULL), tooLong);
    EXPECT_EQ(loadWithCount(2, std::vector<ON_Color>().max_size() + 1ULL), tooLong);
    EXPECT_EQ(loadWithCount(3, std::vector<TriangleIndex>().max_size() + 1ULL), tooLong);
    EXPECT_EQ(loadWithCount(6, std::vector<ON_2dPoint>().max_size() + 1ULL), tooLong);
    EXPECT_EQ(loadWithCount(0, std::vector<ON_3dPoint>().max_size()), BadAlloc());
    EXPECT_EQ(loadWithCount(2, std::vector<ON_Color>().max_size()), BadAlloc());
}

TEST(PartlyLoaded, UVsThatDidNotComeAreNotReportedAndAreZero) {
    const Mesh source = NewPrimitive();
    source->SetUVArray(UVs({{1, 2}, {3, 4}, {5, 6}}));
    source->SetColorArray(Colors({7}));
    Bytes body = StoredBody(*source);
    body.resize(body.size() - 24);
    LoadedFrom loaded(body);
    const Mesh target = NewPrimitive();
    EXPECT_EQ(CaughtFrom([&] { SerializeBody(*target, loaded.archive); }), Nothing());
    EXPECT_EQ(*target->GetUVArray(), *UVs({{1, 2}, {3, 0}, {0, 0}}));
}

// Cancels at the n-th question.
class CancelAt final : public Vr::VrwSerializeObserver {
public:
    explicit CancelAt(std::size_t question) : question_(question) {}
    bool IsCanceled() override { return ++asked == question_; }
    void OnProgress(ULONGLONG position, ULONGLONG) override { positions.push_back(position); }
    std::size_t asked = 0;
    std::vector<ULONGLONG> positions;

private:
    std::size_t question_;
};

TEST(ObservedLoad, AsksOnceAnObjectAndNotForNullsAndRepeats) {
    const Mesh mesh = NewPrimitive();
    LoadedFrom loaded(StoredObjects({mesh, nullptr, mesh, NewPrimitive()}));
    CancelAt observer(0);
    loaded.archive.SetObserver(&observer);
    const Mesh objects[] = {loaded.Next(), loaded.Next(), loaded.Next(), loaded.Next()};
    EXPECT_NE(objects[3], nullptr);
    EXPECT_EQ(observer.asked, 2u);
}

TEST(ObservedLoad, ACancelLeavesTheObjectUntouchedAndEarlierArraysKnown) {
    const CreatedMeshes created;
    const auto [first, second] = SharedPair();
    LoadedFrom loaded(StoredObjects({first, second}));
    CancelAt observer(2);
    loaded.archive.SetObserver(&observer);
    const Mesh kept = loaded.Next();
    EXPECT_EQ(CaughtFrom([&] { loaded.Next(); }), PlatformException("CUserException"));
    ASSERT_EQ(created.Count(), 2u);
    ExpectBitEqual(*created[1], *NewPrimitive());
    ExpectBitEqual(*kept, *first);
    EXPECT_EQ(kept->GetVertexArray().use_count(), 3) << "mesh, archive and this handle";
    EXPECT_EQ(observer.positions.size(), 1u) << "no progress after the cancel";
}

TEST(ObservedLoad, ReportsPositionsThatNeverFall) {
    std::vector<Mesh> objects;
    for (int number = 0; number < 20; ++number)
        objects.push_back(Box());
    const Bytes bytes = StoredObjects(objects);
    LoadedFrom loaded(bytes, 256);
    CancelAt observer(0);
    loaded.archive.SetObserver(&observer);
    for (int number = 0; number < 20; ++number)
        loaded.Next();
    ASSERT_EQ(observer.positions.size(), 20u);
    EXPECT_TRUE(std::is_sorted(observer.positions.begin(), observer.positions.end()));
    EXPECT_LE(observer.positions.back(), bytes.size());
}

}  // namespace

// The golden documents that are rows of meshes: what they load as, what of them is stored again byte for
// byte, and what the check says of them.

#include "golden/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "golden/DocumentFiles.h"
#include "golden/DocumentObjects.h"
#include "support/CheckedDocuments.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"

namespace Vr::golden {

void PrintTo(const Expectation& expectation, std::ostream* stream) {
    *stream << expectation.name;
}

}  // namespace Vr::golden

namespace {

using namespace Vr::test;
using namespace Vr::golden;
using Vr::CheckDocument;
using Vr::CheckReport;

std::string NameOf(const ::testing::TestParamInfo<Expectation>& instance) {
    return instance.param.name;
}

std::vector<Expectation> StoredExpectations() {
    std::vector<Expectation> list = Expectations();
    list.erase(
        std::remove_if(list.begin(), list.end(),
                       [](const Expectation& expectation) { return !expectation.isStoredSo; }),
        list.end());
    return list;
}

// The host's own objects that have numbers on the archive, but no bytes.
std::vector<Mesh> NewHostObjects(std::size_t count) {
    std::vector<Mesh> objects(count);
    std::generate(objects.begin(), objects.end(), [] { return NewPrimitive(); });
    return objects;
}

void MapAll(CArchive& archive, const std::vector<Mesh>& hostObjects) {
    for (const Mesh& object : hostObjects)
        archive.MapObject(object.get());
}

Bytes Stored(const std::vector<Mesh>& objects, std::size_t hostNumbers) {
    const std::vector<Mesh> hostObjects = NewHostObjects(hostNumbers);
    return BytesOf([&](Vr::VrmArchive& archive) {
        MapAll(archive, hostObjects);
        for (const Mesh& object : objects)
            archive.WriteObject(object.get());
    });
}

// Loads so many objects, which must use up the bytes.
std::vector<Mesh> Loaded(const Bytes& bytes, std::size_t count, std::size_t hostNumbers) {
    const std::vector<Mesh> hostObjects = NewHostObjects(hostNumbers);
    LoadedFrom stream(bytes);
    MapAll(stream.archive, hostObjects);
    std::vector<Mesh> objects;
    while (objects.size() < count)
        objects.push_back(stream.Next());
    stream.archive.Close();
    EXPECT_EQ(stream.file.GetPosition(), bytes.size());
    return objects;
}

// Every object and every array by the place where it occurs first, so that two rows that share alike
// give the same list.
std::vector<std::size_t> SharingOf(const std::vector<Mesh>& objects) {
    std::map<const void*, std::size_t> placeOf;
    std::vector<std::size_t> places;
    const auto add = [&](const void* address) {
        const std::size_t next = placeOf.size() + 1;
        places.push_back(address ? placeOf.emplace(address, next).first->second : 0);
    };
    for (const Mesh& object : objects) {
        add(object.get());
        if (object)
            for (const void* const array : AddressesOf(*object))
                add(array);
    }
    return places;
}

void ExpectSameRow(const std::vector<Mesh>& actual, const std::vector<Mesh>& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t place = 0; place < actual.size(); ++place) {
        SCOPED_TRACE("object " + std::to_string(place));
        ASSERT_EQ(actual[place] == nullptr, expected[place] == nullptr);
        if (actual[place]) {
            EXPECT_EQ(actual[place]->GetRuntimeClass(), expected[place]->GetRuntimeClass());
            ExpectBitEqual(*actual[place], *expected[place]);
        }
    }
    EXPECT_EQ(SharingOf(actual), SharingOf(expected));
}

ByteScript ScriptOf(const std::string& name) {
    for (const Document& document : AllDocuments())
        if (document.name == name)
            return document.script;
    return {};
}

// The beginning of the field at an offset, as long as `beginning`.
std::string MeaningAt(const ByteScript& script, std::uint64_t offset,
                      const std::string& beginning) {
    for (const ByteScript::Field& field : script.Fields())
        if (field.offset == offset)
            return field.meaning.substr(0, beginning.size());
    return "no field";
}

class GoldenDocument : public ::testing::TestWithParam<Expectation> {};
class GoldenStoredDocument : public ::testing::TestWithParam<Expectation> {};
INSTANTIATE_TEST_SUITE_P(Rows, GoldenDocument, ::testing::ValuesIn(Expectations()), NameOf);
INSTANTIATE_TEST_SUITE_P(Rows, GoldenStoredDocument, ::testing::ValuesIn(StoredExpectations()),
                         NameOf);

TEST_P(GoldenDocument, LoadsAsStated) {
    const std::vector<Mesh> expected = GetParam().objects();
    ExpectSameRow(Loaded(DocumentBytes(GetParam().name), expected.size(), GetParam().hostNumbers),
                  expected);
}

TEST_P(GoldenDocument, IsCheckedAsStated) {
    const Bytes bytes = DocumentBytes(GetParam().name);
    const CheckReport report = CheckDocument(bytes.data(), bytes.size());
    ASSERT_EQ(report.findings.size(), GetParam().findings.size());
    const ByteScript script = ScriptOf(GetParam().name);
    for (std::size_t place = 0; place < report.findings.size(); ++place) {
        const ExpectedFinding& expected = GetParam().findings[place];
        EXPECT_EQ(Vr::NameOf(report.findings[place].code), std::string(Vr::NameOf(expected.code)));
        EXPECT_EQ(MeaningAt(script, report.findings[place].offset, expected.meaning),
                  expected.meaning);
    }
    EXPECT_TRUE(LoadsAsReported(bytes, report));
}

TEST_P(GoldenStoredDocument, IsStoredAgainByteForByte) {
    const ByteScript script = ScriptOf(GetParam().name);
    const std::size_t hostNumbers = GetParam().hostNumbers;
    const std::vector<Mesh> objects = GetParam().objects();
    EXPECT_TRUE(script.Matches(Stored(objects, hostNumbers)));
    const Bytes bytes = DocumentBytes(GetParam().name);
    EXPECT_EQ(Stored(Loaded(bytes, objects.size(), hostNumbers), hostNumbers), bytes);
}

TEST(GoldenDocuments, AreTheFilesOfTheFolder) {
    std::set<std::string> stated;
    for (const Expectation& expectation : Expectations())
        stated.insert(expectation.name);
    for (const Document& document : ValueDocuments())
        stated.insert(document.name);
    EXPECT_EQ(DocumentNames(), stated);
}

TEST(GoldenDocuments, AreMadeByteForByte) {
    std::set<std::string> made;
    for (const Document& document : AllDocuments()) {
        EXPECT_TRUE(made.insert(document.name).second) << document.name;
        EXPECT_TRUE(document.script.Matches(DocumentBytes(document.name))) << document.name;
    }
    EXPECT_EQ(DocumentNames(), made);
}

// Half a megabyte, so there is no file of it.
TEST(GoldenDocuments, ManyMeshesHaveBigNumbers) {
    std::vector<Mesh> objects(32766);
    std::generate(objects.begin(), objects.end(), [] { return Mesh(new Vr::VraMesh); });
    const Mesh primitive = FullPrimitive(0.5);
    const auto newSharing = [&] {
        const Mesh mesh = Sharing(NewPrimitive(), primitive);
        mesh->SetCreaseAngle(1.0);
        return mesh;
    };
    const Mesh second = newSharing();
    const Mesh third = newSharing();
    for (const Mesh& mesh : {primitive, second, third, Mesh(new Vr::VraMesh), objects[0x7FFE - 2],
                             objects[0x7FFF - 2], third, objects[0]})
        objects.push_back(mesh);
    const ByteScript script = ManyMeshes();
    const CheckReport report = CheckDocument(script.Bytes().data(), script.Bytes().size());
    EXPECT_EQ(report.findingCount, 0u);
    EXPECT_EQ(report.readCount, objects.size());
    ExpectSameRow(Loaded(script.Bytes(), objects.size(), 0), objects);
    EXPECT_TRUE(script.Matches(Stored(objects, 0)));
}

}  // namespace

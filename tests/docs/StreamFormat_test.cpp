// The worked example of docs/stream-format.md is the truth of these tests: it is written by hand, read
// from the page, and compared with what the library stores and loads.

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "serialize/MeshSerializers.h"
#include "serialize/VrmArchive.h"

namespace {

using Bytes = std::vector<BYTE>;

struct DumpLine {
    size_t offset;
    Bytes bytes;
};

// Every line of the page that is an offset, two spaces and bytes.
std::vector<DumpLine> ReadDump() {
    std::ifstream page(VERIDANE_SOURCE_FOLDER "/docs/stream-format.md");
    const std::regex shape("^([0-9A-F]{2})  ((?:[0-9A-F]{2} {1,2})*[0-9A-F]{2})(?: .*)?$");
    std::vector<DumpLine> lines;
    for (std::string text; std::getline(page, text);) {
        std::smatch parts;
        if (!std::regex_match(text, parts, shape))
            continue;
        DumpLine line{std::stoul(parts[1], nullptr, 16), {}};
        std::istringstream words(parts[2]);
        for (std::string word; words >> word;)
            line.bytes.push_back(static_cast<BYTE>(std::stoul(word, nullptr, 16)));
        lines.push_back(line);
    }
    return lines;
}

Bytes Join(const std::vector<DumpLine>& lines) {
    Bytes all;
    for (const DumpLine& line : lines)
        all.insert(all.end(), line.bytes.begin(), line.bytes.end());
    return all;
}

TEST(StreamFormatPage, OffsetsOfTheDumpFollowFromItsBytes) {
    const auto lines = ReadDump();
    ASSERT_EQ(lines.size(), 15u);
    size_t expected = 0;
    for (const DumpLine& line : lines) {
        EXPECT_EQ(line.offset, expected);
        expected += line.bytes.size();
    }
    EXPECT_EQ(expected, 0x59u);
}

TEST(StreamFormatPage, StoringTheExampleGivesTheDump) {
    const boost::intrusive_ptr<Vr::VraMesh> withVertex(new Vr::VraMesh);
    withVertex->SetVertexArray(
        std::make_shared<Vr::VraMeshPrimitive::VertexArray>(1, ON_3dPoint(1, 0, 0)));
    const boost::intrusive_ptr<Vr::VraMesh> empty(new Vr::VraMesh);

    CMemFile file;
    Vr::VrmArchive archive(&file, CArchive::store);
    archive << withVertex.get() << empty.get() << empty.get() << static_cast<CObject*>(nullptr);
    archive.Close();

    Bytes stored(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    file.Read(stored.data(), static_cast<UINT>(stored.size()));
    EXPECT_EQ(stored, Join(ReadDump()));
}

TEST(StreamFormatPage, LoadingTheDumpGivesTheExample) {
    Bytes bytes = Join(ReadDump());
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    Vr::VrmArchive archive(&file, CArchive::load);
    Vr::VraMesh* objects[4] = {};
    for (Vr::VraMesh*& object : objects)
        archive >> object;
    const boost::intrusive_ptr<Vr::VraMesh> withVertex(objects[0]);
    const boost::intrusive_ptr<Vr::VraMesh> empty(objects[1]);

    ASSERT_NE(withVertex->GetVertexArray(), nullptr);
    EXPECT_EQ(withVertex->GetVertexArray()->at(0), ON_3dPoint(1, 0, 0));
    EXPECT_EQ(empty->GetVertexArray(), nullptr);
    EXPECT_EQ(objects[2], objects[1]);
    EXPECT_EQ(objects[3], nullptr);
    EXPECT_EQ(file.GetPosition(), bytes.size());
}

}  // namespace

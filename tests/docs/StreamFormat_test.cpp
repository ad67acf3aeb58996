// The worked examples of docs/stream-format.md are the truth of these tests: they are written by hand,
// read from the page, and compared with what the library stores and loads.

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "serialize/MeshSerializers.h"
#include "serialize/ValueSerializers.h"
#include "serialize/VrmArchive.h"

namespace {

using Bytes = std::vector<BYTE>;

struct DumpLine {
    size_t offset;
    Bytes bytes;
};

// The lines under one heading of the page that are an offset, two spaces and bytes.
std::vector<DumpLine> ReadDump(const std::string& heading) {
    std::ifstream page(VERIDANE_SOURCE_FOLDER "/docs/stream-format.md");
    const std::regex shape("^([0-9A-F]{2})  ((?:[0-9A-F]{2} {1,2})*[0-9A-F]{2})(?: .*)?$");
    std::vector<DumpLine> lines;
    bool isUnderHeading = false;
    for (std::string text; std::getline(page, text);) {
        if (!text.empty() && text.front() == '#')
            isUnderHeading = text == heading;
        std::smatch parts;
        if (!isUnderHeading || !std::regex_match(text, parts, shape))
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

Bytes BytesOf(CMemFile& file) {
    Bytes bytes(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

void Exchange(CArchive& archive, std::shared_ptr<ON_Curve>& curve,
              std::shared_ptr<ON_Surface>& surface) {
    using Vr::operator&;
    static_cast<void>(archive & curve & surface);
}

const std::string kMeshExample = "## 6. Worked example";
const std::string kCurveExample = "### A curve and an empty handle";

struct Dump {
    std::string heading;
    size_t lineCount;
    size_t byteCount;
};

void PrintTo(const Dump& dump, std::ostream* stream) {
    *stream << dump.heading;
}

class StreamFormatDump : public testing::TestWithParam<Dump> {};

INSTANTIATE_TEST_SUITE_P(Page, StreamFormatDump,
                         testing::Values(Dump{kMeshExample, 15, 0x59},
                                         Dump{kCurveExample, 33, 0xED}));

TEST_P(StreamFormatDump, OffsetsFollowFromTheBytes) {
    const auto lines = ReadDump(GetParam().heading);
    ASSERT_EQ(lines.size(), GetParam().lineCount);
    size_t expected = 0;
    for (const DumpLine& line : lines) {
        EXPECT_EQ(line.offset, expected);
        expected += line.bytes.size();
    }
    EXPECT_EQ(expected, GetParam().byteCount);
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

    EXPECT_EQ(BytesOf(file), Join(ReadDump(kMeshExample)));
}

TEST(StreamFormatPage, LoadingTheDumpGivesTheExample) {
    Bytes bytes = Join(ReadDump(kMeshExample));
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

TEST(StreamFormatPage, StoringTheCurveGivesTheDump) {
    const auto straight = std::make_shared<ON_NurbsCurve>(3, false, 2, 2);
    straight->m_knot[0] = 0.0;
    straight->m_knot[1] = 1.0;
    straight->SetCV(0, ON_3dPoint(0, 0, 0));
    straight->SetCV(1, ON_3dPoint(1, 2, 3));
    std::shared_ptr<ON_Curve> curve = straight;
    std::shared_ptr<ON_Surface> empty;

    CMemFile file;
    CArchive archive(&file, CArchive::store);
    Exchange(archive, curve, empty);
    archive.Close();

    EXPECT_EQ(BytesOf(file), Join(ReadDump(kCurveExample)));
}

TEST(StreamFormatPage, LoadingTheDumpGivesTheCurve) {
    Bytes bytes = Join(ReadDump(kCurveExample));
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    std::shared_ptr<ON_Curve> curve;
    std::shared_ptr<ON_Surface> surface = std::make_shared<ON_PlaneSurface>();
    Exchange(archive, curve, surface);

    ASSERT_NE(curve, nullptr);
    EXPECT_STREQ(curve->ClassId()->ClassName(), "ON_NurbsCurve");
    EXPECT_EQ(curve->PointAt(0.5), ON_3dPoint(0.5, 1, 1.5));
    EXPECT_EQ(surface, nullptr);
    EXPECT_EQ(file.GetPosition(), bytes.size());
}

}  // namespace

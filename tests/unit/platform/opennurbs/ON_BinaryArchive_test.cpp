// Single values in an archive: recorded bytes, wrong modes and short reads.
#include <functional>
#include <map>

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::Bytes;
using kerneltest::FirstBytes;
using kerneltest::GoldenCases;
using kerneltest::GoldenLine;
using kerneltest::MemoryArchive;

namespace {

constexpr char kFile[] = "archive_values.txt";

ON_Arc ReadGoldenArc(GoldenLine& line) {
    const ON_Circle circle = line.Circle();
    ON_Arc arc(circle, line.Interval());
    arc.plane = circle.plane;
    return arc;
}

kerneltest::Doubles DoublesOf(const ON_Arc& arc) {
    kerneltest::Doubles values = kerneltest::DoublesOf(static_cast<const ON_Circle&>(arc));
    values.push_back(arc.Domain()[0]);
    values.push_back(arc.Domain()[1]);
    return values;
}

// Writes the value a line holds; the bytes that must come out follow it in the line.
using WriteGoldenValue = std::function<bool(ON_BinaryArchive&, GoldenLine&)>;

const std::map<std::string, WriteGoldenValue>& Writers() {
    static const std::map<std::string, WriteGoldenValue> writers = {
        {"point2", [](auto& archive, auto& line) { return archive.WritePoint(line.Point2()); }},
        {"point3", [](auto& archive, auto& line) { return archive.WritePoint(line.Point()); }},
        {"point4",
         [](auto& archive, auto& line) {
             const ON_3dPoint p = line.Point();
             return archive.WritePoint(ON_4dPoint(p.x, p.y, p.z, line.Number()));
         }},
        {"vector3", [](auto& archive, auto& line) { return archive.WriteVector(line.Vector()); }},
        {"color", [](auto& archive, auto& line) { return archive.WriteColor(line.Packed()); }},
        {"plane", [](auto& archive, auto& line) { return archive.WritePlane(line.Plane()); }},
        {"interval",
         [](auto& archive, auto& line) { return archive.WriteInterval(line.Interval()); }},
        {"line", [](auto& archive, auto& line) { return archive.WriteLine(line.Line()); }},
        {"box", [](auto& archive, auto& line) { return archive.WriteBoundingBox(line.Box()); }},
        {"circle", [](auto& archive, auto& line) { return archive.WriteCircle(line.Circle()); }},
        {"arc", [](auto& archive, auto& line) { return archive.WriteArc(ReadGoldenArc(line)); }},
        {"xform", [](auto& archive, auto& line) { return archive.WriteXform(line.Xform()); }},
        {"int", [](auto& archive, auto& line) { return archive.WriteInt(line.Integer()); }},
        {"short",
         [](auto& archive, auto& line) {
             return archive.WriteShort(static_cast<short>(line.Integer()));
         }},
        {"char", [](auto& archive,
                    auto& line) { return archive.WriteChar(static_cast<char>(line.Integer())); }},
        {"double", [](auto& archive, auto& line) { return archive.WriteDouble(line.Number()); }},
        {"bool", [](auto& archive, auto& line) { return archive.WriteBool(line.Flag()); }},
        {"uuid", [](auto& archive, auto& line) { return archive.WriteUuid(line.Uuid()); }},
        {"string", [](auto& archive, auto& line) { return archive.WriteString(line.String()); }},
        {"doubles",
         [](auto& archive, auto& line) {
             ON_SimpleArray<double> values;
             for (size_t left = line.Count(); left > 0; --left) {
                 values.Append(line.Number());
             }
             return archive.WriteArray(values);
         }},
        {"points",
         [](auto& archive, auto& line) {
             ON_SimpleArray<ON_3dPoint> points;
             for (size_t left = line.Count(); left > 0; --left) {
                 points.Append(line.Point());
             }
             return archive.WriteArray(points);
         }},
        {"version",
         [](auto& archive, auto& line) {
             const int major = line.Integer();
             return archive.Write3dmChunkVersion(major, line.Integer());
         }},
    };
    return writers;
}

class WriteGolden : public testing::TestWithParam<ON::archive_mode> {};

// Reads from the front of a recorded value, cut after so many bytes, and compares what is left in
// the destination.
template <class Value, class ReadValue, class ReadExpected>
void ExpectRecordedShortReads(size_t readNumber, const Value& valueBefore, ReadValue readValue,
                              ReadExpected readExpected, size_t expectedCount) {
    const Bytes bytes = [&] {
        GoldenLine line = GoldenCases(kFile, "read", 6).at(readNumber);
        line.Word();
        return line.Stream();
    }();
    size_t checkedCount = 0;
    for (GoldenLine& line : GoldenCases(kFile, "cut", 53)) {
        if (line.Count() != readNumber) {
            continue;
        }
        SCOPED_TRACE(line.Where());
        MemoryArchive archive(ON::archive_mode::read, FirstBytes(bytes, line.Count()));
        Value value = valueBefore;
        EXPECT_EQ(readValue(archive, value), line.Flag());
        EXPECT_EQ(archive.position, line.Count());
        readExpected(line, value);
        EXPECT_TRUE(line.IsAtEnd());
        ++checkedCount;
    }
    EXPECT_EQ(checkedCount, expectedCount);
}

}  // namespace

TEST_P(WriteGolden, ValuesGiveTheRecordedBytes) {
    for (GoldenLine& line : GoldenCases(kFile, "write", 54)) {
        SCOPED_TRACE(line.Where());
        MemoryArchive archive(GetParam());
        EXPECT_TRUE(Writers().at(line.Word())(archive, line));
        EXPECT_EQ(archive.bytes, line.Stream());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST_P(WriteGolden, NoValueIsWrittenInAModeForReading) {
    for (GoldenLine& line : GoldenCases(kFile, "write", 54)) {
        SCOPED_TRACE(line.Where());
        MemoryArchive archive(GetParam() == ON::archive_mode::write3dm ? ON::archive_mode::read3dm
                                                                       : ON::archive_mode::read);
        EXPECT_FALSE(Writers().at(line.Word())(archive, line));
        EXPECT_TRUE(archive.calls.empty());
    }
}

INSTANTIATE_TEST_SUITE_P(ON_BinaryArchive, WriteGolden,
                         testing::Values(ON::archive_mode::write, ON::archive_mode::write3dm,
                                         ON::archive_mode::readwrite),
                         [](const auto& mode) {
                             return "Mode" + std::to_string(static_cast<int>(mode.param));
                         });

TEST(ON_BinaryArchive, ShortReadOfAPointInThePlaneOverwritesItsFront) {
    ExpectRecordedShortReads(
        0, ON_2dPoint(1.5, -2.5), [](auto& archive, auto& p) { return archive.ReadPoint(p); },
        [](auto& line, auto& p) { EXPECT_SAME_BITS(p, line.Point2()); }, 17);
}

TEST(ON_BinaryArchive, ShortReadOfAPointOverwritesItsFront) {
    ExpectRecordedShortReads(
        1, ON_3dPoint(1.5, -2.5, 9.0), [](auto& archive, auto& p) { return archive.ReadPoint(p); },
        [](auto& line, auto& p) { EXPECT_SAME_BITS(p, line.Point()); }, 8);
}

TEST(ON_BinaryArchive, ShortReadOfAColorAssignsItAnyway) {
    ExpectRecordedShortReads(
        2, ON_Color(0xaabbccddu), [](auto& archive, auto& c) { return archive.ReadColor(c); },
        [](auto& line, auto& c) { EXPECT_EQ(static_cast<unsigned int>(c), line.Packed()); }, 5);
}

TEST(ON_BinaryArchive, ShortReadOfAPlaneStopsAtItsFirstShortField) {
    ExpectRecordedShortReads(
        3, ON_Plane(), [](auto& archive, auto& p) { return archive.ReadPlane(p); },
        [](auto& line, auto& p) { EXPECT_SAME_BITS(p, line.Plane()); }, 9);
}

TEST(ON_BinaryArchive, ShortReadOfAnArcStopsAtItsFirstShortField) {
    ON_Arc before;
    before.plane.plane_equation.d = 0.0;  // on every kernel
    ExpectRecordedShortReads(
        4, before, [](auto& archive, auto& a) { return archive.ReadArc(a); },
        [](auto& line, auto& a) { EXPECT_SAME_BITS(DoublesOf(a), DoublesOf(ReadGoldenArc(line))); },
        8);
}

TEST(ON_BinaryArchive, ShortReadOfAnXformKeepsTheEntriesThatDidNotArrive) {
    ExpectRecordedShortReads(
        5, ON_Xform(), [](auto& archive, auto& x) { return archive.ReadXform(x); },
        [](auto& line, auto& x) { EXPECT_SAME_BITS(x, line.Xform()); }, 6);
}

TEST(ON_BinaryArchive, CircleIsReadWithoutItsThreePoints) {
    for (GoldenLine& line : GoldenCases(kFile, "circle", 1)) {
        MemoryArchive archive(ON::archive_mode::read, line.Stream());
        ON_Circle circle;
        EXPECT_TRUE(archive.ReadCircle(circle));
        EXPECT_SAME_BITS(circle, line.Circle());
        EXPECT_EQ(archive.position, 208u);
    }
}

TEST(ON_BinaryArchive, ReadingInAModeForWritingMovesNothing) {
    MemoryArchive archive(ON::archive_mode::write, Bytes(300, 1));
    ON_2dPoint point(7.0, 8.0);
    EXPECT_FALSE(archive.ReadPoint(point));
    EXPECT_SAME_BITS(point, ON_2dPoint(7.0, 8.0));
    ON_Xform xform;
    EXPECT_FALSE(archive.ReadXform(xform));
    EXPECT_SAME_BITS(xform, ON_Xform());
    EXPECT_TRUE(archive.calls.empty());
    EXPECT_EQ(archive.position, 0u);
}

TEST(ON_BinaryArchive, ReadColorInAModeForWritingStillClearsTheColor) {
    MemoryArchive archive(ON::archive_mode::write, Bytes(4, 1));
    ON_Color color(0x04030201u);
    EXPECT_FALSE(archive.ReadColor(color));
    EXPECT_EQ(static_cast<unsigned int>(color), 0u);
}

TEST(ON_BinaryArchive, ModeBitsDecideWhatIsAllowed) {
    EXPECT_TRUE(MemoryArchive(ON::archive_mode::read3dm).ReadMode());
    EXPECT_FALSE(MemoryArchive(ON::archive_mode::read3dm).WriteMode());
    EXPECT_TRUE(MemoryArchive(ON::archive_mode::readwrite).ReadMode());
    EXPECT_TRUE(MemoryArchive(ON::archive_mode::readwrite).WriteMode());
    EXPECT_FALSE(MemoryArchive(ON::archive_mode::write).ReadMode());
}

TEST(ON_BinaryArchive, ValuesPassInOneCallPerField) {
    using Calls = std::vector<std::string>;
    MemoryArchive archive(ON::archive_mode::readwrite);
    archive.WriteColor(ON_Color(1, 2, 3));
    archive.WritePoint(ON_2dPoint(1.0, 2.0));
    archive.WriteXform(ON_Xform(1));
    EXPECT_EQ(archive.calls, (Calls{"write 4", "write 16", "write 128"}));

    archive.calls.clear();
    archive.WritePlane(ON_Plane());
    const Calls planeCalls = {"write 24", "write 24", "write 24", "write 24", "write 32"};
    EXPECT_EQ(archive.calls, planeCalls);

    archive.calls.clear();
    archive.WriteArc(ON_Arc());
    Calls arcCalls = planeCalls;
    for (const char* call : {"write 8", "write 24", "write 24", "write 24", "write 16"}) {
        arcCalls.push_back(call);
    }
    EXPECT_EQ(archive.calls, arcCalls);

    archive.calls.clear();
    archive.position = 0;
    ON_Color color;
    ON_2dPoint point;
    archive.ReadColor(color);
    archive.ReadPoint(point);
    EXPECT_EQ(archive.calls, (Calls{"read 4 4", "read 16 16"}));
}

TEST(ON_BinaryArchive, ColorBytesAreRedGreenBlueAlpha) {
    MemoryArchive archive(ON::archive_mode::write);
    archive.WriteColor(ON_Color(0x11, 0x22, 0x33, 0x44));
    EXPECT_EQ(archive.bytes, (Bytes{0x11, 0x22, 0x33, 0x44}));
}

TEST(ON_BinaryArchive, PlaneKeepsItsMinusZerosInTheStream) {
    MemoryArchive archive(ON::archive_mode::readwrite);
    const ON_Plane plane(ON_3dPoint(0.0, 0.0, 0.0), ON_3dVector(0.0, 0.0, 1.0));
    archive.WritePlane(plane);
    archive.position = 0;
    ON_Plane copy;
    EXPECT_TRUE(archive.ReadPlane(copy));
    EXPECT_SAME_BITS(copy, plane);
    EXPECT_EQ(archive.bytes[127], 0x80);
}

TEST(ON_BinaryArchive, EveryKindOfValueReadsBackWhatWasWritten) {
    MemoryArchive archive(ON::archive_mode::readwrite);
    const ON_UUID id = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
    EXPECT_TRUE(archive.WriteInt(-5) && archive.WriteShort(short{-6}) &&
                archive.WriteChar(char{7}) && archive.WriteBool(true) && archive.WriteDouble(0.1) &&
                archive.WriteUuid(id) && archive.WriteInterval(ON_Interval(1.0, 2.0)) &&
                archive.WriteLine(ON_Line(ON_3dPoint(1.0, 2.0, 3.0), ON_3dPoint(4.0, 5.0, 6.0))) &&
                archive.WriteBoundingBox(ON_BoundingBox()) &&
                archive.WriteVector(ON_3dVector(7.0, 8.0, 9.0)) &&
                archive.WritePoint(ON_4dPoint(1.0, 2.0, 3.0, 4.0)) &&
                archive.Write3dmChunkVersion(2, 3));
    archive.position = 0;
    int number = 0;
    short smallNumber = 0;
    char character = 0;
    bool flag = false;
    double real = 0.0;
    ON_UUID readId = ON_nil_uuid;
    ON_Interval interval;
    ON_Line line;
    ON_BoundingBox box(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(0.0, 0.0, 0.0));
    ON_3dVector vector;
    ON_4dPoint point;
    int major = 0;
    int minor = 0;
    EXPECT_TRUE(archive.ReadInt(&number) && archive.ReadShort(&smallNumber) &&
                archive.ReadChar(&character) && archive.ReadBool(&flag) &&
                archive.ReadDouble(&real) && archive.ReadUuid(readId) &&
                archive.ReadInterval(interval) && archive.ReadLine(line) &&
                archive.ReadBoundingBox(box) && archive.ReadVector(vector) &&
                archive.ReadPoint(point) && archive.Read3dmChunkVersion(&major, &minor));
    EXPECT_EQ(number, -5);
    EXPECT_EQ(smallNumber, -6);
    EXPECT_EQ(character, 7);
    EXPECT_TRUE(flag);
    EXPECT_EQ(real, 0.1);
    EXPECT_TRUE(readId == id);
    EXPECT_SAME_BITS(interval, ON_Interval(1.0, 2.0));
    EXPECT_SAME_BITS(line, ON_Line(ON_3dPoint(1.0, 2.0, 3.0), ON_3dPoint(4.0, 5.0, 6.0)));
    EXPECT_SAME_BITS(box, ON_BoundingBox());
    EXPECT_SAME_BITS(vector, ON_3dVector(7.0, 8.0, 9.0));
    EXPECT_EQ(point.w, 4.0);
    EXPECT_EQ(major, 2);
    EXPECT_EQ(minor, 3);
    EXPECT_EQ(archive.position, archive.bytes.size());
}

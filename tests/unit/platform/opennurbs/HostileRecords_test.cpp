// Records that lie: counts without content, nesting without end, bytes at random. Reading must end in a
// return code, in reasonable time and memory; the sanitizers watch the rest.
#include <random>

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/ObjectText.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::Bytes;
using kerneltest::FirstBytes;
using kerneltest::GoldenCases;
using kerneltest::GoldenLine;
using kerneltest::MemoryArchive;

namespace {

int ReadCode(const Bytes& bytes, int version = 0) {
    MemoryArchive archive(ON::archive_mode::read, bytes, version);
    ON_Object* object = nullptr;
    const int code = archive.ReadObject(&object);
    const std::unique_ptr<ON_Object> owner(object);
    // What was handed out can be used, whatever it holds.
    if (const ON_Curve* const curve = ON_Curve::Cast(object)) {
        curve->IsValid();
        curve->BoundingBox();
        curve->PointAt(curve->Domain()[0]);
        const std::unique_ptr<ON_Curve> copy(curve->DuplicateCurve());
    } else if (const ON_Surface* const surface = ON_Surface::Cast(object)) {
        surface->IsValid();
        surface->BoundingBox();
        surface->PointAt(surface->Domain(0)[0], surface->Domain(1)[0]);
        const std::unique_ptr<ON_Surface> copy(surface->DuplicateSurface());
    }
    return code;
}

std::vector<Bytes> RecordedRecords() {
    std::vector<Bytes> records;
    for (GoldenLine& line : GoldenCases("objects.txt", "record", 63)) {
        line.Word();
        line.Word();
        records.push_back(line.Stream());
    }
    for (GoldenLine& line : GoldenCases("objects.txt", "record4", 63)) {
        line.Word();
        if (GoldenLine(line).Word() != "=") {
            records.push_back(line.Stream());
        }
    }
    for (GoldenLine& line : GoldenCases("materials.txt", "record", 8)) {
        line.Word();
        records.push_back(line.Stream());
    }
    return records;
}

// A record of a class around data that ends where the caller stops writing.
Bytes RecordAround(const ON_UUID& id, const Bytes& data) {
    MemoryArchive archive(ON::archive_mode::write);
    archive.BeginWrite3dmChunk(0x00027ffa, 0);
    archive.BeginWrite3dmChunk(0x0002fffb, 0);
    archive.WriteUuid(id);
    archive.EndWrite3dmChunk();
    archive.BeginWrite3dmChunk(0x0002fffc, 0);
    archive.WriteByte(data.size(), data.data());
    archive.EndWrite3dmChunk();
    archive.BeginWrite3dmChunk(0x80027fff, 0);
    archive.EndWrite3dmChunk();
    archive.EndWrite3dmChunk();
    return archive.bytes;
}

Bytes NurbsData(int dimension, int isRational, int order, int count, int knotCount,
                int pointCount) {
    MemoryArchive archive(ON::archive_mode::write);
    archive.Write3dmChunkVersion(1, 0);
    for (const int number : {dimension, isRational, order, count, 0, 0}) {
        archive.WriteInt(number);
    }
    archive.WriteBoundingBox(ON_BoundingBox());
    archive.WriteInt(knotCount);
    archive.WriteInt(pointCount);
    return archive.bytes;
}

int ReadNurbsCode(const Bytes& data) {
    return ReadCode(RecordAround(ON_NurbsCurve().ClassId()->Uuid(), data));
}

constexpr int kMostInts = 0x7fffffff;

// The head of a polycurve's record without parameters, up to its first segment. The lengths are those
// of the record and of the class data.
Bytes PolyCurveHead(int segmentCount, size_t recordLength, size_t dataLength) {
    MemoryArchive archive(ON::archive_mode::write);
    archive.WriteInt(0x00027ffa);
    archive.WriteInt(static_cast<int>(recordLength));
    archive.BeginWrite3dmChunk(0x0002fffb, 0);
    archive.WriteUuid(ON_PolyCurve().ClassId()->Uuid());
    archive.EndWrite3dmChunk();
    archive.WriteInt(0x0002fffc);
    archive.WriteInt(static_cast<int>(dataLength));
    archive.Write3dmChunkVersion(1, 0);
    for (const int number : {segmentCount, 0, 0}) {
        archive.WriteInt(number);
    }
    archive.WriteBoundingBox(ON_BoundingBox());
    archive.WriteInt(0);
    return archive.bytes;
}

// 8 + 28 for header and class id, 8 for the next header, 1 + 12 + 48 + 4 for the fields.
constexpr size_t kPolyCurveHead = 109;

Bytes LineRecord() {
    MemoryArchive archive(ON::archive_mode::write, {}, 4);
    archive.WriteObject(ON_LineCurve(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 0.0, 0.0)));
    return archive.bytes;
}

const Bytes kEndOfRecord = {0xff, 0x7f, 0x02, 0x80, 0, 0, 0, 0};

void Append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

}  // namespace

TEST(HostileRecords, EveryPrefixOfEveryRecordFails) {
    for (const Bytes& record : RecordedRecords()) {
        for (size_t kept = 0; kept < record.size(); ++kept) {
            ASSERT_NE(ReadCode(FirstBytes(record, kept)), 1) << kept;
        }
    }
}

TEST(HostileRecords, RandomDamageEndsInACode) {
    const std::vector<Bytes> records = RecordedRecords();
    std::mt19937 random(20130711);
    for (int round = 0; round < 20000; ++round) {
        Bytes damaged = records[random() % records.size()];
        for (unsigned int left = 1 + random() % 4; left > 0; --left) {
            damaged[random() % damaged.size()] = static_cast<unsigned char>(random());
        }
        const int code = ReadCode(damaged, round % 7 == 0 ? 50 : 0);
        ASSERT_TRUE(code == 0 || code == 1 || code == 3) << round;
    }
}

TEST(HostileRecords, KnotsWithoutContentFail) {
    // 2^31 - 1 = 2 + (2^31 - 1) - 2 knots are claimed and none is there.
    EXPECT_EQ(ReadNurbsCode(NurbsData(3, 0, 2, kMostInts, kMostInts, 0)), 0);
}

TEST(HostileRecords, ControlPointsWithoutContentFail) {
    EXPECT_EQ(ReadNurbsCode(NurbsData(3, 0, 2, 600000000, 0, 1)), 0);
}

TEST(HostileRecords, MoreControlPointsThanCanBeCountedFail) {
    EXPECT_EQ(ReadNurbsCode(NurbsData(kMostInts, 1, 2, 2, 0, 1)), 0);
    EXPECT_EQ(ReadNurbsCode(NurbsData(1 << 20, 0, 2, 1 << 20, 0, 1)), 0);
}

TEST(HostileRecords, NumbersThatMakeNoCurveFail) {
    EXPECT_EQ(ReadNurbsCode(NurbsData(0, 0, 2, 2, 0, 0)), 0);
    EXPECT_EQ(ReadNurbsCode(NurbsData(3, 0, 1, 2, 0, 0)), 0);
    EXPECT_EQ(ReadNurbsCode(NurbsData(3, 0, -2, 2, 0, 0)), 0);
    EXPECT_EQ(ReadNurbsCode(NurbsData(3, 0, 3, 2, 0, 0)), 0);
    EXPECT_EQ(ReadNurbsCode(NurbsData(3, 0, kMostInts, kMostInts, 0, 0)), 0);
    EXPECT_EQ(ReadNurbsCode(NurbsData(3, 0, 2, 2, 3, 0)), 0);
}

TEST(HostileRecords, CurveWithoutArraysIsReadAndHarmless) {
    EXPECT_EQ(ReadNurbsCode(NurbsData(kMostInts, 1, 2, kMostInts, 0, 0)), 1);
}

TEST(HostileRecords, NestingWithoutEndFailsInsteadOfOverflowingTheStack) {
    // Polycurves of one segment, each in the next.
    MemoryArchive level(ON::archive_mode::write, {}, 4);
    level.BeginWrite3dmChunk(0x00027ffa, 0);
    level.BeginWrite3dmChunk(0x0002fffb, 0);
    level.WriteUuid(ON_PolyCurve().ClassId()->Uuid());
    level.EndWrite3dmChunk();
    level.BeginWrite3dmChunk(0x0002fffc, 0);
    level.Write3dmChunkVersion(1, 0);
    for (const int number : {1, 0, 0}) {
        level.WriteInt(number);
    }
    level.WriteBoundingBox(ON_BoundingBox());
    level.WriteInt(0);
    Bytes bytes;
    for (int depth = 0; depth < 100000; ++depth) {
        bytes.insert(bytes.end(), level.bytes.begin(), level.bytes.end());
        // lengths that reach far beyond
        bytes[bytes.size() - level.bytes.size() + 6] = 0x7f;
        bytes[bytes.size() - level.bytes.size() + 8 + 28 + 6] = 0x7f;
    }
    EXPECT_EQ(ReadCode(bytes), 0);
}

// Each polycurve claims two segments and ends where the record inside its first one begins. That one is
// then the second segment too, so that a reader takes as many records as there are rabbits.
TEST(HostileRecords, RecordsThatLeadBackIntoEachOtherFail) {
    constexpr size_t kLevels = 24;
    const size_t endOfRecord = kLevels * kPolyCurveHead + 2 * LineRecord().size();
    Bytes bytes;
    for (size_t level = 0; level < kLevels; ++level) {
        const size_t toEnd = endOfRecord - bytes.size() - (kPolyCurveHead - 65);
        Append(bytes, PolyCurveHead(2, level == 0 ? 0x10000 : kPolyCurveHead - 8, toEnd));
    }
    Append(bytes, LineRecord());
    Append(bytes, LineRecord());
    Append(bytes, kEndOfRecord);

    MemoryArchive archive(ON::archive_mode::read, bytes);
    ON_Object* object = nullptr;
    EXPECT_EQ(archive.ReadObject(&object), 0);
    const std::unique_ptr<ON_Object> owner(object);
    // No record is shorter than 36 bytes, takes more than 40 calls and is read more than 17 times.
    EXPECT_LT(archive.calls.size(), 17 * 40 * bytes.size() / 36);
    EXPECT_EQ(archive.position, 8u + 0x10000u);
}

TEST(HostileRecords, ASegmentThatReadsBeyondItsRecordIsTaken) {
    Bytes line = LineRecord();
    const size_t lineLength = line.size() - 8;
    line[4] = 28;  // the record ends in front of the class data, which the polycurve's end skips
    Bytes bytes = PolyCurveHead(1, kPolyCurveHead - 8 + 8 + lineLength + 8, 65 + 8 + lineLength);
    Append(bytes, line);
    Append(bytes, kEndOfRecord);
    EXPECT_EQ(ReadCode(bytes), 1);
}

TEST(HostileRecords, NestingOfOrdinaryDepthIsFlattened) {
    auto* nested = new ON_PolyCurve();
    nested->Append(new ON_LineCurve(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(1.0, 0.0, 0.0)));
    for (int depth = 0; depth < 50; ++depth) {
        auto* outer = new ON_PolyCurve();
        outer->Append(nested);
        nested = outer;
    }
    const std::unique_ptr<ON_PolyCurve> owner(nested);
    MemoryArchive archive(ON::archive_mode::readwrite, {}, 4);
    ASSERT_TRUE(archive.WriteObject(nested));
    archive.position = 0;
    ON_Object* object = nullptr;
    EXPECT_EQ(archive.ReadObject(&object), 1);
    const std::unique_ptr<ON_Object> copy(object);
    ASSERT_NE(ON_PolyCurve::Cast(object), nullptr);
    EXPECT_NE(ON_LineCurve::Cast(ON_PolyCurve::Cast(object)->SegmentCurve(0)), nullptr);
}

TEST(HostileRecords, ParameterWithoutASegmentIsKept) {
    MemoryArchive archive(ON::archive_mode::readwrite);
    archive.Write3dmChunkVersion(1, 0);
    for (const int number : {0, 0, 0}) {
        archive.WriteInt(number);
    }
    archive.WriteBoundingBox(ON_BoundingBox());
    archive.WriteInt(1);
    archive.WriteDouble(7.0);
    archive.position = 0;
    ON_PolyCurve curve;
    EXPECT_TRUE(curve.Read(archive));
    EXPECT_EQ(curve.SegmentParameters().Count(), 1);
    EXPECT_FALSE(curve.IsValid());
}

TEST(HostileRecords, SegmentThatIsNoCurveFails) {
    MemoryArchive archive(ON::archive_mode::write);
    archive.Write3dmChunkVersion(1, 0);
    for (const int number : {1, 0, 0}) {
        archive.WriteInt(number);
    }
    archive.WriteBoundingBox(ON_BoundingBox());
    archive.WriteInt(0);
    archive.WriteObject(ON_PlaneSurface());
    EXPECT_EQ(ReadCode(RecordAround(ON_PolyCurve().ClassId()->Uuid(), archive.bytes)), 0);
}

TEST(HostileRecords, ChunkOfEndlessLengthIsRefused) {
    Bytes bytes = {0xfa, 0x7f, 0x02, 0x00, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x7f};
    MemoryArchive archive(ON::archive_mode::read, bytes, 50);
    ON_Object* object = nullptr;
    EXPECT_EQ(archive.ReadObject(&object), 0);
    // The header alone was read; nothing was sought over 2^63 bytes in steps of 2^31.
    EXPECT_EQ(archive.calls, (std::vector<std::string>{"read 4 4", "read 8 8"}));
}

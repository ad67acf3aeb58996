// openNURBS's records in a checked stream: the frame decides where the next value begins, the class
// whether the handle may hold the object.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opennurbs.h>

#include <memory>
#include <string>

#include "golden/OpenNurbsRecords.h"
#include "serialize/CheckStream.h"
#include "serialize/ValueSerializers.h"
#include "support/Caught.h"
#include "support/FindingMatchers.h"
#include "support/MemoryFile.h"

namespace {

using namespace Vr::test;
using namespace Vr::golden;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vr::CheckCode;
using Vr::CheckedObject;
using Vr::CheckSeverity;
using Vr::CheckStream;
using Bytes = std::vector<BYTE>;

// Only what the class stores is left out of the curve's record, as the check does not look at it.
constexpr std::size_t kClassId = 16;
constexpr std::size_t kDataHeader = 36;
constexpr std::size_t kEnd = 193;

TEST(CheckRecord, RecordsArePassedOver) {
    const ByteScript script = StraightCurve()
                                  .Append(NoObject())
                                  .Append(WeightedSurface())
                                  .Append(NoObject())
                                  .OneByte(9, "behind");
    CheckStream stream(script.Bytes().data(), script.Bytes().size());
    EXPECT_EQ(stream.Curve(), CheckedObject::New);
    EXPECT_EQ(stream.Position(), 201u);
    EXPECT_EQ(stream.Curve(), CheckedObject::Null);
    EXPECT_EQ(stream.Surface(), CheckedObject::New);
    EXPECT_EQ(stream.Surface(), CheckedObject::Null);
    EXPECT_EQ(stream.Remaining(), 1u);
    EXPECT_THAT(stream.Result().findings, IsEmpty());
}

TEST(CheckRecord, AnObjectThatTheHandleMayNotHoldIsUnsafeAndPassedOver) {
    const ByteScript script = ByteScript(WeightedSurface()).Append(StraightCurve());
    CheckStream stream(script.Bytes().data(), script.Bytes().size());
    EXPECT_EQ(stream.Curve(), CheckedObject::New);
    EXPECT_EQ(stream.Surface(), CheckedObject::New);
    EXPECT_THAT(
        stream.Result().findings,
        ElementsAre(
            Finding(CheckCode::RecordClass, 0, "ON_NurbsSurface is not derived from ON_Curve"),
            Finding(CheckCode::RecordClass, 309, "ON_NurbsCurve is not derived from ON_Surface")));
    EXPECT_EQ(stream.Result().worst, CheckSeverity::Unsafe);
    EXPECT_EQ(stream.Remaining(), 0u);
}

TEST(CheckRecord, AnUnknownClassIsANoteAndLoadsAsNone) {
    Bytes bytes = StraightCurve().Bytes();
    bytes[kClassId] ^= 1;
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_EQ(stream.Curve(), CheckedObject::Null);
    EXPECT_THAT(stream.Result().findings,
                ElementsAre(Finding(CheckCode::UnknownRecord, 0,
                                    "an object of a class that openNURBS does not know")));
    EXPECT_TRUE(stream.Result().IsSafe());
    EXPECT_EQ(stream.Remaining(), 0u);
}

TEST(CheckRecord, ChunksBetweenTheDataAndTheEndArePassedOver) {
    Bytes bytes = StraightCurve().Prefix(kEnd);
    const Bytes addition = ByteScript()
                               .Dword(0x00001234, "an addition of a newer version")
                               .Dword(3, "its length")
                               .Hex("010203", "what it holds")
                               .Dword(0x80001234, "one without a body")
                               .Dword(0xFFFFFFFF, "its value")
                               .Append(EndOfRecord())
                               .Bytes();
    bytes.insert(bytes.end(), addition.begin(), addition.end());
    bytes[4] = static_cast<BYTE>(bytes.size() - 8);
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_EQ(stream.Curve(), CheckedObject::New);
    EXPECT_THAT(stream.Result().findings, IsEmpty());
    EXPECT_EQ(stream.Remaining(), 0u);
}

// The identifier of ON_PolyCurve in place of the curve's; the data need not be one.
TEST(CheckRecord, AClassThatHoldsFurtherRecordsIsUnsafeAndPassedOver) {
    const ByteScript script = RecordOf("e0d4d74e 47e9 d311 bfe5 0010830122f0", "00000000", 45, 1)
                                  .OneByte(0x10, "version 1.0")
                                  .Append(EndOfRecord());
    CheckStream stream(script.Bytes().data(), script.Bytes().size());
    EXPECT_EQ(stream.Curve(), CheckedObject::New);
    EXPECT_THAT(
        stream.Result().findings,
        ElementsAre(Finding(CheckCode::NestedRecord, 0, "ON_PolyCurve may hold further records")));
    EXPECT_EQ(stream.Result().worst, CheckSeverity::Unsafe);
}

struct BadFrame {
    const char* name;
    Bytes bytes;
};

Bytes With(Bytes bytes, std::size_t place, BYTE value) {
    bytes.at(place) = value;
    return bytes;
}

class RecordFrame : public ::testing::TestWithParam<BadFrame> {};
INSTANTIATE_TEST_SUITE_P(
    CheckRecord, RecordFrame,
    ::testing::Values(BadFrame{"OtherTypecode", With(StraightCurve().Bytes(), 0, 0xFB)},
                      BadFrame{"LongerThanTheStream", With(StraightCurve().Bytes(), 4, 194)},
                      BadFrame{"NoRoomForAClass", With(StraightCurve().Bytes(), 4, 7)},
                      BadFrame{"NoClass", With(StraightCurve().Bytes(), 8, 0xFC)},
                      BadFrame{"ClassLongerThanTheRecord", With(StraightCurve().Bytes(), 4, 27)},
                      BadFrame{"ClassOfAnotherLength", With(StraightCurve().Bytes(), 12, 19)},
                      BadFrame{"NoData", With(StraightCurve().Bytes(), kDataHeader, 0xFB)},
                      BadFrame{"NoRoomForData", With(StraightCurve().Bytes(), 4, 35)},
                      BadFrame{"NoEnd", With(StraightCurve().Bytes(), kEnd, 0xFE)},
                      // The end mark, taken for a chunk with a body.
                      BadFrame{"ChunkBehindTheData",
                               With(With(StraightCurve().Bytes(), kEnd + 3, 0), kEnd + 4, 24)},
                      BadFrame{"DataLongerThanTheRecord",
                               With(StraightCurve().Bytes(), kDataHeader + 4, 158)}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(RecordFrame, ThatDoesNotFitEndsTheCheck) {
    CheckStream stream(GetParam().bytes.data(), GetParam().bytes.size());
    EXPECT_EQ(stream.Curve(), CheckedObject::None);
    EXPECT_FALSE(stream.CanGoOn());
    EXPECT_THAT(stream.Result().findings,
                ElementsAre(Finding(CheckCode::RecordFrame, 0,
                                    "the chunks of a record do not fit into each other")));
    EXPECT_EQ(stream.Result().worst, CheckSeverity::Unsafe);
    EXPECT_EQ(stream.Curve(), CheckedObject::None) << "nothing is checked behind it";
    EXPECT_EQ(stream.Result().findingCount, 1u);
}

TEST(CheckRecord, ACutHeaderIsTheEndOfTheStream) {
    const Bytes bytes = StraightCurve().Prefix(6);
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_EQ(stream.Curve(), CheckedObject::None);
    EXPECT_THAT(stream.Result().findings,
                ElementsAre(Finding(CheckCode::EndOfStream, 4,
                                    "the stream ends 2 bytes into a value of 4")));
}

#if defined(VERIDANE_OPENNURBS_API)  // the embedded kernel, which takes any bytes

// Loads what was checked, and the value behind it.
template <class Geometry>
void ExpectLoadedAsChecked(const Bytes& bytes, const CheckStream& stream, CheckedObject checked) {
    using Vr::operator&;
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load);
    std::shared_ptr<Geometry> object;
    archive& object;
    ASSERT_TRUE(checked == CheckedObject::New || object == nullptr);
    ASSERT_TRUE(!object || Geometry::Cast(static_cast<ON_Object*>(object.get())));
    BYTE behind = 0;
    ASSERT_EQ(CaughtFrom([&] { archive >> behind; }), Nothing());
    ASSERT_EQ(behind, bytes[static_cast<std::size_t>(stream.Position())]);
    archive.Close();
    ASSERT_EQ(file.GetPosition(), stream.Position() + 1);
}

// Flips each bit of a record, behind which other bytes follow; returns how many of the damaged ones are
// safe.
template <class Geometry>
std::size_t SafeWithABitFlipped(const Bytes& record, CheckedObject (CheckStream::*check)()) {
    Bytes bytes = record;
    bytes.insert(bytes.end(), 100, 0x5A);
    std::size_t safeCount = 0;
    for (std::size_t bit = 0; bit < 8 * record.size(); ++bit) {
        SCOPED_TRACE("bit " + std::to_string(bit));
        const auto mask = static_cast<BYTE>(1u << bit % 8);
        bytes[bit / 8] ^= mask;
        CheckStream stream(bytes.data(), bytes.size());
        const CheckedObject checked = (stream.*check)();
        if (stream.Result().IsSafe()) {
            ++safeCount;
            EXPECT_NE(checked, CheckedObject::None);
            ExpectLoadedAsChecked<Geometry>(bytes, stream, checked);
            if (::testing::Test::HasFailure())
                break;
        }
        bytes[bit / 8] ^= mask;
    }
    return safeCount;
}

TEST(CheckRecord, WhateverBitIsFlippedASafeCurveLoadsAndEndsWhereTheCheckDid) {
    const Bytes record = StraightCurve().Bytes();
    ASSERT_EQ(record.size(), 201u);
    const std::size_t safeCount = SafeWithABitFlipped<ON_Curve>(record, &CheckStream::Curve);
    EXPECT_GT(safeCount, 8u * 149) << "whatever the class has stored";
    EXPECT_LT(safeCount, 8u * 201 - 100);
}

TEST(CheckRecord, WhateverBitIsFlippedASafeSurfaceLoadsAndEndsWhereTheCheckDid) {
    const Bytes record = WeightedSurface().Bytes();
    const std::size_t safeCount = SafeWithABitFlipped<ON_Surface>(record, &CheckStream::Surface);
    // The frame around what the class has stored is as long as the curve's: 52 bytes.
    EXPECT_GT(safeCount, 8 * (record.size() - 52));
    EXPECT_LT(safeCount, 8 * record.size() - 100);
}

#endif

}  // namespace

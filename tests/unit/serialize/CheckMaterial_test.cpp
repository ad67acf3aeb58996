// Materials in a checked stream: no frame tells where they end, so the fields have to.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opennurbs.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "golden/OpenNurbsRecords.h"
#include "serialize/CheckStream.h"
#include "serialize/ValueSerializers.h"
#include "support/FindingMatchers.h"
#include "support/MemoryFile.h"

namespace {

using namespace Vr::test;
using namespace Vr::golden;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Vr::CheckCode;
using Vr::CheckSeverity;
using Vr::CheckStream;
using Bytes = std::vector<BYTE>;

constexpr std::size_t kNameCount = 129;
constexpr std::size_t kAddition = 141;
constexpr std::size_t kEnd = 173;
constexpr const char* kDoNotFit = "the fields of a material do not fit the bytes that are left";

Bytes With(Bytes bytes, std::size_t place, BYTE value) {
    bytes.at(place) = value;
    return bytes;
}

void ExpectUnsafe(const Bytes& bytes, const std::string& text) {
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_FALSE(stream.Material());
    EXPECT_FALSE(stream.CanGoOn());
    EXPECT_THAT(stream.Result().findings, ElementsAre(Finding(CheckCode::MaterialFields, 0, text)));
    EXPECT_EQ(stream.Result().worst, CheckSeverity::Unsafe);
    EXPECT_FALSE(stream.Material()) << "nothing is checked behind it";
    EXPECT_EQ(stream.Result().findingCount, 1u);
}

TEST(CheckMaterial, MaterialsArePassedOver) {
    const ByteScript script =
        OakMaterial().Append(OakMaterial()).Append(StraightCurve()).OneByte(9, "behind");
    CheckStream stream(script.Bytes().data(), script.Bytes().size());
    EXPECT_TRUE(stream.Material());
    EXPECT_EQ(stream.Position(), kEnd);
    EXPECT_TRUE(stream.Material());
    EXPECT_EQ(stream.Curve(), Vr::CheckedObject::New);
    EXPECT_EQ(stream.Remaining(), 1u);
    EXPECT_THAT(stream.Result().findings, IsEmpty());
}

TEST(CheckMaterial, VersionOneHasNoAdditionYet) {
    const Bytes bytes = With(OakMaterial().Bytes(), 0, 0x10);
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_TRUE(stream.Material());
    EXPECT_EQ(stream.Position(), kAddition);
}

// File names are the other strings; each is moved behind the one before it.
TEST(CheckMaterial, FileNamesAndTheNameOfALibraryArePassedOver) {
    Bytes bytes = OakMaterial().Bytes();
    for (const std::size_t count : {125u, 93u, 73u, 61u}) {
        bytes[count] = 2;
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(count) + 4, 4, 0x41);
    }
    bytes.push_back(9);
    CheckStream stream(bytes.data(), bytes.size());
    EXPECT_TRUE(stream.Material());
    EXPECT_EQ(stream.Remaining(), 1u);
}

// Some bytes and then zeros, 6 GiB in all.
class LongFile : public CFile {
public:
    explicit LongFile(Bytes head) : head_(std::move(head)) {}
    ULONGLONG GetLength() const override { return ULONGLONG{6} << 30; }
    ULONGLONG GetPosition() const override { return position_; }
    ULONGLONG Seek(LONGLONG offset, UINT from) override {
        EXPECT_EQ(from, UINT{CFile::begin});
        return position_ = static_cast<ULONGLONG>(offset);
    }
    UINT Read(void* target, UINT count) override {
        auto* bytes = static_cast<BYTE*>(target);
        for (UINT i = 0; i < count; ++i, ++position_)
            bytes[i] = position_ < head_.size() ? head_[position_] : BYTE{0};
        return count;
    }

private:
    Bytes head_;
    ULONGLONG position_ = 0;
};

// Such a count is signed when it is read.
TEST(CheckMaterial, AStringHasUpToTwoToThe31UnitsLessOne) {
    Bytes bytes = OakMaterial().Bytes();
    bytes.resize(129);
    for (const std::size_t place : {125u, 126u, 127u})
        bytes[place] = 0xFF;
    bytes[128] = 0x7F;
    LongFile file(bytes);
    CheckStream stream(file);
    EXPECT_TRUE(stream.Material());
    // The count ends at 129; behind the string are an empty name of 4 bytes and the addition of 32.
    EXPECT_EQ(stream.Position(), 129u + 2u * 0x7FFFFFFFull + 4u + 32u);
    EXPECT_THAT(stream.Result().findings, IsEmpty());

    bytes[125] = bytes[126] = bytes[127] = 0;
    bytes[128] = 0x80;
    LongFile negative(bytes);
    CheckStream refusing(negative);
    EXPECT_FALSE(refusing.Material());
    EXPECT_THAT(refusing.Result().findings,
                ElementsAre(Finding(CheckCode::MaterialFields, 0, kDoNotFit)));
}

TEST(CheckMaterial, EveryPrefixIsUnsafe) {
    for (std::size_t length = 1; length < kEnd; ++length) {
        SCOPED_TRACE(length);
        ExpectUnsafe(OakMaterial().Prefix(length), kDoNotFit);
    }
}

TEST(CheckMaterial, NoByteAtAllIsTheEndOfTheStream) {
    CheckStream stream("", 0);
    EXPECT_FALSE(stream.Material());
    EXPECT_THAT(stream.Result().findings,
                ElementsAre(Finding(CheckCode::EndOfStream, 0,
                                    "the stream ends 0 bytes into a value of 1")));
}

TEST(CheckMaterial, AStringLongerThanTheStreamIsUnsafe) {
    // 40 bytes are left behind the count: 20 units just reach the end, and then the rest is missing
    ExpectUnsafe(With(OakMaterial().Bytes(), kNameCount, 20), kDoNotFit);
    ExpectUnsafe(With(OakMaterial().Bytes(), kNameCount, 21), kDoNotFit);
    ExpectUnsafe(With(OakMaterial().Bytes(), kNameCount + 3, 0x7F), kDoNotFit);
    ExpectUnsafe(With(OakMaterial().Bytes(), kNameCount + 3, 0x80), kDoNotFit);
}

TEST(CheckMaterial, OtherVersionsAreUnsafe) {
    ExpectUnsafe(With(OakMaterial().Bytes(), 0, 0x20), "a material of version 2");
    ExpectUnsafe(With(OakMaterial().Bytes(), 0, 0x01), "a material of version 0");
}

#if defined(VERIDANE_OPENNURBS_API)  // the embedded kernel, which takes any bytes

TEST(CheckMaterial, WhateverBitIsFlippedASafeMaterialEndsWhereTheCheckDid) {
    using Vr::operator&;
    Bytes bytes = OakMaterial().Bytes();
    bytes.insert(bytes.end(), 100, 0x5A);
    std::size_t safeCount = 0;
    for (std::size_t bit = 0; bit < 8 * kEnd; ++bit) {
        SCOPED_TRACE("bit " + std::to_string(bit));
        const auto mask = static_cast<BYTE>(1u << bit % 8);
        bytes[bit / 8] ^= mask;
        CheckStream stream(bytes.data(), bytes.size());
        const bool isThere = stream.Material();
        ASSERT_EQ(isThere, stream.Result().IsSafe());
        if (isThere) {
            ++safeCount;
            MemoryFile file(bytes);
            CArchive archive(&file, CArchive::load);
            auto material = std::make_shared<ON_Material>();
            archive& material;
            archive.Close();
            ASSERT_EQ(file.GetPosition(), stream.Position());
        }
        bytes[bit / 8] ^= mask;
    }
    // what may not be wrong: the major version, and the upper bits of five counts
    EXPECT_GT(safeCount, 8 * (kEnd - 5 * 4 - 1));
    EXPECT_LT(safeCount, 8 * kEnd - 4 - 5 * 24);
}

#endif

}  // namespace

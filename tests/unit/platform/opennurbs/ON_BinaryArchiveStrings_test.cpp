// Strings and arrays in an archive: counts, surrogates and counts that lie.
#include <cwchar>

#include "unit/platform/opennurbs/MemoryArchive.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::MemoryArchive;
using Bytes = std::vector<unsigned char>;

namespace {

ON_wString ReadBack(const Bytes& bytes) {
    MemoryArchive archive(ON::archive_mode::read, bytes);
    ON_wString text(L"before");
    EXPECT_TRUE(archive.ReadString(text));
    EXPECT_EQ(archive.position, bytes.size());
    return text;
}

Bytes Written(const ON_wString& text) {
    MemoryArchive archive(ON::archive_mode::write);
    EXPECT_TRUE(archive.WriteString(text));
    return archive.bytes;
}

}  // namespace

TEST(ON_BinaryArchiveStrings, CountIncludesTheTerminatorButAnEmptyStringHasNone) {
    EXPECT_EQ(Written(L"a"), (Bytes{2, 0, 0, 0, 'a', 0, 0, 0}));
    EXPECT_EQ(Written(L""), (Bytes{0, 0, 0, 0}));
}

TEST(ON_BinaryArchiveStrings, CharacterAboveTheFirstPlaneIsAPairOfUnits) {
    const Bytes bytes = {3, 0, 0, 0, 0x3d, 0xd8, 0x00, 0xde, 0, 0};
    EXPECT_EQ(Written(L"\U0001F600"), bytes);
    EXPECT_TRUE(ReadBack(bytes) == L"\U0001F600");
}

#if WCHAR_MAX > 0xffff
TEST(ON_BinaryArchiveStrings, ARunOfUnpairedSurrogatesIsReadAsOneReplacement) {
    // low, high; a; high; and a pair, which ends the run
    const Bytes bytes = {7, 0,    0,    0,    0x00, 0xde, 0x3d, 0xd8, 'a',
                         0, 0x3d, 0xd8, 0x3d, 0xd8, 0x00, 0xde, 0,    0};
    EXPECT_TRUE(ReadBack(bytes) ==
                L"\xFFFD"
                L"a\xFFFD\U0001F600");
}

TEST(ON_BinaryArchiveStrings, EachSurrogateIsWrittenAsAReplacement) {
    EXPECT_EQ(Written(L"\xDE00\xD83D"), (Bytes{3, 0, 0, 0, 0xfd, 0xff, 0xfd, 0xff, 0, 0}));
    // also where the two would make a pair of units
    EXPECT_EQ(Written(L"\xD83D\xDE00"), (Bytes{3, 0, 0, 0, 0xfd, 0xff, 0xfd, 0xff, 0, 0}));
}
#else
TEST(ON_BinaryArchiveStrings, UnpairedSurrogateSurvivesARoundTrip) {
    const Bytes bytes = {3, 0, 0, 0, 0x00, 0xde, 0x3d, 0xd8, 0, 0};
    EXPECT_EQ(ReadBack(bytes).Length(), 2);
    EXPECT_EQ(Written(ReadBack(bytes)), bytes);
}
#endif

TEST(ON_BinaryArchiveStrings, EmptyStringReplacesWhatWasThere) {
    EXPECT_TRUE(ReadBack({0, 0, 0, 0}).IsEmpty());
    EXPECT_TRUE(ReadBack({1, 0, 0, 0, 0, 0}).IsEmpty());
}

TEST(ON_BinaryArchiveStrings, CutStringIsEmptyAndFails) {
    MemoryArchive archive(ON::archive_mode::read, {2, 0, 0, 0, 'a', 0, 0});
    ON_wString text(L"before");
    EXPECT_FALSE(archive.ReadString(text));
    EXPECT_TRUE(text.IsEmpty());
}

TEST(ON_BinaryArchiveStrings, NegativeCountFails) {
    MemoryArchive archive(ON::archive_mode::read, {0xff, 0xff, 0xff, 0xff});
    ON_wString text(L"before");
    EXPECT_FALSE(archive.ReadString(text));
}

TEST(ON_BinaryArchiveStrings, ArraysReadBackWhatWasWritten) {
    MemoryArchive archive(ON::archive_mode::readwrite);
    ON_SimpleArray<double> values;
    ON_SimpleArray<ON_3dPoint> points;
    for (int number = 0; number < 70000; ++number) {
        values.Append(number);
        points.Append(ON_3dPoint(number, -number, 0.5));
    }
    EXPECT_TRUE(archive.WriteArray(values) && archive.WriteArray(points));
    archive.position = 0;
    ON_SimpleArray<double> readValues;
    ON_SimpleArray<ON_3dPoint> readPoints;
    EXPECT_TRUE(archive.ReadArray(readValues) && archive.ReadArray(readPoints));
    ASSERT_EQ(readValues.Count(), 70000);
    ASSERT_EQ(readPoints.Count(), 70000);
    EXPECT_EQ(readValues[69999], 69999.0);
    EXPECT_SAME_BITS(readPoints[69999], ON_3dPoint(69999.0, -69999.0, 0.5));
}

TEST(ON_BinaryArchiveStrings, CutArrayIsEmptyAndFails) {
    MemoryArchive archive(ON::archive_mode::read, {2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xf0, 0x3f});
    ON_SimpleArray<double> values;
    values.Append(1.0);
    EXPECT_FALSE(archive.ReadArray(values));
    EXPECT_EQ(values.Count(), 0);
}

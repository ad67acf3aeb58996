#include "serialize/ValueSerializers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "support/ByteScript.h"
#include "support/Caught.h"
#include "support/MemoryFile.h"
#include "support/MeshMatchers.h"

namespace {

using namespace Vr::test;
using Vr::operator<<;
using Vr::operator>>;
using Bytes = std::vector<BYTE>;

constexpr bool kWideIsUtf32 = sizeof(wchar_t) == 4;

template <class Value>
Bytes Stored(const Value& value, int bufferSize = 4096) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store, bufferSize);
    EXPECT_EQ(&(archive << value), &archive);
    archive.Close();
    return file.Bytes();
}

template <class Value>
Value Loaded(const ByteScript& script, Value value) {
    MemoryFile file(script.Bytes());
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(&(archive >> value), &archive);
    archive.Close();
    EXPECT_EQ(file.GetPosition(), script.Bytes().size()) << "reads to the end and no further";
    return value;
}

// The bytes of a string of these UTF-16 units.
ByteScript Units(const std::vector<std::uint16_t>& units) {
    ByteScript script;
    script.Qword(units.size(), "length in units");
    for (const std::uint16_t unit : units)
        script.Word(unit, "unit");
    return script;
}

// Characters by number, as `wchar_t` of 32 bits holds them.
std::wstring Characters(const std::vector<std::uint32_t>& codes) {
    std::wstring text;
    for (const std::uint32_t code : codes)
        text.push_back(static_cast<wchar_t>(code));
    return text;
}

TEST(WideString, AnEmptyOneIsEightZeroBytes) {
    EXPECT_EQ(Stored(std::wstring()), Bytes(8, 0));
    EXPECT_EQ(Loaded(Units({}), std::wstring(L"old")), L"");
}

TEST(WideString, IsItsLengthAndItsUnitsWithoutATerminator) {
    const ByteScript script = ByteScript()
                                  .Qword(3, "length in units")
                                  .Word(0x0041, "A")
                                  .Word(0x00E9, "e with acute")
                                  .Word(0x20AC, "euro sign");
    EXPECT_TRUE(script.Matches(Stored(std::wstring(L"A\u00E9\u20AC"))));
    EXPECT_EQ(Loaded(script, std::wstring()), L"A\u00E9\u20AC");
}

TEST(WideString, KeepsZerosInside) {
    const std::wstring text(L"a\0b", 3);
    EXPECT_TRUE(Units({'a', 0, 'b'}).Matches(Stored(text)));
    EXPECT_EQ(Loaded(Units({'a', 0, 'b'}), std::wstring()), text);
}

TEST(WideString, ReplacesWhatItHeldWhateverWasLonger) {
    EXPECT_EQ(Loaded(Units({'x'}), std::wstring(L"a longer text")), L"x");
    EXPECT_EQ(Loaded(Units({'x', 'y', 'z'}), std::wstring(L"a")), L"xyz");
}

TEST(WideString, CharactersBeyondTheBasicPlaneAreSurrogatePairs) {
    // U+1F600 = D83D DE00, U+10000 = D800 DC00, U+10FFFF = DBFF DFFF.
    const std::vector<std::uint16_t> units = {0xD83D, 0xDE00, 'a', 0xD800, 0xDC00, 0xDBFF, 0xDFFF};
    const std::wstring text = L"\U0001F600a\U00010000\U0010FFFF";
    EXPECT_TRUE(Units(units).Matches(Stored(text)));
    EXPECT_EQ(Loaded(Units(units), std::wstring()), text);
}

TEST(WideString, UnpairedSurrogatesSurviveARoundTrip) {
    // low; high high low, of which the last two are a pair; high before a letter; high at the end
    const std::vector<std::uint16_t> units = {0xDC00, 0xD800, 0xD83D, 0xDE00, 0xDBFF, 'a', 0xD800};
    const std::wstring text = Loaded(Units(units), std::wstring());
    if (kWideIsUtf32) {
        EXPECT_EQ(text, Characters({0xDC00, 0xD800, 0x1F600, 0xDBFF, 'a', 0xD800}));
    }
    EXPECT_TRUE(Units(units).Matches(Stored(text)));
}

TEST(WideString, ALowSurrogateBeforeAHighOneIsNoPair) {
    const std::vector<std::uint16_t> units = {0xDE00, 0xD83D};
    EXPECT_EQ(Loaded(Units(units), std::wstring()), Characters({0xDE00, 0xD83D}));
}

TEST(WideString, NumbersThatAreNoCharactersAreReplaced) {
    if (!kWideIsUtf32)
        GTEST_SKIP() << "a wchar_t of 16 bits holds no such number";
    EXPECT_TRUE(
        Units({0xFFFD, 0xFFFD, 'a'}).Matches(Stored(Characters({0x110000, 0xFFFFFFFF, 'a'}))));
}

TEST(WideString, LongOnesPassTheBufferInPieces) {
    std::wstring text;
    for (int number = 0; number < 5000; ++number)
        text.push_back(static_cast<wchar_t>('a' + number % 26));
    const Bytes bytes = Stored(text, 128);
    EXPECT_EQ(bytes.size(), 8 + 2 * 5000u);
    MemoryFile file(bytes);
    CArchive archive(&file, CArchive::load, 128);
    std::wstring loaded;
    archive >> loaded;
    EXPECT_EQ(loaded, text);
}

TEST(WideString, ACutStreamEndsInEndOfFileAndLeavesTheFullLength) {
    MemoryFile file(Units({'x', 'y', 'z'}).Prefix(8 + 2 * 2 + 1));
    CArchive archive(&file, CArchive::load);
    std::wstring text;
    EXPECT_EQ(CaughtFrom([&] { archive >> text; }), EndOfFile());
    EXPECT_EQ(text, std::wstring(L"xy\0", 3));
}

TEST(WideString, UnitsThatDidNotComeKeepTheOldCharacters) {
    MemoryFile file(Units({'x', 'y', 'z', 'w'}).Prefix(8 + 2));
    CArchive archive(&file, CArchive::load);
    std::wstring text = L"abc";
    EXPECT_EQ(CaughtFrom([&] { archive >> text; }), EndOfFile());
    EXPECT_EQ(text, std::wstring(L"xbc\0", 4)) << "only new units are zero";
}

TEST(WideString, ACutLengthChangesNothing) {
    MemoryFile file(Bytes(7, 0));
    CArchive archive(&file, CArchive::load);
    std::wstring text = L"old";
    EXPECT_EQ(CaughtFrom([&] { archive >> text; }), EndOfFile());
    EXPECT_EQ(text, L"old");
}

TEST(WideString, ALengthNoStringCanHaveThrowsAndChangesNothing) {
    const ULONGLONG tooLong = static_cast<ULONGLONG>(std::wstring().max_size()) + 1;
    for (const ULONGLONG length : {tooLong, ~0ULL}) {
        MemoryFile file(ByteScript().Qword(length, "length").Word('x', "unit").Bytes());
        CArchive archive(&file, CArchive::load);
        std::wstring text = L"old";
        EXPECT_EQ(CaughtFrom([&] { archive >> text; }), LengthError("string too long"));
        EXPECT_EQ(text, L"old");
    }
}

TEST(WideString, ALengthBeyondMemoryThrowsBadAllocAndChangesNothing) {
    MemoryFile file(ByteScript().Qword(1ULL << 58, "length").Bytes());
    CArchive archive(&file, CArchive::load);
    std::wstring text = L"old";
    EXPECT_EQ(CaughtFrom([&] { archive >> text; }), BadAlloc());
    EXPECT_EQ(text, L"old");
}

TEST(Point2d, IsTwoDoubles) {
    const ByteScript script = ByteScript().Double(1.5, "x").Double(-0.0, "y");
    EXPECT_TRUE(script.Matches(Stored(ON_2dPoint(1.5, -0.0))));
    const ON_2dPoint point = Loaded(script, ON_2dPoint(9, 9));
    EXPECT_TRUE(SameBits(point.x, 1.5));
    EXPECT_TRUE(SameBits(point.y, -0.0));
}

TEST(Point2d, KeepsTheBitsOfANaN) {
    const double quiet = std::nan("77");
    const ByteScript script = ByteScript().Double(quiet, "x").Double(-quiet, "y");
    EXPECT_TRUE(script.Matches(Stored(ON_2dPoint(quiet, -quiet))));
    EXPECT_TRUE(SameBits(Loaded(script, ON_2dPoint(0, 0)).y, -quiet));
}

TEST(Color, IsRedGreenBlueAlpha) {
    const ByteScript script = ByteScript()
                                  .OneByte(0x11, "red")
                                  .OneByte(0x22, "green")
                                  .OneByte(0x33, "blue")
                                  .OneByte(0x44, "alpha");
    EXPECT_TRUE(script.Matches(Stored(ON_Color(0x11, 0x22, 0x33, 0x44))));
    EXPECT_EQ(static_cast<unsigned int>(Loaded(script, ON_Color())), 0x44332211u);
}

TEST(GeometryValues, StandBetweenBufferedOnesUndisturbed) {
    const ByteScript script = ByteScript()
                                  .Dword(0xAAAAAAAA, "buffered before")
                                  .OneByte(1, "red")
                                  .OneByte(2, "green")
                                  .OneByte(3, "blue")
                                  .OneByte(4, "alpha")
                                  .Word(0xBBBB, "buffered between")
                                  .Double(0.25, "x")
                                  .Double(0.5, "y")
                                  .Append(Units({'c'}));
    MemoryFile storedFile;
    CArchive storing(&storedFile, CArchive::store);
    storing << 0xAAAAAAAAu << ON_Color(1, 2, 3, 4) << static_cast<WORD>(0xBBBB)
            << ON_2dPoint(0.25, 0.5) << std::wstring(L"c");
    storing.Close();
    EXPECT_TRUE(script.Matches(storedFile.Bytes()));

    MemoryFile file(script.Bytes());
    CArchive loading(&file, CArchive::load);
    unsigned int before = 0;
    ON_Color color;
    WORD between = 0;
    ON_2dPoint point(0, 0);
    std::wstring after;
    loading >> before >> color >> between >> point >> after;
    EXPECT_EQ(before, 0xAAAAAAAAu);
    EXPECT_EQ(static_cast<unsigned int>(color), 0x04030201u);
    EXPECT_EQ(between, 0xBBBB);
    EXPECT_EQ(point, ON_2dPoint(0.25, 0.5));
    EXPECT_EQ(after, L"c");
}

TEST(GeometryValues, CutShortAreNotReported) {
    MemoryFile pointFile(ByteScript().Double(0.25, "x").Bytes());
    CArchive pointArchive(&pointFile, CArchive::load);
    ON_2dPoint point(7, 8);
    EXPECT_EQ(CaughtFrom([&] { pointArchive >> point; }), Nothing());
    EXPECT_EQ(point, ON_2dPoint(0.25, 8)) << "what came is there, the rest is as it was";

    MemoryFile colorFile(Bytes{0x11, 0x22});
    CArchive colorArchive(&colorFile, CArchive::load);
    ON_Color color(1, 1, 1, 1);
    EXPECT_EQ(CaughtFrom([&] { colorArchive >> color; }), Nothing());
    EXPECT_EQ(static_cast<unsigned int>(color), 0x2211u) << "openNURBS sets the rest to 0";
}

TEST(GeometryValues, PassOnWhatTheFileThrows) {
    MemoryFile file(Bytes(16, 0));
    CArchive loading(&file, CArchive::load);
    ON_2dPoint point(0, 0);
    file.FailRead(1);
    EXPECT_EQ(CaughtFrom([&] { loading >> point; }), FileException(CFileException::hardIO));
    CArchive storing(&file, CArchive::store);
    file.FailWrite(1);
    EXPECT_EQ(CaughtFrom([&] { storing << point; }), FileException(CFileException::diskFull));
    storing.Abort();
}

// Storing on a loading archive and loading from a storing one, for each type.
template <class Value>
class ModeCheck : public ::testing::Test {};

using ValueTypes = ::testing::Types<std::wstring, ON_2dPoint, ON_Color>;
TYPED_TEST_SUITE(ModeCheck, ValueTypes, );

TYPED_TEST(ModeCheck, StoringWhileLoadingThrowsReadOnlyWithTheFilesName) {
    MemoryFile file(Bytes(40, 7));
    file.SetFilePath(_T("values.doc"));
    CArchive archive(&file, CArchive::load);
    const TypeParam value{};
    EXPECT_EQ(CaughtFrom([&] { archive << value; }),
              ArchiveException(CArchiveException::readOnly, "values.doc"));
    EXPECT_EQ(file.Bytes(), Bytes(40, 7));
    EXPECT_EQ(file.GetPosition(), 0u);
}

TYPED_TEST(ModeCheck, LoadingWhileStoringThrowsWriteOnlyWithTheFilesName) {
    MemoryFile file;
    file.SetFilePath(_T("values.doc"));
    CArchive archive(&file, CArchive::store);
    archive << 1;
    TypeParam value{};
    EXPECT_EQ(CaughtFrom([&] { archive >> value; }),
              ArchiveException(CArchiveException::writeOnly, "values.doc"));
    EXPECT_EQ(file.WriteCalls(), 0u) << "nothing was flushed for the bridge";
    archive.Close();
    EXPECT_EQ(file.Bytes(), (Bytes{1, 0, 0, 0}));
}

TEST(CauseNumbers, AreThoseOfThePlatform) {
    EXPECT_EQ(CArchiveException::readOnly, 2);
    EXPECT_EQ(CArchiveException::writeOnly, 4);
    EXPECT_EQ(CArchiveException::endOfFile, 3);
    EXPECT_EQ(CArchiveException::badClass, 6);
}

}  // namespace

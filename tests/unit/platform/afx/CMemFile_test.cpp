#include <afx.h>
#include <gtest/gtest.h>
#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "ExceptionMatchers.h"

namespace {

struct FreeBlock {
    void operator()(BYTE* block) const { std::free(block); }
};
using Block = std::unique_ptr<BYTE, FreeBlock>;

Block BlockOf(std::string_view content) {
    Block block(static_cast<BYTE*>(std::malloc(content.size())));
    std::memcpy(block.get(), content.data(), content.size());
    return block;
}

void WriteText(CFile& file, std::string_view text) {
    file.Write(text.data(), static_cast<UINT>(text.size()));
}

std::string ReadText(CFile& file, UINT count) {
    std::string text(count, '\0');
    text.resize(file.Read(text.data(), count));
    return text;
}

std::string Content(CMemFile& file) {
    file.SeekToBegin();
    return ReadText(file, static_cast<UINT>(file.GetLength()));
}

const Thrown kNoMemory = SimpleFailure("CMemoryException");

TEST(CMemFile, StartsEmptyAndOpen) {
    CMemFile file;
    EXPECT_EQ(0U, file.GetLength());
    EXPECT_EQ(0U, file.GetPosition());
    EXPECT_TRUE(file.GetFilePath().IsEmpty());
    EXPECT_EQ("", ReadText(file, 1));
    WriteText(file, "abc");
    EXPECT_EQ("abc", Content(file));
}

TEST(CMemFile, LengthIsWhatWasWritten) {
    CMemFile file(1000);
    WriteText(file, "abc");
    EXPECT_EQ(3U, file.GetLength());
    EXPECT_EQ(3U, file.GetPosition());
}

TEST(CMemFile, OverwritesInPlace) {
    CMemFile file;
    WriteText(file, "abcdef");
    file.Seek(2, CFile::begin);
    WriteText(file, "XY");
    EXPECT_EQ("abXYef", Content(file));
}

TEST(CMemFile, GrowsByAnyStep) {
    for (const UINT step : {1U, 7U, 1024U}) {
        CMemFile file(step);
        std::string expected;
        for (int piece = 0; piece < 300; ++piece) {
            const std::string text(static_cast<std::size_t>(piece % 23),
                                   static_cast<char>('a' + piece % 26));
            WriteText(file, text);
            expected += text;
        }
        EXPECT_EQ(expected, Content(file)) << "step " << step;
    }
}

#if defined(__GLIBC__)
// Growing by the step alone would move a large file again and again. Worked out by hand for eight
// bytes at a time and a step of one: 8, 16 (half more is 12), 24, 36, 54, 81.
TEST(CMemFile, GrowsByHalfItsSizeAtLeast) {
    CMemFile file(1);
    for (int piece = 0; piece < 7; ++piece) {
        WriteText(file, "12345678");
    }
    EXPECT_EQ(56U, file.GetLength());
    const Block block(file.Detach());
    EXPECT_GE(malloc_usable_size(block.get()), 81U);
}

TEST(CMemFile, GrowsInWholeSteps) {
    CMemFile file(1000);
    WriteText(file, "x");
    const Block block(file.Detach());
    EXPECT_GE(malloc_usable_size(block.get()), 1000U);
}
#endif

TEST(CMemFile, ReadIsShortAtTheEndAndZeroBehindIt) {
    CMemFile file;
    WriteText(file, "0123456789");
    file.Seek(8, CFile::begin);
    EXPECT_EQ("89", ReadText(file, 5));
    EXPECT_EQ("", ReadText(file, 5));
    file.Seek(100, CFile::begin);
    EXPECT_EQ("", ReadText(file, 5));
    EXPECT_EQ(100U, file.GetPosition());
}

TEST(CMemFile, SeeksFromEachOrigin) {
    CMemFile file;
    WriteText(file, "0123456789");
    EXPECT_EQ(4U, file.Seek(4, CFile::begin));
    EXPECT_EQ(6U, file.Seek(2, CFile::current));
    EXPECT_EQ(7U, file.Seek(-3, CFile::end));
    EXPECT_EQ(12U, file.Seek(2, CFile::end));
    EXPECT_EQ(10U, file.SeekToEnd());
}

TEST(CMemFile, SeekOutsideTheRangeThrowsAndKeepsThePosition) {
    constexpr LONGLONG kLowest = (std::numeric_limits<LONGLONG>::min)();
    constexpr LONGLONG kHighest = (std::numeric_limits<LONGLONG>::max)();
    CMemFile file;
    WriteText(file, "0123456789");
    file.Seek(4, CFile::begin);
    const Thrown expected = FileFailure(CFileException::badSeek);
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(-1, CFile::begin); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(-5, CFile::current); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(-11, CFile::end); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(kLowest, CFile::current); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(kHighest, CFile::current); }));
    EXPECT_EQ(4U, file.GetPosition());
}

TEST(CMemFile, WriteBehindTheEndFillsTheGapWithZeros) {
    CMemFile file;
    WriteText(file, "ab");
    file.Seek(4, CFile::begin);
    EXPECT_EQ(2U, file.GetLength());
    WriteText(file, "x");
    EXPECT_EQ((std::string{'a', 'b', '\0', '\0', 'x'}), Content(file));
}

TEST(CMemFile, SetLengthCutsAndLengthensWithZeros) {
    CMemFile file;
    WriteText(file, "abcdef");
    file.SetLength(3);
    EXPECT_EQ(3U, file.GetPosition());
    file.SetLength(5);
    EXPECT_EQ(3U, file.GetPosition());
    EXPECT_EQ((std::string{'a', 'b', 'c', '\0', '\0'}), Content(file));
}

TEST(CMemFile, WriteBeyondAllMemoryThrowsAndChangesNothing) {
    CMemFile file;
    WriteText(file, "abc");
    file.Seek(LONGLONG(1) << 62, CFile::begin);
    EXPECT_EQ(kNoMemory, ThrownBy([&] { WriteText(file, "x"); }));
    EXPECT_EQ(kNoMemory, ThrownBy([&] { file.SetLength(~ULONGLONG(0)); }));
    EXPECT_EQ(3U, file.GetLength());
    EXPECT_EQ("abc", Content(file));
}

TEST(CMemFile, FixedBlockIsTheFile) {
    BYTE block[5] = {'a', 'b', 'c', 'd', 'e'};
    CMemFile file(block, 5);
    EXPECT_EQ(5U, file.GetLength());
    EXPECT_EQ("abcde", Content(file));
    file.Seek(3, CFile::begin);
    WriteText(file, "XY");
    EXPECT_EQ('X', block[3]);
    EXPECT_EQ('Y', block[4]);
}

TEST(CMemFile, FixedBlockDoesNotGrow) {
    BYTE block[5] = {'a', 'b', 'c', 'd', 'e'};
    CMemFile file(block, 5);
    file.Seek(4, CFile::begin);
    EXPECT_EQ(kNoMemory, ThrownBy([&] { WriteText(file, "XY"); }));
    EXPECT_EQ('e', block[4]);
    EXPECT_EQ(4U, file.GetPosition());
    EXPECT_EQ(kNoMemory, ThrownBy([&] { file.SetLength(6); }));
    EXPECT_EQ(5U, file.GetLength());
    file.SetLength(2);
    EXPECT_EQ(2U, file.GetLength());
    WriteText(file, "xyz");
    EXPECT_EQ("abxyz", Content(file));
}

TEST(CMemFile, AttachedGrowableBlockStartsEmpty) {
    Block block = BlockOf("0123456789");
    CMemFile file;
    file.Attach(block.release(), 10, 4);
    EXPECT_EQ(0U, file.GetLength());
    WriteText(file, "abcdefghijklmno");
    EXPECT_EQ("abcdefghijklmno", Content(file));
    const Block back(file.Detach());
    EXPECT_EQ(0, std::memcmp(back.get(), "abcdefghijklmno", 15));
}

TEST(CMemFile, AttachedBlockStaysWithItsOwner) {
    const Block block = BlockOf("abc");
    {
        CMemFile closed(block.get(), 3);
        closed.Close();
        EXPECT_EQ(0U, closed.GetLength());
        const CMemFile destroyed(block.get(), 3);
    }
    EXPECT_EQ(0, std::memcmp(block.get(), "abc", 3));
}

TEST(CMemFile, AttachReleasesTheFilesOwnMemory) {
    BYTE block[3] = {'a', 'b', 'c'};
    CMemFile file;
    WriteText(file, "own memory");
    file.Attach(block, 3);
    EXPECT_EQ("abc", Content(file));
}

TEST(CMemFile, DetachHandsOverTheBlockAndClosesTheFile) {
    CMemFile file;
    WriteText(file, "abc");
    const Block block(file.Detach());
    EXPECT_EQ(0, std::memcmp(block.get(), "abc", 3));
    EXPECT_EQ(0U, file.GetLength());
    EXPECT_EQ(nullptr, file.Detach());
    EXPECT_EQ(kNoMemory, ThrownBy([&] { WriteText(file, "x"); }));
}

TEST(CMemFile, CloseEmptiesTheFileForGood) {
    CMemFile file;
    WriteText(file, "abc");
    file.Close();
    EXPECT_EQ(0U, file.GetLength());
    EXPECT_EQ(0U, file.GetPosition());
    EXPECT_EQ(kNoMemory, ThrownBy([&] { WriteText(file, "x"); }));
    file.Abort();
}

// Deliberate: real growable files offer their memory to an archive, which then loses bytes when the
// file is written directly in between.
TEST(CMemFile, OffersNoDirectBuffering) {
    CMemFile file;
    EXPECT_EQ(0U, file.GetBufferPtr(CFile::bufferCheck));
}

TEST(CMemFile, DirectWritesBetweenArchiveWritesLoseNothing) {
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    archive.Write("ab", 2);
    archive.Flush();
    WriteText(file, "CD");
    archive.Write("ef", 2);
    archive.Close();
    EXPECT_EQ("abCDef", Content(file));
}

TEST(CMemFile, FlushDoesNothing) {
    CMemFile file;
    WriteText(file, "abc");
    file.Flush();
    EXPECT_EQ("abc", Content(file));
}

TEST(CMemFile, DuplicateAndRangeLocksAreNotSupported) {
    CMemFile file;
    const Thrown expected = SimpleFailure("CNotSupportedException");
    EXPECT_EQ(expected, ThrownBy([&] { file.Duplicate(); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.LockRange(0, 1); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.UnlockRange(0, 1); }));
}

}  // namespace

#include <afx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "ExceptionMatchers.h"
#include "support/MemoryFile.h"

namespace {

using Vr::test::MemoryFile;
using Bytes = std::vector<BYTE>;
using Sizes = std::vector<UINT>;

// 0, 1, 2, ... 250, 0, 1, ...: a length that divides no buffer, so that a shift by one shows.
Bytes Pattern(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t offset = 0; offset < size; ++offset) {
        bytes[offset] = static_cast<BYTE>(offset % 251);
    }
    return bytes;
}

Bytes ReadBytes(CArchive& archive, UINT count) {
    Bytes bytes(count);
    bytes.resize(archive.Read(bytes.data(), count));
    return bytes;
}

// Reaches what a derived class reaches.
class ArchiveProbe : public CArchive {
public:
    using CArchive::CArchive;
    ArchiveProbe(const ArchiveProbe& source) : CArchive(source) {}
    ArchiveProbe& operator=(const ArchiveProbe& source) {
        static_assert(std::is_void_v<decltype(CArchive::operator=(source))>, "returns nothing");
        CArchive::operator=(source);
        return *this;
    }

    UINT UnreadBytes() const { return static_cast<UINT>(m_lpBufMax - m_lpBufCur); }
    int BufferSize() const { return m_nBufSize; }
    const BYTE* BufferStart() const { return m_lpBufStart; }
    BOOL HasCallersBuffer() const { return m_bUserBuf; }
    UINT ModeBits() const { return m_nMode; }

    // What a copy constructor does to the members on a platform that leaves them indeterminate.
    void MakeHarmless() {
        m_pFile = nullptr;
        m_lpBufStart = m_lpBufCur = m_lpBufMax = nullptr;
        m_bUserBuf = TRUE;
        m_pStoreMap = nullptr;
        m_pLoadArray = nullptr;
        m_pSchemaMap = nullptr;
        m_nMode = store;
    }
};

TEST(CArchive, ModesHaveTheirNumbers) {
    EXPECT_EQ(0U, CArchive::store);
    EXPECT_EQ(1U, CArchive::load);
    EXPECT_EQ(2U, CArchive::bNoFlushOnDelete);
    EXPECT_EQ(4U, CArchive::bNoByteSwap);
    EXPECT_FALSE(std::is_polymorphic_v<CArchive>);
    EXPECT_FALSE(std::is_copy_constructible_v<CArchive>);
    EXPECT_FALSE(std::is_copy_assignable_v<CArchive>);
}

TEST(CArchive, KnowsItsDirection) {
    MemoryFile file;
    CArchive storing(&file, CArchive::store | CArchive::bNoByteSwap);
    EXPECT_TRUE(storing.IsStoring());
    EXPECT_FALSE(storing.IsLoading());
    CArchive loading(&file, CArchive::load | CArchive::bNoFlushOnDelete);
    EXPECT_TRUE(loading.IsLoading());
    EXPECT_FALSE(loading.IsStoring());
}

TEST(CArchive, StartsWithDefinedMembers) {
    MemoryFile file;
    file.SetFilePath("mesh.doc");
    CArchive archive(&file, CArchive::store);
    EXPECT_EQ(&file, archive.GetFile());
    EXPECT_EQ(nullptr, archive.m_pDocument);
    EXPECT_EQ(0xFFFFFFFFU, archive.m_nObjectSchema);
    EXPECT_TRUE(archive.m_strFileName == "mesh.doc");
    file.SetFilePath("renamed.doc");
    EXPECT_TRUE(archive.m_strFileName == "mesh.doc");
}

TEST(CArchive, BufferHas4096BytesUnlessToldOtherwise) {
    MemoryFile file;
    EXPECT_EQ(4096, ArchiveProbe(&file, CArchive::store).BufferSize());
    EXPECT_EQ(500, ArchiveProbe(&file, CArchive::store, 500).BufferSize());
    EXPECT_EQ(128, ArchiveProbe(&file, CArchive::store, 128).BufferSize());
}

TEST(CArchive, CallersBufferIsUsedAndNotFreed) {
    MemoryFile file;
    BYTE buffer[128] = {};
    ArchiveProbe archive(&file, CArchive::store, sizeof(buffer), buffer);
    EXPECT_EQ(buffer, archive.BufferStart());
    EXPECT_TRUE(archive.HasCallersBuffer());
    archive << static_cast<BYTE>(0x5A);
    EXPECT_EQ(0x5A, buffer[0]);
    archive.Close();
    EXPECT_EQ(Bytes{0x5A}, file.Bytes());
}

// Deliberate: a size below 128 is raised, and the caller's buffer, which has not that size, is
// left.
TEST(CArchive, SmallBufferIsRaisedAndTheCallersLeftAlone) {
    MemoryFile file;
    BYTE buffer[128] = {};
    ArchiveProbe archive(&file, CArchive::store, 127, buffer);
    EXPECT_EQ(128, archive.BufferSize());
    EXPECT_NE(buffer, archive.BufferStart());
    EXPECT_FALSE(archive.HasCallersBuffer());
    archive << static_cast<BYTE>(0x5A);
    EXPECT_EQ(0, buffer[0]);
    EXPECT_EQ(128, ArchiveProbe(&file, CArchive::store, -5).BufferSize());
}

TEST(CArchive, StartsAtTheFilesPosition) {
    MemoryFile file(Bytes{1, 2, 3, 4});
    file.Seek(2, CFile::begin);
    CArchive loading(&file, CArchive::load);
    BYTE value = 0;
    loading >> value;
    EXPECT_EQ(3, value);
    loading.Close();
    CArchive storing(&file, CArchive::store);
    storing << static_cast<BYTE>(9);
    storing.Close();
    EXPECT_EQ((Bytes{1, 2, 3, 9}), file.Bytes());
}

TEST(CArchiveFlush, StoringWritesTheBufferAtOnceAndNotToTheDisk) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << 1 << 2 << 3;
    EXPECT_EQ(0U, file.WriteCalls());
    archive.Flush();
    EXPECT_EQ(Sizes{12}, file.WriteSizes());
    EXPECT_EQ(0U, file.FlushCalls());
    EXPECT_EQ(12U, file.GetPosition());
    archive.Flush();
    EXPECT_EQ(1U, file.WriteCalls());
}

TEST(CArchiveFlush, LoadingGivesTheUnreadBytesBack) {
    MemoryFile file(Pattern(100));
    CArchive archive(&file, CArchive::load);
    BYTE value = 0;
    archive >> value;
    EXPECT_EQ(100U, file.GetPosition());
    archive.Flush();
    EXPECT_EQ(1U, file.GetPosition());
    EXPECT_TRUE(archive.IsBufferEmpty());
    EXPECT_EQ(1U, file.SeekCalls());
    archive.Flush();
    EXPECT_EQ(1U, file.SeekCalls());
}

TEST(CArchiveFlush, LoadingGoesOnFromWhereTheFileStands) {
    MemoryFile file(Pattern(100));
    CArchive archive(&file, CArchive::load);
    BYTE value = 0;
    archive >> value;
    archive.Flush();
    file.Seek(50, CFile::begin);
    archive >> value;
    EXPECT_EQ(50, value);
}

TEST(CArchiveFlush, StoringGoesOnFromWhereTheFileStands) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << static_cast<BYTE>(1);
    archive.Flush();
    file.Write("xy", 2);
    archive << static_cast<BYTE>(2);
    archive.Close();
    EXPECT_EQ((Bytes{1, 'x', 'y', 2}), file.Bytes());
}

TEST(CArchiveFlush, FailedWriteKeepsTheBytesForTheNextTry) {
    MemoryFile file;
    file.FailWrite(1);
    CArchive archive(&file, CArchive::store);
    archive << static_cast<BYTE>(7);
    EXPECT_EQ(FileFailure(CFileException::diskFull), ThrownBy([&] { archive.Flush(); }));
    EXPECT_TRUE(file.Bytes().empty());
    archive.Flush();
    EXPECT_EQ(Bytes{7}, file.Bytes());
}

TEST(CArchiveFlush, FailedSeekKeepsTheUnreadBytes) {
    MemoryFile file(Pattern(10));
    file.FailSeek(1);
    CArchive archive(&file, CArchive::load);
    BYTE value = 0;
    archive >> value;
    EXPECT_EQ(FileFailure(CFileException::badSeek), ThrownBy([&] { archive.Flush(); }));
    archive >> value;
    EXPECT_EQ(1, value);
}

TEST(CArchiveFlush, ValueThatDoesNotFitGoesBehindTheFlush) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store, 128);
    const Bytes pattern = Pattern(127);
    archive.Write(pattern.data(), 127);
    archive << 0x11223344;
    archive.Close();
    EXPECT_EQ((Sizes{127, 4}), file.WriteSizes());
}

TEST(CArchiveFlush, ValueThatJustFitsStaysInTheBuffer) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store, 128);
    const Bytes pattern = Pattern(124);
    archive.Write(pattern.data(), 124);
    archive << 0x11223344;
    EXPECT_EQ(0U, file.WriteCalls());
    archive.Close();
    EXPECT_EQ(Sizes{128}, file.WriteSizes());
}

TEST(CArchiveFillBuffer, AsksForAllTheRoom) {
    MemoryFile file(Pattern(1000));
    ArchiveProbe archive(&file, CArchive::load, 128);
    archive.FillBuffer(1);
    EXPECT_EQ(Sizes{128}, file.ReadSizes());
    EXPECT_EQ(128U, archive.UnreadBytes());
}

TEST(CArchiveFillBuffer, MovesUnreadBytesToTheStart) {
    MemoryFile file(Pattern(1000));
    ArchiveProbe archive(&file, CArchive::load, 128);
    EXPECT_EQ(100U, ReadBytes(archive, 100).size());
    archive.FillBuffer(100);
    EXPECT_EQ((Sizes{128, 100}), file.ReadSizes());
    const Bytes rest = ReadBytes(archive, 128);
    const Bytes expected = Pattern(228);
    EXPECT_TRUE(std::equal(rest.begin(), rest.end(), expected.begin() + 100, expected.end()));
}

TEST(CArchiveFillBuffer, RepeatsWhileTheFileGivesTooLittle) {
    MemoryFile file(Pattern(1000));
    file.LimitReads(3);
    ArchiveProbe archive(&file, CArchive::load, 128);
    archive.FillBuffer(8);
    EXPECT_EQ((Sizes{128, 125, 122}), file.ReadSizes());
    EXPECT_EQ(9U, archive.UnreadBytes());
}

TEST(CArchiveFillBuffer, EndOfFileLeavesWhatWasThere) {
    MemoryFile file(Bytes{1, 2, 3});
    file.SetFilePath("mesh.doc");
    ArchiveProbe archive(&file, CArchive::load);
    // Deliberate: of all archive exceptions this one alone has no file name.
    EXPECT_EQ(ArchiveFailure(CArchiveException::endOfFile, ""),
              ThrownBy([&] { archive.FillBuffer(4); }));
    EXPECT_EQ(3U, archive.UnreadBytes());
    WORD word = 0;
    archive >> word;
    EXPECT_EQ(0x0201, word);
}

TEST(CArchiveFillBuffer, AfterTheEndTheFileIsNotAskedAgainUntilAFlush) {
    MemoryFile file(Bytes{1, 2, 3});
    ArchiveProbe archive(&file, CArchive::load);
    const Thrown expected = ArchiveFailure(CArchiveException::endOfFile);
    EXPECT_EQ(expected, ThrownBy([&] { archive.FillBuffer(4); }));
    const std::size_t calls = file.ReadCalls();
    EXPECT_EQ(expected, ThrownBy([&] { archive.FillBuffer(4); }));
    EXPECT_EQ(calls, file.ReadCalls());
    archive.Flush();
    file.SeekToEnd();
    file.Write("\x04\x05\x06\x07", 4);
    file.Seek(3, CFile::begin);
    DWORD value = 0;
    archive >> value;
    EXPECT_EQ(0x07060504U, value);
}

TEST(CArchiveFillBuffer, FailedReadKeepsWhatWasThere) {
    MemoryFile file(Pattern(1000));
    file.LimitReads(3);
    file.FailRead(2);
    ArchiveProbe archive(&file, CArchive::load);
    EXPECT_EQ(FileFailure(CFileException::hardIO), ThrownBy([&] { archive.FillBuffer(8); }));
    EXPECT_EQ(3U, archive.UnreadBytes());
    ULONGLONG value = 0;
    archive >> value;
    EXPECT_EQ(0x0706050403020100U, value);
}

TEST(CArchive, PositionWhileLoadingIsTheReadAheadOne) {
    MemoryFile file(Pattern(10000));
    CArchive archive(&file, CArchive::load);
    BYTE value = 0;
    archive >> value;
    EXPECT_EQ(4096U, file.GetPosition());
    MemoryFile shortFile(Pattern(10));
    CArchive shortArchive(&shortFile, CArchive::load);
    shortArchive >> value;
    EXPECT_EQ(10U, shortFile.GetPosition());
}

TEST(CArchive, CloseDisconnectsAndLeavesTheFileForAnother) {
    MemoryFile file(Pattern(1000));
    {
        CArchive archive(&file, CArchive::load);
        EXPECT_EQ(10U, ReadBytes(archive, 10).size());
        archive.Close();
        EXPECT_EQ(nullptr, archive.GetFile());
        EXPECT_EQ(10U, file.GetPosition());
    }
    EXPECT_EQ(10U, file.GetPosition());
    CArchive next(&file, CArchive::load);
    BYTE value = 0;
    next >> value;
    EXPECT_EQ(10, value);
}

TEST(CArchive, AbortDropsUnwrittenBytesAndMayBeRepeated) {
    MemoryFile file;
    file.FailWrite(1, CFileException::diskFull, MemoryFile::Fails::kFromThenOn);
    {
        CArchive archive(&file, CArchive::store);
        archive << 1;
        archive.Abort();
        EXPECT_EQ(nullptr, archive.GetFile());
        archive.Abort();
    }
    EXPECT_EQ(0U, file.WriteCalls());
}

TEST(CArchive, DestructorStoresTheRest) {
    MemoryFile file;
    { CArchive(&file, CArchive::store) << static_cast<BYTE>(7); }
    EXPECT_EQ(Bytes{7}, file.Bytes());
}

TEST(CArchive, DestructorGivesUnreadBytesBack) {
    MemoryFile file(Pattern(100));
    BYTE value = 0;
    { CArchive(&file, CArchive::load) >> value; }
    EXPECT_EQ(1U, file.GetPosition());
}

TEST(CArchive, NoFlushOnDeleteLosesTheRest) {
    MemoryFile file;
    { CArchive(&file, CArchive::store | CArchive::bNoFlushOnDelete) << 1; }
    EXPECT_TRUE(file.Bytes().empty());
    MemoryFile loaded(Pattern(100));
    BYTE value = 0;
    { CArchive(&loaded, CArchive::load | CArchive::bNoFlushOnDelete) >> value; }
    EXPECT_EQ(100U, loaded.GetPosition());
}

// Deliberate: an exception from a destructor would end the program.
TEST(CArchive, DestructorTriesAndSwallowsTheFailure) {
    MemoryFile file;
    file.FailWrite(1, CFileException::diskFull, MemoryFile::Fails::kFromThenOn);
    { CArchive(&file, CArchive::store) << 1; }
    EXPECT_EQ(1U, file.WriteCalls());
}

TEST(CArchive, DestructorSwallowsForeignExceptions) {
    struct StrangeFile : MemoryFile {
        void Write(const void*, UINT) override { throw std::runtime_error("not of the layer"); }
    };
    StrangeFile file;
    { CArchive(&file, CArchive::store) << 1; }
}

TEST(CArchive, DestructorTriesAgainAfterAFailedWrite) {
    MemoryFile file;
    file.FailWrite(1);
    {
        CArchive archive(&file, CArchive::store);
        archive << static_cast<BYTE>(7);
        EXPECT_EQ(FileFailure(CFileException::diskFull), ThrownBy([&] { archive.Close(); }));
        EXPECT_EQ(&file, archive.GetFile());
    }
    EXPECT_EQ(Bytes{7}, file.Bytes());
}

TEST(CArchiveCopy, IsAHarmlessArchiveWithoutAFile) {
    MemoryFile file(Pattern(100));
    file.SetFilePath("mesh.doc");
    ArchiveProbe archive(&file, CArchive::load);
    BYTE value = 0;
    archive >> value;
    {
        ArchiveProbe copy(archive);
        EXPECT_EQ(nullptr, copy.GetFile());
        EXPECT_TRUE(copy.m_strFileName.IsEmpty());
        EXPECT_TRUE(copy.IsStoring());
        EXPECT_EQ(nullptr, copy.BufferStart());
        EXPECT_TRUE(copy.HasCallersBuffer());
        EXPECT_EQ(nullptr, copy.m_pDocument);
    }
    archive >> value;
    EXPECT_EQ(1, value);
}

TEST(CArchiveCopy, AssignmentTakesNothingOver) {
    MemoryFile sourceFile(Pattern(100));
    MemoryFile targetFile;
    ArchiveProbe source(&sourceFile, CArchive::load);
    ArchiveProbe target(&targetFile, CArchive::store);
    target << static_cast<BYTE>(7);
    target = source;
    EXPECT_EQ(&targetFile, target.GetFile());
    EXPECT_TRUE(target.IsStoring());
    target.Close();
    EXPECT_EQ(Bytes{7}, targetFile.Bytes());
}

TEST(CArchiveCopy, OneSourceServesAPlatformThatLeavesTheMembersOpen) {
    MemoryFile file;
    const ArchiveProbe archive(&file, CArchive::store);
    ArchiveProbe copy(archive);
    copy.MakeHarmless();
    EXPECT_EQ(nullptr, copy.GetFile());
    EXPECT_EQ(CArchive::store, copy.ModeBits());
}

TEST(CArchiveRead, ReturnsWhatIsThere) {
    MemoryFile file(Pattern(10));
    CArchive archive(&file, CArchive::load);
    EXPECT_EQ(Pattern(10), ReadBytes(archive, 20));
    EXPECT_TRUE(ReadBytes(archive, 1).empty());
}

TEST(CArchiveRead, SmallReadsComeFromOneBuffer) {
    MemoryFile file(Pattern(1000));
    CArchive archive(&file, CArchive::load, 128);
    Bytes all;
    for (int part = 0; part < 12; ++part) {
        const Bytes bytes = ReadBytes(archive, 10);
        all.insert(all.end(), bytes.begin(), bytes.end());
    }
    EXPECT_EQ(Pattern(120), all);
    EXPECT_EQ(Sizes{128}, file.ReadSizes());
}

TEST(CArchiveRead, LargeReadsPassTheBufferInWholeMultiples) {
    MemoryFile file(Pattern(2000));
    CArchive archive(&file, CArchive::load, 128);
    EXPECT_EQ(Pattern(10), ReadBytes(archive, 10));
    const Bytes bytes = ReadBytes(archive, 1000);
    const Bytes expected = Pattern(1010);
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), expected.begin() + 10, expected.end()));
    // 118 bytes were in the buffer. Of the other 882 six buffers go past it, 114 are read ahead.
    EXPECT_EQ((Sizes{128, 768, 128}), file.ReadSizes());
}

TEST(CArchiveRead, LargeReadEndsWithTheFile) {
    MemoryFile file(Pattern(500));
    CArchive archive(&file, CArchive::load, 128);
    EXPECT_EQ(Pattern(500), ReadBytes(archive, 1000));
}

TEST(CArchiveRead, FileThatReadsInPiecesGivesTheSameBytes) {
    MemoryFile file(Pattern(2000));
    file.LimitReads(50);
    CArchive archive(&file, CArchive::load, 128);
    EXPECT_EQ(Pattern(1500), ReadBytes(archive, 1500));
}

TEST(CArchiveRead, EnsureReadThrowsWhenShort) {
    MemoryFile file(Pattern(10));
    file.SetFilePath("mesh.doc");
    CArchive archive(&file, CArchive::load);
    Bytes bytes(8);
    archive.EnsureRead(bytes.data(), 8);
    EXPECT_EQ(Pattern(8), bytes);
    EXPECT_EQ(ArchiveFailure(CArchiveException::endOfFile, "mesh.doc"),
              ThrownBy([&] { archive.EnsureRead(bytes.data(), 3); }));
    // What there was has been read.
    EXPECT_EQ(8, bytes[0]);
    EXPECT_EQ(9, bytes[1]);
    EXPECT_TRUE(ReadBytes(archive, 1).empty());
}

TEST(CArchiveWrite, SmallWritesCollectInTheBuffer) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store, 128);
    const Bytes pattern = Pattern(1000);
    for (std::size_t offset = 0; offset < 1000; offset += 10) {
        archive.Write(pattern.data() + offset, 10);
    }
    archive.Close();
    EXPECT_EQ(pattern, file.Bytes());
    EXPECT_EQ((Sizes{128, 128, 128, 128, 128, 128, 128, 104}), file.WriteSizes());
}

TEST(CArchiveWrite, LargeWritesPassTheBufferInWholeMultiples) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store, 128);
    const Bytes pattern = Pattern(1010);
    archive.Write(pattern.data(), 10);
    archive.Write(pattern.data() + 10, 1000);
    // The buffer leaves full; of the other 882 bytes six buffers go past it and 114 stay.
    EXPECT_EQ((Sizes{128, 768}), file.WriteSizes());
    archive.Close();
    EXPECT_EQ((Sizes{128, 768, 114}), file.WriteSizes());
    EXPECT_EQ(pattern, file.Bytes());
}

TEST(CArchiveWrite, LargeWriteWithAnEmptyBufferGoesStraightToTheFile) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store, 128);
    const Bytes pattern = Pattern(1000);
    archive.Write(pattern.data(), 1000);
    archive.Close();
    EXPECT_EQ((Sizes{896, 104}), file.WriteSizes());
    EXPECT_EQ(pattern, file.Bytes());
}

class EveryFailingWrite : public ::testing::TestWithParam<std::size_t> {};
TEST_P(EveryFailingWrite, EndsTheStoreWithTheFilesException) {
    MemoryFile file;
    file.FailWrite(GetParam(), CFileException::diskFull, MemoryFile::Fails::kFromThenOn);
    const Bytes pattern = Pattern(1000);
    CArchive archive(&file, CArchive::store, 128);
    EXPECT_EQ(FileFailure(CFileException::diskFull), ThrownBy([&] {
                  archive.Write(pattern.data(), 10);
                  archive.Write(pattern.data(), 1000);
                  archive << 1.5;
                  archive.Close();
              }));
    archive.Abort();
    EXPECT_EQ(GetParam(), file.WriteCalls());
}
// The buffer topped up, the multiples past it, the rest at the end.
INSTANTIATE_TEST_SUITE_P(CArchiveWrite, EveryFailingWrite, ::testing::Values(1U, 2U, 3U));

TEST(CArchiveWrite, ZeroBytesAreNothingInEitherDirection) {
    MemoryFile file(Pattern(10));
    CArchive loading(&file, CArchive::load);
    loading.Write(nullptr, 0);
    EXPECT_EQ(0U, loading.Read(nullptr, 0));
    CArchive storing(&file, CArchive::store);
    EXPECT_EQ(0U, storing.Read(nullptr, 0));
    storing.EnsureRead(nullptr, 0);
    storing.Write(nullptr, 0);
    EXPECT_EQ(0U, file.ReadCalls() + file.WriteCalls());
}

}  // namespace

// The bridge is not exported: its unit is compiled into this program.

#include "serialize/VrmOpenNurbsBinaryArchive.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <vector>

#include "support/Caught.h"
#include "support/MemoryFile.h"

namespace {

using namespace Vr::test;
using Bytes = std::vector<BYTE>;

// Makes the operations that only openNURBS calls reachable.
class Bridge : public Vr::VrmOpenNurbsBinaryArchive {
public:
    using VrmOpenNurbsBinaryArchive::Flush;
    using VrmOpenNurbsBinaryArchive::Read;
    using VrmOpenNurbsBinaryArchive::VrmOpenNurbsBinaryArchive;
    using VrmOpenNurbsBinaryArchive::Write;
};

Bytes Counting(BYTE count) {
    Bytes bytes;
    for (BYTE value = 0; value < count; ++value)
        bytes.push_back(value);
    return bytes;
}

TEST(Bridge, HasTheModeOfTheArchive) {
    MemoryFile file;
    CArchive loading(&file, CArchive::load);
    EXPECT_TRUE(Bridge(loading).ReadMode());
    EXPECT_FALSE(Bridge(loading).WriteMode());
    CArchive storing(&file, CArchive::store);
    EXPECT_FALSE(Bridge(storing).ReadMode());
    EXPECT_TRUE(Bridge(storing).WriteMode());
}

TEST(Bridge, GivesReadAheadBytesBackToTheFile) {
    MemoryFile file(Counting(20));
    CArchive archive(&file, CArchive::load);
    BYTE value = 0;
    archive >> value >> value;
    EXPECT_EQ(file.GetPosition(), 20u);
    const Bridge bridge(archive);
    EXPECT_EQ(file.GetPosition(), 2u);
    EXPECT_EQ(bridge.CurrentPosition(), 0u);
}

TEST(Bridge, WritesBufferedBytesFirst) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    archive << static_cast<BYTE>(1);
    Bridge bridge(archive);
    EXPECT_EQ(file.Bytes(), (Bytes{1}));
    const BYTE two[] = {2, 3};
    EXPECT_EQ(bridge.Write(2, two), 2u);
    EXPECT_EQ(file.Bytes(), (Bytes{1, 2, 3}));
    EXPECT_EQ(bridge.CurrentPosition(), 2u);
}

TEST(Bridge, LeavesAnEmptyBufferSoThatTheArchiveGoesOnWhereTheFileStands) {
    MemoryFile file(Counting(20));
    CArchive archive(&file, CArchive::load);
    BYTE value = 0;
    archive >> value;
    {
        Bridge bridge(archive);
        BYTE four[4] = {};
        EXPECT_EQ(bridge.Read(4, four), 4u);
        EXPECT_EQ(four[0], 1);
        EXPECT_TRUE(bridge.SeekFromCurrentPosition(2));
    }
    archive >> value;
    EXPECT_EQ(value, 7);
}

TEST(Bridge, CurrentPositionCountsFromWhereItWasMade) {
    MemoryFile file(Counting(20));
    file.Seek(5, CFile::begin);
    CArchive archive(&file, CArchive::load);
    Bridge bridge(archive);
    EXPECT_EQ(bridge.CurrentPosition(), 0u);
    BYTE three[3] = {};
    bridge.Read(3, three);
    EXPECT_EQ(bridge.CurrentPosition(), 3u);
    EXPECT_EQ(three[0], 5);
}

TEST(Bridge, CurrentPositionBeforeTheStartThrows) {
    MemoryFile file(Counting(20));
    file.Seek(5, CFile::begin);
    CArchive archive(&file, CArchive::load);
    const Bridge bridge(archive);
    file.Seek(5, CFile::begin);
    EXPECT_EQ(bridge.CurrentPosition(), 0u);
    file.Seek(4, CFile::begin);
    EXPECT_EQ(CaughtFrom([&] { static_cast<void>(bridge.CurrentPosition()); }),
              RuntimeError("invalid archive position"));
}

TEST(Bridge, CurrentPositionIsComputedIn32BitsAndWidenedWithItsSign) {
    MemoryFile file;
    file.Seek(10, CFile::begin);
    CArchive archive(&file, CArchive::load);
    const Bridge bridge(archive);
    file.Seek(10 + 0x7FFFFFFFLL, CFile::begin);
    EXPECT_EQ(bridge.CurrentPosition(), 0x7FFFFFFFu);
    file.Seek(10 + 0x80000000LL, CFile::begin);
    EXPECT_EQ(bridge.CurrentPosition(), std::numeric_limits<size_t>::max() - 0x7FFFFFFF);
    file.Seek(10 + 0x100000005LL, CFile::begin);
    EXPECT_EQ(bridge.CurrentPosition(), 5u);
}

TEST(Bridge, SeeksRelativeToTheCurrentPositionBothWays) {
    MemoryFile file(Counting(20));
    CArchive archive(&file, CArchive::load);
    Bridge bridge(archive);
    EXPECT_TRUE(bridge.SeekFromCurrentPosition(7));
    EXPECT_EQ(file.GetPosition(), 7u);
    EXPECT_TRUE(bridge.SeekFromCurrentPosition(-3));
    EXPECT_EQ(file.GetPosition(), 4u);
    EXPECT_FALSE(bridge.SeekFromCurrentPosition(-5));
    EXPECT_EQ(file.GetPosition(), 4u);
}

TEST(Bridge, SeeksFromWhereItWasMade) {
    MemoryFile file(Counting(20));
    file.Seek(5, CFile::begin);
    CArchive archive(&file, CArchive::load);
    Bridge bridge(archive);
    EXPECT_TRUE(bridge.SeekFromStart(4));
    EXPECT_EQ(file.GetPosition(), 9u);
    EXPECT_TRUE(bridge.SeekFromStart(0));
    EXPECT_EQ(file.GetPosition(), 5u);
}

TEST(Bridge, SeeksAnswerFalseWhenTheFileThrows) {
    MemoryFile file(Counting(20));
    CArchive archive(&file, CArchive::load);
    Bridge bridge(archive);
    file.FailSeek(1, CFileException::badSeek, MemoryFile::Fails::kFromThenOn);
    EXPECT_FALSE(bridge.SeekFromCurrentPosition(1));
    EXPECT_FALSE(bridge.SeekFromStart(1));
    EXPECT_EQ(file.GetPosition(), 0u);
}

// A file whose seeking fails in a way that is not the file's.
class ForeignFailure : public MemoryFile {
public:
    ULONGLONG Seek(LONGLONG, UINT) override { AfxThrowNotSupportedException(); }
};

TEST(Bridge, SeeksPassOnOtherExceptions) {
    ForeignFailure file;
    CArchive archive(&file, CArchive::load);
    Bridge bridge(archive);
    EXPECT_EQ(CaughtFrom([&] { static_cast<void>(bridge.SeekFromCurrentPosition(1)); }),
              PlatformException("CNotSupportedException"));
    EXPECT_EQ(CaughtFrom([&] { static_cast<void>(bridge.SeekFromStart(1)); }),
              PlatformException("CNotSupportedException"));
}

TEST(Bridge, IsAtEndOnlyInReadModeAndExactlyAtTheEnd) {
    MemoryFile file(Counting(20));
    CArchive loading(&file, CArchive::load);
    const Bridge reader(loading);
    EXPECT_FALSE(reader.AtEnd());
    file.SeekToEnd();
    EXPECT_TRUE(reader.AtEnd());
    file.Seek(21, CFile::begin);
    EXPECT_FALSE(reader.AtEnd());

    file.SeekToEnd();
    CArchive storing(&file, CArchive::store);
    EXPECT_FALSE(Bridge(storing).AtEnd());
}

TEST(Bridge, ReadAnswersTheBytesActuallyRead) {
    MemoryFile file(Counting(6));
    CArchive archive(&file, CArchive::load);
    Bridge bridge(archive);
    BYTE bytes[10] = {};
    file.LimitReads(4);
    EXPECT_EQ(bridge.Read(10, bytes), 4u);
    EXPECT_EQ(bridge.Read(10, bytes), 2u);
    EXPECT_EQ(bridge.Read(10, bytes), 0u);
}

TEST(Bridge, AFailingReadOrWriteThrowsTheFilesException) {
    MemoryFile file(Counting(6));
    CArchive loading(&file, CArchive::load);
    Bridge reader(loading);
    BYTE byte = 0;
    file.FailRead(1);
    EXPECT_EQ(CaughtFrom([&] { reader.Read(1, &byte); }), FileException(CFileException::hardIO));

    CArchive storing(&file, CArchive::store);
    Bridge writer(storing);
    file.FailWrite(1);
    EXPECT_EQ(CaughtFrom([&] { writer.Write(1, &byte); }), FileException(CFileException::diskFull));
}

TEST(Bridge, FlushDoesNothing) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    Bridge bridge(archive);
    EXPECT_TRUE(bridge.Flush());
    EXPECT_EQ(file.FlushCalls(), 0u);
    EXPECT_EQ(file.WriteCalls(), 0u);
}

TEST(Bridge, PassesOnWhatFlushingTheArchiveThrows) {
    MemoryFile file(Counting(6));
    CArchive loading(&file, CArchive::load);
    BYTE value = 0;
    loading >> value;
    file.FailSeek(1);
    EXPECT_EQ(CaughtFrom([&] { const Bridge bridge(loading); }),
              FileException(CFileException::badSeek));

    CArchive storing(&file, CArchive::store);
    storing << value;
    file.FailWrite(1);
    EXPECT_EQ(CaughtFrom([&] { const Bridge bridge(storing); }),
              FileException(CFileException::diskFull));
    storing.Abort();
}

}  // namespace

#include <afx.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>

#include "ExceptionMatchers.h"
#include "TemporaryFolder.h"

namespace {

void WriteText(CFile& file, std::string_view text) {
    file.Write(text.data(), static_cast<UINT>(text.size()));
}

std::string ReadText(CFile& file, UINT count) {
    std::string text(count, '\0');
    text.resize(file.Read(text.data(), count));
    return text;
}

class CFileTest : public ::testing::Test {
protected:
    int CauseOfOpening(const std::string& path, UINT flags) {
        CFile file;
        CFileException reason;
        const BOOL isOpen = file.Open(path.c_str(), flags, &reason);
        EXPECT_EQ(isOpen != FALSE, reason.m_cause == CFileException::none);
        return reason.m_cause;
    }

    TemporaryFolder folder_;
};

TEST(CFileFlags, HaveTheirNumbers) {
    EXPECT_EQ(0x0000U, CFile::modeRead);
    EXPECT_EQ(0x0001U, CFile::modeWrite);
    EXPECT_EQ(0x0002U, CFile::modeReadWrite);
    EXPECT_EQ(0x0000U, CFile::shareCompat);
    EXPECT_EQ(0x0010U, CFile::shareExclusive);
    EXPECT_EQ(0x0020U, CFile::shareDenyWrite);
    EXPECT_EQ(0x0030U, CFile::shareDenyRead);
    EXPECT_EQ(0x0040U, CFile::shareDenyNone);
    EXPECT_EQ(0x0080U, CFile::modeNoInherit);
    EXPECT_EQ(0x1000U, CFile::modeCreate);
    EXPECT_EQ(0x2000U, CFile::modeNoTruncate);
    EXPECT_EQ(0x4000U, CFile::typeText);
    EXPECT_EQ(0x8000U, CFile::typeBinary);
    EXPECT_EQ(0U, CFile::begin);
    EXPECT_EQ(1U, CFile::current);
    EXPECT_EQ(2U, CFile::end);
    EXPECT_EQ(0U, CFile::bufferRead);
    EXPECT_EQ(1U, CFile::bufferWrite);
    EXPECT_EQ(2U, CFile::bufferCommit);
    EXPECT_EQ(3U, CFile::bufferCheck);
    EXPECT_EQ(1U, CFile::bufferDirect);
}

TEST_F(CFileTest, CreatesAFileAndStandsAtItsStart) {
    CFile file(folder_.PathOf("a").c_str(), CFile::modeCreate | CFile::modeWrite);
    EXPECT_NE(CFile::hFileNull, file.m_hFile);
    EXPECT_EQ(0U, file.GetPosition());
    EXPECT_EQ(0U, file.GetLength());
    WriteText(file, "abc");
    EXPECT_EQ(3U, file.GetPosition());
    file.Close();
    EXPECT_EQ("abc", folder_.Content("a"));
}

TEST_F(CFileTest, WritesReachTheFileWithoutABuffer) {
    CFile file(folder_.PathOf("a").c_str(), CFile::modeCreate | CFile::modeWrite);
    WriteText(file, "abc");
    EXPECT_EQ("abc", folder_.Content("a"));
}

TEST_F(CFileTest, CreatingEmptiesAnExistingFile) {
    const std::string path = folder_.Create("a", "old content");
    CFile(path.c_str(), CFile::modeCreate | CFile::modeWrite).Close();
    EXPECT_EQ("", folder_.Content("a"));
}

TEST_F(CFileTest, CreatingForReadingEmptiesTheFileToo) {
    const std::string path = folder_.Create("a", "old content");
    CFile file(path.c_str(), CFile::modeCreate | CFile::modeRead);
    EXPECT_EQ(0U, file.GetLength());
}

TEST_F(CFileTest, NoTruncateKeepsAnExistingFile) {
    const UINT flags = CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite;
    const std::string path = folder_.Create("a", "old");
    CFile existing(path.c_str(), flags);
    EXPECT_EQ("old", ReadText(existing, 10));
    CFile created(folder_.PathOf("b").c_str(), flags);
    EXPECT_EQ(0U, created.GetLength());
}

TEST_F(CFileTest, OpenWithoutCreateWantsAnExistingFile) {
    EXPECT_EQ(CFileException::fileNotFound, CauseOfOpening(folder_.PathOf("a"), CFile::modeRead));
    EXPECT_EQ(CFileException::fileNotFound, CauseOfOpening(folder_.PathOf("a"), CFile::modeWrite));
    EXPECT_FALSE(std::filesystem::exists(folder_.PathOf("a")));
}

TEST_F(CFileTest, MissingFolderIsABadPath) {
    EXPECT_EQ(CFileException::badPath, CauseOfOpening(folder_.PathOf("none/a"), CFile::modeRead));
    EXPECT_EQ(CFileException::badPath,
              CauseOfOpening(folder_.PathOf("none/a"), CFile::modeCreate | CFile::modeWrite));
}

TEST_F(CFileTest, FileInPlaceOfAFolderIsABadPath) {
    folder_.Create("file", "x");
    EXPECT_EQ(CFileException::badPath, CauseOfOpening(folder_.PathOf("file/a"), CFile::modeRead));
}

TEST_F(CFileTest, FoldersAreRefused) {
    std::filesystem::create_directory(folder_.PathOf("sub"));
    const std::string path = folder_.PathOf("sub");
    EXPECT_EQ(CFileException::accessDenied, CauseOfOpening(path, CFile::modeRead));
    EXPECT_EQ(CFileException::accessDenied, CauseOfOpening(path, CFile::modeReadWrite));
    EXPECT_EQ(CFileException::accessDenied,
              CauseOfOpening(path, CFile::modeCreate | CFile::modeWrite));
}

TEST_F(CFileTest, FailedOpenFillsTheReasonAndLeavesTheFileClosed) {
    const std::string path = folder_.PathOf("a");
    CFile file;
    CFileException reason;
    EXPECT_FALSE(file.Open(path.c_str(), CFile::modeRead, &reason));
    EXPECT_EQ(CFileException::fileNotFound, reason.m_cause);
    EXPECT_EQ(ENOENT, reason.m_lOsError);
    EXPECT_TRUE(reason.m_strFileName == path.c_str());
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
    EXPECT_FALSE(file.Open(path.c_str(), CFile::modeRead));
}

TEST_F(CFileTest, SuccessfulOpenLeavesTheReasonAlone) {
    const std::string path = folder_.Create("a", "x");
    CFile file;
    CFileException reason(CFileException::hardIO, 77, "kept");
    EXPECT_TRUE(file.Open(path.c_str(), CFile::modeRead, &reason));
    EXPECT_EQ(CFileException::hardIO, reason.m_cause);
    EXPECT_EQ(77, reason.m_lOsError);
    EXPECT_TRUE(reason.m_strFileName == "kept");
}

TEST_F(CFileTest, OpenNeverThrows) {
    CFile file;
    CFileException reason;
    EXPECT_FALSE(file.Open(nullptr, CFile::modeRead, &reason));
    EXPECT_NE(CFileException::none, reason.m_cause);
    EXPECT_FALSE(file.Open("", CFile::modeRead));
    EXPECT_FALSE(file.Open(std::string(100000, 'x').c_str(), CFile::modeRead));
}

TEST_F(CFileTest, ConstructorThrowsWhatOpenReports) {
    const std::string path = folder_.PathOf("a");
    EXPECT_EQ(FileFailure(CFileException::fileNotFound, path.c_str()),
              ThrownBy([&] { CFile(path.c_str(), CFile::modeRead); }));
    EXPECT_EQ(SimpleFailure("CInvalidArgException"),
              ThrownBy([] { CFile(static_cast<LPCTSTR>(nullptr), CFile::modeRead); }));
}

TEST_F(CFileTest, ReadIsShortAtTheEndAndZeroBehindIt) {
    CFile file(folder_.Create("a", "0123456789").c_str(), CFile::modeRead);
    EXPECT_EQ("0123", ReadText(file, 4));
    EXPECT_EQ("456789", ReadText(file, 100));
    EXPECT_EQ("", ReadText(file, 1));
    file.Seek(100, CFile::begin);
    EXPECT_EQ("", ReadText(file, 1));
}

TEST_F(CFileTest, NothingIsReadOrWrittenForZeroBytes) {
    CFile file;
    EXPECT_EQ(0U, file.Read(nullptr, 0));
    file.Write(nullptr, 0);
}

TEST_F(CFileTest, WriteToAFileOpenForReadingThrows) {
    const std::string path = folder_.Create("a", "x");
    CFile file(path.c_str(), CFile::modeRead);
    EXPECT_EQ(FileFailure(CFileException::invalidFile, path.c_str()),
              ThrownBy([&] { WriteText(file, "y"); }));
}

TEST_F(CFileTest, ReadFromAFileOpenForWritingThrows) {
    const std::string path = folder_.Create("a", "x");
    CFile file(path.c_str(), CFile::modeWrite);
    EXPECT_EQ(FileFailure(CFileException::invalidFile, path.c_str()),
              ThrownBy([&] { ReadText(file, 1); }));
}

TEST_F(CFileTest, OperationsOnAClosedFileThrow) {
    CFile file;
    const Thrown expected = FileFailure(CFileException::invalidFile);
    EXPECT_EQ(expected, ThrownBy([&] { ReadText(file, 1); }));
    EXPECT_EQ(expected, ThrownBy([&] { WriteText(file, "x"); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.SeekToBegin(); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.GetPosition(); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.GetLength(); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.SetLength(0); }));
}

TEST_F(CFileTest, SeeksFromEachOrigin) {
    CFile file(folder_.Create("a", "0123456789").c_str(), CFile::modeRead);
    EXPECT_EQ(4U, file.Seek(4, CFile::begin));
    EXPECT_EQ(6U, file.Seek(2, CFile::current));
    EXPECT_EQ("6", ReadText(file, 1));
    EXPECT_EQ(5U, file.Seek(-2, CFile::current));
    EXPECT_EQ(7U, file.Seek(-3, CFile::end));
    EXPECT_EQ("7", ReadText(file, 1));
    EXPECT_EQ(10U, file.SeekToEnd());
    file.SeekToBegin();
    EXPECT_EQ(0U, file.GetPosition());
}

TEST_F(CFileTest, SeekBeforeTheStartThrowsAndKeepsThePosition) {
    const std::string path = folder_.Create("a", "0123456789");
    CFile file(path.c_str(), CFile::modeRead);
    file.Seek(4, CFile::begin);
    const Thrown expected = FileFailure(CFileException::badSeek, path.c_str());
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(-1, CFile::begin); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(-5, CFile::current); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.Seek(-11, CFile::end); }));
    EXPECT_EQ(4U, file.GetPosition());
}

TEST_F(CFileTest, SeekPastTheLargestPositionThrows) {
    const std::string path = folder_.Create("a", "0123456789");
    CFile file(path.c_str(), CFile::modeRead);
    EXPECT_EQ(FileFailure(CFileException::badSeek, path.c_str()),
              ThrownBy([&] { file.Seek((std::numeric_limits<LONGLONG>::max)(), CFile::end); }));
}

TEST_F(CFileTest, SeekPastTheEndLengthensTheFileOnlyWhenWritten) {
    CFile file(folder_.Create("a", "ab").c_str(), CFile::modeReadWrite);
    EXPECT_EQ(5U, file.Seek(5, CFile::begin));
    EXPECT_EQ(2U, file.GetLength());
    WriteText(file, "x");
    EXPECT_EQ(6U, file.GetLength());
    EXPECT_EQ((std::string{'a', 'b', '\0', '\0', '\0', 'x'}), folder_.Content("a"));
}

TEST_F(CFileTest, PositionsBeyondFourGigabytesWork) {
    CFile file(folder_.PathOf("a").c_str(), CFile::modeCreate | CFile::modeReadWrite);
    const ULONGLONG far = 5ULL << 30;
    EXPECT_EQ(far, file.Seek(static_cast<LONGLONG>(far), CFile::begin));
    WriteText(file, "x");
    EXPECT_EQ(far + 1, file.GetLength());
    EXPECT_EQ(far + 1, file.GetPosition());
}

TEST_F(CFileTest, SetLengthCutsAndLengthens) {
    CFile file(folder_.Create("a", "0123456789").c_str(), CFile::modeReadWrite);
    file.SetLength(4);
    EXPECT_EQ("0123", folder_.Content("a"));
    EXPECT_EQ(4U, file.GetPosition());
    file.SetLength(6);
    EXPECT_EQ((std::string{'0', '1', '2', '3', '\0', '\0'}), folder_.Content("a"));
    EXPECT_EQ(6U, file.GetPosition());
}

TEST_F(CFileTest, PathIsFullNameIsLastComponentTitleHasNoExtension) {
    const std::string path = folder_.Create("mesh.old.doc", "x");
    CFile file(path.c_str(), CFile::modeRead);
    EXPECT_TRUE(file.GetFilePath() == path.c_str());
    EXPECT_TRUE(file.GetFileName() == "mesh.old.doc");
    EXPECT_TRUE(file.GetFileTitle() == "mesh.old");
}

TEST_F(CFileTest, RelativeNameGivesAFullPath) {
    const std::string path = folder_.Create("a", "x");
    const std::string relative =
        std::filesystem::relative(path, std::filesystem::current_path()).string();
    CFile file(relative.c_str(), CFile::modeRead);
    const std::filesystem::path fullPath = file.GetFilePath().GetString();
    EXPECT_TRUE(fullPath.is_absolute());
    EXPECT_TRUE(std::filesystem::equivalent(fullPath, path));
}

TEST_F(CFileTest, SetFilePathStoresTheTextOnly) {
    CFile file(folder_.Create("a", "content").c_str(), CFile::modeRead);
    file.SetFilePath("/other/place/b.doc");
    EXPECT_TRUE(file.GetFilePath() == "/other/place/b.doc");
    EXPECT_TRUE(file.GetFileName() == "b.doc");
    EXPECT_EQ("content", ReadText(file, 10));
}

TEST_F(CFileTest, CloseForgetsFileAndPath) {
    CFile file(folder_.Create("a", "x").c_str(), CFile::modeRead);
    file.Close();
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
    EXPECT_TRUE(file.GetFilePath().IsEmpty());
    EXPECT_TRUE(file.Open(folder_.PathOf("a").c_str(), CFile::modeRead));
}

TEST_F(CFileTest, AbortClosesAndMayBeRepeated) {
    CFile file;
    file.Abort();
    file.Open(folder_.Create("a", "x").c_str(), CFile::modeRead);
    file.Abort();
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
    EXPECT_TRUE(file.GetFilePath().IsEmpty());
    file.Abort();
}

TEST_F(CFileTest, FlushOfAClosedFileDoesNothing) {
    CFile file;
    file.Flush();
}

TEST_F(CFileTest, FlushKeepsThePositionAndTheContent) {
    CFile file(folder_.PathOf("a").c_str(), CFile::modeCreate | CFile::modeWrite);
    WriteText(file, "abc");
    file.Flush();
    WriteText(file, "def");
    EXPECT_EQ("abcdef", folder_.Content("a"));
}

TEST_F(CFileTest, OffersNoDirectBuffering) {
    CFile file;
    EXPECT_EQ(0U, file.GetBufferPtr(CFile::bufferCheck));
    EXPECT_EQ(0U, file.GetBufferPtr(CFile::bufferRead, 1));
}

TEST_F(CFileTest, DuplicateAndRangeLocksAreNotSupported) {
    CFile file;
    const Thrown expected = SimpleFailure("CNotSupportedException");
    EXPECT_EQ(expected, ThrownBy([&] { file.Duplicate(); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.LockRange(0, 1); }));
    EXPECT_EQ(expected, ThrownBy([&] { file.UnlockRange(0, 1); }));
}

TEST_F(CFileTest, RemoveDeletesAFile) {
    const std::string path = folder_.Create("a", "x");
    CFile::Remove(path.c_str());
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(CFileTest, RemoveThrowsForAMissingFileFolderOrAFolder) {
    const std::string missing = folder_.PathOf("a");
    EXPECT_EQ(FileFailure(CFileException::fileNotFound, missing.c_str()),
              ThrownBy([&] { CFile::Remove(missing.c_str()); }));
    const std::string noFolder = folder_.PathOf("none/a");
    EXPECT_EQ(FileFailure(CFileException::badPath, noFolder.c_str()),
              ThrownBy([&] { CFile::Remove(noFolder.c_str()); }));
    std::filesystem::create_directory(folder_.PathOf("sub"));
    const std::string sub = folder_.PathOf("sub");
    EXPECT_EQ(FileFailure(CFileException::accessDenied, sub.c_str()),
              ThrownBy([&] { CFile::Remove(sub.c_str()); }));
}

TEST_F(CFileTest, RenameMovesAFile) {
    const std::string oldPath = folder_.Create("a", "x");
    CFile::Rename(oldPath.c_str(), folder_.PathOf("b").c_str());
    EXPECT_FALSE(std::filesystem::exists(oldPath));
    EXPECT_EQ("x", folder_.Content("b"));
}

TEST_F(CFileTest, RenameReplacesNothing) {
    const std::string oldPath = folder_.Create("a", "new");
    const std::string newPath = folder_.Create("b", "old");
    EXPECT_EQ(FileFailure(CFileException::genericException, oldPath.c_str()),
              ThrownBy([&] { CFile::Rename(oldPath.c_str(), newPath.c_str()); }));
    EXPECT_EQ("new", folder_.Content("a"));
    EXPECT_EQ("old", folder_.Content("b"));
}

TEST_F(CFileTest, RenameNamesTheFileThatIsAtFault) {
    const std::string missing = folder_.PathOf("a");
    EXPECT_EQ(FileFailure(CFileException::fileNotFound, missing.c_str()),
              ThrownBy([&] { CFile::Rename(missing.c_str(), folder_.PathOf("b").c_str()); }));
    const std::string oldPath = folder_.Create("c", "x");
    const std::string newPath = folder_.PathOf("none/d");
    EXPECT_EQ(FileFailure(CFileException::badPath, newPath.c_str()),
              ThrownBy([&] { CFile::Rename(oldPath.c_str(), newPath.c_str()); }));
}

}  // namespace

// What a failing disk does to storing, loading and copying a document: each call of the file fails in
// turn, once or from then on, until the road passes. Whatever happens, memory comes back, the source
// is as it was, and the next attempt succeeds.

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "FaultDocument.h"
#include "support/Caught.h"
#include "support/FailingAllocation.h"

namespace {

using namespace Vr::test;

using Fails = MemoryFile::Fails;

// One kind of call and how it fails.
struct FileFault {
    const char* name;
    void (*arrange)(MemoryFile& file, std::size_t call);
    std::size_t (MemoryFile::*callsOf)() const;
    Caught expected;
};

template <int cause, Fails fails>
void Read(MemoryFile& file, std::size_t call) {
    file.FailRead(call, cause, fails);
}
template <int cause, Fails fails>
void Write(MemoryFile& file, std::size_t call) {
    file.FailWrite(call, cause, fails);
}
template <int cause, Fails fails>
void Seek(MemoryFile& file, std::size_t call) {
    file.FailSeek(call, cause, fails);
}

constexpr int kDiskFull = CFileException::diskFull;
constexpr int kHardIO = CFileException::hardIO;
constexpr int kBadSeek = CFileException::badSeek;

std::string NameOf(const ::testing::TestParamInfo<FileFault>& instance) {
    return instance.param.name;
}

void PrintTo(const FileFault& fault, std::ostream* stream) {
    *stream << fault.name;
}

// Runs `attempt(call)`, which answers whether the fault was met, until it is not; returns how often
// it was. What an attempt leaves in memory must be nothing.
template <class Attempt>
std::size_t FailEachCall(const Attempt& attempt) {
    std::size_t live = 0;
    for (std::size_t call = 1;; ++call) {
        const bool wasMet = attempt(call);
        // The first attempt leaves what the platform and the test framework keep.
        if (call > 1) {
            EXPECT_EQ(LiveAllocations(), live) << "call " << call;
        }
        live = LiveAllocations();
        if (!wasMet || ::testing::Test::HasFailure())
            return call - 1;
    }
}

class StoringFaults : public ::testing::TestWithParam<FileFault> {};

INSTANTIATE_TEST_SUITE_P(
    EachCall, StoringFaults,
    ::testing::Values(FileFault{"DiskFullOnce", Write<kDiskFull, Fails::kOnce>,
                                &MemoryFile::WriteCalls, FileException(kDiskFull)},
                      FileFault{"DiskFullFromThenOn", Write<kDiskFull, Fails::kFromThenOn>,
                                &MemoryFile::WriteCalls, FileException(kDiskFull)},
                      FileFault{"WriteErrorOnce", Write<kHardIO, Fails::kOnce>,
                                &MemoryFile::WriteCalls, FileException(kHardIO)},
                      FileFault{"WriteErrorFromThenOn", Write<kHardIO, Fails::kFromThenOn>,
                                &MemoryFile::WriteCalls, FileException(kHardIO)}),
    NameOf);

TEST_P(StoringFaults, ReachTheCallerAndTheNextAttemptSucceeds) {
    const FileFault& fault = GetParam();
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    const Bytes stored = good.Bytes();
    FailEachCall([&](std::size_t call) {
        MemoryFile file;
        fault.arrange(file, call);
        const Caught caught = CaughtFrom([&] { StoreInto(file, document); });
        const bool wasMet = (file.*fault.callsOf)() >= call;
        EXPECT_EQ(caught, wasMet ? fault.expected : Nothing()) << "call " << call;
        ExpectSameDocument(document, FaultDocument());
        MemoryFile again;
        StoreInto(again, document);
        EXPECT_EQ(again.Bytes(), stored);
        return wasMet;
    });
}

TEST(StoringFaults, TheRoadHasCallsToFail) {
    MemoryFile file;
    StoreInto(file, FaultDocument());
    EXPECT_GE(file.WriteCalls(), 8u);
    EXPECT_EQ(file.SeekCalls(), 0u) << "storing goes straight on";
    EXPECT_EQ(file.FlushCalls(), 0u) << "flushing the file itself is the host's step";
}

class LoadingFaults : public ::testing::TestWithParam<FileFault> {};

INSTANTIATE_TEST_SUITE_P(
    EachCall, LoadingFaults,
    ::testing::Values(FileFault{"ReadErrorOnce", Read<kHardIO, Fails::kOnce>,
                                &MemoryFile::ReadCalls, FileException(kHardIO)},
                      FileFault{"ReadErrorFromThenOn", Read<kHardIO, Fails::kFromThenOn>,
                                &MemoryFile::ReadCalls, FileException(kHardIO)},
                      FileFault{"SeekErrorOnce", Seek<kBadSeek, Fails::kOnce>,
                                &MemoryFile::SeekCalls, FileException(kBadSeek)},
                      FileFault{"SeekErrorFromThenOn", Seek<kBadSeek, Fails::kFromThenOn>,
                                &MemoryFile::SeekCalls, FileException(kBadSeek)}),
    NameOf);

TEST_P(LoadingFaults, ReachTheCallerAndTheNextAttemptSucceeds) {
    const FileFault& fault = GetParam();
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    const std::size_t failed = FailEachCall([&](std::size_t call) {
        // An object whose reading fails belongs to nobody: here to this.
        const CreatedMeshes created;
        MemoryFile file(good.Bytes());
        fault.arrange(file, call);
        std::vector<Mesh> loaded;
        const Caught caught = CaughtFrom([&] { loaded = LoadFrom(file, document.size()); });
        const bool wasMet = (file.*fault.callsOf)() >= call;
        EXPECT_EQ(caught, wasMet ? fault.expected : Nothing()) << "call " << call;
        EXPECT_EQ(loaded.empty(), wasMet);
        MemoryFile again(good.Bytes());
        ExpectSameDocument(LoadFrom(again, document.size()), document);
        return wasMet;
    });
    EXPECT_GE(failed, 1u);
}

class CopyingFaults : public ::testing::TestWithParam<FileFault> {};

INSTANTIATE_TEST_SUITE_P(
    EachCall, CopyingFaults,
    ::testing::Values(FileFault{"ReadErrorOnce", Read<kHardIO, Fails::kOnce>,
                                &MemoryFile::ReadCalls, FileException(kHardIO)},
                      FileFault{"ReadErrorFromThenOn", Read<kHardIO, Fails::kFromThenOn>,
                                &MemoryFile::ReadCalls, FileException(kHardIO)},
                      FileFault{"SeekErrorOnce", Seek<kBadSeek, Fails::kOnce>,
                                &MemoryFile::SeekCalls, FileException(kBadSeek)},
                      FileFault{"DiskFullOnce", Write<kDiskFull, Fails::kOnce>,
                                &MemoryFile::WriteCalls, FileException(kDiskFull)},
                      FileFault{"DiskFullFromThenOn", Write<kDiskFull, Fails::kFromThenOn>,
                                &MemoryFile::WriteCalls, FileException(kDiskFull)},
                      FileFault{"WriteErrorOnce", Write<kHardIO, Fails::kOnce>,
                                &MemoryFile::WriteCalls, FileException(kHardIO)},
                      FileFault{"WriteErrorFromThenOn", Write<kHardIO, Fails::kFromThenOn>,
                                &MemoryFile::WriteCalls, FileException(kHardIO)}),
    NameOf);

TEST_P(CopyingFaults, ReachTheCallerAndTheNextAttemptSucceeds) {
    const FileFault& fault = GetParam();
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    const std::size_t failed = FailEachCall([&](std::size_t call) {
        const CreatedMeshes created;
        MemoryFile source(good.Bytes());
        MemoryFile target;
        fault.arrange(source, call);
        fault.arrange(target, call);
        const Caught caught = CaughtFrom([&] { CopyObjects(source, target, document.size()); });
        const bool wasMet = (source.*fault.callsOf)() >= call || (target.*fault.callsOf)() >= call;
        EXPECT_EQ(caught, wasMet ? fault.expected : Nothing()) << "call " << call;
        EXPECT_EQ(source.Bytes(), good.Bytes());
        MemoryFile again(good.Bytes());
        MemoryFile copy;
        CopyObjects(again, copy, document.size());
        EXPECT_EQ(copy.Bytes(), good.Bytes());
        return wasMet;
    });
    EXPECT_GE(failed, 1u);
}

// A read that gives less than it was asked for is no fault as long as it gives a whole value: openNURBS's
// values, of which a UV is the longest here, take what one read of the file gives.
TEST(LoadingFaults, ReadsThatComeShortAreCompleted) {
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    for (const UINT largestRead : {16u, 20u, 100u}) {
        SCOPED_TRACE(largestRead);
        MemoryFile file(good.Bytes());
        file.LimitReads(largestRead);
        ExpectSameDocument(LoadFrom(file, document.size()), document);
    }
}

// A read that gives nothing is the end of the file, by the contract of `CFile::Read`.
TEST(LoadingFaults, AFileThatEndsEarlyAnywhereIsNoticed) {
    const std::vector<Mesh> document = FaultDocument();
    MemoryFile good;
    StoreInto(good, document);
    for (std::size_t size = 0; size < good.Bytes().size(); ++size) {
        SCOPED_TRACE(size);
        const CreatedMeshes created;
        MemoryFile file(
            Bytes(good.Bytes().begin(), good.Bytes().begin() + static_cast<long>(size)));
        std::vector<Mesh> loaded;
        const Caught caught = CaughtFrom([&] { loaded = LoadFrom(file, document.size()); });
        ASSERT_EQ(caught.kind, "CArchiveException");
        ASSERT_TRUE(loaded.empty());
    }
}

}  // namespace

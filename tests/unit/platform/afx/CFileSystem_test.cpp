// What a file does when the system is in trouble: signals, full disks, too many files, lost
// descriptors. POSIX only, as each case is brought about with system calls.
#if !defined(_WIN32)

#include <afx.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "ExceptionMatchers.h"
#include "TemporaryFolder.h"

namespace {

HANDLE HandleOf(int descriptor) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(descriptor));
}

int DescriptorOf(const CFile& file) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(file.m_hFile));
}

class Pipe {
public:
    Pipe() { EXPECT_EQ(0, pipe(ends_)); }
    ~Pipe() {
        close(ends_[0]);
        close(ends_[1]);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    int ReadEnd() const { return ends_[0]; }
    int WriteEnd() const { return ends_[1]; }

private:
    int ends_[2] = {-1, -1};
};

std::atomic<int> signalsHandled{0};

// Signals the calling thread from another one, with a handler that makes system calls return early,
// until the object goes.
class Interruptions {
public:
    Interruptions() : target_(pthread_self()) {
        signalsHandled = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) { ++signalsHandled; };
        sigaction(SIGUSR1, &action, &previous_);
        thread_ = std::thread([this] {
            while (!isOver_) {
                pthread_kill(target_, SIGUSR1);
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        });
    }
    ~Interruptions() {
        isOver_ = true;
        thread_.join();
        sigaction(SIGUSR1, &previous_, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

private:
    pthread_t target_;
    struct sigaction previous_ = {};
    std::atomic<bool> isOver_{false};
    std::thread thread_;
};

TEST(CFileSystem, InterruptedReadIsTakenUpAgain) {
    const Pipe pipe;
    CFile file(HandleOf(pipe.ReadEnd()));
    std::string received(6, '\0');
    std::thread writer([&] {
        for (const char* const part : {"abc", "def"}) {
            while (signalsHandled < 3) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            signalsHandled = 0;
            EXPECT_EQ(3, write(pipe.WriteEnd(), part, 3));
        }
    });
    UINT count = 0;
    {
        const Interruptions interruptions;
        count = file.Read(received.data(), 6);
    }
    writer.join();
    EXPECT_EQ(6U, count);
    EXPECT_EQ("abcdef", received);
}

TEST(CFileSystem, InterruptedAndPartialWritesAreCompleted) {
    const Pipe pipe;
    CFile file(HandleOf(pipe.WriteEnd()));
    // Far more than a pipe holds, so the writer waits and is interrupted in the middle.
    const std::vector<char> sent(1 << 20, 'x');
    std::size_t received = 0;
    std::thread reader([&] {
        while (signalsHandled < 3) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        std::vector<char> part(1 << 16);
        while (received < sent.size()) {
            const auto got = read(pipe.ReadEnd(), part.data(), part.size());
            ASSERT_GT(got, 0);
            received += static_cast<std::size_t>(got);
        }
    });
    {
        const Interruptions interruptions;
        file.Write(sent.data(), static_cast<UINT>(sent.size()));
    }
    reader.join();
    EXPECT_EQ(sent.size(), received);
}

TEST(CFileSystem, FullDiskThrowsDiskFull) {
    CFile file("/dev/full", CFile::modeWrite);
    EXPECT_EQ(FileFailure(CFileException::diskFull, "/dev/full"),
              ThrownBy([&] { file.Write("x", 1); }));
}

TEST(CFileSystem, FileThatReachesItsLimitThrowsDiskFull) {
    const TemporaryFolder folder;
    const std::string path = folder.PathOf("a");
    CFile file(path.c_str(), CFile::modeCreate | CFile::modeWrite);
    struct rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    struct rlimit low = before;
    low.rlim_cur = 10;
    const auto previousHandler = signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &low);
    // The system takes ten bytes of the sixteen and refuses the rest.
    const Thrown thrown = ThrownBy([&] { file.Write("0123456789abcdef", 16); });
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, previousHandler);
    EXPECT_EQ(FileFailure(CFileException::diskFull, path.c_str()), thrown);
    EXPECT_EQ("0123456789", folder.Content("a"));
}

TEST(CFileSystem, TooManyOpenFilesAreReported) {
    // The sanitizer opens descriptors of its own when it first looks at an object of a type, so each
    // step is taken once before they run out.
    CFile file;
    {
        CFileException unused;
        ASSERT_FALSE(file.Open("/no such file", CFile::modeRead, &unused));
    }
    struct rlimit before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    const int lowestFree = dup(0);
    close(lowestFree);
    struct rlimit low = before;
    low.rlim_cur = static_cast<rlim_t>(lowestFree);
    setrlimit(RLIMIT_NOFILE, &low);
    CFileException reason;
    const BOOL isOpen = file.Open("/dev/null", CFile::modeRead, &reason);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_FALSE(isOpen);
    EXPECT_EQ(CFileException::tooManyOpenFiles, reason.m_cause);
}

TEST(CFileSystem, RunningProgramIsInUse) {
    CFile file;
    CFileException reason;
    EXPECT_FALSE(file.Open("/proc/self/exe", CFile::modeWrite, &reason));
    EXPECT_EQ(CFileException::sharingViolation, reason.m_cause);
}

TEST(CFileSystem, FailingCloseThrowsAndTheFileIsClosed) {
    const TemporaryFolder folder;
    const std::string path = folder.Create("a", "x");
    CFile file(path.c_str(), CFile::modeRead);
    close(DescriptorOf(file));
    EXPECT_EQ(FileFailure(CFileException::invalidFile, path.c_str()),
              ThrownBy([&] { file.Close(); }));
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
    EXPECT_TRUE(file.GetFilePath().IsEmpty());
}

TEST(CFileSystem, AbortAndDestructorIgnoreAFailingClose) {
    const TemporaryFolder folder;
    const std::string path = folder.Create("a", "x");
    CFile aborted(path.c_str(), CFile::modeRead);
    close(DescriptorOf(aborted));
    aborted.Abort();
    EXPECT_EQ(CFile::hFileNull, aborted.m_hFile);

    CFile destroyed(path.c_str(), CFile::modeRead);
    close(DescriptorOf(destroyed));
}

TEST(CFileSystem, FailingFlushThrows) {
    const TemporaryFolder folder;
    const std::string path = folder.Create("a", "x");
    CFile file(path.c_str(), CFile::modeRead);
    close(DescriptorOf(file));
    EXPECT_EQ(FileFailure(CFileException::invalidFile, path.c_str()),
              ThrownBy([&] { file.Flush(); }));
    file.Abort();
}

TEST(CFileSystem, FlushOfWhatHasNoDiskSucceeds) {
    const Pipe pipe;
    CFile file(HandleOf(pipe.WriteEnd()));
    file.Flush();
}

TEST(CFileSystem, DestructorClosesWhatItOpenedAndNothingElse) {
    const TemporaryFolder folder;
    const std::string path = folder.Create("a", "x");
    int opened = -1;
    {
        const CFile file(path.c_str(), CFile::modeRead);
        opened = DescriptorOf(file);
        EXPECT_NE(-1, fcntl(opened, F_GETFD));
    }
    EXPECT_EQ(-1, fcntl(opened, F_GETFD));

    const int lent = open(path.c_str(), O_RDONLY);
    {
        CFile file(HandleOf(lent));
        char byte = 0;
        EXPECT_EQ(1U, file.Read(&byte, 1));
        EXPECT_EQ('x', byte);
        EXPECT_TRUE(file.GetFilePath().IsEmpty());
    }
    EXPECT_NE(-1, fcntl(lent, F_GETFD));
    CFile(HandleOf(lent)).Close();
    EXPECT_EQ(-1, fcntl(lent, F_GETFD));
}

TEST(CFileSystem, OpeningAnotherFileClosesTheFirst) {
    const TemporaryFolder folder;
    CFile file(folder.Create("a", "x").c_str(), CFile::modeRead);
    const int first = DescriptorOf(file);
    // A failing open cannot take the number of the descriptor it closes.
    EXPECT_FALSE(file.Open(folder.PathOf("missing").c_str(), CFile::modeRead));
    EXPECT_EQ(-1, fcntl(first, F_GETFD));
    EXPECT_EQ(CFile::hFileNull, file.m_hFile);
}

TEST(CFileSystem, NoInheritClosesTheFileInOtherPrograms) {
    const TemporaryFolder folder;
    const std::string path = folder.Create("a", "x");
    const CFile kept(path.c_str(), CFile::modeRead);
    EXPECT_EQ(0, fcntl(DescriptorOf(kept), F_GETFD) & FD_CLOEXEC);
    const CFile closed(path.c_str(), CFile::modeRead | CFile::modeNoInherit);
    EXPECT_EQ(FD_CLOEXEC, fcntl(DescriptorOf(closed), F_GETFD) & FD_CLOEXEC);
}

// The system counts the calls of this process; -1 where it does not say.
long CountedCalls(const char* counter) {
    std::ifstream stream("/proc/self/io");
    std::string name;
    long value = 0;
    while (stream >> name >> value) {
        if (name == counter) {
            return value;
        }
    }
    return -1;
}

TEST(CFileSystem, EachReadAndWriteIsOneSystemCall) {
    if (CountedCalls("syscw:") < 0) {
        GTEST_SKIP() << "the system does not count calls";
    }
    const TemporaryFolder folder;
    std::vector<char> block(8 << 20, 'x');
    const auto size = static_cast<UINT>(block.size());
    CFile file(folder.PathOf("a").c_str(), CFile::modeCreate | CFile::modeReadWrite);

    const long writesBefore = CountedCalls("syscw:");
    file.Write(block.data(), size);
    EXPECT_EQ(1, CountedCalls("syscw:") - writesBefore);

    file.SeekToBegin();
    // Reading the counters takes calls, too: as many between two readings with nothing between
    // them.
    const long first = CountedCalls("syscr:");
    const long callsOfCounting = CountedCalls("syscr:") - first;
    const long readsBefore = CountedCalls("syscr:");
    EXPECT_EQ(size, file.Read(block.data(), size));
    EXPECT_EQ(1, CountedCalls("syscr:") - readsBefore - callsOfCounting);
}

}  // namespace

#endif

// Both outputs are read as they come, so that a child with much to say is not held up by a full pipe.

#include "host/HostProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <iterator>

namespace Vr::test {

namespace {

constexpr int kSignalOffset = 1000;
constexpr unsigned int kLongestRunSeconds = 300;

struct Pipe {
    int reading = -1;
    int writing = -1;
    Pipe() {
        int ends[2] = {-1, -1};
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        reading = ends[0];
        writing = ends[1];
    }
};

[[noreturn]] void Execute(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    static char program[] = "veridane-host";
    pointers.push_back(program);
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    execv(VERIDANE_HOST_PATH, pointers.data());
    _exit(127);
}

// Appends what there is and returns whether more may come.
bool ReadSome(int descriptor, std::string& text) {
    char piece[4096];
    const ssize_t received = read(descriptor, piece, sizeof(piece));
    if (received > 0)
        text.append(piece, static_cast<size_t>(received));
    return received > 0;
}

void ReadBoth(int out, int err, HostResult& result) {
    pollfd sources[2] = {{out, POLLIN, 0}, {err, POLLIN, 0}};
    std::string* const texts[2] = {&result.out, &result.err};
    while (sources[0].fd >= 0 || sources[1].fd >= 0) {
        poll(sources, 2, -1);
        for (size_t source = 0; source < 2; ++source)
            if (sources[source].fd >= 0 && sources[source].revents != 0 &&
                !ReadSome(sources[source].fd, *texts[source]))
                sources[source].fd = -1;
    }
}

}  // namespace

HostProcess::HostProcess(const std::vector<std::string>& arguments, const ChildSetUp& setUp) {
    const Pipe out;
    const Pipe err;
    child_ = fork();
    if (child_ == 0) {
        dup2(out.writing, STDOUT_FILENO);
        dup2(err.writing, STDERR_FILENO);
        alarm(kLongestRunSeconds);  // survives the execution
        if (setUp)
            setUp();
        Execute(arguments);
    }
    close(out.writing);
    close(err.writing);
    out_ = out.reading;
    err_ = err.reading;
}

HostProcess::~HostProcess() {
    if (child_ > 0) {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }
    close(out_);
    close(err_);
}

HostResult HostProcess::Wait() {
    HostResult result = {};
    ReadBoth(out_, err_, result);
    int status = 0;
    rusage usage = {};
    EXPECT_EQ(wait4(child_, &status, 0, &usage), child_);
    child_ = -1;
    result.peakMemoryBytes = static_cast<size_t>(usage.ru_maxrss) << 10;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalOffset + WTERMSIG(status);
    return result;
}

HostResult RunHost(const std::vector<std::string>& arguments, const ChildSetUp& setUp) {
    return HostProcess(arguments, setUp).Wait();
}

ChildSetUp WithFileSizeLimit(size_t bytes) {
    return [bytes] {
        const rlimit limit = {bytes, bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
}

ChildSetUp WithFailingCall(long call, int error) {
    return [call, error] {
        const auto number = static_cast<__u32>(call);
        const auto failure = SECCOMP_RET_ERRNO | static_cast<__u32>(error);
        sock_filter steps[] = {
            BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, failure),
            BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        };
        const sock_fprog filter = {std::size(steps), steps};
        if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
            prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) != 0)
            _exit(126);
    };
}

void ObeyPermissions() {
    // Out of the bounding set, the superuser does not get them back by executing.
    prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
}

void PrintToFullDevice() {
    dup2(open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
}

}  // namespace Vr::test

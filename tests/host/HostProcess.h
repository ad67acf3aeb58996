/// Runs veridane-host and listens to it.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace Vr::test {

/// How a run ended: the exit status, or 1000 and the number of the signal that ended it.
struct HostResult {
    int status;
    std::string out;
    std::string err;
    size_t peakMemoryBytes;
};

/// Runs in the child between fork and exec, to put it into a tight spot.
using ChildSetUp = std::function<void()>;

/// A run that can be watched and sent signals.
class HostProcess {
public:
    explicit HostProcess(const std::vector<std::string>& arguments, const ChildSetUp& setUp = {});
    ~HostProcess();
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;

    pid_t Id() const { return child_; }
    /// Collects both outputs until they are closed, then the exit status.
    HostResult Wait();

private:
    pid_t child_ = -1;
    int out_ = -1;
    int err_ = -1;
};

/// Runs to the end.
HostResult RunHost(const std::vector<std::string>& arguments, const ChildSetUp& setUp = {});

/// @name Tight spots
/// @{
/// Files end at this many bytes, as on a full disk.
ChildSetUp WithFileSizeLimit(size_t bytes);
/// The kernel answers a system call with an error. Several of these may be put on a child.
ChildSetUp WithFailingCall(long call, int error);
/// The permissions of files and folders count even for the superuser.
void ObeyPermissions();
/// The standard output goes to a device that is always full.
void PrintToFullDevice();
/// @}

}  // namespace Vr::test

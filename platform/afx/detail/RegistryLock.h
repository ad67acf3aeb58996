/// The lock of the class registry.
#pragma once

#include <mutex>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace afx::detail {

#if defined(_WIN32)

/// The system's own lock: the MinGW runtime with Windows threads has no std::mutex.
class RegistryLock {
public:
    void lock() { AcquireSRWLockExclusive(&lock_); }
    void unlock() { ReleaseSRWLockExclusive(&lock_); }

private:
    SRWLOCK lock_ = SRWLOCK_INIT;
};

#else

using RegistryLock = std::mutex;

#endif

}  // namespace afx::detail

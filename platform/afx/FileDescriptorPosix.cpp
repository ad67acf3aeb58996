// System calls as they are; only the ones a signal can interrupt are repeated.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "AfxFile.h"
#include "detail/FileDescriptor.h"

static_assert(sizeof(off_t) == 8, "files are larger than 2 GiB");

namespace afx::detail {

namespace {

// Linux transfers no more than this in one call; other systems refuse more than INT_MAX.
constexpr std::size_t kLargestTransfer = 0x7FFFF000;

template <class Call>
auto Restarted(Call call) -> decltype(call()) {
    decltype(call()) result;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
}

int SystemFlags(UINT openFlags) {
    int flags = O_RDONLY;
    if ((openFlags & CFile::modeReadWrite) != 0) {
        flags = O_RDWR;
    } else if ((openFlags & CFile::modeWrite) != 0) {
        flags = O_WRONLY;
    }
    if ((openFlags & CFile::modeCreate) != 0) {
        flags |= O_CREAT;
        if ((openFlags & CFile::modeNoTruncate) == 0) {
            flags |= O_TRUNC;
        }
    }
    if ((openFlags & CFile::modeNoInherit) != 0) {
        flags |= O_CLOEXEC;
    }
    return flags;
}

}  // namespace

int OpenDescriptor(LPCTSTR fileName, UINT openFlags) {
    const int descriptor = Restarted([&] { return open(fileName, SystemFlags(openFlags), 0666); });
    struct stat status;
    // A folder opens for reading like a file; its first read would be the one to fail.
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(descriptor);
        errno = EISDIR;
        return -1;
    }
    return descriptor;
}

std::ptrdiff_t ReadOnce(int descriptor, void* buffer, std::size_t count) {
    return Restarted([&] { return read(descriptor, buffer, (std::min)(count, kLargestTransfer)); });
}

std::ptrdiff_t WriteOnce(int descriptor, const void* buffer, std::size_t count) {
    return Restarted(
        [&] { return write(descriptor, buffer, (std::min)(count, kLargestTransfer)); });
}

LONGLONG SeekDescriptor(int descriptor, LONGLONG offset, UINT from) {
    static_assert(SEEK_SET == CFile::begin && SEEK_CUR == CFile::current && SEEK_END == CFile::end,
                  "the origins have the same numbers");
    return lseek(descriptor, offset, static_cast<int>(from));
}

LONGLONG LengthOfDescriptor(int descriptor) {
    struct stat status;
    return fstat(descriptor, &status) == 0 ? status.st_size : -1;
}

bool SetLengthOfDescriptor(int descriptor, ULONGLONG newLength) {
    return Restarted([&] { return ftruncate(descriptor, static_cast<off_t>(newLength)); }) == 0;
}

bool SyncDescriptor(int descriptor) {
    return Restarted([&] { return fsync(descriptor); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool CloseDescriptor(int descriptor) {
    // An interrupted close has closed: a second one could hit a file that was opened meanwhile.
    return close(descriptor) == 0 || errno == EINTR;
}

bool RemoveFile(LPCTSTR fileName) {
    return unlink(fileName) == 0;
}

bool RenameFile(LPCTSTR oldName, LPCTSTR newName) {
    // The system's own call would replace the other file.
    struct stat status;
    if (lstat(newName, &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(oldName, newName) == 0;
}

}  // namespace afx::detail

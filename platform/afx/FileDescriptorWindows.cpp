// The C runtime's descriptors in binary mode.
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "AfxFile.h"
#include "detail/FileDescriptor.h"

namespace afx::detail {

namespace {

constexpr std::size_t kLargestTransfer = 0x7FFFF000;

int SystemFlags(UINT openFlags) {
    int flags = _O_BINARY | _O_RDONLY;
    if ((openFlags & CFile::modeReadWrite) != 0) {
        flags = _O_BINARY | _O_RDWR;
    } else if ((openFlags & CFile::modeWrite) != 0) {
        flags = _O_BINARY | _O_WRONLY;
    }
    if ((openFlags & CFile::modeCreate) != 0) {
        flags |= _O_CREAT;
        if ((openFlags & CFile::modeNoTruncate) == 0) {
            flags |= _O_TRUNC;
        }
    }
    if ((openFlags & CFile::modeNoInherit) != 0) {
        flags |= _O_NOINHERIT;
    }
    return flags;
}

int ShareFlags(UINT openFlags) {
    switch (openFlags & 0x0070) {
        case CFile::shareDenyNone:
            return _SH_DENYNO;
        case CFile::shareDenyRead:
            return _SH_DENYRD;
        case CFile::shareDenyWrite:
            return _SH_DENYWR;
        default:
            return _SH_DENYRW;
    }
}

}  // namespace

int OpenDescriptor(LPCTSTR fileName, UINT openFlags) {
    int descriptor = -1;
#if defined(UNICODE)
    const auto open = _wsopen_s;
#else
    const auto open = _sopen_s;
#endif
    const auto result = open(&descriptor, fileName, SystemFlags(openFlags), ShareFlags(openFlags),
                             _S_IREAD | _S_IWRITE);
    if (result != 0) {
        errno = result;
    }
    return descriptor;
}

std::ptrdiff_t ReadOnce(int descriptor, void* buffer, std::size_t count) {
    return _read(descriptor, buffer, static_cast<unsigned>((std::min)(count, kLargestTransfer)));
}

std::ptrdiff_t WriteOnce(int descriptor, const void* buffer, std::size_t count) {
    return _write(descriptor, buffer, static_cast<unsigned>((std::min)(count, kLargestTransfer)));
}

LONGLONG SeekDescriptor(int descriptor, LONGLONG offset, UINT from) {
    return _lseeki64(descriptor, offset, static_cast<int>(from));
}

LONGLONG LengthOfDescriptor(int descriptor) {
    return _filelengthi64(descriptor);
}

bool SetLengthOfDescriptor(int descriptor, ULONGLONG newLength) {
    const auto result = _chsize_s(descriptor, static_cast<LONGLONG>(newLength));
    if (result != 0) {
        errno = result;
    }
    return result == 0;
}

bool SyncDescriptor(int descriptor) {
    return _commit(descriptor) == 0;
}

bool CloseDescriptor(int descriptor) {
    return _close(descriptor) == 0;
}

bool RemoveFile(LPCTSTR fileName) {
    return _tremove(fileName) == 0;
}

bool RenameFile(LPCTSTR oldName, LPCTSTR newName) {
    return _trename(oldName, newName) == 0;
}

}  // namespace afx::detail

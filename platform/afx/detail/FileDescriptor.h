/// The operating system's files, by descriptor. One implementation per system.
///
/// Each function leaves the reason of a failure in `errno`. Calls that a signal interrupted are
/// taken up again.
#pragma once

#include <cstddef>

#include "AfxTypes.h"

namespace afx::detail {

/// Opens a file with the flags of `CFile::OpenFlags`; refuses a folder with EISDIR.
///
/// - Result: the descriptor, -1 on failure.
int OpenDescriptor(LPCTSTR fileName, UINT openFlags);

/// Reads or writes what the system takes in one call.
///
/// - Result: the bytes transferred, -1 on failure.
std::ptrdiff_t ReadOnce(int descriptor, void* buffer, std::size_t count);
std::ptrdiff_t WriteOnce(int descriptor, const void* buffer, std::size_t count);

/// Moves the position; `from` is 0, 1 or 2 for the start, the position or the end.
///
/// - Result: the new position, -1 on failure.
LONGLONG SeekDescriptor(int descriptor, LONGLONG offset, UINT from);

/// Returns the length of the file, -1 on failure.
LONGLONG LengthOfDescriptor(int descriptor);

/// @name Operations that only succeed or fail
/// @{
bool SetLengthOfDescriptor(int descriptor, ULONGLONG newLength);
/// Waits until the file is on the disk. Succeeds for what has no disk behind it.
bool SyncDescriptor(int descriptor);
/// Closes the descriptor, on failure too.
bool CloseDescriptor(int descriptor);
bool RemoveFile(LPCTSTR fileName);
/// Renames a file; fails with EEXIST when the new name is taken.
bool RenameFile(LPCTSTR oldName, LPCTSTR newName);
/// @}

}  // namespace afx::detail

/// `CFile`, an unbuffered file of the operating system, and `CMemFile`, a file in memory.
#pragma once

#include <cstddef>

#include "AfxExceptions.h"
#include "AfxExport.h"
#include "AfxObject.h"
#include "AfxString.h"
#include "AfxTypes.h"

/// A binary file without a buffer of its own: each `Read` and `Write` goes to the operating system
/// in one piece where the system takes it, and an interrupted call is taken up again.
///
/// All operations but `Open` and `Abort` throw a `CFileException*` when they fail, with the file's
/// path and the system's error number.
class VERIDANE_AFX CFile : public CObject {
    DECLARE_DYNAMIC(CFile)

    /// How to open. `modeCreate` creates or empties, `modeCreate | modeNoTruncate` creates or opens
    /// as it is, neither wants an existing file. The share flags have no effect outside Windows,
    /// where an open file never keeps others out; the type flags have none anywhere.
    enum OpenFlags : UINT {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000
    };
    enum SeekPosition : UINT { begin = 0, current = 1, end = 2 };
    enum BufferCommand : UINT { bufferRead, bufferWrite, bufferCommit, bufferCheck };
    enum BufferFlags : UINT { bufferDirect = 1 };

    /// The value of `m_hFile` while no file is open.
    static AFX_DATA const HANDLE hFileNull;

    CFile();
    /// Works on a file that is open already and leaves closing it to its owner. Outside Windows the
    /// handle is the file descriptor's number.
    explicit CFile(HANDLE file);
    /// Opens the file.
    ///
    /// - Throws: CFileException when it cannot be opened; CInvalidArgException for a null name.
    CFile(LPCTSTR fileName, UINT openFlags);
    /// Closes a file that this object opened. An error is lost; call `Close()` to hear of it.
    ~CFile() override;

    /// Opens a file at position 0. A file that is open is closed first, as by `Abort`.
    ///
    /// - Result: FALSE when it cannot be opened, with the reason in `*error` where given; on
    /// success
    ///   `*error` stays as it was. Never throws. A missing file is fileNotFound, a missing folder
    ///   on the way to it badPath; a folder itself is refused with accessDenied.
    virtual BOOL Open(LPCTSTR fileName, UINT openFlags, CFileException* error = nullptr);

    /// Reads up to `count` bytes at the position.
    ///
    /// - Result: the bytes read, fewer than `count` only at the end of the file, 0 at or past it.
    virtual UINT Read(void* buffer, UINT count);

    /// Writes `count` bytes at the position, all of them or an exception.
    ///
    /// - Throws: CFileException diskFull when the system takes less; some of the bytes may then be
    /// in
    ///   the file.
    virtual void Write(const void* buffer, UINT count);

    /// Moves the position and returns the new one.
    ///
    /// A position past the end is allowed; the file grows when something is written there.
    ///
    /// - Throws: CFileException badSeek for a place before the start; the position stays.
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    void SeekToBegin() { Seek(0, begin); }
    /// Moves to the end and returns the length.
    ULONGLONG SeekToEnd() { return Seek(0, end); }

    virtual ULONGLONG GetPosition() const;
    virtual ULONGLONG GetLength() const;
    /// Cuts or lengthens the file, with zeros, and moves the position to its new end.
    virtual void SetLength(ULONGLONG newLength);

    /// Returns when everything written has reached the disk. Nothing happens while no file is open
    /// or when the file is of a kind that has no disk behind it.
    virtual void Flush();

    /// Closes the file and forgets its path.
    ///
    /// - Throws: CFileException when the system reports an error; the file is closed all the same.
    virtual void Close();

    /// Closes the file, if one is open, and ignores errors.
    virtual void Abort();

    /// @name The file's name
    /// The path is absolute after `Open`. `SetFilePath` only stores its text.
    /// @{
    virtual CString GetFilePath() const;
    /// Returns the last component of the path.
    virtual CString GetFileName() const;
    /// Returns the last component of the path without its extension.
    virtual CString GetFileTitle() const;
    virtual void SetFilePath(LPCTSTR newPath);
    /// @}

    /// Offers the file's own memory to an archive. A file of this layer never does.
    ///
    /// - Result: 0, no direct buffering, for every command.
    virtual UINT GetBufferPtr(UINT command, UINT count = 0, void** start = nullptr,
                              void** max = nullptr);

    /// @name Not offered by the layer
    /// - Throws: CNotSupportedException.
    /// @{
    virtual CFile* Duplicate() const;
    virtual void LockRange(ULONGLONG position, ULONGLONG count);
    virtual void UnlockRange(ULONGLONG position, ULONGLONG count);
    /// @}

    /// Deletes a file.
    static void PASCAL Remove(LPCTSTR fileName);
    /// Gives a file another name or place.
    ///
    /// - Throws: CFileException, also when a file of the new name exists: nothing is replaced. Outside
    ///   Windows looking and renaming are two steps.
    static void PASCAL Rename(LPCTSTR oldName, LPCTSTR newName);

    /// The open file or `hFileNull`.
    HANDLE m_hFile;

protected:
    /// Whether the destructor closes the file.
    BOOL m_bCloseOnDelete;
    CString m_strFileName;

private:
    [[noreturn]] void ThrowLastError() const;
};

/// A file in memory.
///
/// Grows in whole multiples of its growth step, by a share of its size each time, so that writing n
/// bytes in small pieces costs time linear in n. The length is what was written, not what is
/// allocated. `Open` is never needed.
///
/// - Deliberate: `GetBufferPtr` offers no direct buffering, so an archive has a buffer of its own
/// and
///   archive and direct writes may take turns.
class VERIDANE_AFX CMemFile : public CFile {
    DECLARE_DYNAMIC(CMemFile)

    /// An empty file that grows.
    explicit CMemFile(UINT growBytes = 1024);
    /// A file over the caller's block, as `Attach` makes it.
    CMemFile(BYTE* block, UINT size, UINT growBytes = 0);
    /// Frees the memory this object allocated; an attached block stays with its owner.
    ~CMemFile() override;

    /// Takes the caller's block as the file.
    ///
    /// - Shape: with a growth step of 0 the block is the file and its length is fixed at `size`.
    /// With
    ///   a step the file is empty, the block's content is ignored, and it will be reallocated: it
    ///   must come from `malloc`, and the caller gets it back with `Detach`.
    void Attach(BYTE* block, UINT size, UINT growBytes = 0);

    /// Hands the block to the caller, to be freed with `free`, and closes the file.
    BYTE* Detach();

    UINT Read(void* buffer, UINT count) override;
    /// - Throws: CMemoryException when the block is fixed and too small or memory is short; nothing
    /// has
    ///   been written then.
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    ULONGLONG GetPosition() const override;
    ULONGLONG GetLength() const override;
    /// Cuts or lengthens the file, with zeros. A position past the new end moves there.
    ///
    /// - Throws: CMemoryException as `Write`.
    void SetLength(ULONGLONG newLength) override;
    void Flush() override;
    /// Frees the memory this object allocated. Afterwards the file is empty and cannot grow.
    void Close() override;
    void Abort() override;

private:
    void EnsureCapacity(std::size_t neededBytes);
    void FillGap(std::size_t from, std::size_t to);
    void Release();

    UINT growBytes_;
    std::size_t position_ = 0;
    std::size_t capacity_ = 0;
    std::size_t length_ = 0;
    BYTE* block_ = nullptr;
    bool ownsBlock_ = true;
};

// A file is a descriptor in `m_hFile`, and every operation is the system call of that name.
#include <cerrno>
#include <cstdint>
#include <exception>
#include <filesystem>

#include "AfxFile.h"
#include "detail/FileDescriptor.h"

IMPLEMENT_DYNAMIC(CFile, CObject)

using namespace afx::detail;

namespace {

HANDLE ToHandle(int descriptor) {
    return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(descriptor));
}

int ToDescriptor(HANDLE file) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(file));
}

CString ToText(const std::filesystem::path& path) {
    return CString(path.string<TCHAR>().c_str());
}

CString FullPathOf(LPCTSTR fileName) {
    std::error_code error;
    const auto fullPath = std::filesystem::absolute(fileName, error);
    return error ? CString(fileName) : ToText(fullPath);
}

bool IsFolderMissing(LPCTSTR fileName) {
    std::error_code error;
    const auto folder = std::filesystem::path(fileName).parent_path();
    return !folder.empty() && !std::filesystem::is_directory(folder, error);
}

// The system says "no such file" of a missing folder on the way too.
int CauseOf(int errorNumber, LPCTSTR fileName) {
    return errorNumber == ENOENT && IsFolderMissing(fileName)
               ? CFileException::badPath
               : CFileException::ErrnoToException(errorNumber);
}

void ReportFailure(CFileException* report, int cause, int errorNumber, LPCTSTR fileName) {
    if (report != nullptr) {
        report->m_cause = cause;
        report->m_lOsError = errorNumber;
        report->m_strFileName = fileName;
    }
}

}  // namespace

const HANDLE CFile::hFileNull = ToHandle(-1);

CFile::CFile() : m_hFile(hFileNull), m_bCloseOnDelete(FALSE) {}

CFile::CFile(HANDLE file) : m_hFile(file), m_bCloseOnDelete(FALSE) {}

CFile::CFile(LPCTSTR fileName, UINT openFlags) : CFile() {
    if (fileName == nullptr) {
        AfxThrowInvalidArgException();
    }
    CFileException failure;
    if (!CFile::Open(fileName, openFlags, &failure)) {
        AfxThrowFileException(failure.m_cause, failure.m_lOsError, failure.m_strFileName);
    }
}

CFile::~CFile() {
    if (m_bCloseOnDelete) {
        CFile::Abort();
    }
}

BOOL CFile::Open(LPCTSTR fileName, UINT openFlags, CFileException* error) try {
    CFile::Abort();
    if (fileName == nullptr) {
        ReportFailure(error, CFileException::badPath, EINVAL, nullptr);
        return FALSE;
    }
    // Before the file is opened, so that nothing can fail afterwards.
    CString fullPath = FullPathOf(fileName);
    const int descriptor = OpenDescriptor(fileName, openFlags);
    if (descriptor < 0) {
        const int errorNumber = errno;
        ReportFailure(error, CauseOf(errorNumber, fileName), errorNumber, fileName);
        return FALSE;
    }
    m_hFile = ToHandle(descriptor);
    m_bCloseOnDelete = TRUE;
    m_strFileName = std::move(fullPath);
    return TRUE;
} catch (const std::exception&) {
    // Memory was short for a path.
    ReportFailure(error, CFileException::genericException, ENOMEM, nullptr);
    return FALSE;
}

UINT CFile::Read(void* buffer, UINT count) {
    auto* const target = static_cast<BYTE*>(buffer);
    UINT total = 0;
    while (total < count) {
        const auto transferred = ReadOnce(ToDescriptor(m_hFile), target + total, count - total);
        if (transferred < 0) {
            ThrowLastError();
        }
        if (transferred == 0) {
            break;
        }
        total += static_cast<UINT>(transferred);
    }
    return total;
}

void CFile::Write(const void* buffer, UINT count) {
    const auto* source = static_cast<const BYTE*>(buffer);
    while (count > 0) {
        const auto transferred = WriteOnce(ToDescriptor(m_hFile), source, count);
        if (transferred < 0) {
            ThrowLastError();
        }
        if (transferred == 0) {
            AfxThrowFileException(CFileException::diskFull, -1, m_strFileName);
        }
        source += transferred;
        count -= static_cast<UINT>(transferred);
    }
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from) {
    const LONGLONG position = SeekDescriptor(ToDescriptor(m_hFile), offset, from);
    if (position < 0) {
        if (errno == EINVAL || errno == EOVERFLOW) {
            AfxThrowFileException(CFileException::badSeek, errno, m_strFileName);
        }
        ThrowLastError();
    }
    return static_cast<ULONGLONG>(position);
}

ULONGLONG CFile::GetPosition() const {
    const LONGLONG position = SeekDescriptor(ToDescriptor(m_hFile), 0, current);
    if (position < 0) {
        ThrowLastError();
    }
    return static_cast<ULONGLONG>(position);
}

ULONGLONG CFile::GetLength() const {
    const LONGLONG length = LengthOfDescriptor(ToDescriptor(m_hFile));
    if (length < 0) {
        ThrowLastError();
    }
    return static_cast<ULONGLONG>(length);
}

void CFile::SetLength(ULONGLONG newLength) {
    Seek(static_cast<LONGLONG>(newLength), begin);
    if (!SetLengthOfDescriptor(ToDescriptor(m_hFile), newLength)) {
        ThrowLastError();
    }
}

void CFile::Flush() {
    if (m_hFile != hFileNull && !SyncDescriptor(ToDescriptor(m_hFile))) {
        ThrowLastError();
    }
}

void CFile::Close() {
    const HANDLE file = m_hFile;
    const CString path = m_strFileName;
    m_hFile = hFileNull;
    m_bCloseOnDelete = FALSE;
    m_strFileName.Empty();
    if (file != hFileNull && !CloseDescriptor(ToDescriptor(file))) {
        CFileException::ThrowErrno(errno, path);
    }
}

void CFile::Abort() {
    if (m_hFile != hFileNull) {
        CloseDescriptor(ToDescriptor(m_hFile));
        m_hFile = hFileNull;
    }
    m_bCloseOnDelete = FALSE;
    m_strFileName.Empty();
}

CString CFile::GetFilePath() const {
    return m_strFileName;
}

CString CFile::GetFileName() const {
    return ToText(std::filesystem::path(m_strFileName.GetString()).filename());
}

CString CFile::GetFileTitle() const {
    return ToText(std::filesystem::path(m_strFileName.GetString()).stem());
}

void CFile::SetFilePath(LPCTSTR newPath) {
    m_strFileName = newPath;
}

UINT CFile::GetBufferPtr(UINT, UINT, void**, void**) {
    return 0;
}

CFile* CFile::Duplicate() const {
    AfxThrowNotSupportedException();
}

void CFile::LockRange(ULONGLONG, ULONGLONG) {
    AfxThrowNotSupportedException();
}

void CFile::UnlockRange(ULONGLONG, ULONGLONG) {
    AfxThrowNotSupportedException();
}

void PASCAL CFile::Remove(LPCTSTR fileName) {
    if (!RemoveFile(fileName)) {
        const int errorNumber = errno;
        AfxThrowFileException(CauseOf(errorNumber, fileName), errorNumber, fileName);
    }
}

void PASCAL CFile::Rename(LPCTSTR oldName, LPCTSTR newName) {
    if (!RenameFile(oldName, newName)) {
        const int errorNumber = errno;
        const bool isNewNameAtFault = errorNumber == ENOENT && IsFolderMissing(newName);
        LPCTSTR const faultyName = isNewNameAtFault ? newName : oldName;
        AfxThrowFileException(CauseOf(errorNumber, faultyName), errorNumber, faultyName);
    }
}

void CFile::ThrowLastError() const {
    const int errorNumber = errno;
    AfxThrowFileException(CFileException::ErrnoToException(errorNumber), errorNumber,
                          m_strFileName);
}

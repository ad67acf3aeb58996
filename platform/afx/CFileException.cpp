// The cause of a failed file operation, from the error numbers of the C library and of the system.
#include <cerrno>

#include "AfxExceptions.h"
#include "detail/ErrorMessage.h"

IMPLEMENT_DYNAMIC(CFileException, CException)

namespace {

LPCTSTR FileCauseText(int cause) {
    switch (cause) {
        case CFileException::none:
            return _T("nothing is wrong");
        case CFileException::fileNotFound:
            return _T("it was not found");
        case CFileException::badPath:
            return _T("its folder does not exist");
        case CFileException::tooManyOpenFiles:
            return _T("too many files are open");
        case CFileException::accessDenied:
            return _T("access was denied");
        case CFileException::invalidFile:
            return _T("it is not open for this operation");
        case CFileException::removeCurrentDir:
            return _T("the current folder cannot be removed");
        case CFileException::directoryFull:
            return _T("the folder takes no more entries");
        case CFileException::badSeek:
            return _T("the position is not inside the file");
        case CFileException::hardIO:
            return _T("the device reported an error");
        case CFileException::sharingViolation:
            return _T("it is in use");
        case CFileException::lockViolation:
            return _T("the region is locked");
        case CFileException::diskFull:
            return _T("the disk is full");
        case CFileException::endOfFile:
            return _T("its end was reached");
        default:
            return _T("an unknown error occurred");
    }
}

}  // namespace

CFileException::CFileException(int cause, LONG osError, LPCTSTR fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

BOOL CFileException::GetErrorMessage(LPTSTR buffer, UINT bufferSize, PUINT helpContext) const {
    return afx::detail::CopyMessage(
        afx::detail::FailureMessage(_T("file"), m_strFileName, FileCauseText(m_cause)), buffer,
        bufferSize, helpContext);
}

int PASCAL CFileException::ErrnoToException(int errorNumber) {
    switch (errorNumber) {
        case 0:
            return none;
        case ENOENT:
            return fileNotFound;
        case ENOTDIR:
            return badPath;
        case EMFILE:
        case ENFILE:
            return tooManyOpenFiles;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
            return accessDenied;
        case EBADF:
            return invalidFile;
        case ENOSPC:
#if defined(EDQUOT)
        case EDQUOT:
#endif
        case EFBIG:
            return diskFull;
        case EIO:
            return hardIO;
        case EBUSY:
#if defined(ETXTBSY)
        case ETXTBSY:
#endif
            return sharingViolation;
        default:
            return genericException;
    }
}

#if defined(_WIN32)

int PASCAL CFileException::OsErrorToException(LONG osError) {
    switch (osError) {
        case ERROR_SUCCESS:
            return none;
        case ERROR_FILE_NOT_FOUND:
            return fileNotFound;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_PATHNAME:
            return badPath;
        case ERROR_TOO_MANY_OPEN_FILES:
            return tooManyOpenFiles;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
            return accessDenied;
        case ERROR_INVALID_HANDLE:
            return invalidFile;
        case ERROR_CURRENT_DIRECTORY:
            return removeCurrentDir;
        case ERROR_SEEK:
        case ERROR_SEEK_ON_DEVICE:
        case ERROR_NEGATIVE_SEEK:
            return badSeek;
        case ERROR_CRC:
        case ERROR_READ_FAULT:
        case ERROR_WRITE_FAULT:
        case ERROR_IO_DEVICE:
            return hardIO;
        case ERROR_SHARING_VIOLATION:
            return sharingViolation;
        case ERROR_LOCK_VIOLATION:
            return lockViolation;
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_DISK_FULL:
            return diskFull;
        case ERROR_HANDLE_EOF:
            return endOfFile;
        default:
            return genericException;
    }
}

#else

int PASCAL CFileException::OsErrorToException(LONG osError) {
    return ErrnoToException(osError);
}

#endif

void PASCAL CFileException::ThrowErrno(int errorNumber, LPCTSTR fileName) {
    if (errorNumber != 0) {
        AfxThrowFileException(ErrnoToException(errorNumber), errorNumber, fileName);
    }
}

void PASCAL CFileException::ThrowOsError(LONG osError, LPCTSTR fileName) {
    if (osError != 0) {
        AfxThrowFileException(OsErrorToException(osError), osError, fileName);
    }
}

void AFXAPI AfxThrowFileException(int cause, LONG osError, LPCTSTR fileName) {
    throw new CFileException(cause, osError, fileName);
}

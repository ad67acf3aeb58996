/// The exceptions of the layer. They are thrown by pointer and released with `Delete()`.
#pragma once

#include "AfxExport.h"
#include "AfxObject.h"
#include "AfxString.h"
#include "AfxTypes.h"

/// The base of all exceptions of the layer.
///
///     try { ... } catch (CException* exception) { ...; exception->Delete(); }
class VERIDANE_AFX CException : public CObject {
    DECLARE_DYNAMIC(CException)

    /// An exception on the heap, which `Delete` releases.
    CException();
    explicit CException(BOOL autoDelete);

    /// Releases an exception that was made on the heap and leaves others alone.
    void Delete();

    /// Puts one line that says what went wrong into `buffer`.
    ///
    /// - Shape: `buffer` holds `bufferSize` characters including the terminator; a longer text is
    /// cut.
    /// - Result: nonzero when there was a text; the base class has none and gives an empty one.
    ///   `helpContext`, where given, becomes 0.
    virtual BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize, PUINT helpContext = nullptr) const;

    /// Shows the text to the user.
    ///
    /// - Result: IDOK. The layer has no windows: it writes a line to the standard error stream and
    ///   ignores both arguments.
    virtual int ReportError(UINT type = MB_OK, UINT messageId = 0);

private:
    BOOL autoDelete_;
};

/// The base of the exceptions that carry nothing but their class.
class VERIDANE_AFX CSimpleException : public CException {
    DECLARE_DYNAMIC(CSimpleException)

    CSimpleException() = default;
    explicit CSimpleException(BOOL autoDelete) : CException(autoDelete) {}
};

/// Memory is short, or a file in memory cannot grow.
class VERIDANE_AFX CMemoryException : public CSimpleException {
    DECLARE_DYNAMIC(CMemoryException)

    CMemoryException() = default;
    explicit CMemoryException(BOOL autoDelete) : CSimpleException(autoDelete) {}
    BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                         PUINT helpContext = nullptr) const override;
};

/// The operation is not offered, as storing an object whose class has no schema.
class VERIDANE_AFX CNotSupportedException : public CSimpleException {
    DECLARE_DYNAMIC(CNotSupportedException)

    CNotSupportedException() = default;
    explicit CNotSupportedException(BOOL autoDelete) : CSimpleException(autoDelete) {}
    BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                         PUINT helpContext = nullptr) const override;
};

/// The user stopped the operation.
class VERIDANE_AFX CUserException : public CSimpleException {
    DECLARE_DYNAMIC(CUserException)

    CUserException() = default;
    explicit CUserException(BOOL autoDelete) : CSimpleException(autoDelete) {}
    BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                         PUINT helpContext = nullptr) const override;
};

/// An argument is outside what the operation takes.
class VERIDANE_AFX CInvalidArgException : public CSimpleException {
    DECLARE_DYNAMIC(CInvalidArgException)

    CInvalidArgException() = default;
    explicit CInvalidArgException(BOOL autoDelete) : CSimpleException(autoDelete) {}
    BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                         PUINT helpContext = nullptr) const override;
};

/// A resource was not found.
class VERIDANE_AFX CResourceException : public CSimpleException {
    DECLARE_DYNAMIC(CResourceException)

    CResourceException() = default;
    explicit CResourceException(BOOL autoDelete) : CSimpleException(autoDelete) {}
    BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                         PUINT helpContext = nullptr) const override;
};

/// An archive's content or use is wrong; `m_cause` says in what way.
class VERIDANE_AFX CArchiveException : public CException {
    DECLARE_DYNAMIC(CArchiveException)

    enum {
        none,
        genericException,
        /// Writing to an archive that loads.
        readOnly,
        endOfFile,
        /// Reading from an archive that stores.
        writeOnly,
        badIndex,
        badClass,
        badSchema
    };

    explicit CArchiveException(int cause = none, LPCTSTR archiveName = nullptr);
    BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                         PUINT helpContext = nullptr) const override;

    int m_cause;
    CString m_strFileName;
};

/// A file operation failed; `m_cause` says why.
class VERIDANE_AFX CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)

    enum {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG osError = -1, LPCTSTR fileName = nullptr);
    BOOL GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                         PUINT helpContext = nullptr) const override;

    /// Gives the cause for an error number of the C library; genericException for an unknown one.
    static int PASCAL ErrnoToException(int errorNumber);
    /// Gives the cause for an error number of the operating system. Outside Windows that is an
    /// errno.
    static int PASCAL OsErrorToException(LONG osError);
    /// Throws the exception for an error number; no error (0) throws nothing.
    static void PASCAL ThrowErrno(int errorNumber, LPCTSTR fileName = nullptr);
    static void PASCAL ThrowOsError(LONG osError, LPCTSTR fileName = nullptr);

    int m_cause;
    /// The system's error number (outside Windows the errno), -1 where there is none.
    LONG m_lOsError;
    CString m_strFileName;
};

/// @name Throwing
/// None of these returns. Archive and file exceptions are new heap objects; the simple ones are one
/// object per class for the whole process, which `Delete()` leaves alone.
/// @{
[[noreturn]] VERIDANE_AFX void AFXAPI AfxThrowArchiveException(int cause,
                                                               LPCTSTR archiveName = nullptr);
[[noreturn]] VERIDANE_AFX void AFXAPI AfxThrowFileException(int cause, LONG osError = -1,
                                                            LPCTSTR fileName = nullptr);
[[noreturn]] VERIDANE_AFX void AFXAPI AfxThrowUserException();
[[noreturn]] VERIDANE_AFX void AFXAPI AfxThrowMemoryException();
[[noreturn]] VERIDANE_AFX void AFXAPI AfxThrowNotSupportedException();
[[noreturn]] VERIDANE_AFX void AFXAPI AfxThrowInvalidArgException();
/// @}

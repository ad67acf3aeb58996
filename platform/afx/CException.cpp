// Exceptions by pointer. The simple ones are one object per class for the whole process, made in
// static memory so that throwing for want of memory needs none.
#include "AfxExceptions.h"

#include <cstdio>
#include <new>
#include <string>

#include "detail/ErrorMessage.h"

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CSimpleException, CException)
IMPLEMENT_DYNAMIC(CMemoryException, CSimpleException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CSimpleException)
IMPLEMENT_DYNAMIC(CUserException, CSimpleException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CSimpleException)
IMPLEMENT_DYNAMIC(CResourceException, CSimpleException)
IMPLEMENT_DYNAMIC(CArchiveException, CException)

namespace afx::detail {

BOOL CopyMessage(const std::basic_string<TCHAR>& message, LPTSTR buffer, UINT bufferSize,
                 PUINT helpContext) {
    if (helpContext != nullptr) {
        *helpContext = 0;
    }
    if (buffer == nullptr || bufferSize == 0) {
        return FALSE;
    }
    const std::size_t copied = message.copy(buffer, bufferSize - 1);
    buffer[copied] = TCHAR();
    return message.empty() ? FALSE : TRUE;
}

std::basic_string<TCHAR> FailureMessage(LPCTSTR kind, const CString& name, LPCTSTR reason) {
    std::basic_string<TCHAR> message = _T("The ");
    message.append(kind);
    if (!name.IsEmpty()) {
        message.append(_T(" '")).append(name).append(_T("'"));
    }
    return message.append(_T(" failed: ")).append(reason).append(_T("."));
}

}  // namespace afx::detail

using afx::detail::CopyMessage;

namespace {

// Never destroyed: an exception may be on its way while the process ends.
template <class Exception>
Exception* ProcessWide() {
    alignas(Exception) static unsigned char memory[sizeof(Exception)];
    static Exception* const exception = new (static_cast<void*>(memory)) Exception(FALSE);
    return exception;
}

LPCTSTR ArchiveCauseText(int cause) {
    switch (cause) {
        case CArchiveException::none:
            return _T("nothing is wrong");
        case CArchiveException::readOnly:
            return _T("it is being loaded and cannot be written to");
        case CArchiveException::endOfFile:
            return _T("its content ends too early");
        case CArchiveException::writeOnly:
            return _T("it is being stored and cannot be read from");
        case CArchiveException::badIndex:
            return _T("it refers to an object or class that it does not hold");
        case CArchiveException::badClass:
            return _T("it holds an object of an unknown or unexpected class");
        case CArchiveException::badSchema:
            return _T("it holds an object of a version that cannot be read");
        default:
            return _T("an unknown error occurred");
    }
}

}  // namespace

CException::CException() : autoDelete_(TRUE) {}
CException::CException(BOOL autoDelete) : autoDelete_(autoDelete) {}

void CException::Delete() {
    if (autoDelete_) {
        delete this;
    }
}

BOOL CException::GetErrorMessage(LPTSTR buffer, UINT bufferSize, PUINT helpContext) const {
    return CopyMessage({}, buffer, bufferSize, helpContext);
}

int CException::ReportError(UINT, UINT) {
    constexpr UINT kLongestMessage = 512;
    TCHAR message[kLongestMessage];
    if (!GetErrorMessage(message, kLongestMessage)) {
        CopyMessage(_T("An error occurred."), message, kLongestMessage, nullptr);
    }
#if defined(UNICODE)
    std::fwprintf(stderr, L"%ls\n", message);
#else
    std::fprintf(stderr, "%s\n", message);
#endif
    return IDOK;
}

BOOL CMemoryException::GetErrorMessage(LPTSTR buffer, UINT bufferSize, PUINT helpContext) const {
    return CopyMessage(_T("There is not enough memory."), buffer, bufferSize, helpContext);
}

BOOL CNotSupportedException::GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                                             PUINT helpContext) const {
    return CopyMessage(_T("The operation is not supported."), buffer, bufferSize, helpContext);
}

BOOL CUserException::GetErrorMessage(LPTSTR buffer, UINT bufferSize, PUINT helpContext) const {
    return CopyMessage(_T("The operation was cancelled."), buffer, bufferSize, helpContext);
}

BOOL CInvalidArgException::GetErrorMessage(LPTSTR buffer, UINT bufferSize,
                                           PUINT helpContext) const {
    return CopyMessage(_T("An argument is not valid."), buffer, bufferSize, helpContext);
}

BOOL CResourceException::GetErrorMessage(LPTSTR buffer, UINT bufferSize, PUINT helpContext) const {
    return CopyMessage(_T("A resource was not found."), buffer, bufferSize, helpContext);
}

CArchiveException::CArchiveException(int cause, LPCTSTR archiveName)
    : m_cause(cause), m_strFileName(archiveName) {}

BOOL CArchiveException::GetErrorMessage(LPTSTR buffer, UINT bufferSize, PUINT helpContext) const {
    return CopyMessage(
        afx::detail::FailureMessage(_T("archive"), m_strFileName, ArchiveCauseText(m_cause)),
        buffer, bufferSize, helpContext);
}

void AFXAPI AfxThrowArchiveException(int cause, LPCTSTR archiveName) {
    throw new CArchiveException(cause, archiveName);
}

void AFXAPI AfxThrowUserException() {
    throw ProcessWide<CUserException>();
}
void AFXAPI AfxThrowMemoryException() {
    throw ProcessWide<CMemoryException>();
}
void AFXAPI AfxThrowNotSupportedException() {
    throw ProcessWide<CNotSupportedException>();
}
void AFXAPI AfxThrowInvalidArgException() {
    throw ProcessWide<CInvalidArgException>();
}

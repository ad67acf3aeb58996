// The one place where exceptions of the platform, of the library and of the standard library become
// text. Exceptions of the platform come by pointer and are deleted here.

#include "Failure.h"

#include <algorithm>
#include <new>
#include <system_error>

namespace Host {

namespace {

std::string ReasonOf(const CArchiveException& exception) {
    switch (exception.m_cause) {
        case CArchiveException::endOfFile:
            return "damaged document: it ends too early";
        case CArchiveException::badClass:
            return "damaged document: it holds an object of an unknown class";
        case CArchiveException::badSchema:
            return "an object in the document was stored by a version this program cannot read";
        case CArchiveException::badIndex:
            return "damaged document: it refers to something it does not hold";
        default:
            return "the archive failed, cause " + std::to_string(exception.m_cause);
    }
}

std::string ReasonOf(const CException& exception) {
    TCHAR text[256];
    if (!exception.GetErrorMessage(text, static_cast<UINT>(std::size(text))))
        return "unknown error";
    return std::filesystem::path(text).string();  // a TCHAR is not a char everywhere
}

std::string ReasonOf(const CFileException& exception) {
    if (exception.m_cause == CFileException::endOfFile)
        return "damaged document: it ends too early";
    if (exception.m_lOsError > 0)
        return SystemErrorText(exception.m_lOsError);
    return ReasonOf(static_cast<const CException&>(exception));
}

template <class Exception>
std::string TakeReason(Exception* exception) {
    std::string reason = ReasonOf(*exception);
    exception->Delete();
    return reason;
}

// The reason of the exception being handled; those that stay as they are pass through.
std::string CurrentReason() {
    try {
        throw;
    } catch (const Failure&) {
        throw;
    } catch (const Interrupted&) {
        throw;
    } catch (CUserException* exception) {
        exception->Delete();
        throw Interrupted();
    } catch (CArchiveException* exception) {
        return TakeReason(exception);
    } catch (CFileException* exception) {
        return TakeReason(exception);
    } catch (CException* exception) {
        return TakeReason(exception);
    } catch (const std::length_error&) {
        return "damaged document: it counts more than any memory holds";
    } catch (const std::bad_alloc&) {
        return "not enough memory";
    } catch (const std::exception& exception) {
        return exception.what();
    }
}

}  // namespace

void RethrowAsFailure(const std::filesystem::path& file) {
    std::string reason = CurrentReason();
    std::replace(reason.begin(), reason.end(), '\n', ' ');
    throw Failure(file, reason);
}

std::string SystemErrorText(int errorNumber) {
    return std::system_category().message(errorNumber);
}

}  // namespace Host

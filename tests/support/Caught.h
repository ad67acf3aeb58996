/// What a piece of code throws, as one comparable value.
#pragma once

#include <afx.h>

#include <exception>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>

namespace Vr::test {

/// The kind of an exception with its cause and file name (platform) or text (standard).
struct Caught {
    std::string kind;
    int cause = -1;
    std::string text;

    friend bool operator==(const Caught& a, const Caught& b) {
        return a.kind == b.kind && a.cause == b.cause && a.text == b.text;
    }
    friend bool operator!=(const Caught& a, const Caught& b) { return !(a == b); }
    friend std::ostream& operator<<(std::ostream& stream, const Caught& caught) {
        return stream << (caught.kind.empty() ? "nothing" : caught.kind) << ", cause "
                      << caught.cause << ", \"" << caught.text << "\"";
    }
};

/// @name Expected exceptions
/// @{
inline Caught Nothing() {
    return {};
}
inline Caught ArchiveException(int cause, std::string fileName = "") {
    return {"CArchiveException", cause, std::move(fileName)};
}
/// The stream ended early; the platform names no file here.
inline Caught EndOfFile() {
    return ArchiveException(CArchiveException::endOfFile);
}
inline Caught FileException(int cause) {
    return {"CFileException", cause, ""};
}
inline Caught PlatformException(std::string className) {
    return {std::move(className), -1, ""};
}
inline Caught LengthError(std::string text) {
    return {"std::length_error", -1, std::move(text)};
}
inline Caught OutOfRange(std::string text) {
    return {"std::out_of_range", -1, std::move(text)};
}
inline Caught RuntimeError(std::string text) {
    return {"std::runtime_error", -1, std::move(text)};
}
/// `std::bad_alloc`, whose text is the standard library's own.
inline Caught BadAlloc() {
    return {"std::bad_alloc", -1, ""};
}
/// @}

/// Runs `code` and says what it threw. An exception thrown by pointer is deleted.
///
/// - Result: the most derived of the kinds above that matches; "another exception" for others.
template <class Code>
Caught CaughtFrom(const Code& code) {
    const auto narrow = [](const CString& name) {
        const std::basic_string<TCHAR> wide(name.GetString());
        return std::string(wide.begin(), wide.end());
    };
    try {
        code();
        return Nothing();
    } catch (CArchiveException* exception) {
        const Caught caught{"CArchiveException", exception->m_cause,
                            narrow(exception->m_strFileName)};
        exception->Delete();
        return caught;
    } catch (CFileException* exception) {
        const Caught caught{"CFileException", exception->m_cause, narrow(exception->m_strFileName)};
        exception->Delete();
        return caught;
    } catch (CException* exception) {
        const Caught caught{exception->GetRuntimeClass()->m_lpszClassName, -1, ""};
        exception->Delete();
        return caught;
    } catch (const std::bad_alloc&) {
        return BadAlloc();
    } catch (const std::length_error& error) {
        return LengthError(error.what());
    } catch (const std::out_of_range& error) {
        return OutOfRange(error.what());
    } catch (const std::runtime_error& error) {
        return RuntimeError(error.what());
    } catch (const std::exception& error) {
        return {"another exception", -1, error.what()};
    }
}

}  // namespace Vr::test

/// Running code that must throw an exception by pointer.
#pragma once

#include <afx.h>

#include <ostream>
#include <string>

/// What came out of `ThrownBy`: class name, cause (-1 where the class has none) and file name.
struct Thrown {
    std::string className;
    int cause = -1;
    std::string fileName;
};

inline bool operator==(const Thrown& left, const Thrown& right) {
    return left.className == right.className && left.cause == right.cause &&
           left.fileName == right.fileName;
}

inline std::ostream& operator<<(std::ostream& stream, const Thrown& thrown) {
    return stream << thrown.className << " cause " << thrown.cause << " file '" << thrown.fileName
                  << "'";
}

/// Runs `code` and says what it threw; the class name is empty when it threw nothing.
template <class Code>
Thrown ThrownBy(Code code) {
    Thrown thrown;
    try {
        code();
    } catch (CArchiveException* exception) {
        thrown = {"CArchiveException", exception->m_cause, exception->m_strFileName.GetString()};
        exception->Delete();
    } catch (CFileException* exception) {
        thrown = {"CFileException", exception->m_cause, exception->m_strFileName.GetString()};
        exception->Delete();
    } catch (CException* exception) {
        thrown.className = exception->GetRuntimeClass()->m_lpszClassName;
        exception->Delete();
    }
    return thrown;
}

inline Thrown ArchiveFailure(int cause, const char* fileName = "") {
    return {"CArchiveException", cause, fileName};
}

inline Thrown FileFailure(int cause, const char* fileName = "") {
    return {"CFileException", cause, fileName};
}

inline Thrown SimpleFailure(const char* className) {
    return {className, -1, ""};
}

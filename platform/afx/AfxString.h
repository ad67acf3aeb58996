/// `CString` and `CDumpContext`, as far as file names and empty `Dump` bodies need them.
#pragma once

#include <string>

#include "AfxExport.h"
#include "AfxTypes.h"

class CFile;
class CObject;

/// A text of `TCHAR` that converts to `LPCTSTR`; used for file names.
class VERIDANE_AFX CString {
public:
    CString() = default;
    /// A null pointer makes an empty text.
    CString(LPCTSTR text) : text_(text != nullptr ? text : _T("")) {}

    operator LPCTSTR() const { return text_.c_str(); }
    LPCTSTR GetString() const { return text_.c_str(); }
    int GetLength() const { return static_cast<int>(text_.size()); }
    BOOL IsEmpty() const { return text_.empty() ? TRUE : FALSE; }
    void Empty() { text_.clear(); }

    friend bool operator==(const CString& left, const CString& right) {
        return left.text_ == right.text_;
    }
    friend bool operator!=(const CString& left, const CString& right) { return !(left == right); }
    friend bool operator==(const CString& left, LPCTSTR right) { return left == CString(right); }
    friend bool operator!=(const CString& left, LPCTSTR right) { return !(left == right); }
    friend bool operator==(LPCTSTR left, const CString& right) { return right == left; }
    friend bool operator!=(LPCTSTR left, const CString& right) { return !(right == left); }

private:
    std::basic_string<TCHAR> text_;
};

/// Prints objects and values for diagnosis into a file.
///
/// - Result: without a file everything printed is dropped.
class VERIDANE_AFX CDumpContext {
public:
    explicit CDumpContext(CFile* file = nullptr);
    CDumpContext(const CDumpContext&) = delete;
    CDumpContext& operator=(const CDumpContext&) = delete;

    CDumpContext& operator<<(LPCSTR text);
    CDumpContext& operator<<(LPCWSTR text);
    CDumpContext& operator<<(int number);
    CDumpContext& operator<<(unsigned int number);
    CDumpContext& operator<<(long number);
    CDumpContext& operator<<(unsigned long number);
    CDumpContext& operator<<(long long number);
    CDumpContext& operator<<(unsigned long long number);
    CDumpContext& operator<<(double number);
    /// Lets the object print itself through `Dump`; prints "NULL" for null.
    CDumpContext& operator<<(const CObject* object);

    void Flush();
    /// 0 asks an object to print itself alone, above 0 with what it points to.
    int GetDepth() const { return depth_; }
    void SetDepth(int depth) { depth_ = depth; }

private:
    CFile* file_;
    int depth_ = 0;
};

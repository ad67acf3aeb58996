/// Wide strings.
#pragma once

#include <string>
#include <utility>

class ON_wString {
public:
    ON_wString() noexcept {}
    /// Copies up to the first 0; a null pointer gives an empty string.
    ON_wString(const wchar_t* text) : m_text(text ? text : L"") {}
    explicit ON_wString(std::wstring text) noexcept : m_text(std::move(text)) {}

    operator const wchar_t*() const noexcept { return m_text.c_str(); }
    const wchar_t* Array() const noexcept { return m_text.c_str(); }
    int Length() const noexcept { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const noexcept { return m_text.empty(); }
    void Empty() noexcept { m_text.clear(); }

    bool operator==(const ON_wString& other) const noexcept { return m_text == other.m_text; }
    bool operator!=(const ON_wString& other) const noexcept { return m_text != other.m_text; }
    bool operator==(const wchar_t* other) const { return m_text == (other ? other : L""); }
    bool operator!=(const wchar_t* other) const { return !(*this == other); }

private:
    std::wstring m_text;
};

/// Growing arrays under openNURBS's names.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// An array that is indexed and counted with `int`.
template <class T>
class ON_SimpleArray {
public:
    ON_SimpleArray() noexcept {}

    int Count() const noexcept { return static_cast<int>(m_elements.size()); }
    void SetCount(int count) { m_elements.resize(count > 0 ? static_cast<size_t>(count) : 0); }
    void Reserve(int capacity) {
        m_elements.reserve(capacity > 0 ? static_cast<size_t>(capacity) : 0);
    }
    void Append(const T& element) { m_elements.push_back(element); }
    void Append(T&& element) { m_elements.push_back(std::move(element)); }
    void Empty() noexcept { m_elements.clear(); }

    T& operator[](int number) noexcept { return m_elements[static_cast<size_t>(number)]; }
    const T& operator[](int number) const noexcept {
        return m_elements[static_cast<size_t>(number)];
    }
    T* Array() noexcept { return m_elements.data(); }
    const T* Array() const noexcept { return m_elements.data(); }

private:
    std::vector<T> m_elements;
};

/// An array of objects; here the same as one of plain values.
template <class T>
using ON_ObjectArray = ON_SimpleArray<T>;

#pragma once

#include <afx.h>

#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <vector>

#include "mesh/detail/Throw.h"

namespace Vr::detail {

/// Bytes moved at once while loading: what is appended and then overwritten stays in the cache.
constexpr size_t kLoadPieceBytes = size_t{64} << 10;
/// Bytes handed to the archive at once while storing; its counts have 32 bits.
constexpr size_t kStorePieceBytes = size_t{1} << 30;

/// Reads a count and makes room for exactly that many elements.
///
/// - Throws: `std::length_error` "vector too long" for a count beyond the vector's maximum.
template <class Element>
[[nodiscard]] size_t ReadCountAndReserve(CArchive& archive, std::vector<Element>& elements) {
    ULONGLONG count = 0;
    archive >> count;
    if (count > elements.max_size())
        ThrowVectorTooLong();
    elements.reserve(static_cast<size_t>(count));
    return static_cast<size_t>(count);
}

/// Stores a count and the elements, whose memory is their encoding.
template <class Element>
void WriteRawElements(CArchive& archive, const std::vector<Element>& elements) {
    static_assert(std::is_trivially_copyable_v<Element> && sizeof(Element) % 8 == 0);
    archive << static_cast<ULONGLONG>(elements.size());
    const auto* bytes = reinterpret_cast<const BYTE*>(elements.data());
    size_t rest = elements.size() * sizeof(Element);
    while (rest > 0) {
        const size_t piece = (std::min)(rest, kStorePieceBytes);
        archive.Write(bytes, static_cast<UINT>(piece));
        bytes += piece;
        rest -= piece;
    }
}

/// Loads a count and appends that many elements to an empty vector.
///
/// - Throws: `CArchiveException*` with cause `endOfFile` for a short stream; the elements that came
///   whole are in the vector then.
template <class Element>
void ReadRawElements(CArchive& archive, std::vector<Element>& elements) {
    static_assert(std::is_trivially_copyable_v<Element> && sizeof(Element) % 8 == 0);
    const size_t count = ReadCountAndReserve(archive, elements);
    const size_t pieceCount = kLoadPieceBytes / sizeof(Element);
    while (elements.size() < count) {
        const size_t begin = elements.size();
        const size_t wanted = (std::min)(count - begin, pieceCount);
        elements.resize(begin + wanted);
        size_t received = 0;
        try {
            received =
                archive.Read(elements.data() + begin, static_cast<UINT>(wanted * sizeof(Element)));
        } catch (...) {
            elements.resize(begin);
            throw;
        }
        if (received < wanted * sizeof(Element)) {
            elements.resize(begin + received / sizeof(Element));
            archive.FillBuffer(1);  // nothing is left: raises the archive's own end of file
        }
    }
}

}  // namespace Vr::detail

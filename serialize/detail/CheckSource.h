#pragma once

#include <afx.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Vr::detail {

/// The bytes that a check reads: of a file, in large pieces, or of memory, in place.
class CheckSource {
public:
    /// Bytes beside each other; none at the end of the stream.
    struct Piece {
        const BYTE* bytes = nullptr;
        size_t count = 0;
    };

    /// Starts at the file's position and ends at the length it has now.
    explicit CheckSource(CFile& file);
    CheckSource(const BYTE* bytes, size_t count);

    /// Returns the offset of the next byte, from the start of the file.
    [[nodiscard]] uint64_t Position() const { return position_; }
    [[nodiscard]] uint64_t Remaining() const { return end_ - position_; }

    /// Takes as many of the next `most` bytes as are at hand, in whole units, at least one.
    ///
    /// - Result: no bytes, and nothing taken, where less than a unit remains.
    /// - Requires: a unit has at most `kLargestUnit` bytes, and `most` is a multiple of it.
    [[nodiscard]] Piece Take(size_t unit, uint64_t most);
    /// Passes over bytes without reading them; false, and nothing passed, where fewer remain.
    bool Skip(uint64_t count);

    static constexpr size_t kLargestUnit = 64;

private:
    void FetchAtLeast(size_t count);
    void Advance(size_t count);

    CFile* file_ = nullptr;
    std::unique_ptr<BYTE[]> buffer_;
    size_t bufferSize_ = 0;
    const BYTE* next_ = nullptr;
    size_t atHand_ = 0;
    uint64_t position_ = 0;
    uint64_t end_ = 0;
};

}  // namespace Vr::detail

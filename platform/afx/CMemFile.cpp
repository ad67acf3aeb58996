// A block from malloc that grows by half its size at least, so that growing costs each byte a
// bounded number of moves, however small the growth step is.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "AfxFile.h"

IMPLEMENT_DYNAMIC(CMemFile, CFile)

namespace {

constexpr std::size_t kLargestSize =
    static_cast<std::size_t>(std::numeric_limits<std::ptrdiff_t>::max());

// Returns `size` raised by whole steps to `wanted` at least, or the largest size where that is
// more.
std::size_t RaiseBySteps(std::size_t size, std::size_t wanted, std::size_t step) {
    const std::size_t missing = wanted - size;
    const std::size_t steps = missing / step + (missing % step != 0 ? 1 : 0);
    return steps > (kLargestSize - size) / step ? kLargestSize : size + steps * step;
}

}  // namespace

CMemFile::CMemFile(UINT growBytes) : growBytes_(growBytes) {}

CMemFile::CMemFile(BYTE* block, UINT size, UINT growBytes) : growBytes_(growBytes) {
    CMemFile::Attach(block, size, growBytes);
}

CMemFile::~CMemFile() {
    Release();
}

void CMemFile::Attach(BYTE* block, UINT size, UINT growBytes) {
    Release();
    growBytes_ = growBytes;
    block_ = block;
    capacity_ = size;
    length_ = growBytes == 0 ? size : 0;
    ownsBlock_ = false;
}

BYTE* CMemFile::Detach() {
    BYTE* const block = block_;
    ownsBlock_ = false;
    Release();
    return block;
}

UINT CMemFile::Read(void* buffer, UINT count) {
    if (position_ >= length_ || count == 0) {
        return 0;
    }
    const std::size_t copied = (std::min)(static_cast<std::size_t>(count), length_ - position_);
    std::memcpy(buffer, block_ + position_, copied);
    position_ += copied;
    return static_cast<UINT>(copied);
}

void CMemFile::Write(const void* buffer, UINT count) {
    if (count == 0) {
        return;
    }
    if (position_ > kLargestSize - count) {
        AfxThrowMemoryException();
    }
    const std::size_t writtenEnd = position_ + count;
    EnsureCapacity(writtenEnd);
    FillGap(length_, position_);
    std::memcpy(block_ + position_, buffer, count);
    position_ = writtenEnd;
    length_ = (std::max)(length_, writtenEnd);
}

ULONGLONG CMemFile::Seek(LONGLONG offset, UINT from) {
    std::size_t origin = 0;
    if (from == current) {
        origin = position_;
    } else if (from == end) {
        origin = length_;
    }
    const LONGLONG signedOrigin = static_cast<LONGLONG>(origin);
    if (offset < -signedOrigin || offset > static_cast<LONGLONG>(kLargestSize) - signedOrigin) {
        AfxThrowFileException(CFileException::badSeek, -1, m_strFileName);
    }
    position_ = static_cast<std::size_t>(signedOrigin + offset);
    return position_;
}

ULONGLONG CMemFile::GetPosition() const {
    return position_;
}

ULONGLONG CMemFile::GetLength() const {
    return length_;
}

void CMemFile::SetLength(ULONGLONG newLength) {
    if (newLength > kLargestSize) {
        AfxThrowMemoryException();
    }
    const auto newSize = static_cast<std::size_t>(newLength);
    EnsureCapacity(newSize);
    FillGap(length_, newSize);
    length_ = newSize;
    position_ = (std::min)(position_, length_);
}

void CMemFile::Flush() {}

void CMemFile::Close() {
    Release();
}

void CMemFile::Abort() {
    Release();
}

void CMemFile::EnsureCapacity(std::size_t neededBytes) {
    if (neededBytes <= capacity_) {
        return;
    }
    if (growBytes_ == 0) {
        AfxThrowMemoryException();
    }
    const std::size_t generousBytes = (std::max)(neededBytes, capacity_ + capacity_ / 2);
    std::size_t newCapacity = RaiseBySteps(capacity_, generousBytes, growBytes_);
    void* grown = std::realloc(block_, newCapacity);
    if (grown == nullptr) {
        newCapacity = RaiseBySteps(capacity_, neededBytes, growBytes_);
        grown = std::realloc(block_, newCapacity);
    }
    if (grown == nullptr) {
        AfxThrowMemoryException();
    }
    block_ = static_cast<BYTE*>(grown);
    capacity_ = newCapacity;
}

// What a position past the end skipped reads as zeros, as in a file on disk.
void CMemFile::FillGap(std::size_t from, std::size_t to) {
    if (from < to) {
        std::memset(block_ + from, 0, to - from);
    }
}

void CMemFile::Release() {
    if (ownsBlock_) {
        std::free(block_);
    }
    block_ = nullptr;
    growBytes_ = 0;
    position_ = 0;
    capacity_ = 0;
    length_ = 0;
    ownsBlock_ = true;
}

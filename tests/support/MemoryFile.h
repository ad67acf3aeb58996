/// A file double in memory that counts calls and fails when told to.
#pragma once

#include <afx.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace Vr::test {

/// A file whose content is a vector. Any call can be made to fail, reads can be made to come in
/// pieces.
///
/// - Shape: calls are counted from 1, separately for reads, writes, seeks and flushes.
class MemoryFile : public CFile {
public:
    enum class Fails { kOnce, kFromThenOn };

    MemoryFile() = default;
    explicit MemoryFile(std::vector<BYTE> content) : content_(std::move(content)) {}

    const std::vector<BYTE>& Bytes() const { return content_; }

    /// @name What shall fail, with a CFileException of the given cause
    /// A failing read or seek changes nothing; a failing write stores nothing.
    /// @{
    void FailRead(std::size_t call, int cause = CFileException::hardIO,
                  Fails fails = Fails::kOnce) {
        reads_.failure = {call, cause, fails};
    }
    void FailWrite(std::size_t call, int cause = CFileException::diskFull,
                   Fails fails = Fails::kOnce) {
        writes_.failure = {call, cause, fails};
    }
    void FailSeek(std::size_t call, int cause = CFileException::badSeek,
                  Fails fails = Fails::kOnce) {
        seeks_.failure = {call, cause, fails};
    }
    void FailFlush(std::size_t call, int cause = CFileException::hardIO,
                   Fails fails = Fails::kOnce) {
        flushes_.failure = {call, cause, fails};
    }
    /// @}

    /// Makes each read return this many bytes at most, as a pipe does.
    void LimitReads(UINT largestRead) { largestRead_ = largestRead; }

    /// @name What was called
    /// @{
    std::size_t ReadCalls() const { return reads_.calls; }
    std::size_t WriteCalls() const { return writes_.calls; }
    std::size_t SeekCalls() const { return seeks_.calls; }
    std::size_t FlushCalls() const { return flushes_.calls; }
    /// The byte counts asked for, call by call.
    const std::vector<UINT>& ReadSizes() const { return reads_.sizes; }
    const std::vector<UINT>& WriteSizes() const { return writes_.sizes; }
    /// @}

    UINT Read(void* buffer, UINT count) override {
        reads_.Count(count);
        if (position_ >= content_.size()) {
            return 0;
        }
        const std::size_t copied = (std::min)(
            content_.size() - position_, static_cast<std::size_t>((std::min)(count, largestRead_)));
        std::copy_n(content_.data() + position_, copied, static_cast<BYTE*>(buffer));
        position_ += copied;
        return static_cast<UINT>(copied);
    }

    void Write(const void* buffer, UINT count) override {
        writes_.Count(count);
        if (content_.size() < position_ + count) {
            content_.resize(position_ + count);
        }
        std::copy_n(static_cast<const BYTE*>(buffer), count, content_.data() + position_);
        position_ += count;
    }

    ULONGLONG Seek(LONGLONG offset, UINT from) override {
        seeks_.Count(0);
        LONGLONG origin = 0;
        if (from != begin) {
            origin = static_cast<LONGLONG>(from == end ? content_.size() : position_);
        }
        if (origin + offset < 0) {
            AfxThrowFileException(CFileException::badSeek);
        }
        position_ = static_cast<std::size_t>(origin + offset);
        return position_;
    }

    ULONGLONG GetPosition() const override { return position_; }
    ULONGLONG GetLength() const override { return content_.size(); }
    void SetLength(ULONGLONG newLength) override {
        content_.resize(static_cast<std::size_t>(newLength));
    }
    void Flush() override { flushes_.Count(0); }
    void Close() override {}
    void Abort() override {}

private:
    struct Failure {
        std::size_t call = 0;
        int cause = 0;
        Fails fails = Fails::kOnce;
    };

    struct Calls {
        std::size_t calls = 0;
        std::vector<UINT> sizes;
        Failure failure;

        void Count(UINT size) {
            ++calls;
            sizes.push_back(size);
            const bool isReached =
                failure.fails == Fails::kOnce ? calls == failure.call : calls >= failure.call;
            if (failure.call != 0 && isReached) {
                AfxThrowFileException(failure.cause);
            }
        }
    };

    std::vector<BYTE> content_;
    std::size_t position_ = 0;
    UINT largestRead_ = (std::numeric_limits<UINT>::max)();
    Calls reads_;
    Calls writes_;
    Calls seeks_;
    Calls flushes_;
};

}  // namespace Vr::test

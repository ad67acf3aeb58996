#pragma once

#include <cstring>
#include <utility>

#include "serialize/CheckStream.h"
#include "serialize/detail/CheckSource.h"

namespace Vr::detail {

/// What all parts of a check share: the bytes, the limits and the report.
///
/// Steps answer false when the check cannot go on; the finding has been added then.
class CheckContext {
public:
    CheckContext(CheckSource source, const CheckLimits& limits)
        : source_(std::move(source)), limits_(limits), lastOffset_(source_.Position()) {}

    [[nodiscard]] bool CanGoOn() const { return canGoOn_; }
    [[nodiscard]] const CheckLimits& Limits() const { return limits_; }
    [[nodiscard]] uint64_t Position() const { return source_.Position(); }
    [[nodiscard]] uint64_t Remaining() const { return source_.Remaining(); }
    /// Returns where the value read last began.
    [[nodiscard]] uint64_t LastOffset() const { return lastOffset_; }
    [[nodiscard]] CheckReport& Result() { return report_; }

    /// @name Steps
    /// @{
    template <class Number>
    [[nodiscard]] bool Read(Number& number) {
        const auto piece = Take(sizeof(Number), sizeof(Number));
        if (piece.count == 0)
            return false;
        std::memcpy(&number, piece.bytes, sizeof(Number));
        return true;
    }
    /// Reads a value of any length.
    [[nodiscard]] bool Read(void* target, size_t byteCount);
    [[nodiscard]] bool Skip(uint64_t byteCount);
    /// Takes what is at hand of the next `most` bytes, in whole units; see `CheckSource::Take`.
    [[nodiscard]] CheckSource::Piece Take(size_t unit, uint64_t most);
    /// @}

    /// Adds a finding; `makeText()` runs only where it is kept.
    template <class MakeText>
    void Report(CheckCode code, uint64_t offset, const MakeText& makeText) {
        if (Count(code))
            report_.findings.push_back({code, offset, makeText()});
    }
    /// Adds a finding behind which nothing can be read.
    template <class MakeText>
    bool Stop(CheckCode code, uint64_t offset, const MakeText& makeText) {
        Report(code, offset, makeText);
        canGoOn_ = false;
        return false;
    }

private:
    bool Count(CheckCode code);
    bool StopAtEnd(uint64_t wanted);

    CheckSource source_;
    CheckLimits limits_;
    CheckReport report_;
    uint64_t lastOffset_;
    bool canGoOn_ = true;
};

}  // namespace Vr::detail

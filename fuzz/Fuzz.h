/// What the fuzz targets share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

/// Runs one input, whatever it is; ends the process where a property does not hold.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount);

namespace Vr::fuzz {

/// Ends the process with a text, as a failed property.
[[noreturn]] inline void Fail(const char* text) {
    std::fprintf(stderr, "property violated: %s\n", text);
    std::abort();
}

/// Reads choices from an input; behind its end everything is 0.
class Choices {
public:
    Choices(const std::uint8_t* bytes, std::size_t byteCount)
        : next_(bytes), end_(bytes + byteCount) {}

    bool IsEmpty() const { return next_ == end_; }

    template <class Number>
    Number Take() {
        Number number = 0;
        const std::size_t left = static_cast<std::size_t>(end_ - next_);
        const std::size_t taken = left < sizeof(number) ? left : sizeof(number);
        if (taken > 0)
            std::memcpy(&number, next_, taken);
        next_ += taken;
        return number;
    }
    /// Returns a number below `bound`, which is not 0.
    std::size_t Below(std::size_t bound) { return Take<std::uint16_t>() % bound; }

private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

}  // namespace Vr::fuzz

/// Seeded random numbers for property tests, the same on every platform and compiler.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace Vr::test {

/// Returns the seed of this run: the environment variable VERIDANE_TEST_SEED, or a fixed number.
inline std::uint64_t TestSeed() {
    const char* const text = std::getenv("VERIDANE_TEST_SEED");
    return text ? std::strtoull(text, nullptr, 0) : 20130711;
}

/// A generator (splitmix64) for one round of a property test.
///
///     for (std::size_t round = 0; round < 200; ++round) {
///         Random random(round);
///         SCOPED_TRACE(random.Trace());
class Random {
public:
    explicit Random(std::uint64_t round) : round_(round), state_(TestSeed()) {
        state_ = Next() + round * 0xD1342543DE82EF95u;
    }

    /// Says how to run this round again.
    std::string Trace() const {
        return "VERIDANE_TEST_SEED=" + std::to_string(TestSeed()) + ", round " +
               std::to_string(round_);
    }

    std::uint64_t Next() {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
        return mixed ^ (mixed >> 31);
    }
    /// Returns a number below `bound`, which is not 0.
    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(Next() % bound); }
    bool Chance(unsigned percent) { return Below(100) < percent; }
    /// Returns a multiple of 2^-53 from 0 up to, not including, 1.
    double Unit() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
    double Between(double low, double high) { return low + (high - low) * Unit(); }

    template <class Value>
    const Value& OneOf(const std::vector<Value>& values) {
        return values[Below(values.size())];
    }

private:
    std::uint64_t round_;
    std::uint64_t state_;
};

}  // namespace Vr::test

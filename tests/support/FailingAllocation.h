/// Makes `operator new` fail on purpose and counts what it hands out.
///
/// The functions are replaced for the whole program by FailingAllocation.cpp: add that file to the
/// executables that need it, and to no other. On Windows a module keeps its own `operator new`.
#pragma once

#include <cstddef>

namespace Vr::test {

/// Memory blocks handed out and not yet given back.
std::size_t LiveAllocations();
/// Memory blocks handed out since the program started.
std::size_t AllocationCount();

/// Lets one allocation, or all from one on, throw `std::bad_alloc` as long as this object lives.
///
///     for (std::size_t number = 1;; ++number) {
///         FailAllocation failure(number);
///         ... run, note what was thrown ...
///         if (!failure.HasHappened())
///             break;
class FailAllocation {
public:
    enum class Fails { kOnce, kFromThenOn };

    /// - Shape: `number` counts from 1, the next allocation.
    explicit FailAllocation(std::size_t number, Fails fails = Fails::kOnce);
    ~FailAllocation();
    FailAllocation(const FailAllocation&) = delete;
    FailAllocation& operator=(const FailAllocation&) = delete;

    /// Whether an allocation has failed yet.
    bool HasHappened() const;
};

/// Measures how much memory is in use at a time since this object was made.
class MeasureAllocation {
public:
    MeasureAllocation();
    MeasureAllocation(const MeasureAllocation&) = delete;
    MeasureAllocation& operator=(const MeasureAllocation&) = delete;

    /// Returns the most that was in use beyond what was before, as large as the heap made each block.
    std::size_t PeakBytes() const;

private:
    std::size_t before_;
};

/// Lets every allocation of more than so many bytes throw `std::bad_alloc` as long as this object lives.
class LimitAllocation {
public:
    explicit LimitAllocation(std::size_t largest);
    ~LimitAllocation();
    LimitAllocation(const LimitAllocation&) = delete;
    LimitAllocation& operator=(const LimitAllocation&) = delete;
};

}  // namespace Vr::test

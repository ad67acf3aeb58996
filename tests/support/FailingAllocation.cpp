#include "support/FailingAllocation.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

std::atomic<std::size_t> liveCount{0};
std::atomic<std::size_t> allocationCount{0};
// The allocation that fails, counted from the first of the program; 0 for none.
std::atomic<std::size_t> failingNumber{0};
std::atomic<bool> failsFromThenOn{false};
std::atomic<bool> hasHappened{false};
constexpr std::size_t kNoLimit = (std::numeric_limits<std::size_t>::max)();
std::atomic<std::size_t> largestSize{kNoLimit};
std::atomic<std::size_t> liveBytes{0};
std::atomic<std::size_t> peakBytes{0};

void CountBytes(void* memory) {
    const std::size_t now = liveBytes += malloc_usable_size(memory);
    std::size_t peak = peakBytes;
    while (peak < now && !peakBytes.compare_exchange_weak(peak, now)) {
    }
}

bool IsToFail(std::size_t number, std::size_t size) {
    const std::size_t failing = failingNumber;
    if (size > largestSize)
        return true;
    return failing != 0 && (failsFromThenOn ? number >= failing : number == failing);
}

// Counts an allocation that `allocate` makes, or fails in its place.
template <class Allocate>
void* Counted(std::size_t size, const Allocate& allocate) {
    const std::size_t number = ++allocationCount;
    void* const memory = IsToFail(number, size) ? nullptr : allocate();
    if (memory == nullptr) {
        hasHappened = true;
        throw std::bad_alloc();
    }
    ++liveCount;
    CountBytes(memory);
    return memory;
}

}  // namespace

void* operator new(std::size_t size) {
    return Counted(size, [=] { return std::malloc(size > 0 ? size : 1); });
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    const auto bytes = static_cast<std::size_t>(alignment);
    return Counted(size,
                   [=] { return std::aligned_alloc(bytes, (size + bytes - 1) / bytes * bytes); });
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        --liveCount;
        liveBytes -= malloc_usable_size(memory);
    }
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

void operator delete(void* memory, std::align_val_t) noexcept {
    operator delete(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    operator delete(memory);
}

// The forms below call those above in any case, but for the sanitizers, which have each form themselves.

void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return operator new(size, std::nothrow);
}

void operator delete[](void* memory) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace Vr::test {

std::size_t LiveAllocations() {
    return liveCount;
}

std::size_t AllocationCount() {
    return allocationCount;
}

FailAllocation::FailAllocation(std::size_t number, Fails fails) {
    hasHappened = false;
    failsFromThenOn = fails == Fails::kFromThenOn;
    failingNumber = allocationCount + number;
}

FailAllocation::~FailAllocation() {
    failingNumber = 0;
}

bool FailAllocation::HasHappened() const {
    return hasHappened;
}

MeasureAllocation::MeasureAllocation() : before_(liveBytes) {
    peakBytes = before_;
}

std::size_t MeasureAllocation::PeakBytes() const {
    return peakBytes - before_;
}

LimitAllocation::LimitAllocation(std::size_t largest) {
    largestSize = largest;
}

LimitAllocation::~LimitAllocation() {
    largestSize = kNoLimit;
}

}  // namespace Vr::test

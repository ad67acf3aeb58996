#include "support/FailingAllocation.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> liveCount{0};
std::atomic<std::size_t> allocationCount{0};
// The allocation that fails, counted from the first of the program; 0 for none.
std::atomic<std::size_t> failingNumber{0};
std::atomic<bool> failsFromThenOn{false};
std::atomic<bool> hasHappened{false};

bool IsToFail(std::size_t number) {
    const std::size_t failing = failingNumber;
    return failing != 0 && (failsFromThenOn ? number >= failing : number == failing);
}

}  // namespace

void* operator new(std::size_t size) {
    const std::size_t number = ++allocationCount;
    void* const memory = IsToFail(number) ? nullptr : std::malloc(size > 0 ? size : 1);
    if (memory == nullptr) {
        hasHappened = true;
        throw std::bad_alloc();
    }
    ++liveCount;
    return memory;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr)
        --liveCount;
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
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

}  // namespace Vr::test

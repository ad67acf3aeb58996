// Stands before the C library's allocation functions for the whole process, operator new included, and
// counts while it is told to. Outside of that a call costs one test of a flag.

#include "peers/MemoryCount.h"

#include <atomic>

#if defined(__GLIBC__)
#include <malloc.h>

#include <cerrno>
#include <cstddef>

extern "C" {
void* __libc_malloc(size_t bytes);
void* __libc_calloc(size_t count, size_t bytes);
void* __libc_realloc(void* block, size_t bytes);
void* __libc_memalign(size_t alignment, size_t bytes);
void __libc_free(void* block);
}

namespace {

std::atomic<bool> isCounting{false};
std::atomic<long long> heldBytes{0};
std::atomic<long long> mostBytes{0};

long long SizeOf(void* block) {
    return static_cast<long long>(malloc_usable_size(block));
}

void Add(long long bytes) {
    const long long held = heldBytes.fetch_add(bytes, std::memory_order_relaxed) + bytes;
    long long most = mostBytes.load(std::memory_order_relaxed);
    while (held > most && !mostBytes.compare_exchange_weak(most, held, std::memory_order_relaxed)) {
    }
}

void* Counted(void* block) {
    if (block && isCounting.load(std::memory_order_relaxed))
        Add(SizeOf(block));
    return block;
}

void Uncount(void* block) {
    if (block && isCounting.load(std::memory_order_relaxed))
        heldBytes.fetch_sub(SizeOf(block), std::memory_order_relaxed);
}

}  // namespace

// Seen by every library of the process, whatever the visibility of this program's own names.
#pragma GCC visibility push(default)
extern "C" {
void* malloc(size_t bytes) {
    return Counted(__libc_malloc(bytes));
}
void* calloc(size_t count, size_t bytes) {
    return Counted(__libc_calloc(count, bytes));
}
void* realloc(void* block, size_t bytes) {
    Uncount(block);
    return Counted(__libc_realloc(block, bytes));
}
void* memalign(size_t alignment, size_t bytes) {
    return Counted(__libc_memalign(alignment, bytes));
}
void* aligned_alloc(size_t alignment, size_t bytes) {
    return Counted(__libc_memalign(alignment, bytes));
}
int posix_memalign(void** block, size_t alignment, size_t bytes) {
    void* const made = Counted(__libc_memalign(alignment, bytes));
    if (!made)
        return ENOMEM;
    *block = made;
    return 0;
}
void free(void* block) {
    Uncount(block);
    __libc_free(block);
}
}
#pragma GCC visibility pop

namespace Vr::bench::peers {

double CountMemory(bool start) {
    if (start) {
        heldBytes = 0;
        mostBytes = 0;
    }
    isCounting = start;
    return start ? 0.0 : static_cast<double>(mostBytes);
}

}  // namespace Vr::bench::peers

#else

namespace Vr::bench::peers {

double CountMemory(bool) {
    return 0.0;
}

}  // namespace Vr::bench::peers

#endif

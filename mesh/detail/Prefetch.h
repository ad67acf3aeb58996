#pragma once

#if defined(__has_builtin)
#if __has_builtin(__builtin_prefetch)
#define VERIDANE_HAS_PREFETCH 1
#endif
#endif

namespace Vr::detail {

/// Asks for the cache line at `address` before it is read; a hint that changes no result.
///
/// The address may lie outside every object, it is never dereferenced.
inline void Prefetch(const void* address) noexcept {
#if defined(VERIDANE_HAS_PREFETCH)
    __builtin_prefetch(address);
    // g++ drops calls of functions that do nothing else, as they change no result.
    __asm__ volatile("");
#else
    static_cast<void>(address);
#endif
}

/// Asks for a whole value, which may lie across two cache lines.
template <class Value>
void PrefetchWhole(const Value* value) noexcept {
    Prefetch(value);
    Prefetch(reinterpret_cast<const char*>(value + 1) - 1);
}

}  // namespace Vr::detail

#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <type_traits>
#include <vector>

#if defined(_OPENMP)
#include <omp.h>
#endif

#include "mesh/detail/LargeMeshes.h"

namespace Vr::detail {

/// Returns how many workers `ParallelRanges` uses for `count` elements: at least `grain` elements
/// each, and no more than the run-time's default number of threads.
[[nodiscard]] inline size_t WorkerCount(size_t count, size_t grain) {
#if defined(_OPENMP)
    const size_t threads = static_cast<size_t>(std::max(1, omp_get_max_threads()));
    const size_t least = kSmallAsLarge ? 1 : std::max<size_t>(1, grain);
    return std::max<size_t>(1, std::min(threads, count / least));
#else
    static_cast<void>(count);
    static_cast<void>(grain);
    return 1;
#endif
}

/// Returns the first element of a worker's range when `count` elements are dealt out in order.
[[nodiscard]] inline size_t RangeBegin(size_t count, size_t worker, size_t workerCount) {
    const size_t share = count / workerCount;
    const size_t longer = count % workerCount;
    return worker * share + std::min(worker, longer);
}

/// Runs `body(begin, end, worker)` on one contiguous range a worker and returns after all ended.
///
/// - Order: worker w has the w-th range, so results gathered by worker are in element order
///   whatever the number of workers.
/// - Throws: what the body of the lowest worker threw, after the join; `std::bad_alloc` before the
///   start, for several workers of a body that may throw. With a `noexcept` body nothing.
template <class Body>
void ParallelRanges(size_t count, size_t workerCount, const Body& body) {
    if (workerCount <= 1) {
        body(size_t{0}, count, size_t{0});
        return;
    }
#if defined(_OPENMP)
    if constexpr (std::is_nothrow_invocable_v<const Body&, size_t, size_t, size_t>) {
#pragma omp parallel for schedule(static, 1) num_threads(static_cast <int>(workerCount))
        for (int slot = 0; slot < static_cast<int>(workerCount); ++slot) {
            const size_t worker = static_cast<size_t>(slot);
            body(RangeBegin(count, worker, workerCount), RangeBegin(count, worker + 1, workerCount),
                 worker);
        }
        return;
    }
    std::vector<std::exception_ptr> failures(workerCount);
#pragma omp parallel for schedule(static, 1) num_threads(static_cast <int>(workerCount))
    for (int slot = 0; slot < static_cast<int>(workerCount); ++slot) {
        const size_t worker = static_cast<size_t>(slot);
        try {
            body(RangeBegin(count, worker, workerCount), RangeBegin(count, worker + 1, workerCount),
                 worker);
        } catch (...) {
            failures[worker] = std::current_exception();
        }
    }
    for (const std::exception_ptr& failure : failures)
        if (failure)
            std::rethrow_exception(failure);
#else
    for (size_t worker = 0; worker < workerCount; ++worker)
        body(RangeBegin(count, worker, workerCount), RangeBegin(count, worker + 1, workerCount),
             worker);
#endif
}

}  // namespace Vr::detail

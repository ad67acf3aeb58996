#include "mesh/detail/ParallelFor.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

// LLVM's OpenMP loses records of threads when the number of workers rises from call to call, as it does
// here. In this program alone leaks under its calls are left out, those of loop bodies with them.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();

const char* __lsan_default_suppressions() {
    return "leak:libomp.so";
}

namespace {

using Vr::detail::ParallelRanges;
using Vr::detail::RangeBegin;
using Vr::detail::WorkerCount;

#if defined(_OPENMP)
TEST(WorkerCount, IsTheNumberOfThreadsUnlessThereIsTooLittleToDo) {
    const int before = omp_get_max_threads();
    omp_set_num_threads(3);
    EXPECT_EQ(WorkerCount(1000, 100), 3u);
    omp_set_num_threads(1);
    EXPECT_EQ(WorkerCount(1000, 100), 1u);
    omp_set_num_threads(3);
    if (!Vr::detail::kSmallAsLarge) {
        EXPECT_EQ(WorkerCount(299, 100), 2u);
        EXPECT_EQ(WorkerCount(199, 100), 1u);
    }
    EXPECT_EQ(WorkerCount(0, 100), 1u);
    EXPECT_EQ(WorkerCount(2, 0), 2u) << "a grain of none is one element";
    omp_set_num_threads(before);
}
#endif

TEST(ParallelRanges, ElementsAreDealtOutInOrderTheFirstWorkersHaveOneMore) {
    // Ten among three: four, three, three.
    EXPECT_EQ(RangeBegin(10, 0, 3), 0u);
    EXPECT_EQ(RangeBegin(10, 1, 3), 4u);
    EXPECT_EQ(RangeBegin(10, 2, 3), 7u);
    EXPECT_EQ(RangeBegin(10, 3, 3), 10u);
}

TEST(ParallelRanges, EveryElementHasOneWorker) {
    for (const size_t workerCount : {1u, 2u, 3u, 7u, 12u}) {
        SCOPED_TRACE(workerCount);
        std::vector<size_t> visits(10, 0);
        std::vector<size_t> firstOf(workerCount, 99);
        ParallelRanges(visits.size(), workerCount, [&](size_t begin, size_t end, size_t worker) {
            firstOf[worker] = begin;
            for (size_t element = begin; element < end; ++element)
                ++visits[element];
        });
        EXPECT_EQ(visits, std::vector<size_t>(10, 1));
        for (size_t worker = 0; worker < workerCount; ++worker)
            EXPECT_EQ(firstOf[worker], RangeBegin(10, worker, workerCount));
    }
}

TEST(ParallelRanges, TheLowestWorkersExceptionReachesTheCallerAfterAllHaveEnded) {
    std::vector<size_t> visits(9, 0);
    try {
        ParallelRanges(visits.size(), 3, [&](size_t begin, size_t end, size_t worker) {
            for (size_t element = begin; element < end; ++element)
                ++visits[element];
            if (worker > 0)
                throw std::runtime_error("worker " + std::to_string(worker));
        });
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "worker 1");
    }
    for (size_t element = 0; element < 6; ++element)
        EXPECT_EQ(visits[element], 1u);
}

TEST(ParallelRanges, OneWorkerRunsInTheCallersOwnCall) {
    const auto fail = [](size_t, size_t, size_t) { throw std::runtime_error("alone"); };
    EXPECT_THROW(ParallelRanges(5, 1, fail), std::runtime_error);
    size_t called = 0;
    ParallelRanges(
        0, 0, [&](size_t begin, size_t end, size_t worker) { called += begin + end + worker + 1; });
    EXPECT_EQ(called, 1u) << "without elements there is one empty range";
}

}  // namespace

#include "mesh/detail/ValueSort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::detail;
using namespace Vr::test;

struct Source {
    const std::vector<ON_3dPoint>& values;

    size_t Count() const { return values.size(); }
    const ON_3dPoint& ValueOf(uint32_t number) const { return values[number]; }
    template <class Body>
    void ForEachBlock(const Body& body) const {
        std::vector<uint32_t> numbers(values.size());
        for (uint32_t number = 0; number < numbers.size(); ++number)
            numbers[number] = number;
        static_cast<void>(body(numbers.data(), numbers.size()));
    }
};

// Sorts and compares with the standard library: values in order, every number once and with its value.
void ExpectSorted(const std::vector<ON_3dPoint>& values) {
    std::vector<NumberedValue<ON_3dPoint>> sorted;
    const auto emit = [&](const NumberedValue<ON_3dPoint>* run, size_t count) {
        sorted.insert(sorted.end(), run, run + count);
    };
    ValueSorter<ON_3dPoint, uint32_t, decltype(emit)>(emit).Sort(Source{values});
    ASSERT_EQ(sorted.size(), values.size());
    std::vector<ON_3dPoint> expected = values;
    std::stable_sort(expected.begin(), expected.end(),
                     [](const ON_3dPoint& a, const ON_3dPoint& b) { return TotalOrderLess(a, b); });
    std::vector<bool> isThere(values.size(), false);
    for (size_t place = 0; place < sorted.size(); ++place) {
        ASSERT_TRUE(AreEqual(sorted[place].value, expected[place])) << place;
        ASSERT_TRUE(HaveSameBits(sorted[place].value, values[sorted[place].number]));
        ASSERT_FALSE(isThere[sorted[place].number]);
        isThere[sorted[place].number] = true;
    }
}

TEST(ValueSort, ManyEqualValuesAreOneRun) {
    ExpectSorted(std::vector<ON_3dPoint>(100, ON_3dPoint(1, 2, 3)));
    ExpectSorted(std::vector<ON_3dPoint>(5000, ON_3dPoint(1, 2, 3)));
}

TEST(ValueSort, FewAndNoneAreSorted) {
    ExpectSorted({});
    const ON_3dPoint last(3, 0, 0);
    ExpectSorted({last});
    ExpectSorted({last, ON_3dPoint(1, 5, 0), ON_3dPoint(1, 4, 0), ON_3dPoint(1, 4, -1), last});
}

TEST(ValueSort, EveryAxisDecidesWhereTheOnesBeforeAreEqual) {
    for (const size_t count : {25u, 300u, 4096u, 9000u}) {
        for (const int axis : {0, 1, 2}) {
            SCOPED_TRACE(std::to_string(count) + " along axis " + std::to_string(axis));
            std::vector<ON_3dPoint> values(count, ON_3dPoint(7, 7, 7));
            for (size_t i = 0; i < count; ++i)
                values[i][axis] = static_cast<double>((i * 7919) % count) / 3.0;
            ExpectSorted(values);
        }
    }
}

TEST(ValueSort, UnevenlySpreadInfiniteAndTinyExtentsAreSortedToo) {
    const double infinity = std::numeric_limits<double>::infinity();
    for (size_t round = 0; round < 30; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        std::vector<ON_3dPoint> values(round % 2 ? 6000 : 200);
        for (ON_3dPoint& value : values) {
            const double scale = std::ldexp(1.0, -40 * static_cast<int>(random.Below(25)));
            value = ON_3dPoint(random.Between(-1, 1) * scale, random.Chance(20) ? -0.0 : 0.0,
                               static_cast<double>(random.Below(4)));
        }
        if (round % 3 == 1)
            values[random.Below(values.size())].x = infinity;
        if (round % 3 == 2)
            for (ON_3dPoint& value : values)
                value.x = static_cast<double>(random.Below(3)) * 5e-324;
        ExpectSorted(values);
    }
}

}  // namespace

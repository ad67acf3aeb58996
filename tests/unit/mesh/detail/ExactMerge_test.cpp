#include "mesh/detail/ExactMerge.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/Caught.h"
#include "support/MergeSameOracle.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::detail;
using namespace Vr::test;
using Numbers = std::vector<size_t>;

TEST(ValueOrder, ZerosOfBothSignsAreEqualAndHashAlike) {
    const ON_3dPoint plus(0.0, 1.0, 0.0);
    const ON_3dPoint minus(-0.0, 1.0, -0.0);
    EXPECT_TRUE(AreEqual(plus, minus));
    EXPECT_EQ(HashOf(plus), HashOf(minus));
    EXPECT_FALSE(HaveSameBits(plus, minus));
    EXPECT_FALSE(TotalOrderLess(plus, minus));
    EXPECT_FALSE(TotalOrderLess(minus, plus));
}

TEST(ValueOrder, TheTotalOrderIsThatOfTheKernelWhereThereIsNoNaN) {
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> coordinates = {-infinity, -1e308, -1.0, -5e-324, -0.0,    0.0,
                                             5e-324,    1.0,    2.0,  1e308,   infinity};
    for (const double x : coordinates) {
        for (const double y : coordinates) {
            const ON_3dPoint first(x, 1.0, y);
            for (const double otherX : coordinates) {
                const ON_3dPoint second(otherX, 1.0, 0.0);
                EXPECT_EQ(TotalOrderLess(first, second), first < second);
                EXPECT_EQ(IsLessFrom<0>(first, second), first < second);
            }
        }
    }
}

TEST(ValueOrder, TheTotalOrderPutsNaNBehindInfinity) {
    const ON_3dVector infinite(std::numeric_limits<double>::infinity(), 0, 0);
    const ON_3dVector nan(std::numeric_limits<double>::quiet_NaN(), 0, 0);
    EXPECT_TRUE(TotalOrderLess(infinite, nan));
    EXPECT_FALSE(TotalOrderLess(nan, infinite));
    EXPECT_FALSE(TotalOrderLess(nan, nan));
}

TEST(ValuePool, NumbersValuesInOrderOfFirstUseWhileItGrows) {
    ValuePool<ON_3dPoint, uint32_t> pool(0);
    const size_t count = 5000;
    for (const int pass : {0, 1}) {
        SCOPED_TRACE(pass);
        for (size_t i = 0; i < count; ++i) {
            const ON_3dPoint point(static_cast<double>(i % 50), 0.0, static_cast<double>(i / 50));
            uint32_t number = 0;
            pool.FindOrAdd(
                1, [&](size_t) { return point; }, &number);
            ASSERT_EQ(number, i);
        }
    }
    EXPECT_EQ(pool.Count(), count);
    EXPECT_FALSE(pool.HasMixedZeros());
}

TEST(ValuePool, ARepeatedValueWithinOneBatchHasOneNumber) {
    ValuePool<ON_Color, uint64_t> pool(0);
    const ON_Color colors[] = {ON_Color(7u), ON_Color(3u), ON_Color(7u), ON_Color(3u)};
    uint64_t numbers[4];
    pool.FindOrAdd(
        4, [&](size_t i) { return colors[i]; }, numbers);
    EXPECT_EQ(std::vector<uint64_t>(numbers, numbers + 4), (std::vector<uint64_t>{0, 1, 0, 1}));
}

TEST(ValuePool, AnUnfoundValueHasANumberAndIsNotFound) {
    ValuePool<ON_Color, uint32_t> pool(0);
    const ON_Color color(7u);
    EXPECT_EQ(pool.AddUnfound(color), 0u);
    uint32_t number = 0;
    pool.FindOrAdd(
        1, [&](size_t) { return color; }, &number);
    EXPECT_EQ(number, 1u);
    EXPECT_EQ(pool.TakeValues().size(), 2u);
}

template <class Number>
void ExpectColorsInOrderOfFirstUse() {
    ValuePool<ON_Color, Number> pool(0);
    std::map<unsigned int, Number> numberOf;
    for (std::size_t round = 0; round < 60; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        // All bits set is also what free places hold, and clusters fill buckets beyond their room.
        std::vector<unsigned int> batch = {0u, 0xFFFFFFFFu};
        for (std::size_t left = random.Below(500); left > 0; --left)
            batch.push_back(static_cast<unsigned int>(random.Below(3000)) *
                            (random.Chance(50) ? 1u : 0x10001u));
        std::vector<Number> numbers(batch.size());
        pool.FindOrAdd(
            batch.size(), [&](size_t i) { return ON_Color(batch[i]); }, numbers.data());
        for (std::size_t i = 0; i < batch.size(); ++i) {
            const auto known = numberOf.emplace(batch[i], static_cast<Number>(numberOf.size()));
            ASSERT_EQ(numbers[i], known.first->second);
        }
    }
    ASSERT_EQ(pool.Count(), numberOf.size());
    EXPECT_GT(pool.Count(), 2560u) << "the table has not grown";
    const std::vector<ON_Color> values = pool.TakeValues();
    for (const auto& [color, number] : numberOf)
        ASSERT_EQ(static_cast<unsigned int>(values[number]), color);
}

TEST(ColorPool, NumbersColorsInOrderOfFirstUseWhileItGrows) {
    ExpectColorsInOrderOfFirstUse<uint32_t>();
    ExpectColorsInOrderOfFirstUse<uint64_t>();
}

// Numbers of 64 bits come into use beyond 2^31 values; here they are given few.
TEST(ExactMerge, GivesTheSameWithNumbersOfBothWidths) {
    for (size_t round = 0; round < 20; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        std::vector<ON_3dVector> values;
        Numbers numbers;
        const size_t distinctCount = round % 2 ? 8000 : 100;
        for (size_t i = 0; i < 10000; ++i) {
            values.push_back(ON_3dVector(static_cast<double>(random.Below(distinctCount)), 0, 0));
            numbers.push_back(random.Below(10000));
        }
        std::vector<ON_3dVector> narrowValues = values;
        Numbers narrowNumbers = numbers;
        const ArrayRole role(values);
        ExactMerge<uint64_t, ArrayRole<ON_3dVector>>(role, numbers.data(), numbers.size()).Run();
        const ArrayRole narrowRole(narrowValues);
        ExactMerge<uint32_t, ArrayRole<ON_3dVector>>(narrowRole, narrowNumbers.data(),
                                                     narrowNumbers.size())
            .Run();
        ASSERT_TRUE(SameBits(&values, &narrowValues));
        ASSERT_EQ(numbers, narrowNumbers);
        ASSERT_EQ(values.capacity(), values.size()) << "memory that nobody needs is kept";
    }
}

TEST(ValuePool, MoreValuesThanNumbersAreRefused) {
    // With 16 bits there are numbers for 32767 values.
    ValuePool<ON_3dPoint, uint16_t> pool(0);
    uint16_t number = 0;
    const auto add = [&](size_t value) {
        pool.FindOrAdd(
            1, [&](size_t) { return ON_3dPoint(static_cast<double>(value), 0, 0); }, &number);
    };
    for (size_t value = 0; value < 32767; ++value)
        add(value);
    EXPECT_EQ(number, 32766u);
    EXPECT_EQ(CaughtFrom([&] { add(32767); }), LengthError("unordered_map/set too long"));
    EXPECT_EQ(pool.Count(), 32767u);

    ValuePool<ON_Color, uint16_t> colors(0);
    for (size_t value = 0; value < 32767; ++value)
        colors.AddUnfound(ON_Color(0u));
    EXPECT_EQ(CaughtFrom([&] { colors.AddUnfound(ON_Color(0u)); }),
              LengthError("unordered_map/set too long"));
}

// Hardly a value repeats, so that all are sorted without a pool.
TEST(ExactMerge, OfZerosOfBothSignsTheFirstUsedStandsForAllWhereValuesAreSortedAlone) {
    std::vector<ON_3dPoint> values;
    Numbers numbers;
    for (size_t i = 0; i < 4000; ++i)
        values.push_back(ON_3dPoint(static_cast<double>(1 + (i * 7919) % 4000), 0.0, 0.0));
    values.push_back(ON_3dPoint(1.0, 0.0, -0.0));
    for (size_t number = values.size(); number > 0; --number)
        numbers.push_back(number - 1);
    MergeEqual(ArrayRole(values), numbers);
    ASSERT_EQ(values.size(), 4000u);
    for (size_t place = 0; place < values.size(); ++place)
        ASSERT_EQ(values[place].x, static_cast<double>(place + 1));
    // The last value is used first; number 0 of the old values is its equal.
    EXPECT_TRUE(std::signbit(values[0].z));
    EXPECT_EQ(numbers.front(), 0u);
    EXPECT_EQ(numbers.back(), 0u);
    EXPECT_FALSE(std::signbit(values[1].z));
}

// The zero that stands first is like the memory that values are yet to be written to.
TEST(ExactMerge, OfZerosAloneTheFirstUsedStandsForAllWhereValuesAreSortedAlone) {
    constexpr size_t kCount = 40000;
    for (const bool isNegativeFirst : {false, true}) {
        SCOPED_TRACE(isNegativeFirst);
        const double firstZero = isNegativeFirst ? -0.0 : 0.0;
        std::vector<ON_3dPoint> values = {ON_3dPoint(-firstZero, 0.0, 0.0)};
        for (size_t i = 0; i < kCount; ++i)
            values.push_back(ON_3dPoint(static_cast<double>(1 + (i * 7919) % kCount), 0.0, 0.0));
        values.push_back(ON_3dPoint(firstZero, 0.0, 0.0));
        Numbers numbers;
        for (size_t number = values.size(); number > 0; --number)
            numbers.push_back(number - 1);
        MergeEqual(ArrayRole(values), numbers);
        ASSERT_EQ(values.size(), kCount + 1);
        EXPECT_EQ(std::signbit(values[0].x), isNegativeFirst);
        EXPECT_EQ(values[1].x, 1.0);
        EXPECT_EQ(numbers.front(), 0u);
        EXPECT_EQ(numbers.back(), 0u);
    }
}

}  // namespace

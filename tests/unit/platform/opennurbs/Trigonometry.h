/// Comparison of values that went through sine and cosine.
#pragma once

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/SameBits.h"

namespace kerneltest {

/// Says whether this C library's sine and cosine give the recorded bits (glibc 2.36 on x86-64).
bool HasRecordedTrigonometry();

/// Compares bit for bit where the C library rounds sine and cosine as the recorded one did. Another
/// library may miss them by a unit in the last place; then each number may differ by eight units in
/// the last place of the largest number of the value, which is what one such miss grows to in the
/// few products and the unitizing that follow.
struct SameUpToTrigonometry {
    template <class Value>
    testing::AssertionResult operator()(const char* actualText, const char* expectedText,
                                        const Value& actualValue,
                                        const Value& expectedValue) const {
        const testing::AssertionResult exact =
            SameBits()(actualText, expectedText, actualValue, expectedValue);
        if (exact || HasRecordedTrigonometry()) {
            return exact;
        }
        const Doubles actual = DoublesOf(actualValue);
        const Doubles expected = DoublesOf(expectedValue);
        double largest = 1.0;
        for (const double number : expected) {
            largest = std::max(largest, std::fabs(number));
        }
        for (size_t number = 0; number < expected.size(); ++number) {
            if (!(std::fabs(actual[number] - expected[number]) <= 8.0 * ON_EPSILON * largest)) {
                return exact;
            }
        }
        return testing::AssertionSuccess();
    }
};

}  // namespace kerneltest

#define EXPECT_SAME_TRIGONOMETRY(actual, expected) \
    EXPECT_PRED_FORMAT2(kerneltest::SameUpToTrigonometry(), actual, expected)

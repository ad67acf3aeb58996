/// Comparison of kernel values bit for bit.
#pragma once

#include <gtest/gtest.h>

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "opennurbs.h"

namespace kerneltest {

using Doubles = std::vector<double>;

/// @name The numbers of a value, in the order of its fields
/// @{
Doubles DoublesOf(double x);
Doubles DoublesOf(const Doubles& values);
Doubles DoublesOf(const ON_2dPoint& p);
Doubles DoublesOf(const ON_2dVector& v);
Doubles DoublesOf(const ON_3dPoint& p);
Doubles DoublesOf(const ON_3dVector& v);
Doubles DoublesOf(const ON_Interval& i);
Doubles DoublesOf(const ON_Line& l);
Doubles DoublesOf(const ON_BoundingBox& b);
Doubles DoublesOf(const ON_Plane& p);
Doubles DoublesOf(const ON_Circle& c);
Doubles DoublesOf(const ON_Xform& x);
/// @}

std::uint64_t BitsOf(double x);

/// Number of representable doubles from `a` to `b`; 0 for the same bits or two NaNs.
std::uint64_t UlpsBetween(double a, double b);

/// Compares values by the bits of their doubles, all NaNs being alike.
struct SameBits {
    template <class Value>
    testing::AssertionResult operator()(const char* actualText, const char* expectedText,
                                        const Value& actualValue,
                                        const Value& expectedValue) const {
        const Doubles actual = DoublesOf(actualValue);
        const Doubles expected = DoublesOf(expectedValue);
        if (actual.size() != expected.size()) {
            return testing::AssertionFailure()
                   << actualText << " has " << actual.size() << " numbers, " << expectedText
                   << " has " << expected.size();
        }
        for (size_t number = 0; number < actual.size(); ++number) {
            if (UlpsBetween(actual[number], expected[number]) != 0) {
                char text[160];
                std::snprintf(text, sizeof text,
                              "%.17g (%016" PRIx64 ") instead of %.17g (%016" PRIx64 ")",
                              actual[number], BitsOf(actual[number]), expected[number],
                              BitsOf(expected[number]));
                return testing::AssertionFailure() << actualText << " differs from " << expectedText
                                                   << " in number " << number << ": " << text;
            }
        }
        return testing::AssertionSuccess();
    }
};

}  // namespace kerneltest

#define EXPECT_SAME_BITS(actual, expected) \
    EXPECT_PRED_FORMAT2(kerneltest::SameBits(), actual, expected)

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

inline Doubles DoublesOf(double x) {
    return {x};
}
inline Doubles DoublesOf(const Doubles& values) {
    return values;
}
inline Doubles DoublesOf(const ON_2dPoint& p) {
    return {p.x, p.y};
}
inline Doubles DoublesOf(const ON_2dVector& v) {
    return {v.x, v.y};
}
inline Doubles DoublesOf(const ON_3dPoint& p) {
    return {p.x, p.y, p.z};
}
inline Doubles DoublesOf(const ON_3dVector& v) {
    return {v.x, v.y, v.z};
}
inline Doubles DoublesOf(const ON_Interval& i) {
    return {i[0], i[1]};
}
inline Doubles DoublesOf(const ON_Line& l) {
    return {l.from.x, l.from.y, l.from.z, l.to.x, l.to.y, l.to.z};
}
inline Doubles DoublesOf(const ON_BoundingBox& b) {
    return {b.m_min.x, b.m_min.y, b.m_min.z, b.m_max.x, b.m_max.y, b.m_max.z};
}
inline Doubles DoublesOf(const ON_Plane& p) {
    return {p.origin.x,         p.origin.y,         p.origin.z,         p.xaxis.x,
            p.xaxis.y,          p.xaxis.z,          p.yaxis.x,          p.yaxis.y,
            p.yaxis.z,          p.zaxis.x,          p.zaxis.y,          p.zaxis.z,
            p.plane_equation.x, p.plane_equation.y, p.plane_equation.z, p.plane_equation.d};
}
inline Doubles DoublesOf(const ON_Circle& c) {
    Doubles values = DoublesOf(c.plane);
    values.push_back(c.radius);
    return values;
}
inline Doubles DoublesOf(const ON_Xform& x) {
    return Doubles(&x.m_xform[0][0], &x.m_xform[0][0] + 16);
}

inline std::uint64_t BitsOf(double x) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &x, sizeof bits);
    return bits;
}

/// Number of representable doubles from `a` to `b`; 0 for the same bits or two NaNs.
inline std::uint64_t UlpsBetween(double a, double b) {
    if (std::isnan(a) && std::isnan(b)) {
        return 0;
    }
    const auto place = [](double x) {
        const auto bits = static_cast<std::int64_t>(BitsOf(x));
        return bits < 0 ? INT64_MIN - bits - 1 : bits;
    };
    const std::int64_t first = place(a);
    const std::int64_t second = place(b);
    return first < second ? static_cast<std::uint64_t>(second) - static_cast<std::uint64_t>(first)
                          : static_cast<std::uint64_t>(first) - static_cast<std::uint64_t>(second);
}

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

/// Numbers that tell whether two results are the same.
#pragma once

#include <algorithm>
#include <utility>

#include "peers/Contest.h"

namespace Vr::bench::peers {

constexpr double kExact = 0.0;
constexpr double kDoubles = 1e-9;  ///< Sums of doubles in another order.
constexpr double kFloats = 1e-4;   ///< Results held in floats.

inline Figure Count(std::string name, size_t count) {
    return {std::move(name), static_cast<double>(count), kExact};
}

/// Adds up `count` vectors so that their places and the signs of their components matter.
///
/// `vectorOf(place)` gives anything with the elements 0, 1 and 2.
template <class VectorOf>
Figure VectorSum(std::string name, size_t count, double tolerance, VectorOf vectorOf) {
    double sum = 0.0;
    for (size_t place = 0; place < count; ++place) {
        const auto vector = vectorOf(place);
        const double sides = std::max<double>(vector[0], 0.0) +
                             2.0 * std::max<double>(vector[1], 0.0) +
                             3.0 * std::max<double>(vector[2], 0.0);
        sum += static_cast<double>(1 + place % 7) * sides;
    }
    return {std::move(name), sum, tolerance};
}

/// Adds up `count` whole numbers so that their places matter.
template <class NumberOf>
Figure NumberSum(std::string name, size_t count, NumberOf numberOf) {
    double sum = 0.0;
    for (size_t place = 0; place < count; ++place)
        sum += static_cast<double>(1 + place % 7) * static_cast<double>(numberOf(place));
    return {std::move(name), sum, kExact};
}

}  // namespace Vr::bench::peers

/// Order, equality and hash of the values that are merged: exact, with +0.0 and -0.0 the same value.
///
/// Every kind of value is seen as a fixed number of coordinates, compared one after the other. For
/// ordinary numbers that is the order of the kernel's own comparison operators. NaN has no place in
/// it; equality, hash and `TotalOrderLess` go by bits and stay consistent with NaN as well.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::detail {

/// A position with its texture coordinate, welded as one value.
struct TexturedPosition {
    ON_3dPoint position;
    ON_2dPoint textureUV;
};

/// @name The coordinates of a value in the order in which they are compared
/// @{
inline std::array<double, 3> Coordinates(const ON_3dPoint& point) {
    return {point.x, point.y, point.z};
}
inline std::array<double, 3> Coordinates(const ON_3dVector& vector) {
    return {vector.x, vector.y, vector.z};
}
inline std::array<double, 5> Coordinates(const TexturedPosition& value) {
    return {value.position.x, value.position.y, value.position.z, value.textureUV.x,
            value.textureUV.y};
}
/// The packed value; a double holds any 32-bit number exactly.
inline std::array<double, 1> Coordinates(const ON_Color& color) {
    return {static_cast<double>(static_cast<unsigned int>(color))};
}
/// @}

template <class Value>
constexpr size_t kAxisCount = std::tuple_size_v<decltype(Coordinates(std::declval<Value>()))>;

[[nodiscard]] inline uint64_t BitsOf(double coordinate) {
    uint64_t bits;
    std::memcpy(&bits, &coordinate, sizeof bits);
    return bits;
}

/// Returns the bits of a coordinate with -0.0 turned into +0.0.
[[nodiscard]] inline uint64_t ValueBitsOf(double coordinate) {
    return BitsOf(coordinate + 0.0);
}

/// Returns whether the values are the same to the last bit, signs of zeros included.
template <class Value>
[[nodiscard]] bool HaveSameBits(const Value& a, const Value& b) {
    const auto first = Coordinates(a);
    const auto second = Coordinates(b);
    uint64_t difference = 0;
    for (size_t axis = 0; axis < kAxisCount<Value>; ++axis)
        difference |= BitsOf(first[axis]) ^ BitsOf(second[axis]);
    return difference == 0;
}

/// Returns whether the values are equal: neither comes before the other.
template <class Value>
[[nodiscard]] bool AreEqual(const Value& a, const Value& b) {
    const auto first = Coordinates(a);
    const auto second = Coordinates(b);
    uint64_t difference = 0;
    for (size_t axis = 0; axis < kAxisCount<Value>; ++axis)
        difference |= ValueBitsOf(first[axis]) ^ ValueBitsOf(second[axis]);
    return difference == 0;
}

template <class Value>
[[nodiscard]] bool HasNaN(const Value& value) {
    bool hasNaN = false;
    for (const double coordinate : Coordinates(value))
        hasNaN |= coordinate != coordinate;
    return hasNaN;
}

/// Returns a hash whose upper bits are good; equal values hash alike.
template <class Value>
[[nodiscard]] uint64_t HashOf(const Value& value) {
    // Coordinates are often short numbers, whose lower bits are all 0. A product moves differences
    // up only, so each step brings the upper half down before the next.
    uint64_t hash = 0;
    for (const double coordinate : Coordinates(value)) {
        hash ^= hash >> 32;
        hash = (hash ^ ValueBitsOf(coordinate)) * 0x9E3779B97F4A7C15u;
    }
    hash ^= hash >> 32;
    return hash * 0xD6E8FEB86659FD93u;
}

/// Returns whether `a` comes before `b`, given that the coordinates before `axis` are equal.
template <size_t axis, class Value>
[[nodiscard]] bool IsLessFrom(const Value& a, const Value& b) {
    if constexpr (axis == kAxisCount<Value>) {
        return false;
    } else {
        const double first = std::get<axis>(Coordinates(a));
        const double second = std::get<axis>(Coordinates(b));
        return first < second || (first == second && IsLessFrom<axis + 1>(a, b));
    }
}

/// An order of all values, NaN included, that is the order of `IsLessFrom` where there is no NaN.
template <class Value>
[[nodiscard]] bool TotalOrderLess(const Value& a, const Value& b) {
    // Positive numbers are ordered as their bits are, negative ones the other way round.
    const auto rank = [](double coordinate) {
        constexpr uint64_t kSign = uint64_t{1} << 63;
        const uint64_t bits = ValueBitsOf(coordinate);
        return bits & kSign ? ~bits : bits | kSign;
    };
    const auto first = Coordinates(a);
    const auto second = Coordinates(b);
    for (size_t axis = 0; axis < kAxisCount<Value>; ++axis)
        if (rank(first[axis]) != rank(second[axis]))
            return rank(first[axis]) < rank(second[axis]);
    return false;
}

}  // namespace Vr::detail

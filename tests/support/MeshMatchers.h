/// Comparison of primitives: by the identity of their arrays, and bit for bit.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// The nine roles an array can have, in the order of the accessors.
enum Role : std::size_t {
    kVertices,
    kNormals,
    kColors,
    kVertexIndices,
    kNormalIndices,
    kColorIndices,
    kTextureUVIndices,
    kUVs,
    kTextureUVs,
    kRoleCount
};

/// The name of a role for messages: "vertex array" and so on.
const char* NameOf(Role role);

/// The addresses of the arrays, null for a missing one. Two equal addresses are one shared array.
using ArrayAddresses = std::array<const void*, kRoleCount>;
ArrayAddresses AddressesOf(const VraMeshPrimitive& mesh);

/// @name Predicates; a failure names the role and the place
/// @{

/// Whether both hold the very same nine arrays, or miss the same ones.
::testing::AssertionResult HaveSameArrays(const VraMeshPrimitive& actual,
                                          const VraMeshPrimitive& expected);
/// Whether crease angle and all nine arrays have the same bits; NaN and zeros by bits, a missing
/// array differs from an empty one, an index array's form counts. Sharing does not count.
::testing::AssertionResult AreBitEqual(const VraMeshPrimitive& actual,
                                       const VraMeshPrimitive& expected);
/// The same of a single role.
::testing::AssertionResult AreBitEqual(const VraMeshPrimitive& actual,
                                       const VraMeshPrimitive& expected, Role role);
/// Whether the roles that share an array among themselves are the same in both.
::testing::AssertionResult ShareAlike(const VraMeshPrimitive& actual,
                                      const VraMeshPrimitive& expected);
/// Whether two doubles have the same bits.
::testing::AssertionResult SameBits(double actual, double expected);
/// Whether the arrays have the same size and bits, or are both missing.
/// @{
::testing::AssertionResult SameBits(const VraMeshPrimitive::VertexArray* actual,
                                    const VraMeshPrimitive::VertexArray* expected);
::testing::AssertionResult SameBits(const VraMeshPrimitive::NormalArray* actual,
                                    const VraMeshPrimitive::NormalArray* expected);
::testing::AssertionResult SameBits(const VraMeshPrimitive::UVArray* actual,
                                    const VraMeshPrimitive::UVArray* expected);
/// @}
/// @}

inline void ExpectSameArrays(const VraMeshPrimitive& actual, const VraMeshPrimitive& expected) {
    EXPECT_TRUE(HaveSameArrays(actual, expected));
}
inline void ExpectBitEqual(const VraMeshPrimitive& actual, const VraMeshPrimitive& expected) {
    EXPECT_TRUE(AreBitEqual(actual, expected));
}

}  // namespace Vr::test

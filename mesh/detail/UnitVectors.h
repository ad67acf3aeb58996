#pragma once

#include <opennurbs.h>

#include <cstddef>

namespace Vr::detail {

/// Vectors component by component, so that the compiler can work on several at a time.
struct VectorBlock {
    static constexpr size_t kCapacity = 64;

    double x[kCapacity];
    double y[kCapacity];
    double z[kCapacity];
};

/// Sets `lengths[i]` to `ON_3dVector::Length` of each vector of the block, to the last bit.
///
/// - Requires: all `kCapacity` vectors are set.
void LengthsOf(const VectorBlock& vectors, double* lengths);

/// Sets `cosines[i]` to the dot product of `a` and `b`, divided by the length of `a`, then of `b`.
///
/// - Requires: all `kCapacity` vectors and lengths are set.
void CosinesOf(const VectorBlock& a, const double* lengthsOfA, const VectorBlock& b,
               const double* lengthsOfB, double* cosines);

/// Does what `ON_3dVector::Unitize` does to each vector, to the last bit.
void UnitizeAll(ON_3dVector* vectors, size_t count);

}  // namespace Vr::detail

// Length and unit vector by openNURBS's operations in openNURBS's order, but without its branches: one
// vector at a time the divisions and the square root wait for each other, and they are most of the
// time that normals take. What its branches are for (zeros, denormals, overflow, NaN) is left to it.
//
// Each loop over a block exists twice, for any processor and for those with wider vectors, where it
// takes half the time. The operations are the same, so the bits are.

#include "mesh/detail/UnitVectors.h"

#include <algorithm>
#include <cmath>
#include <limits>

#if defined(__SSE2__) && defined(__has_builtin) && !defined(VERIDANE_NARROW_VECTORS)
#if __has_builtin(__builtin_cpu_supports)
#define VERIDANE_HAS_WIDE_VECTORS 1
#endif
#endif

#if defined(VERIDANE_HAS_WIDE_VECTORS)
#define VERIDANE_IN_BOTH_VARIANTS __attribute__((always_inline)) inline
#define VERIDANE_WIDE __attribute__((target("avx2")))
#else
#define VERIDANE_IN_BOTH_VARIANTS inline
#define VERIDANE_WIDE
#endif

namespace Vr::detail {

namespace {

constexpr double kSmallestNormal = std::numeric_limits<double>::min();
constexpr double kLargest = std::numeric_limits<double>::max();

bool HasWideVectors() {
#if defined(VERIDANE_HAS_WIDE_VECTORS)
    static const bool hasWideVectors = __builtin_cpu_supports("avx2") != 0;
    return hasWideVectors;
#else
    return false;
#endif
}

// The length, or 0.0 or NaN where the largest component is not above the smallest normal number.
VERIDANE_IN_BOTH_VARIANTS double OrdinaryLength(double x, double y, double z) {
    const double absX = std::fabs(x);
    const double absY = std::fabs(y);
    const double absZ = std::fabs(z);
    // The largest component is exchanged with x.
    const bool isYLargest = (absY >= absX) & (absY >= absZ);
    const bool isZLargest = !isYLargest & (absZ >= absX) & (absZ >= absY);
    const double largest = isYLargest ? absY : (isZLargest ? absZ : absX);
    const double second = isYLargest ? absX : absY;
    const double third = isZLargest ? absX : absZ;
    const double ratio2 = second / largest;
    const double ratio3 = third / largest;
    // A factor and not a choice, which the compiler would turn back into a branch.
    const double isOrdinary = largest > kSmallestNormal ? 1.0 : 0.0;
    return isOrdinary * (largest * std::sqrt(1.0 + ratio2 * ratio2 + ratio3 * ratio3));
}

VERIDANE_IN_BOTH_VARIANTS bool IsOrdinary(double length) {
    return (length > kSmallestNormal) & (length <= kLargest);
}

VERIDANE_IN_BOTH_VARIANTS void SetLengths(const VectorBlock& vectors, double* lengths) {
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i)
        lengths[i] = OrdinaryLength(vectors.x[i], vectors.y[i], vectors.z[i]);
}

VERIDANE_IN_BOTH_VARIANTS void SetCosines(const VectorBlock& a, const double* lengthsOfA,
                                          const VectorBlock& b, const double* lengthsOfB,
                                          double* cosines) {
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i) {
        const double dot = a.x[i] * b.x[i] + a.y[i] * b.y[i] + a.z[i] * b.z[i];
        cosines[i] = dot / lengthsOfA[i] / lengthsOfB[i];
    }
}

// Unitizes the vectors of a block whose length is not ordinary. Their length becomes 1.0, and to divide
// by that changes nothing.
void UnitizeOthers(ON_3dVector* vectors, double* lengths) {
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i) {
        if (!IsOrdinary(lengths[i])) {
            vectors[i].Unitize();
            lengths[i] = 1.0;
        }
    }
}

VERIDANE_IN_BOTH_VARIANTS void UnitizeVectors(ON_3dVector* vectors) {
    double lengths[VectorBlock::kCapacity];
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i)
        lengths[i] = OrdinaryLength(vectors[i].x, vectors[i].y, vectors[i].z);
    int ordinaryCount = 0;
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i)
        ordinaryCount += IsOrdinary(lengths[i]) ? 1 : 0;
    if (ordinaryCount < static_cast<int>(VectorBlock::kCapacity))
        UnitizeOthers(vectors, lengths);
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i) {
        vectors[i].x /= lengths[i];
        vectors[i].y /= lengths[i];
        vectors[i].z /= lengths[i];
    }
}

VERIDANE_WIDE void SetLengthsWide(const VectorBlock& vectors, double* lengths) {
    // LCOV_EXCL_LINE: inlined, its lines are counted
    SetLengths(vectors, lengths);
}

VERIDANE_WIDE void SetCosinesWide(const VectorBlock& a, const double* lengthsOfA,
                                  const VectorBlock& b, const double* lengthsOfB, double* cosines) {
    // LCOV_EXCL_LINE: inlined, its lines are counted
    SetCosines(a, lengthsOfA, b, lengthsOfB, cosines);
}

VERIDANE_WIDE void UnitizeVectorsWide(ON_3dVector* vectors) {
    // LCOV_EXCL_LINE: inlined, its lines are counted
    UnitizeVectors(vectors);
}

void UnitizeBlock(ON_3dVector* vectors) {
    HasWideVectors() ? UnitizeVectorsWide(vectors) : UnitizeVectors(vectors);
}

}  // namespace

void LengthsOf(const VectorBlock& vectors, double* lengths) {
    HasWideVectors() ? SetLengthsWide(vectors, lengths) : SetLengths(vectors, lengths);
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i)
        if (!IsOrdinary(lengths[i]))
            lengths[i] = ON_3dVector(vectors.x[i], vectors.y[i], vectors.z[i]).Length();
}

void CosinesOf(const VectorBlock& a, const double* lengthsOfA, const VectorBlock& b,
               const double* lengthsOfB, double* cosines) {
    HasWideVectors() ? SetCosinesWide(a, lengthsOfA, b, lengthsOfB, cosines)
                     : SetCosines(a, lengthsOfA, b, lengthsOfB, cosines);
}

void UnitizeAll(ON_3dVector* vectors, size_t count) {
    for (; count >= VectorBlock::kCapacity; count -= VectorBlock::kCapacity) {
        UnitizeBlock(vectors);
        vectors += VectorBlock::kCapacity;
    }
    for (; count > 0; --count)
        (vectors++)->Unitize();
}

}  // namespace Vr::detail

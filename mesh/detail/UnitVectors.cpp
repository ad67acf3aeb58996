// Length and unit vector by openNURBS's operations in openNURBS's order, but without its branches: one
// vector at a time the divisions and the square root wait for each other, and they are most of the
// time that normals take. What its branches are for (zeros, denormals, overflow, NaN) is left to it.

#include "mesh/detail/UnitVectors.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vr::detail {

namespace {

constexpr double kSmallestNormal = std::numeric_limits<double>::min();
constexpr double kLargest = std::numeric_limits<double>::max();

// The length, or 0.0 or NaN where the largest component is not above the smallest normal number.
inline double OrdinaryLength(double x, double y, double z) {
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

inline bool IsOrdinary(double length) {
    return length > kSmallestNormal && length <= kLargest;
}

void UnitizeBlock(ON_3dVector* vectors, size_t count) {
    VectorBlock block;
    double lengths[VectorBlock::kCapacity];
    for (size_t i = 0; i < count; ++i) {
        block.x[i] = vectors[i].x;
        block.y[i] = vectors[i].y;
        block.z[i] = vectors[i].z;
    }
    for (size_t i = 0; i < count; ++i) {
        const double length = OrdinaryLength(block.x[i], block.y[i], block.z[i]);
        lengths[i] = length;
        block.x[i] /= length;
        block.y[i] /= length;
        block.z[i] /= length;
    }
    for (size_t i = 0; i < count; ++i) {
        if (IsOrdinary(lengths[i]))
            vectors[i] = ON_3dVector(block.x[i], block.y[i], block.z[i]);
        else
            vectors[i].Unitize();
    }
}

}  // namespace

void LengthsOf(const VectorBlock& vectors, double* lengths) {
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i)
        lengths[i] = OrdinaryLength(vectors.x[i], vectors.y[i], vectors.z[i]);
    for (size_t i = 0; i < VectorBlock::kCapacity; ++i)
        if (!IsOrdinary(lengths[i]))
            lengths[i] = ON_3dVector(vectors.x[i], vectors.y[i], vectors.z[i]).Length();
}

void UnitizeAll(ON_3dVector* vectors, size_t count) {
    for (size_t begin = 0; begin < count; begin += VectorBlock::kCapacity)
        UnitizeBlock(vectors + begin, std::min(count - begin, VectorBlock::kCapacity));
}

}  // namespace Vr::detail

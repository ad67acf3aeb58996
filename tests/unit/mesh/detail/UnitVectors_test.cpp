// Built twice: with the loops for wide vectors where the processor has them, and without.

#include "mesh/detail/UnitVectors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::test;
using Vr::detail::VectorBlock;

double RandomComponent(Random& random, unsigned specialPercent) {
    static const std::vector<double> kSpecial = {0.0,
                                                 -0.0,
                                                 1.0,
                                                 -1.0,
                                                 std::numeric_limits<double>::min(),
                                                 std::numeric_limits<double>::denorm_min(),
                                                 3e-310,
                                                 -1e-300,
                                                 1e300,
                                                 std::numeric_limits<double>::max(),
                                                 std::numeric_limits<double>::infinity(),
                                                 std::numeric_limits<double>::quiet_NaN()};
    if (random.Chance(specialPercent))
        return random.OneOf(kSpecial);
    return std::ldexp(random.Between(-1, 1), static_cast<int>(random.Below(8)) - 4);
}

// In half of the lists hardly a block is without a special number, in the others none has one.
std::vector<ON_3dVector> RandomVectors(Random& random, std::size_t count) {
    const unsigned specialPercent = random.Chance(50) ? 20 : 0;
    std::vector<ON_3dVector> vectors(count);
    for (ON_3dVector& vector : vectors)
        for (int axis = 0; axis < 3; ++axis)
            vector[axis] = RandomComponent(random, specialPercent);
    return vectors;
}

VectorBlock BlockOf(const std::vector<ON_3dVector>& vectors) {
    VectorBlock block;
    for (std::size_t i = 0; i < VectorBlock::kCapacity; ++i) {
        block.x[i] = vectors[i].x;
        block.y[i] = vectors[i].y;
        block.z[i] = vectors[i].z;
    }
    return block;
}

TEST(UnitizeAll, DoesToTheLastBitWhatUnitizeDoesToEach) {
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        std::vector<ON_3dVector> vectors = RandomVectors(random, random.Below(300));
        std::vector<ON_3dVector> expected = vectors;
        Vr::detail::UnitizeAll(vectors.data(), vectors.size());
        for (ON_3dVector& vector : expected)
            vector.Unitize();
        ASSERT_TRUE(SameBits(&vectors, &expected));
    }
}

TEST(LengthsOf, AreToTheLastBitTheLengthsOfEach) {
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<ON_3dVector> vectors = RandomVectors(random, VectorBlock::kCapacity);
        double lengths[VectorBlock::kCapacity];
        Vr::detail::LengthsOf(BlockOf(vectors), lengths);
        for (std::size_t i = 0; i < vectors.size(); ++i) {
            const double expected = vectors[i].Length();
            if (std::isnan(expected))
                ASSERT_TRUE(std::isnan(lengths[i]));
            else
                ASSERT_TRUE(SameBits(lengths[i], expected));
        }
    }
}

TEST(CosinesOf, DivideByTheFirstLengthThenByTheSecond) {
    for (std::size_t round = 0; round < 100; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<ON_3dVector> a = RandomVectors(random, VectorBlock::kCapacity);
        const std::vector<ON_3dVector> b = RandomVectors(random, VectorBlock::kCapacity);
        double lengthsOfA[VectorBlock::kCapacity];
        double lengthsOfB[VectorBlock::kCapacity];
        double cosines[VectorBlock::kCapacity];
        Vr::detail::LengthsOf(BlockOf(a), lengthsOfA);
        Vr::detail::LengthsOf(BlockOf(b), lengthsOfB);
        Vr::detail::CosinesOf(BlockOf(a), lengthsOfA, BlockOf(b), lengthsOfB, cosines);
        for (std::size_t i = 0; i < a.size(); ++i) {
            const double expected = ON_DotProduct(a[i], b[i]) / lengthsOfA[i] / lengthsOfB[i];
            if (std::isnan(expected))
                ASSERT_TRUE(std::isnan(cosines[i]));
            else
                ASSERT_TRUE(SameBits(cosines[i], expected));
        }
    }
}

}  // namespace

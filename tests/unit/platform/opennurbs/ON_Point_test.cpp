// Points and vectors against the recorded results, and their oddities by hand.
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <type_traits>
#include <utility>

#include "unit/platform/opennurbs/GoldenFile.h"
#include "unit/platform/opennurbs/Release.h"
#include "unit/platform/opennurbs/SameBits.h"

using kerneltest::GoldenCases;
using kerneltest::GoldenLine;

namespace {

constexpr char kFile[] = "vectors.txt";
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

double DoubleOfBits(std::uint64_t bits) {
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// The six comparisons of `a` with each of `others`, as rows of digits.
template <class Value>
std::vector<std::string> ComparisonRows(const Value& a, const std::vector<Value>& others) {
    std::vector<std::string> rows(6);
    for (const Value& b : others) {
        rows[0] += a < b ? '1' : '0';
        rows[1] += a <= b ? '1' : '0';
        rows[2] += a > b ? '1' : '0';
        rows[3] += a >= b ? '1' : '0';
        rows[4] += a == b ? '1' : '0';
        rows[5] += a != b ? '1' : '0';
    }
    return rows;
}

template <class Value, class ReadValue>
void ExpectRecordedComparisons(const char* keyword, size_t expectedCount, ReadValue readValue) {
    std::vector<GoldenLine> lines = GoldenCases(kFile, keyword, expectedCount);
    std::vector<Value> values;
    for (GoldenLine& line : lines) {
        values.push_back(readValue(line));
    }
    for (size_t number = 0; number < lines.size(); ++number) {
        SCOPED_TRACE(lines[number].Where());
        for (const std::string& row : ComparisonRows(values[number], values)) {
            EXPECT_EQ(row, lines[number].Word());
        }
        EXPECT_TRUE(lines[number].IsAtEnd());
    }
}

// The definition of the length, step by step.
double SlowLength(const ON_3dVector& v) {
    double x = std::fabs(v.x);
    double y = std::fabs(v.y);
    double z = std::fabs(v.z);
    if (y >= x && y >= z) {
        std::swap(x, y);
    } else if (z >= x && z >= y) {
        std::swap(x, z);
    }
    if (x > std::numeric_limits<double>::min()) {
        y /= x;
        z /= x;
        return x * std::sqrt(1.0 + y * y + z * z);
    }
    return x > 0.0 && x <= std::numeric_limits<double>::max() ? x : 0.0;
}

}  // namespace

TEST(ON_Point, LengthAndUnitizeGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "length3", 99)) {
        SCOPED_TRACE(line.Where());
        ON_3dVector v = line.Vector();
        EXPECT_SAME_BITS(v.Length(), line.Number());
        EXPECT_SAME_BITS(v.LengthSquared(), line.Number());
        ON_3dVector unitized = v;
        EXPECT_EQ(unitized.Unitize(), line.Flag());
        EXPECT_SAME_BITS(unitized, line.Vector());
        EXPECT_EQ(v.IsValid(), line.Flag() && kerneltest::IsWithinLimits(v));
        EXPECT_EQ(v.IsZero(), line.Flag());
        EXPECT_EQ(v.IsUnitVector(), line.Flag());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Point, LengthAndUnitizeInThePlaneGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "length2", 11)) {
        SCOPED_TRACE(line.Where());
        ON_2dVector v = line.Point2();
        EXPECT_SAME_BITS(v.Length(), line.Number());
        EXPECT_EQ(v.Unitize(), line.Flag());
        EXPECT_SAME_BITS(v, ON_2dVector(line.Point2()));
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Point, ComparisonsOfPointsAreTheRecordedOnes) {
    ExpectRecordedComparisons<ON_3dPoint>("comparePoint3", 16,
                                          [](GoldenLine& line) { return line.Point(); });
}

TEST(ON_Point, ComparisonsOfVectorsAreTheRecordedOnes) {
    ExpectRecordedComparisons<ON_3dVector>("compareVector3", 16,
                                           [](GoldenLine& line) { return line.Vector(); });
}

TEST(ON_Point, ComparisonsOfPointsInThePlaneAreTheRecordedOnes) {
    ExpectRecordedComparisons<ON_2dPoint>("comparePoint2", 13,
                                          [](GoldenLine& line) { return line.Point2(); });
}

TEST(ON_Point, DotAndCrossProductsGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "product", 25)) {
        SCOPED_TRACE(line.Where());
        const ON_3dVector a = line.Vector();
        const ON_3dVector b = line.Vector();
        const double dot = line.Number();
        EXPECT_SAME_BITS(ON_DotProduct(a, b), dot);
        EXPECT_SAME_BITS(a * b, dot);
        EXPECT_SAME_BITS(ON_CrossProduct(a, b), line.Vector());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Point, ScalingGivesTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "scalar", 12)) {
        SCOPED_TRACE(line.Where());
        const ON_3dPoint p = line.Point();
        const double s = line.Number();
        ON_3dPoint multiplied = p;
        EXPECT_SAME_BITS(multiplied *= s, line.Point());
        ON_3dPoint divided = p;
        EXPECT_SAME_BITS(divided /= s, line.Point());
        const ON_3dPoint scaledFromLeft = line.Point();
        EXPECT_SAME_BITS(s * p, scaledFromLeft);
        EXPECT_SAME_BITS(p * s, scaledFromLeft);
        EXPECT_SAME_BITS(p / s, line.Point());
        ON_3dVector multipliedVector = p;
        const ON_3dVector timesAssign = line.Vector();
        EXPECT_SAME_BITS(multipliedVector *= s, timesAssign);
        EXPECT_SAME_BITS(ON_3dVector(p) * s, timesAssign);
        EXPECT_SAME_BITS(s * ON_3dVector(p), timesAssign);
        ON_3dVector dividedVector = p;
        const ON_3dVector divideAssign = line.Vector();
        EXPECT_SAME_BITS(dividedVector /= s, divideAssign);
        EXPECT_SAME_BITS(ON_3dVector(p) / s, divideAssign);
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Point, SumsAndDifferencesGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "sum", 8)) {
        SCOPED_TRACE(line.Where());
        const ON_3dPoint p = line.Point();
        const ON_3dPoint q = line.Point();
        const ON_3dVector v = line.Vector();
        EXPECT_SAME_BITS(p - q, line.Vector());
        EXPECT_SAME_BITS(p + v, line.Point());
        EXPECT_SAME_BITS(p - v, line.Point());
        EXPECT_SAME_BITS(v + v, line.Vector());
        EXPECT_SAME_BITS(-v, line.Vector());
        ON_3dVector reversed = v;
        reversed.Reverse();
        EXPECT_SAME_BITS(reversed, line.Vector());
        EXPECT_SAME_BITS(p.DistanceTo(q), line.Number());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Point, NegatingTurnsZeroIntoMinusZero) {
    for (GoldenLine& line : GoldenCases(kFile, "negate", 1)) {
        ON_3dVector v = line.Vector();
        EXPECT_SAME_BITS(-v, line.Vector());
        v.Reverse();
        EXPECT_SAME_BITS(v, line.Vector());
    }
}

TEST(ON_Point, PerpendicularVectorsAreTheRecordedOnes) {
    for (GoldenLine& line : GoldenCases(kFile, "perpendicular", 52)) {
        SCOPED_TRACE(line.Where());
        const ON_3dVector source = line.Vector();
        ON_3dVector perpendicular(9.0, 9.0, 9.0);
        EXPECT_EQ(perpendicular.PerpendicularTo(source), line.Flag());
        EXPECT_SAME_BITS(perpendicular, line.Vector());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Point, TriangleMeasuresGiveTheRecordedBits) {
    for (GoldenLine& line : GoldenCases(kFile, "triangle", 16)) {
        SCOPED_TRACE(line.Where());
        const ON_3dPoint p0 = line.Point();
        const ON_3dPoint p1 = line.Point();
        const ON_3dPoint p2 = line.Point();
        const ON_3dPoint r = line.Point();
        const ON_3dVector fan = ON_CrossProduct(p1 - p0, p2 - p0);
        ON_3dVector backward = ON_CrossProduct(p0 - p1, p1 - p2);
        ON_3dVector chained = ON_CrossProduct(p1 - p0, p2 - p1);
        EXPECT_SAME_BITS(fan, line.Vector());
        EXPECT_SAME_BITS(backward, line.Vector());
        EXPECT_SAME_BITS(chained, line.Vector());
        backward.Unitize();
        chained.Unitize();
        EXPECT_SAME_BITS(backward, line.Vector());
        EXPECT_SAME_BITS(chained, line.Vector());
        EXPECT_SAME_BITS(fan.Length() / 2.0, line.Number());
        EXPECT_SAME_BITS(ON_DotProduct(fan, p0 - r) / 6.0, line.Number());
        EXPECT_TRUE(line.IsAtEnd());
    }
}

TEST(ON_Point, LengthFollowsItsDefinitionForAnyBits) {
    // Components from a small pool meet in ties, zeros, denormals, infinities and NaN; every third
    // one has random bits.
    std::mt19937_64 random(20130711);
    const double pool[] = {
        0.0,    -0.0,   1.0,  -1.0, 3.0,       1e308,      5e-324,
        1e-310, 1e-308, -2.5, kNan, kInfinity, -kInfinity, 2.2250738585072014e-308};
    const auto component = [&] {
        const std::uint64_t bits = random();
        return bits % 3 == 0 ? DoubleOfBits(random()) : pool[(bits >> 8) % 14];
    };
    for (int number = 0; number < 100000; ++number) {
        const double x = component();
        const double y = component();
        const ON_3dVector v(x, y, component());
        ASSERT_PRED_FORMAT2(kerneltest::SameBits(), v.Length(), SlowLength(v))
            << v.x << " " << v.y << " " << v.z;
    }
}

TEST(ON_Point, LengthScalesInsteadOfOverflowing) {
    // 1e200 squared overflows; 1e200 * sqrt(1 + 1 + 1) does not.
    EXPECT_SAME_BITS(ON_3dVector(1e200, 1e200, 1e200).Length(), 1e200 * std::sqrt(3.0));
    EXPECT_EQ(ON_3dVector(1.7e308, 1.7e308, 1.7e308).Length(), kInfinity);
}

TEST(ON_Point, LengthOfADenormalVectorIsItsLargestComponent) {
    const double tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_SAME_BITS(ON_3dVector(-tiny, 3.0 * tiny, 2.0 * tiny).Length(), 3.0 * tiny);
}

TEST(ON_Point, LengthOfNanDependsOnItsPosition) {
    EXPECT_SAME_BITS(ON_3dVector(kNan, 1.0, 2.0).Length(), 0.0);
    EXPECT_SAME_BITS(ON_3dVector(3.0, 1.0, kNan).Length(), kNan);
}

TEST(ON_Point, UnitizeZeroesTheVectorOnFailure) {
    ON_3dVector overflowing(1.7e308, 1.7e308, 1.7e308);
    EXPECT_FALSE(overflowing.Unitize());
    EXPECT_SAME_BITS(overflowing, ON_3dVector(0.0, 0.0, 0.0));

    ON_3dVector minusZero(-0.0, -0.0, -0.0);
    EXPECT_FALSE(minusZero.Unitize());
    EXPECT_SAME_BITS(minusZero, ON_3dVector(0.0, 0.0, 0.0));

    ON_3dVector infinite(1.0, -kInfinity, 0.0);
    EXPECT_FALSE(infinite.Unitize());
    EXPECT_SAME_BITS(infinite, ON_3dVector(0.0, 0.0, 0.0));
}

TEST(ON_Point, UnitizeRescuesDenormals) {
    const double tiny = std::numeric_limits<double>::denorm_min();
    ON_3dVector v(0.0, 0.0, -tiny);
    EXPECT_TRUE(v.Unitize());
    EXPECT_SAME_BITS(v, ON_3dVector(0.0, 0.0, -1.0));
}

TEST(ON_Point, DivisionMultipliesByTheReciprocal) {
    // 1/49 rounds down: 49 * (1/49) misses 1 by one unit, 49/49 does not.
    EXPECT_SAME_BITS(ON_3dPoint(49.0, 0.0, 0.0) / 49.0, ON_3dPoint(0x1.fffffffffffffp-1, 0.0, 0.0));
}

TEST(ON_Point, LessOrEqualIsNotTheNegationOfGreaterForNan) {
    const ON_3dPoint a(kNan, 0.0, 0.0);
    const ON_3dPoint b(0.0, 0.0, 0.0);
    EXPECT_FALSE(a <= b);
    EXPECT_FALSE(b < a);
}

TEST(ON_Point, PointsAndVectorsConvertIntoEachOther) {
    const ON_3dVector v = ON_3dPoint(1.0, 2.0, 3.0);
    const ON_3dPoint p = v;
    EXPECT_SAME_BITS(p, ON_3dPoint(1.0, 2.0, 3.0));
    const double* coordinates = p;
    EXPECT_EQ(coordinates[2], 3.0);
    static_assert(std::is_same<decltype(p - p), ON_3dVector>::value, "");
    static_assert(std::is_same<decltype(p - v), ON_3dPoint>::value, "");
    static_assert(std::is_same<decltype(v + v), ON_3dVector>::value, "");
}

TEST(ON_Point, UnsetValueIsNotAValidCoordinate) {
    EXPECT_FALSE(ON_3dPoint(0.0, ON_UNSET_VALUE, 0.0).IsValid());
    EXPECT_FALSE(ON_2dPoint(kNan, 0.0).IsValid());
    EXPECT_EQ(ON_2dPoint(-ON_UNSET_VALUE, 0.0).IsValid(), !kerneltest::kIsLaterRelease);
}

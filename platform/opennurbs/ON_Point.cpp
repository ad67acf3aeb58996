// What is too rare or too long to be inline. Lengths are scaled by the largest component, so that
// squares neither overflow nor vanish. The vector perpendicular to another one exchanges the two
// components of largest magnitude and negates one of them, which is exact and never cancels.
#include "ON_Point.h"

#include <utility>

namespace {

// 2^1023, which brings every denormal into the normal range.
constexpr double kDenormalScale = 8.98846567431158e+307;

bool IsUsableLength(double length) noexcept {
    return length > ON_DBL_MIN && length <= std::numeric_limits<double>::max();
}

struct AxisOrder {
    int largest;
    int second;
    int smallest;
};

// Ties go the way the comparisons fall, which decides the axes of every plane made from a normal.
AxisOrder OrderByMagnitude(double absX, double absY, double absZ) noexcept {
    if (absY > absX) {
        if (absZ > absY) {
            return {2, 1, 0};
        }
        return absZ >= absX ? AxisOrder{1, 2, 0} : AxisOrder{1, 0, 2};
    }
    if (absZ > absX) {
        return {2, 0, 1};
    }
    return absZ > absY ? AxisOrder{0, 2, 1} : AxisOrder{0, 1, 2};
}

}  // namespace

double ON_2dVector::Length() const noexcept {
    double largest = std::fabs(x);
    double second = std::fabs(y);
    if (second > largest) {
        std::swap(largest, second);
    }
    if (largest > ON_DBL_MIN) {
        second /= largest;
        return largest * std::sqrt(1.0 + second * second);
    }
    return largest > 0.0 ? largest : 0.0;
}

bool ON_2dVector::Unitize() noexcept {
    double length = Length();
    if (length > 0.0 && length <= ON_DBL_MIN) {
        x *= kDenormalScale;
        y *= kDenormalScale;
        length = Length();
    }
    if (!IsUsableLength(length)) {
        x = y = 0.0;
        return false;
    }
    x /= length;
    y /= length;
    return true;
}

double ON_3dVector::LengthOfExtreme() const noexcept {
    double largest = std::fabs(x);
    double second = std::fabs(y);
    double third = std::fabs(z);
    // Comparisons with NaN are false, so a NaN stays where it stands.
    if (second >= largest && second >= third) {
        std::swap(largest, second);
    } else if (third >= largest && third >= second) {
        std::swap(largest, third);
    }
    if (largest > ON_DBL_MIN) {
        second /= largest;
        third /= largest;
        return largest * std::sqrt(1.0 + second * second + third * third);
    }
    return largest > 0.0 ? largest : 0.0;
}

bool ON_3dVector::UnitizeExtreme(double length) noexcept {
    if (length > 0.0 && length <= ON_DBL_MIN) {
        *this *= kDenormalScale;
        length = Length();
    }
    if (!IsUsableLength(length)) {
        x = y = z = 0.0;
        return false;
    }
    x /= length;
    y /= length;
    z /= length;
    return true;
}

bool ON_3dVector::PerpendicularTo(const ON_3dVector& v) noexcept {
    const ON_3dVector source = v;
    const AxisOrder axis =
        OrderByMagnitude(std::fabs(source.x), std::fabs(source.y), std::fabs(source.z));
    (*this)[axis.largest] = -source[axis.second];
    (*this)[axis.second] = source[axis.largest];
    (*this)[axis.smallest] = 0.0;
    return source[axis.largest] != 0.0;
}

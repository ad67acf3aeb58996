/// Points and vectors in two, three and four dimensions.
///
/// The operations are inline because they stand in every hot loop of a host. Each is evaluated from
/// left to right as written; another order of the same operations would change last bits.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "ON_Defines.h"

namespace kernel_detail {

inline double DoubleOfBits(std::uint64_t bits) noexcept {
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// The bits of |x|; for numbers they order as the magnitudes do.
inline std::uint64_t MagnitudeBits(double x) noexcept {
    std::uint64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return bits & 0x7fffffffffffffffu;
}

inline void ExchangeIf(bool condition, std::uint64_t& a, std::uint64_t& b) noexcept {
    const std::uint64_t difference = (a ^ b) & (std::uint64_t{0} - condition);
    a ^= difference;
    b ^= difference;
}

}  // namespace kernel_detail

class ON_2dVector;
class ON_3dVector;
class ON_Xform;

class ON_2dPoint {
public:
    double x, y;

    /// Leaves the coordinates uninitialised, so that growing an array of points costs nothing.
    ON_2dPoint() noexcept {}
    ON_2dPoint(double x0, double y0) noexcept : x(x0), y(y0) {}
    inline ON_2dPoint(const ON_2dVector& v) noexcept;

    operator double*() noexcept { return &x; }
    operator const double*() const noexcept { return &x; }
    double& operator[](int axis) noexcept { return axis <= 0 ? x : y; }
    double operator[](int axis) const noexcept { return axis <= 0 ? x : y; }

    bool operator==(const ON_2dPoint& p) const noexcept { return x == p.x && y == p.y; }
    bool operator!=(const ON_2dPoint& p) const noexcept { return x != p.x || y != p.y; }
    /// @name Lexicographic order; the forms with equality differ in the last coordinate only.
    /// @{
    bool operator<(const ON_2dPoint& p) const noexcept { return x < p.x || (x == p.x && y < p.y); }
    bool operator<=(const ON_2dPoint& p) const noexcept {
        return x < p.x || (x == p.x && y <= p.y);
    }
    bool operator>(const ON_2dPoint& p) const noexcept { return x > p.x || (x == p.x && y > p.y); }
    bool operator>=(const ON_2dPoint& p) const noexcept {
        return x > p.x || (x == p.x && y >= p.y);
    }
    /// @}

    bool IsValid() const noexcept { return ON_IsValid(x) && ON_IsValid(y); }
};

class ON_2dVector {
public:
    double x, y;

    /// Leaves the components uninitialised.
    ON_2dVector() noexcept {}
    ON_2dVector(double x0, double y0) noexcept : x(x0), y(y0) {}
    ON_2dVector(const ON_2dPoint& p) noexcept : x(p.x), y(p.y) {}

    operator double*() noexcept { return &x; }
    operator const double*() const noexcept { return &x; }
    double& operator[](int axis) noexcept { return axis <= 0 ? x : y; }
    double operator[](int axis) const noexcept { return axis <= 0 ? x : y; }

    bool operator==(const ON_2dVector& v) const noexcept { return x == v.x && y == v.y; }
    bool operator!=(const ON_2dVector& v) const noexcept { return x != v.x || y != v.y; }

    /// Returns the length; see `ON_3dVector::Length` for the extremes.
    VERIDANE_OPENNURBS_API double Length() const noexcept;
    /// Scales to length 1; see `ON_3dVector::Unitize` for the failures.
    VERIDANE_OPENNURBS_API bool Unitize() noexcept;
};

class ON_3dPoint {
public:
    double x, y, z;

    /// Leaves the coordinates uninitialised, so that growing an array of points costs nothing.
    ON_3dPoint() noexcept {}
    ON_3dPoint(double x0, double y0, double z0) noexcept : x(x0), y(y0), z(z0) {}
    inline ON_3dPoint(const ON_3dVector& v) noexcept;

    operator double*() noexcept { return &x; }
    operator const double*() const noexcept { return &x; }
    double& operator[](int axis) noexcept { return axis <= 0 ? x : (axis >= 2 ? z : y); }
    double operator[](int axis) const noexcept { return axis <= 0 ? x : (axis >= 2 ? z : y); }

    inline ON_3dVector operator-(const ON_3dPoint& p) const noexcept;
    inline ON_3dPoint operator+(const ON_3dVector& v) const noexcept;
    inline ON_3dPoint operator-(const ON_3dVector& v) const noexcept;
    inline ON_3dPoint& operator+=(const ON_3dVector& v) noexcept;
    inline ON_3dPoint& operator-=(const ON_3dVector& v) noexcept;

    ON_3dPoint operator-() const noexcept { return ON_3dPoint(-x, -y, -z); }
    ON_3dPoint operator*(double s) const noexcept { return ON_3dPoint(x * s, y * s, z * s); }
    ON_3dPoint& operator*=(double s) noexcept {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
    /// @name Division: one reciprocal, then a multiplication per coordinate.
    /// - Deliberate: a last bit may differ from a division per coordinate.
    /// @{
    ON_3dPoint operator/(double s) const noexcept { return *this * (1.0 / s); }
    ON_3dPoint& operator/=(double s) noexcept { return *this *= (1.0 / s); }
    /// @}

    bool operator==(const ON_3dPoint& p) const noexcept { return x == p.x && y == p.y && z == p.z; }
    bool operator!=(const ON_3dPoint& p) const noexcept { return x != p.x || y != p.y || z != p.z; }
    /// @name Lexicographic order; the forms with equality differ in the last coordinate only.
    /// @{
    bool operator<(const ON_3dPoint& p) const noexcept {
        return x < p.x || (x == p.x && (y < p.y || (y == p.y && z < p.z)));
    }
    bool operator<=(const ON_3dPoint& p) const noexcept {
        return x < p.x || (x == p.x && (y < p.y || (y == p.y && z <= p.z)));
    }
    bool operator>(const ON_3dPoint& p) const noexcept {
        return x > p.x || (x == p.x && (y > p.y || (y == p.y && z > p.z)));
    }
    bool operator>=(const ON_3dPoint& p) const noexcept {
        return x > p.x || (x == p.x && (y > p.y || (y == p.y && z >= p.z)));
    }
    /// @}

    /// Applies a projective transformation to the point.
    ///
    /// - Deliberate: a weight of 0 turns the point into zeros (NaN where a row overflows); the
    ///   product `ON_Xform * ON_3dPoint` keeps such a point undivided.
    inline void Transform(const ON_Xform& xform) noexcept;

    inline double DistanceTo(const ON_3dPoint& p) const noexcept;

    bool IsValid() const noexcept { return ON_IsValid(x) && ON_IsValid(y) && ON_IsValid(z); }
    bool IsZero() const noexcept { return x == 0.0 && y == 0.0 && z == 0.0; }
};

/// What a curve answers that cannot be evaluated.
inline const ON_3dPoint ON_UNSET_POINT(ON_UNSET_VALUE, ON_UNSET_VALUE, ON_UNSET_VALUE);

class ON_3dVector {
public:
    double x, y, z;

    /// Leaves the components uninitialised, so that growing an array of vectors costs nothing.
    ON_3dVector() noexcept {}
    ON_3dVector(double x0, double y0, double z0) noexcept : x(x0), y(y0), z(z0) {}
    ON_3dVector(const ON_3dPoint& p) noexcept : x(p.x), y(p.y), z(p.z) {}

    operator double*() noexcept { return &x; }
    operator const double*() const noexcept { return &x; }
    double& operator[](int axis) noexcept { return axis <= 0 ? x : (axis >= 2 ? z : y); }
    double operator[](int axis) const noexcept { return axis <= 0 ? x : (axis >= 2 ? z : y); }

    ON_3dVector operator+(const ON_3dVector& v) const noexcept {
        return ON_3dVector(x + v.x, y + v.y, z + v.z);
    }
    ON_3dVector operator-(const ON_3dVector& v) const noexcept {
        return ON_3dVector(x - v.x, y - v.y, z - v.z);
    }
    ON_3dVector& operator+=(const ON_3dVector& v) noexcept {
        x += v.x;
        y += v.y;
        z += v.z;
        return *this;
    }
    ON_3dVector& operator-=(const ON_3dVector& v) noexcept {
        x -= v.x;
        y -= v.y;
        z -= v.z;
        return *this;
    }
    ON_3dVector operator-() const noexcept { return ON_3dVector(-x, -y, -z); }
    ON_3dVector operator*(double s) const noexcept { return ON_3dVector(x * s, y * s, z * s); }
    /// The dot product.
    double operator*(const ON_3dVector& v) const noexcept { return x * v.x + y * v.y + z * v.z; }
    ON_3dVector& operator*=(double s) noexcept {
        x *= s;
        y *= s;
        z *= s;
        return *this;
    }
    /// @name Division: one reciprocal, then a multiplication per component.
    /// @{
    ON_3dVector operator/(double s) const noexcept { return *this * (1.0 / s); }
    ON_3dVector& operator/=(double s) noexcept { return *this *= (1.0 / s); }
    /// @}

    bool operator==(const ON_3dVector& v) const noexcept {
        return x == v.x && y == v.y && z == v.z;
    }
    bool operator!=(const ON_3dVector& v) const noexcept {
        return x != v.x || y != v.y || z != v.z;
    }
    /// @name Lexicographic order; the forms with equality differ in the last component only.
    /// @{
    bool operator<(const ON_3dVector& v) const noexcept {
        return x < v.x || (x == v.x && (y < v.y || (y == v.y && z < v.z)));
    }
    bool operator<=(const ON_3dVector& v) const noexcept {
        return x < v.x || (x == v.x && (y < v.y || (y == v.y && z <= v.z)));
    }
    bool operator>(const ON_3dVector& v) const noexcept {
        return x > v.x || (x == v.x && (y > v.y || (y == v.y && z > v.z)));
    }
    bool operator>=(const ON_3dVector& v) const noexcept {
        return x > v.x || (x == v.x && (y > v.y || (y == v.y && z >= v.z)));
    }
    /// @}

    double LengthSquared() const noexcept { return x * x + y * y + z * z; }

    /// Returns the length, scaled so that it overflows only when the true length does.
    ///
    /// - Result: for a vector of denormals its largest component; 0.0 for a NaN in x (and, because
    ///   every comparison with NaN is false, for any vector whose largest slot holds one), NaN for
    ///   a NaN elsewhere.
    inline double Length() const noexcept;

    /// Divides each component by the length and returns whether that was possible.
    ///
    /// - Result: false, and all components +0.0, for zero vectors, NaN, infinities and vectors
    ///   whose length overflows. Denormal vectors are scaled up first and succeed.
    /// - Deliberate: one division per component and no second pass, so the length may miss 1 by a
    ///   rounding error.
    inline bool Unitize() noexcept;

    /// Negates each component; 0.0 becomes -0.0.
    void Reverse() noexcept {
        x = -x;
        y = -y;
        z = -z;
    }

    /// Applies the upper left 3 x 3 block of the transformation.
    inline void Transform(const ON_Xform& xform) noexcept;

    /// Becomes a vector perpendicular to `v`: its two largest components exchanged, one negated.
    ///
    /// - Result: whether the largest component of `v` differs from 0.
    /// - Deliberate: the minus sign reaches zeros too; (0,0,1) gives (1,0,-0.0).
    VERIDANE_OPENNURBS_API bool PerpendicularTo(const ON_3dVector& v) noexcept;

    bool IsValid() const noexcept { return ON_IsValid(x) && ON_IsValid(y) && ON_IsValid(z); }
    bool IsZero() const noexcept { return x == 0.0 && y == 0.0 && z == 0.0; }
    bool IsUnitVector() const noexcept {
        return x != ON_UNSET_VALUE && y != ON_UNSET_VALUE && z != ON_UNSET_VALUE &&
               std::fabs(Length() - 1.0) <= ON_SQRT_EPSILON;
    }

private:
    // The rare cases, out of line so that the common one stays short where it is inlined.
    VERIDANE_OPENNURBS_API double LengthOfExtreme() const noexcept;
    VERIDANE_OPENNURBS_API bool UnitizeExtreme(double length) noexcept;
};

/// A homogeneous point.
class ON_4dPoint {
public:
    double x, y, z, w;

    /// Leaves the coordinates uninitialised.
    ON_4dPoint() noexcept {}
    ON_4dPoint(double x0, double y0, double z0, double w0) noexcept : x(x0), y(y0), z(z0), w(w0) {}

    operator double*() noexcept { return &x; }
    operator const double*() const noexcept { return &x; }
};

inline ON_2dPoint::ON_2dPoint(const ON_2dVector& v) noexcept : x(v.x), y(v.y) {}
inline ON_3dPoint::ON_3dPoint(const ON_3dVector& v) noexcept : x(v.x), y(v.y), z(v.z) {}

inline ON_3dVector ON_3dPoint::operator-(const ON_3dPoint& p) const noexcept {
    return ON_3dVector(x - p.x, y - p.y, z - p.z);
}
inline ON_3dPoint ON_3dPoint::operator+(const ON_3dVector& v) const noexcept {
    return ON_3dPoint(x + v.x, y + v.y, z + v.z);
}
inline ON_3dPoint ON_3dPoint::operator-(const ON_3dVector& v) const noexcept {
    return ON_3dPoint(x - v.x, y - v.y, z - v.z);
}
inline ON_3dPoint& ON_3dPoint::operator+=(const ON_3dVector& v) noexcept {
    x += v.x;
    y += v.y;
    z += v.z;
    return *this;
}
inline ON_3dPoint& ON_3dPoint::operator-=(const ON_3dVector& v) noexcept {
    x -= v.x;
    y -= v.y;
    z -= v.z;
    return *this;
}

inline ON_3dPoint operator*(double s, const ON_3dPoint& p) noexcept {
    return p * s;
}
inline ON_3dVector operator*(double s, const ON_3dVector& v) noexcept {
    return v * s;
}

inline double ON_DotProduct(const ON_3dVector& a, const ON_3dVector& b) noexcept {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// - Deliberate: nothing is scaled against overflow.
inline ON_3dVector ON_CrossProduct(const ON_3dVector& a, const ON_3dVector& b) noexcept {
    return ON_3dVector(a.y * b.z - b.y * a.z, a.z * b.x - b.z * a.x, a.x * b.y - b.x * a.y);
}

inline double ON_3dVector::Length() const noexcept {
    // The largest component is exchanged with x. Magnitudes are ordered and exchanged as integers,
    // because the compiler makes branches of the same on doubles, and random directions mispredict
    // them. Bits of a NaN order above all others, so it ends in x and takes the way out.
    std::uint64_t largestBits = kernel_detail::MagnitudeBits(x);
    std::uint64_t secondBits = kernel_detail::MagnitudeBits(y);
    std::uint64_t thirdBits = kernel_detail::MagnitudeBits(z);
    const bool isYLargest = (secondBits >= largestBits) & (secondBits >= thirdBits);
    kernel_detail::ExchangeIf(isYLargest, largestBits, secondBits);
    kernel_detail::ExchangeIf(thirdBits >= largestBits, largestBits, thirdBits);
    const double largest = kernel_detail::DoubleOfBits(largestBits);
    if (largest > ON_DBL_MIN) {
        const double ratio2 = kernel_detail::DoubleOfBits(secondBits) / largest;
        const double ratio3 = kernel_detail::DoubleOfBits(thirdBits) / largest;
        return largest * std::sqrt(1.0 + ratio2 * ratio2 + ratio3 * ratio3);
    }
    return LengthOfExtreme();
}

inline bool ON_3dVector::Unitize() noexcept {
    const double length = Length();
    if (length > ON_DBL_MIN && length <= std::numeric_limits<double>::max()) {
        x /= length;
        y /= length;
        z /= length;
        return true;
    }
    return UnitizeExtreme(length);
}

inline double ON_3dPoint::DistanceTo(const ON_3dPoint& p) const noexcept {
    return (p - *this).Length();
}

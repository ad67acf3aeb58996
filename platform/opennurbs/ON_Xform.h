/// Transformations as 4 x 4 matrices of rows, applied to columns.
#pragma once

#include "ON_Point.h"

class ON_Xform {
public:
    double m_xform[4][4];

    /// - Deliberate: neither zero nor the identity; all entries 0.0 but the last, which is 1.0.
    ON_Xform() noexcept : m_xform{{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 1}} {}
    /// diag(d, d, d, 1).
    ON_Xform(int d) noexcept : ON_Xform(static_cast<double>(d)) {}
    /// diag(d, d, d, 1).
    ON_Xform(double d) noexcept : m_xform{{d, 0, 0, 0}, {0, d, 0, 0}, {0, 0, d, 0}, {0, 0, 0, 1}} {}

    double* operator[](int row) noexcept { return m_xform[row]; }
    const double* operator[](int row) const noexcept { return m_xform[row]; }

    /// The transformation that applies `other` first.
    VERIDANE_OPENNURBS_API ON_Xform operator*(const ON_Xform& other) const noexcept;
    /// Applies to a point.
    ///
    /// - Deliberate: a weight of 0 leaves the point undivided, unlike `ON_3dPoint::Transform`.
    inline ON_3dPoint operator*(const ON_3dPoint& p) const noexcept;
    /// Applies the upper left 3 x 3 block.
    inline ON_3dVector operator*(const ON_3dVector& v) const noexcept;

    /// Sets all 16 entries to 0.0.
    VERIDANE_OPENNURBS_API void Zero() noexcept;
    void Identity() noexcept { *this = ON_Xform(1.0); }
    void Diagonal(double d) noexcept { *this = ON_Xform(d); }
    VERIDANE_OPENNURBS_API void Scale(double x, double y, double z) noexcept;
    void Scale(const ON_3dVector& factors) noexcept { Scale(factors.x, factors.y, factors.z); }
    /// Scales about a fixed point.
    VERIDANE_OPENNURBS_API void Scale(ON_3dPoint fixedPoint, double factor) noexcept;
    VERIDANE_OPENNURBS_API void Translation(double x, double y, double z) noexcept;
    void Translation(const ON_3dVector& v) noexcept { Translation(v.x, v.y, v.z); }

    /// Rotates about an axis through `center`, counter-clockwise seen against the axis.
    ///
    /// - Units: `angle` in radians.
    /// - Deliberate: sines and cosines within a tolerance of 0 and 1 become 0 and 1, so that
    ///   quarter turns are exact.
    VERIDANE_OPENNURBS_API void Rotation(double angle, ON_3dVector axis,
                                         ON_3dPoint center) noexcept;
    VERIDANE_OPENNURBS_API void Rotation(double sinAngle, double cosAngle, ON_3dVector axis,
                                         ON_3dPoint center) noexcept;

    VERIDANE_OPENNURBS_API bool IsValid() const noexcept;
    /// Exact; -0.0 counts as 0.0.
    VERIDANE_OPENNURBS_API bool IsIdentity() const noexcept;
    VERIDANE_OPENNURBS_API void Transpose() noexcept;

    /// Inverts in place by Gauss-Jordan elimination with full pivoting.
    ///
    /// - Result: whether every pivot differs from 0. `smallestPivot`, where given, gets the
    /// smallest
    ///   absolute pivot.
    /// - Deliberate: there is no tolerance; a matrix that is singular but for rounding succeeds. On
    ///   failure the matrix holds the unfinished inverse, not what it was.
    VERIDANE_OPENNURBS_API bool Invert(double* smallestPivot = nullptr) noexcept;

    /// Returns the number of pivots before the first that is 0; see `Invert`.
    VERIDANE_OPENNURBS_API int Rank(double* smallestPivot = nullptr) const noexcept;
    VERIDANE_OPENNURBS_API double Determinant(double* smallestPivot = nullptr) const noexcept;
};

inline ON_3dPoint ON_Xform::operator*(const ON_3dPoint& p) const noexcept {
    const auto& m = m_xform;
    double w = m[3][0] * p.x + m[3][1] * p.y + m[3][2] * p.z + m[3][3];
    w = w != 0.0 ? 1.0 / w : 1.0;
    return ON_3dPoint(w * (m[0][0] * p.x + m[0][1] * p.y + m[0][2] * p.z + m[0][3]),
                      w * (m[1][0] * p.x + m[1][1] * p.y + m[1][2] * p.z + m[1][3]),
                      w * (m[2][0] * p.x + m[2][1] * p.y + m[2][2] * p.z + m[2][3]));
}

inline ON_3dVector ON_Xform::operator*(const ON_3dVector& v) const noexcept {
    const auto& m = m_xform;
    return ON_3dVector(m[0][0] * v.x + m[0][1] * v.y + m[0][2] * v.z,
                       m[1][0] * v.x + m[1][1] * v.y + m[1][2] * v.z,
                       m[2][0] * v.x + m[2][1] * v.y + m[2][2] * v.z);
}

inline void ON_3dPoint::Transform(const ON_Xform& xform) noexcept {
    const auto& m = xform.m_xform;
    double w = m[3][0] * x + m[3][1] * y + m[3][2] * z + m[3][3];
    if (w != 0.0) {
        w = 1.0 / w;
    }
    *this = ON_3dPoint(w * (m[0][0] * x + m[0][1] * y + m[0][2] * z + m[0][3]),
                       w * (m[1][0] * x + m[1][1] * y + m[1][2] * z + m[1][3]),
                       w * (m[2][0] * x + m[2][1] * y + m[2][2] * z + m[2][3]));
}

inline void ON_3dVector::Transform(const ON_Xform& xform) noexcept {
    *this = xform * *this;
}

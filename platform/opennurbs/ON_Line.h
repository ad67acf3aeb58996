/// Parameter intervals and line segments.
#pragma once

#include "ON_Point.h"

/// An interval of parameters; it may be decreasing or unset.
class ON_Interval {
public:
    double m_t[2];

    /// Both ends unset.
    ON_Interval() noexcept : m_t{ON_UNSET_VALUE, ON_UNSET_VALUE} {}
    ON_Interval(double t0, double t1) noexcept : m_t{t0, t1} {}
    ON_Interval(const ON_Interval&) = default;
    ON_Interval& operator=(const ON_Interval&) = default;
    ~ON_Interval() noexcept {}

    double& operator[](int end) noexcept { return m_t[end <= 0 ? 0 : 1]; }
    double operator[](int end) const noexcept { return m_t[end <= 0 ? 0 : 1]; }

    void Set(double t0, double t1) noexcept {
        m_t[0] = t0;
        m_t[1] = t1;
    }
    double Min() const noexcept { return m_t[0] <= m_t[1] ? m_t[0] : m_t[1]; }
    double Max() const noexcept { return m_t[0] <= m_t[1] ? m_t[1] : m_t[0]; }
    double Mid() const noexcept { return 0.5 * (m_t[0] + m_t[1]); }
    /// Signed: negative for a decreasing interval.
    double Length() const noexcept { return m_t[1] - m_t[0]; }

    bool IsValid() const noexcept { return ON_IsValid(m_t[0]) && ON_IsValid(m_t[1]); }
    bool IsIncreasing() const noexcept { return m_t[0] < m_t[1] && IsValid(); }
    bool IsDecreasing() const noexcept { return m_t[0] > m_t[1] && IsValid(); }

    bool operator==(const ON_Interval& other) const noexcept {
        return m_t[0] == other.m_t[0] && m_t[1] == other.m_t[1];
    }
    bool operator!=(const ON_Interval& other) const noexcept { return !(*this == other); }
};

/// A segment between two points.
class ON_Line {
public:
    ON_3dPoint from;
    ON_3dPoint to;

    /// Both ends at the origin.
    ON_Line() noexcept : from(0.0, 0.0, 0.0), to(0.0, 0.0, 0.0) {}
    ON_Line(const ON_3dPoint& start, const ON_3dPoint& end) noexcept : from(start), to(end) {}
    ON_Line(const ON_Line&) = default;
    ON_Line& operator=(const ON_Line&) = default;
    ~ON_Line() noexcept {}

    double Length() const noexcept { return from.DistanceTo(to); }
    ON_3dVector Direction() const noexcept { return to - from; }

    /// Returns the point at a fraction of the way.
    ///
    /// - Deliberate: a coordinate that both ends share is returned unchanged, whatever `t` is.
    ON_3dPoint PointAt(double t) const noexcept {
        const double s = 1.0 - t;
        return ON_3dPoint(from.x == to.x ? from.x : s * from.x + t * to.x,
                          from.y == to.y ? from.y : s * from.y + t * to.y,
                          from.z == to.z ? from.z : s * from.z + t * to.z);
    }
};

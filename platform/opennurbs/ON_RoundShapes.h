/// Circles, arcs, cones and cylinders.
#pragma once

#include "ON_Line.h"
#include "ON_Plane.h"

class ON_Circle {
public:
    ON_Plane plane;
    double radius;

    /// The unit circle in the world xy plane.
    ON_Circle() noexcept : radius(1.0) {}
    /// Takes the plane as it is; only the equation of an invalid plane is recomputed.
    ///
    /// - Deliberate: the radius is not checked.
    VERIDANE_OPENNURBS_API ON_Circle(const ON_Plane& plane0, double radius0) noexcept;
    /// Takes the plane moved to `center`, with its equation recomputed.
    VERIDANE_OPENNURBS_API ON_Circle(const ON_Plane& plane0, const ON_3dPoint& center,
                                     double radius0) noexcept;
    ON_Circle(const ON_Circle&) = default;
    ON_Circle& operator=(const ON_Circle&) = default;
    ~ON_Circle() noexcept {}

    bool IsValid() const noexcept { return ON_IsValid(radius) && radius > 0.0 && plane.IsValid(); }
    const ON_3dPoint& Center() const noexcept { return plane.origin; }

    /// - Units: `t` in radians from the x axis.
    VERIDANE_OPENNURBS_API ON_3dPoint PointAt(double t) const noexcept;
    /// The first derivative, unitized.
    VERIDANE_OPENNURBS_API ON_3dVector TangentAt(double t) const noexcept;
    /// The derivative of any order; order 0 is the vector from the centre.
    VERIDANE_OPENNURBS_API ON_3dVector DerivativeAt(int order, double t) const noexcept;
};

/// A part of a circle.
class ON_Arc : public ON_Circle {
public:
    /// The whole unit circle in the world xy plane.
    ON_Arc() noexcept : m_angle(0.0, 2.0 * ON_PI) {}
    /// Takes plane and radius of the circle and recomputes the equation.
    ///
    /// - Units: radians.
    /// - Deliberate: a decreasing interval [a, b] is stored as [-a, -b] with the y and z axes
    ///   reversed; an interval longer than 2 pi is cut to [a, a + 2 pi].
    VERIDANE_OPENNURBS_API ON_Arc(const ON_Circle& circle, ON_Interval angles) noexcept;
    /// The arc from angle 0 to `angle`.
    ON_Arc(const ON_Circle& circle, double angle) noexcept
        : ON_Arc(circle, ON_Interval(0.0, angle)) {}
    ON_Arc(const ON_Plane& plane0, double radius0, double angle) noexcept
        : ON_Arc(ON_Circle(plane0, radius0), ON_Interval(0.0, angle)) {}
    /// The whole circle.
    ON_Arc(const ON_Circle& circle) noexcept : ON_Arc(circle, ON_Interval(0.0, 2.0 * ON_PI)) {}
    ON_Arc(const ON_Arc&) = default;
    ON_Arc& operator=(const ON_Arc&) = default;
    ~ON_Arc() noexcept {}

    VERIDANE_OPENNURBS_API bool IsValid() const noexcept;
    /// Says whether the arc is the whole circle.
    VERIDANE_OPENNURBS_API bool IsCircle() const noexcept;

    /// - Units: radians.
    ON_Interval Domain() const noexcept { return m_angle; }
    ON_Interval DomainRadians() const noexcept { return m_angle; }
    double AngleRadians() const noexcept { return m_angle[1] - m_angle[0]; }

    ON_3dPoint StartPoint() const noexcept { return PointAt(m_angle[0]); }
    ON_3dPoint EndPoint() const noexcept { return PointAt(m_angle[1]); }

private:
    friend class ON_BinaryArchive;
    ON_Interval m_angle;
};

class ON_Cone {
public:
    ON_Plane plane;
    double height;
    double radius;

    /// - Deliberate: the radius stays uninitialised.
    ON_Cone() noexcept : height(0.0) {}
    /// - Deliberate: the apex is at the origin of the plane, the circle of radius `radius0` in the
    ///   parallel plane at height `height0`.
    ON_Cone(const ON_Plane& plane0, double height0, double radius0) noexcept
        : plane(plane0), height(height0), radius(radius0) {}
    ON_Cone(const ON_Cone&) = default;
    ON_Cone& operator=(const ON_Cone&) = default;
    ~ON_Cone() noexcept {}

    bool IsValid() const noexcept { return plane.IsValid() && height != 0.0 && radius != 0.0; }

    const ON_3dPoint& ApexPoint() const noexcept { return plane.origin; }
    ON_3dPoint BasePoint() const noexcept { return plane.origin + height * plane.zaxis; }

    /// - Units: `angle` in radians; `u` is the distance from the apex along the axis.
    VERIDANE_OPENNURBS_API ON_3dPoint PointAt(double angle, double u) const noexcept;
    /// - Deliberate: the same for every `u`.
    VERIDANE_OPENNURBS_API ON_3dVector NormalAt(double angle, double u) const noexcept;
};

class ON_Cylinder {
public:
    ON_Circle circle;
    double height[2];

    /// Heights 0.0.
    ON_Cylinder() noexcept : height{0.0, 0.0} {}
    /// Heights in ascending order: [0, height0] or [height0, 0].
    ON_Cylinder(const ON_Circle& circle0, double height0) noexcept
        : circle(circle0), height{height0 > 0.0 ? 0.0 : height0, height0 > 0.0 ? height0 : 0.0} {}
    ON_Cylinder(const ON_Cylinder&) = default;
    ON_Cylinder& operator=(const ON_Cylinder&) = default;
    ~ON_Cylinder() noexcept {}

    bool IsValid() const noexcept { return circle.IsValid(); }
    bool IsFinite() const noexcept { return height[0] != height[1]; }

    /// - Units: `angle` in radians; `u` is the distance from the plane of the circle.
    VERIDANE_OPENNURBS_API ON_3dPoint PointAt(double angle, double u) const noexcept;
    /// - Deliberate: a point, not a vector; and the same for every `u`.
    VERIDANE_OPENNURBS_API ON_3dPoint NormalAt(double angle, double u) const noexcept;
};

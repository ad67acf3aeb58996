/// Planes: a frame of three axes and the equation that goes with it.
#pragma once

#include "ON_Point.h"

/// x*X + y*Y + z*Z + d = 0.
class ON_PlaneEquation : public ON_3dVector {
public:
    double d;

    /// All zeros.
    ON_PlaneEquation() noexcept : ON_3dVector(0.0, 0.0, 0.0), d(0.0) {}
    ON_PlaneEquation(double x0, double y0, double z0, double d0) noexcept
        : ON_3dVector(x0, y0, z0), d(d0) {}

    /// Sets the equation of the plane through a point.
    ///
    /// A normal longer or shorter than 1 by more than `ON_ZERO_TOLERANCE` is unitized first.
    ///
    /// - Result: false, and the equation as it was, when a coordinate is not usable; otherwise
    ///   whether the normal could be unitized.
    /// - Deliberate: d is -0.0 for a plane through the origin.
    VERIDANE_OPENNURBS_API bool Create(ON_3dPoint point, ON_3dVector normal) noexcept;

    bool IsValid() const noexcept { return ON_3dVector::IsValid() && ON_IsValid(d); }
    double ValueAt(const ON_3dPoint& p) const noexcept { return x * p.x + y * p.y + z * p.z + d; }
};

class ON_Plane {
public:
    ON_3dPoint origin;
    ON_3dVector xaxis;
    ON_3dVector yaxis;
    ON_3dVector zaxis;
    ON_PlaneEquation plane_equation;

    /// The world xy plane, with the equation (0, 0, 1, 0).
    ON_Plane() noexcept
        : origin(0.0, 0.0, 0.0),
          xaxis(1.0, 0.0, 0.0),
          yaxis(0.0, 1.0, 0.0),
          zaxis(0.0, 0.0, 1.0),
          plane_equation(0.0, 0.0, 1.0, 0.0) {}
    /// See `CreateFromNormal`.
    ON_Plane(const ON_3dPoint& point, const ON_3dVector& normal) noexcept {
        CreateFromNormal(point, normal);
    }
    /// See `CreateFromFrame`.
    ON_Plane(const ON_3dPoint& point, const ON_3dVector& x, const ON_3dVector& y) noexcept {
        CreateFromFrame(point, x, y);
    }
    ON_Plane(const ON_Plane&) = default;
    ON_Plane& operator=(const ON_Plane&) = default;
    ~ON_Plane() noexcept {}

    /// Compares origins and axes.
    ///
    /// - Deliberate: the equations are not compared.
    bool operator==(const ON_Plane& other) const noexcept {
        return origin == other.origin && xaxis == other.xaxis && yaxis == other.yaxis &&
               zaxis == other.zaxis;
    }
    bool operator!=(const ON_Plane& other) const noexcept { return !(*this == other); }

    /// Builds the plane through a point with a normal; the x axis comes from `PerpendicularTo`.
    ///
    /// - Result: whether the normal could be unitized; all axes are zero where it could not. The
    ///   equation stays as it is when the point is not valid.
    /// - Deliberate: many components of the axes are -0.0, and the normal -z has the x axis
    /// (-1,0,-0).
    VERIDANE_OPENNURBS_API bool CreateFromNormal(const ON_3dPoint& point,
                                                 const ON_3dVector& normal) noexcept;
    /// Builds the plane through a point with the x axis `x` and the y axis on the side of `y`.
    VERIDANE_OPENNURBS_API bool CreateFromFrame(const ON_3dPoint& point, const ON_3dVector& x,
                                                const ON_3dVector& y) noexcept;

    /// Recomputes the equation from the origin and the z axis.
    bool UpdateEquation() noexcept { return plane_equation.Create(origin, zaxis); }

    ON_3dPoint PointAt(double s, double t) const noexcept {
        return (origin + s * xaxis) + t * yaxis;
    }
    ON_3dPoint PointAt(double s, double t, double c) const noexcept {
        return PointAt(s, t) + c * zaxis;
    }

    /// Says whether the frame is right-handed and orthonormal and agrees with the equation, within
    /// tolerances.
    VERIDANE_OPENNURBS_API bool IsValid() const noexcept;
};

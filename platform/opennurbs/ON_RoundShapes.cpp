// Points and normals of the round shapes, all from the sine and cosine of one angle in the plane of
// the shape.
#include "ON_RoundShapes.h"

namespace {

constexpr double kFullTurn = 2.0 * ON_PI;

}  // namespace

ON_Circle::ON_Circle(const ON_Plane& plane0, double radius0) noexcept
    : plane(plane0), radius(radius0) {
    if (!plane.IsValid()) {
        plane.UpdateEquation();
    }
}

ON_Circle::ON_Circle(const ON_Plane& plane0, const ON_3dPoint& center, double radius0) noexcept
    : plane(plane0), radius(radius0) {
    plane.origin = center;
    plane.UpdateEquation();
}

ON_3dPoint ON_Circle::PointAt(double t) const noexcept {
    return plane.PointAt(std::cos(t) * radius, std::sin(t) * radius);
}

ON_3dVector ON_Circle::DerivativeAt(int order, double t) const noexcept {
    const double s = std::sin(t);
    const double c = std::cos(t);
    switch (order % 4) {
        case 1:
            return (radius * -s) * plane.xaxis + (radius * c) * plane.yaxis;
        case 2:
            return (radius * -c) * plane.xaxis + (radius * -s) * plane.yaxis;
        case 3:
            return (radius * s) * plane.xaxis + (radius * -c) * plane.yaxis;
        default:
            return (radius * c) * plane.xaxis + (radius * s) * plane.yaxis;
    }
}

ON_3dVector ON_Circle::TangentAt(double t) const noexcept {
    ON_3dVector tangent = DerivativeAt(1, t);
    tangent.Unitize();
    return tangent;
}

ON_Arc::ON_Arc(const ON_Circle& circle, ON_Interval angles) noexcept
    : ON_Circle(circle), m_angle(angles) {
    if (m_angle[1] < m_angle[0]) {
        m_angle.Set(-m_angle[0], -m_angle[1]);
        plane.yaxis.Reverse();
        plane.zaxis.Reverse();
    }
    plane.UpdateEquation();
    if (m_angle.Length() > kFullTurn) {
        m_angle[1] = m_angle[0] + kFullTurn;
    }
}

bool ON_Arc::IsValid() const noexcept {
    return ON_Circle::IsValid() && m_angle.IsValid() && AngleRadians() > ON_ZERO_TOLERANCE &&
           AngleRadians() <= kFullTurn + ON_ZERO_TOLERANCE;
}

bool ON_Arc::IsCircle() const noexcept {
    return std::fabs(std::fabs(AngleRadians()) - kFullTurn) <= ON_ZERO_TOLERANCE;
}

ON_3dPoint ON_Cone::PointAt(double angle, double u) const noexcept {
    double ringRadius = radius;
    if (height != 0.0) {
        ringRadius = (radius / height) * u;
    } else if (u == 0.0) {
        ringRadius = 0.0;
    }
    return plane.PointAt(ringRadius * std::cos(angle), ringRadius * std::sin(angle)) +
           u * plane.zaxis;
}

ON_3dVector ON_Cone::NormalAt(double angle, double /*u*/) const noexcept {
    double s = std::sin(angle);
    double c = std::cos(angle);
    if (radius < 0.0) {
        s = -s;
        c = -c;
    }
    ON_3dVector aroundAxis = c * plane.yaxis - s * plane.xaxis;
    if (radius < 0.0) {
        aroundAxis.Reverse();
    }
    const ON_3dVector alongSide = plane.PointAt(radius * c, radius * s, height) - plane.origin;
    ON_3dVector normal = ON_CrossProduct(aroundAxis, alongSide);
    normal.Unitize();
    return normal;
}

ON_3dPoint ON_Cylinder::PointAt(double angle, double u) const noexcept {
    return circle.PointAt(angle) + u * circle.plane.zaxis;
}

ON_3dPoint ON_Cylinder::NormalAt(double angle, double /*u*/) const noexcept {
    ON_3dVector normal = ON_CrossProduct(circle.TangentAt(angle), circle.plane.zaxis);
    normal.Unitize();
    return normal;
}

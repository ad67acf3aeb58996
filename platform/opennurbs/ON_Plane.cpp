// Frames and equations of planes. A frame is built by unitizing each axis in turn, never by one
// matrix step, so that every axis has the same last bits as a vector unitized on its own.
#include "ON_Plane.h"

#include <algorithm>

namespace {

// Whether three vectors are unit length and pairwise perpendicular, within tolerances.
bool IsOrthonormal(const ON_3dVector& x, const ON_3dVector& y, const ON_3dVector& z) noexcept {
    const double lengthX = x.Length();
    const double lengthY = y.Length();
    const double lengthZ = z.Length();
    const auto isUnit = [](double length) {
        return length > ON_SQRT_EPSILON && std::fabs(length - 1.0) <= ON_SQRT_EPSILON;
    };
    if (!isUnit(lengthX) || !isUnit(lengthY) || !isUnit(lengthZ)) {
        return false;
    }
    const double cosineXY = std::fabs(ON_DotProduct(x, y) / (lengthX * lengthY));
    const double cosineYZ = std::fabs(ON_DotProduct(y, z) / (lengthY * lengthZ));
    const double cosineZX = std::fabs(ON_DotProduct(z, x) / (lengthZ * lengthX));
    const double largestCosine = std::max({cosineXY, cosineYZ, cosineZX});
    if (largestCosine <= ON_SQRT_EPSILON) {
        return true;
    }
    constexpr double kHopeless = 0.0000152587890625;
    if (!(largestCosine < kHopeless)) {
        return false;
    }
    // Skewed by less than 2^-16: the volume decides, which depends on the skew squared only.
    const auto spansUnitVolume = [](const ON_3dVector& a, const ON_3dVector& b,
                                    const ON_3dVector& c, double lengths) {
        const double volume = ON_DotProduct(ON_CrossProduct(a, b), c) / lengths;
        return std::fabs(std::fabs(volume) - 1.0) <= ON_SQRT_EPSILON;
    };
    const double lengths = lengthX * lengthY * lengthZ;
    return spansUnitVolume(y, z, x, lengths) && spansUnitVolume(z, x, y, lengths) &&
           spansUnitVolume(x, y, z, lengths);
}

bool IsRightHanded(const ON_3dVector& x, const ON_3dVector& y, const ON_3dVector& z) noexcept {
    return ON_DotProduct(ON_CrossProduct(x, y), z) > ON_SQRT_EPSILON;
}

}  // namespace

bool ON_PlaneEquation::Create(ON_3dPoint point, ON_3dVector normal) noexcept {
    if (!point.IsValid() || !normal.IsValid()) {
        return false;
    }
    bool hasDirection = true;
    if (std::fabs(1.0 - normal.Length()) > ON_ZERO_TOLERANCE) {
        hasDirection = normal.Unitize();
    }
    x = normal.x;
    y = normal.y;
    z = normal.z;
    d = -(x * point.x + y * point.y + z * point.z);
    return hasDirection;
}

bool ON_Plane::CreateFromNormal(const ON_3dPoint& point, const ON_3dVector& normal) noexcept {
    origin = point;
    zaxis = normal;
    const bool hasDirection = zaxis.Unitize();
    xaxis.PerpendicularTo(zaxis);
    xaxis.Unitize();
    yaxis = ON_CrossProduct(zaxis, xaxis);
    yaxis.Unitize();
    UpdateEquation();
    return hasDirection;
}

bool ON_Plane::CreateFromFrame(const ON_3dPoint& point, const ON_3dVector& x,
                               const ON_3dVector& y) noexcept {
    origin = point;
    xaxis = x;
    const bool hasXAxis = xaxis.Unitize();
    yaxis = y - ON_DotProduct(y, xaxis) * xaxis;
    const bool hasYAxis = yaxis.Unitize();
    zaxis = ON_CrossProduct(xaxis, yaxis);
    const bool hasZAxis = zaxis.Unitize();
    UpdateEquation();
    return hasXAxis && hasYAxis && hasZAxis;
}

bool ON_Plane::IsValid() const noexcept {
    if (!plane_equation.IsValid()) {
        return false;
    }
    const double distance = std::fabs(plane_equation.ValueAt(origin));
    if (!(distance <= ON_ZERO_TOLERANCE)) {
        // Far from the world's origin the rounding errors grow with the coordinates.
        const double magnitude =
            std::max({std::fabs(origin.x), std::fabs(origin.y), std::fabs(origin.z)}) +
            std::fabs(plane_equation.d);
        if (!(magnitude > 1000.0 && origin.IsValid() &&
              distance <= magnitude * 10.0 * ON_EPSILON)) {
            return false;
        }
    }
    if (!IsOrthonormal(xaxis, yaxis, zaxis) || !IsRightHanded(xaxis, yaxis, zaxis)) {
        return false;
    }
    ON_3dVector normal = plane_equation;
    normal.Unitize();
    return std::fabs(ON_DotProduct(normal, zaxis) - 1.0) <= ON_SQRT_EPSILON;
}

// A double's bits, taken as a signed number with the negative ones turned round, number the doubles in
// their order.
#include "unit/platform/opennurbs/SameBits.h"

#include <cstring>

namespace kerneltest {

Doubles DoublesOf(double x) {
    return {x};
}
Doubles DoublesOf(const Doubles& values) {
    return values;
}
Doubles DoublesOf(const ON_2dPoint& p) {
    return {p.x, p.y};
}
Doubles DoublesOf(const ON_2dVector& v) {
    return {v.x, v.y};
}
Doubles DoublesOf(const ON_3dPoint& p) {
    return {p.x, p.y, p.z};
}
Doubles DoublesOf(const ON_3dVector& v) {
    return {v.x, v.y, v.z};
}
Doubles DoublesOf(const ON_Interval& i) {
    return {i[0], i[1]};
}
Doubles DoublesOf(const ON_Line& l) {
    return {l.from.x, l.from.y, l.from.z, l.to.x, l.to.y, l.to.z};
}
Doubles DoublesOf(const ON_BoundingBox& b) {
    return {b.m_min.x, b.m_min.y, b.m_min.z, b.m_max.x, b.m_max.y, b.m_max.z};
}
Doubles DoublesOf(const ON_Plane& p) {
    return {p.origin.x,         p.origin.y,         p.origin.z,         p.xaxis.x,
            p.xaxis.y,          p.xaxis.z,          p.yaxis.x,          p.yaxis.y,
            p.yaxis.z,          p.zaxis.x,          p.zaxis.y,          p.zaxis.z,
            p.plane_equation.x, p.plane_equation.y, p.plane_equation.z, p.plane_equation.d};
}
Doubles DoublesOf(const ON_Circle& c) {
    Doubles values = DoublesOf(c.plane);
    values.push_back(c.radius);
    return values;
}
Doubles DoublesOf(const ON_Xform& x) {
    return Doubles(&x.m_xform[0][0], &x.m_xform[0][0] + 16);
}

std::uint64_t BitsOf(double x) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &x, sizeof bits);
    return bits;
}

std::uint64_t UlpsBetween(double a, double b) {
    if (std::isnan(a) && std::isnan(b)) {
        return 0;
    }
    const auto place = [](double x) {
        const auto bits = static_cast<std::int64_t>(BitsOf(x));
        return bits < 0 ? INT64_MIN - bits - 1 : bits;
    };
    const std::int64_t first = place(a);
    const std::int64_t second = place(b);
    return first < second ? static_cast<std::uint64_t>(second) - static_cast<std::uint64_t>(first)
                          : static_cast<std::uint64_t>(first) - static_cast<std::uint64_t>(second);
}

}  // namespace kerneltest

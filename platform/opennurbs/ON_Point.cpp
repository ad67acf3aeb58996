// The vector perpendicular to another one: the two components of largest magnitude are exchanged
// and one of them negated, which is exact and never cancels.
#include "ON_Point.h"

namespace {

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

bool ON_3dVector::PerpendicularTo(const ON_3dVector& v) noexcept {
    const ON_3dVector source = v;
    const AxisOrder axis =
        OrderByMagnitude(std::fabs(source.x), std::fabs(source.y), std::fabs(source.z));
    (*this)[axis.largest] = -source[axis.second];
    (*this)[axis.second] = source[axis.largest];
    (*this)[axis.smallest] = 0.0;
    return source[axis.largest] != 0.0;
}

// Knot vectors and the blossom. A curve of degree p is on each span a polynomial, and its blossom is
// the one symmetric function of p parameters that is linear in each and gives the curve where all are
// equal; control points, raised degrees and points on the curve are all values of it.
#include "detail/NurbsBasis.h"

#include <algorithm>
#include <limits>

#include "ON_BinaryArchive.h"

namespace kernel_detail {

namespace {

// As many doubles as are taken from the stream at once when their count cannot be trusted.
constexpr size_t kBlockDoubles = 65536;

}  // namespace

int KnotCount(int order, int controlPointCount) noexcept {
    const long long count = static_cast<long long>(order) + controlPointCount - 2;
    const bool isCurve = order >= 2 && controlPointCount >= order;
    return isCurve && count <= std::numeric_limits<int>::max() ? static_cast<int>(count) : 0;
}

bool CanHoldPoints(int dimension, bool isRational, int count0, int count1) noexcept {
    if (dimension < 1) {
        return false;
    }
    // Far from exact where it is far from the limit only.
    const double size = static_cast<double>(dimension) + (isRational ? 1.0 : 0.0);
    return size * count0 * count1 <= std::numeric_limits<int>::max();
}

ON_3dPoint PointOf(const double* source, int dimension, bool isRational) noexcept {
    ON_3dPoint point(0.0, 0.0, 0.0);
    for (int axis = 0; axis < dimension && axis < 3; ++axis) {
        point[axis] = isRational ? source[axis] / source[dimension] : source[axis];
    }
    return point;
}

void SetPoint(const ON_4dPoint& point, int dimension, bool isRational, double* target) noexcept {
    const double* const source = point;
    const bool isDivided = !isRational && point.w != 1.0;
    for (int axis = 0; axis < dimension; ++axis) {
        const double coordinate = axis < 3 ? source[axis] : 0.0;
        target[axis] = isDivided ? coordinate / point.w : coordinate;
    }
    if (isRational) {
        target[dimension] = point.w;
    }
}

bool IsKnotVector(int order, int controlPointCount, const double* knots) noexcept {
    const int count = KnotCount(order, controlPointCount);
    if (count == 0 || !knots || !ON_IsValid(knots[0])) {
        return false;
    }
    for (int number = 1; number < count; ++number) {
        if (!ON_IsValid(knots[number]) || !(knots[number - 1] <= knots[number])) {
            return false;
        }
    }
    if (!(knots[order - 2] < knots[order - 1]) ||
        !(knots[controlPointCount - 2] < knots[controlPointCount - 1])) {
        return false;
    }
    for (int number = 0; number + order - 1 < count; ++number) {
        if (!(knots[number] < knots[number + order - 1])) {
            return false;
        }
    }
    return true;
}

bool SetKnotDomain(int order, int controlPointCount, double* knots, double t0, double t1) noexcept {
    const int count = KnotCount(order, controlPointCount);
    if (count == 0 || !knots) {
        return false;
    }
    const double k0 = knots[order - 2];
    const double k1 = knots[controlPointCount - 1];
    if (!(k0 < k1) || !(t0 < t1)) {
        return false;
    }
    if (k0 == t0 && k1 == t1) {
        return true;
    }
    const double scale = (t1 - t0) / (k1 - k0);
    const double middle = 0.5 * (k0 + k1);
    for (int number = 0; number < count; ++number) {
        // Each half is moved with its own end, so that both ends arrive exactly.
        if (knots[number] <= middle) {
            knots[number] = (knots[number] - k0) * scale + t0;
        } else {
            knots[number] = (knots[number] - k1) * scale + t1;
        }
    }
    return true;
}

int FindSpan(int order, int controlPointCount, const double* knots, double t) noexcept {
    const double* first = knots + (order - 2);
    const double* last = knots + (controlPointCount - 1);
    // Validity leaves the first and last span non-empty, so the knot before the first one above `t`
    // begins a span.
    const double* behind = std::upper_bound(first + 1, last, t);
    return static_cast<int>(behind - 1 - first);
}

void EvaluateBlossom(int order, int pointSize, const double* knots, const double* arguments,
                     double* points) noexcept {
    const int degree = order - 1;
    for (int step = 1; step <= degree; ++step) {
        const double t = arguments[step - 1];
        for (int number = 0; number <= degree - step; ++number) {
            const double start = knots[number + step - 1];
            const double end = knots[number + degree];
            const double startWeight = (end - t) / (end - start);
            const double endWeight = (t - start) / (end - start);
            double* point = points + static_cast<ptrdiff_t>(number) * pointSize;
            for (int axis = 0; axis < pointSize; ++axis) {
                point[axis] = startWeight * point[axis] + endWeight * point[pointSize + axis];
            }
        }
    }
}

bool AppendDoubles(ON_BinaryArchive& archive, size_t count, std::vector<double>& values) {
    size_t left = count;
    while (left > 0) {
        const size_t present = values.size();
        const size_t block = std::min(left, kBlockDoubles);
        values.resize(present + block);
        if (!archive.ReadDouble(block, values.data() + present)) {
            return false;
        }
        left -= block;
    }
    return true;
}

bool WriteKnots(ON_BinaryArchive& archive, int count, const double* knots) {
    const int writtenCount = knots ? count : 0;
    return archive.WriteInt(writtenCount) &&
           archive.WriteDouble(static_cast<size_t>(writtenCount), knots);
}

bool ReadKnots(ON_BinaryArchive& archive, int expectedCount, std::vector<double>& knots) {
    int count = 0;
    knots.clear();
    return archive.ReadInt(&count) && (count == 0 || count == expectedCount) &&
           AppendDoubles(archive, static_cast<size_t>(count), knots);
}

}  // namespace kernel_detail

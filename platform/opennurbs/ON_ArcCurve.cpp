// An arc as a rational quadratic: points on the arc alternate with the corners of the tangents, whose
// weight is the cosine of a quarter of the span's two steps. Corners that miss a multiple of 1/128 by
// rounding only are put there.
#include "ON_ArcCurve.h"

#include "ON_BinaryArchive.h"
#include "ON_NurbsCurve.h"

namespace {

int SpanCount(double angle) noexcept {
    constexpr double kQuarterTurn = (0.5 + ON_SQRT_EPSILON) * ON_PI;
    if (angle <= kQuarterTurn) {
        return 1;
    }
    return angle <= 2.0 * kQuarterTurn ? 2 : 4;
}

double WithoutFuzz(double coordinate, double weight) noexcept {
    double whole = 0.0;
    const double fraction = std::modf(128.0 * (coordinate * (1.0 / weight)), &whole);
    if (fraction != 0.0 && std::fabs(fraction) <= 1024.0 * ON_EPSILON) {
        return (whole / 128.0) * weight;
    }
    return coordinate;
}

void SetKnots(const ON_Interval& angles, double step, ON_NurbsCurve& form) noexcept {
    const int last = form.m_cv_count - 1;
    form.m_knot[0] = form.m_knot[1] = angles[0];
    for (int number = 1; number < last; number += 2) {
        form.m_knot[number + 1] = form.m_knot[number + 2] = form.m_knot[number - 1] + step;
    }
    form.m_knot[last] = form.m_knot[last + 1] = angles[1];
}

void SetControlPoints(const ON_Arc& arc, double step, ON_NurbsCurve& form) noexcept {
    const ON_Interval angles = arc.Domain();
    const double angle = arc.AngleRadians();
    const int last = form.m_cv_count - 1;
    form.SetCV(0, arc.StartPoint());
    for (int number = 1; number < last; ++number) {
        form.SetCV(number, arc.PointAt(angles[0] + (static_cast<double>(number) / last) * angle));
    }
    form.SetCV(last, arc.IsCircle() ? arc.StartPoint() : arc.EndPoint());
    const double weight = std::cos(0.5 * step);
    const double centerFactor = weight - 1.0;
    const ON_3dPoint& center = arc.Center();
    for (int number = 1; number < last; number += 2) {
        double* corner = form.CV(number);
        for (int axis = 0; axis < 3; ++axis) {
            corner[axis] = WithoutFuzz(corner[axis] + centerFactor * center[axis], weight);
        }
        corner[3] = weight;
    }
}

}  // namespace

ON_BOOL32 ON_ArcCurve::IsValid() const {
    return m_t.IsIncreasing() && m_arc.IsValid() ? 1 : 0;
}

ON_BOOL32 ON_ArcCurve::Write(ON_BinaryArchive& archive) const {
    return archive.Write3dmChunkVersion(1, 0) && archive.WriteArc(m_arc) &&
                   archive.WriteInterval(m_t) && archive.WriteInt(m_dim)
               ? 1
               : 0;
}

ON_BOOL32 ON_ArcCurve::Read(ON_BinaryArchive& archive) {
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor) || major != 1 || !archive.ReadArc(m_arc) ||
        !archive.ReadInterval(m_t) || !archive.ReadInt(&m_dim)) {
        return 0;
    }
    if (m_dim != 2 && m_dim != 3) {
        m_dim = 3;
    }
    return 1;
}

ON_ArcCurve* ON_ArcCurve::DuplicateCurve() const {
    return new ON_ArcCurve(*this);
}

ON_3dPoint ON_ArcCurve::PointAt(double t) const {
    const ON_Interval angles = m_arc.Domain();
    const double fraction = t == m_t[1] ? 1.0 : (t - m_t[0]) / (m_t[1] - m_t[0]);
    return m_arc.PointAt((1.0 - fraction) * angles[0] + fraction * angles[1]);
}

int ON_ArcCurve::GetNurbForm(ON_NurbsCurve& form) const {
    form.Destroy();
    if (!IsValid()) {
        return 0;
    }
    const int spanCount = SpanCount(m_arc.AngleRadians());
    const double step = m_arc.AngleRadians() / spanCount;
    form.Create(3, true, 3, 2 * spanCount + 1);
    SetKnots(m_arc.Domain(), step, form);
    SetControlPoints(m_arc, step, form);
    if (m_dim == 2) {
        form.ChangeDimension(2);
    }
    form.SetDomain(m_t[0], m_t[1]);
    return 1;
}

// The NURBS form of a surface of revolution is the product of an arc and the curve: each control point
// of the curve goes around the axis on a copy of the arc's control polygon.
#include "ON_RevSurface.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "ON_ArcCurve.h"
#include "ON_BinaryArchive.h"
#include "ON_NurbsCurve.h"
#include "ON_NurbsSurface.h"

namespace {

// The axis with a frame around it, to turn points by a given cosine and sine.
struct AxisFrame {
    ON_3dPoint origin;
    ON_3dVector x;
    ON_3dVector y;
    ON_3dVector z;

    explicit AxisFrame(const ON_Line& axis) noexcept : origin(axis.from), z(axis.Direction()) {
        z.Unitize();
        x.PerpendicularTo(z);
        x.Unitize();
        y = ON_CrossProduct(z, x);
        y.Unitize();
    }

    ON_3dPoint Turned(const ON_3dPoint& p, double c, double s) const noexcept {
        const ON_3dVector arm = p - origin;
        const double armX = ON_DotProduct(arm, x);
        const double armY = ON_DotProduct(arm, y);
        const double armZ = ON_DotProduct(arm, z);
        return ((origin + (c * armX - s * armY) * x) + (s * armX + c * armY) * y) + armZ * z;
    }

    ON_3dPoint ClosestPoint(const ON_3dPoint& p) const noexcept {
        return origin + ON_DotProduct(p - origin, z) * z;
    }
};

bool GetArcForm(double angle, const ON_Interval& parameters, ON_NurbsCurve& form) {
    const ON_Plane plane(ON_3dPoint(0.0, 0.0, 0.0), ON_3dVector(0.0, 0.0, 1.0));
    const ON_ArcCurve arc(ON_Arc(ON_Circle(plane, 1.0), angle), 0.0, angle);
    if (arc.GetNurbForm(form) == 0) {
        return false;
    }
    form.SetDomain(parameters[0], parameters[1]);
    return true;
}

// Turns the control points about the axis, in homogeneous coordinates.
void Rotate(double angle, const ON_Line& axis, ON_NurbsCurve& form) noexcept {
    ON_Xform rotation;
    rotation.Rotation(angle, axis.Direction(), axis.from);
    const auto& m = rotation.m_xform;
    for (int number = 0; number < form.m_cv_count; ++number) {
        double* const point = form.CV(number);
        const ON_3dVector v(point[0], point[1], point[2]);
        const double weight = form.Weight(number);
        for (int axisNumber = 0; axisNumber < 3; ++axisNumber) {
            point[axisNumber] = m[axisNumber][0] * v.x + m[axisNumber][1] * v.y +
                                m[axisNumber][2] * v.z + m[axisNumber][3] * weight;
        }
    }
}

// A row of control points around a point on the axis would miss it by rounding.
void CollapsePole(const AxisFrame& axis, const ON_NurbsCurve& arc, const ON_NurbsCurve& curve,
                  int pole, ON_NurbsSurface& form) noexcept {
    const ON_3dPoint end = curve.ControlPoint(pole);
    const ON_3dPoint axisPoint = axis.ClosestPoint(end);
    if (!(end.DistanceTo(axisPoint) <= ON_ZERO_TOLERANCE)) {
        return;
    }
    for (int i = 0; i < arc.m_cv_count; ++i) {
        const double weight = arc.Weight(i) * curve.Weight(pole);
        const ON_3dPoint scaled = axisPoint * weight;
        form.SetCV(i, pole, ON_4dPoint(scaled.x, scaled.y, scaled.z, weight));
    }
}

}  // namespace

ON_RevSurface::ON_RevSurface(const ON_RevSurface& other)
    : ON_Surface(other),
      m_axis(other.m_axis),
      m_angle(other.m_angle),
      m_t(other.m_t),
      m_bTransposed(other.m_bTransposed),
      m_bbox(other.m_bbox) {
    m_curve = other.m_curve ? other.m_curve->DuplicateCurve() : nullptr;
}

ON_RevSurface& ON_RevSurface::operator=(const ON_RevSurface& other) {
    ON_RevSurface copy(other);
    std::swap(m_curve, copy.m_curve);
    m_axis = copy.m_axis;
    m_angle = copy.m_angle;
    m_t = copy.m_t;
    m_bTransposed = copy.m_bTransposed;
    m_bbox = copy.m_bbox;
    return *this;
}

ON_RevSurface::~ON_RevSurface() {
    delete m_curve;
}

ON_BOOL32 ON_RevSurface::IsValid() const {
    const bool isTurn = m_angle.IsIncreasing() &&
                        m_angle.Length() <= 2.0 * ON_PI + ON_ZERO_TOLERANCE && m_t.IsIncreasing();
    return m_curve && m_curve->IsValid() && isTurn && m_axis.from.IsValid() &&
                   m_axis.to.IsValid() && m_axis.Length() > ON_ZERO_TOLERANCE
               ? 1
               : 0;
}

ON_BOOL32 ON_RevSurface::Write(ON_BinaryArchive& archive) const {
    return archive.Write3dmChunkVersion(2, 0) && archive.WriteLine(m_axis) &&
                   archive.WriteInterval(m_angle) && archive.WriteInterval(m_t) &&
                   archive.WriteBoundingBox(m_bbox) && archive.WriteInt(m_bTransposed) &&
                   archive.WriteChar(m_curve ? 1 : 0) && (!m_curve || archive.WriteObject(m_curve))
               ? 1
               : 0;
}

ON_BOOL32 ON_RevSurface::Read(ON_BinaryArchive& archive) {
    *this = ON_RevSurface();
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1 && major != 2) {
        return 1;
    }
    char hasCurve = 0;
    if (!archive.ReadLine(m_axis) || !archive.ReadInterval(m_angle) ||
        (major == 2 && !archive.ReadInterval(m_t)) || !archive.ReadBoundingBox(m_bbox) ||
        !archive.ReadInt(&m_bTransposed) || !archive.ReadChar(&hasCurve)) {
        return 0;
    }
    if (major == 1) {
        m_t = m_angle;
    }
    if (hasCurve == 0) {
        return 1;
    }
    ON_Object* read = nullptr;
    const int code = archive.ReadObject(&read);
    std::unique_ptr<ON_Object> object(read);
    ON_Curve* const curve = ON_Curve::Cast(object.get());
    if (code != 1 || !curve) {
        return 0;
    }
    object.release();
    m_curve = curve;
    return 1;
}

ON_RevSurface* ON_RevSurface::DuplicateSurface() const {
    return new ON_RevSurface(*this);
}

ON_Interval ON_RevSurface::Domain(int direction) const {
    const bool isAround = (direction != 0) == (m_bTransposed != 0);
    if (isAround) {
        return m_t;
    }
    return m_curve ? m_curve->Domain() : ON_Interval();
}

ON_3dPoint ON_RevSurface::PointAt(double u, double v) const {
    if (!m_curve) {
        return ON_3dPoint(0.0, 0.0, 0.0);
    }
    const double around = m_bTransposed ? v : u;
    const double along = m_bTransposed ? u : v;
    const double fraction = around == m_t[1] ? 1.0 : (around - m_t[0]) / (m_t[1] - m_t[0]);
    const double angle = (1.0 - fraction) * m_angle[0] + fraction * m_angle[1];
    return AxisFrame(m_axis).Turned(m_curve->PointAt(along), std::cos(angle), std::sin(angle));
}

int ON_RevSurface::GetNurbForm(ON_NurbsSurface& form) const {
    form.Destroy();
    ON_NurbsCurve arc;
    ON_NurbsCurve curve;
    if (!m_curve || !GetArcForm(m_angle.Length(), m_t, arc) || m_curve->GetNurbForm(curve) == 0 ||
        !curve.ChangeDimension(3)) {
        return 0;
    }
    if (m_angle[0] != 0.0) {
        Rotate(m_angle[0], m_axis, curve);
    }
    if (!form.Create(3, true, arc.m_order, curve.m_order, arc.m_cv_count, curve.m_cv_count)) {
        return 0;
    }
    const AxisFrame axis(m_axis);
    std::copy_n(arc.m_knot, arc.KnotCount(), form.m_knot[0]);
    std::copy_n(curve.m_knot, curve.KnotCount(), form.m_knot[1]);
    for (int i = 0; i < arc.m_cv_count; ++i) {
        const ON_3dPoint turn = arc.ControlPoint(i);
        for (int j = 0; j < curve.m_cv_count; ++j) {
            const double weight = arc.Weight(i) * curve.Weight(j);
            const ON_3dPoint p = axis.Turned(curve.ControlPoint(j), turn.x, turn.y) * weight;
            form.SetCV(i, j, ON_4dPoint(p.x, p.y, p.z, weight));
        }
    }
    CollapsePole(axis, arc, curve, 0, form);
    CollapsePole(axis, arc, curve, curve.m_cv_count - 1, form);
    if (m_bTransposed) {
        form.Transpose();
    }
    return 1;
}

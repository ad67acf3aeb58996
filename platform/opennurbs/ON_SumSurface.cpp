// The NURBS form of a sum has the two forms' knots, and as control points the sums of theirs; weights
// multiply.
#include "ON_SumSurface.h"

#include <algorithm>
#include <memory>

#include "ON_BinaryArchive.h"
#include "ON_NurbsCurve.h"
#include "ON_NurbsSurface.h"

namespace {

ON_3dPoint Scaled(const ON_NurbsCurve& curve, int number) noexcept {
    ON_3dPoint point(0.0, 0.0, 0.0);
    std::copy_n(curve.CV(number), std::min(curve.m_dim, 3), &point.x);
    return (1.0 / curve.Weight(number)) * point;
}

}  // namespace

ON_SumSurface::ON_SumSurface(const ON_SumSurface& other)
    : ON_Surface(other), m_basepoint(other.m_basepoint), m_bbox(other.m_bbox) {
    std::unique_ptr<ON_Curve> first(other.m_curve[0] ? other.m_curve[0]->DuplicateCurve()
                                                     : nullptr);
    m_curve[1] = other.m_curve[1] ? other.m_curve[1]->DuplicateCurve() : nullptr;
    m_curve[0] = first.release();
}

ON_SumSurface& ON_SumSurface::operator=(const ON_SumSurface& other) {
    ON_SumSurface copy(other);
    std::swap(m_curve, copy.m_curve);
    m_basepoint = copy.m_basepoint;
    m_bbox = copy.m_bbox;
    return *this;
}

ON_SumSurface::~ON_SumSurface() {
    delete m_curve[0];
    delete m_curve[1];
}

ON_BOOL32 ON_SumSurface::IsValid() const {
    return m_curve[0] && m_curve[1] && m_curve[0]->IsValid() && m_curve[1]->IsValid() &&
                   m_curve[0]->Dimension() == m_curve[1]->Dimension() && m_basepoint.IsValid()
               ? 1
               : 0;
}

ON_BOOL32 ON_SumSurface::Write(ON_BinaryArchive& archive) const {
    return archive.Write3dmChunkVersion(1, 0) && archive.WriteVector(m_basepoint) &&
                   archive.WriteBoundingBox(m_bbox) && archive.WriteObject(m_curve[0]) &&
                   archive.WriteObject(m_curve[1])
               ? 1
               : 0;
}

ON_BOOL32 ON_SumSurface::Read(ON_BinaryArchive& archive) {
    *this = ON_SumSurface();
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1) {
        return 1;
    }
    if (!archive.ReadVector(m_basepoint) || !archive.ReadBoundingBox(m_bbox)) {
        return 0;
    }
    for (ON_Curve*& curve : m_curve) {
        ON_Object* read = nullptr;
        const int code = archive.ReadObject(&read);
        std::unique_ptr<ON_Object> object(read);
        curve = ON_Curve::Cast(object.get());
        if (curve) {
            object.release();
        }
        if (code != 1 || object) {
            return 0;
        }
    }
    return 1;
}

int ON_SumSurface::Dimension() const {
    return m_curve[0] ? m_curve[0]->Dimension() : 0;
}

ON_SumSurface* ON_SumSurface::DuplicateSurface() const {
    return new ON_SumSurface(*this);
}

ON_Interval ON_SumSurface::Domain(int direction) const {
    const ON_Curve* const curve = m_curve[direction ? 1 : 0];
    return curve ? curve->Domain() : ON_Interval();
}

ON_3dPoint ON_SumSurface::PointAt(double u, double v) const {
    if (!m_curve[0] || !m_curve[1]) {
        return ON_3dPoint(0.0, 0.0, 0.0);
    }
    return (m_curve[0]->PointAt(u) + ON_3dVector(m_curve[1]->PointAt(v))) + m_basepoint;
}

int ON_SumSurface::GetNurbForm(ON_NurbsSurface& form) const {
    form.Destroy();
    ON_NurbsCurve forms[2];
    for (int direction = 0; direction < 2; ++direction) {
        if (!m_curve[direction] || m_curve[direction]->GetNurbForm(forms[direction]) == 0) {
            return 0;
        }
    }
    const bool isRational = forms[0].IsRational() || forms[1].IsRational();
    if (forms[0].m_dim != forms[1].m_dim ||
        !form.Create(forms[0].m_dim, isRational, forms[0].m_order, forms[1].m_order,
                     forms[0].m_cv_count, forms[1].m_cv_count)) {
        return 0;
    }
    for (int direction = 0; direction < 2; ++direction) {
        std::copy_n(forms[direction].m_knot, forms[direction].KnotCount(), form.m_knot[direction]);
    }
    for (int i = 0; i < forms[0].m_cv_count; ++i) {
        const ON_3dPoint a = Scaled(forms[0], i);
        for (int j = 0; j < forms[1].m_cv_count; ++j) {
            const double weight = forms[0].Weight(i) * forms[1].Weight(j);
            const ON_3dPoint sum = (a + ON_3dVector(Scaled(forms[1], j))) + m_basepoint;
            const ON_3dPoint p = isRational ? sum * weight : sum;
            form.SetCV(i, j, ON_4dPoint(p.x, p.y, p.z, isRational ? weight : 1.0));
        }
    }
    return 1;
}

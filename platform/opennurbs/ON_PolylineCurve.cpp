// A polyline is a NURBS curve of degree 1 with its parameters as knots, so little is to be done.
#include "ON_PolylineCurve.h"

#include <algorithm>

#include "ON_BinaryArchive.h"
#include "ON_NurbsCurve.h"

ON_PolylineCurve& ON_PolylineCurve::operator=(const ON_SimpleArray<ON_3dPoint>& points) {
    m_pline = points;
    m_dim = 3;
    m_t.SetCount(points.Count());
    for (int number = 0; number < points.Count(); ++number) {
        m_t[number] = number;
    }
    return *this;
}

bool ON_PolylineCurve::HasIncreasingParameters() const noexcept {
    bool isIncreasing = m_t.Count() == m_pline.Count();
    for (int number = 0; isIncreasing && number < m_t.Count(); ++number) {
        isIncreasing = ON_IsValid(m_t[number]) && (number == 0 || m_t[number - 1] < m_t[number]);
    }
    return isIncreasing;
}

ON_BOOL32 ON_PolylineCurve::IsValid() const {
    bool isValid = HasIncreasingParameters();
    for (int number = 0; isValid && number < m_pline.Count(); ++number) {
        isValid =
            m_pline[number].IsValid() && (number == 0 || m_pline[number - 1] != m_pline[number]);
    }
    return isValid ? 1 : 0;
}

ON_BOOL32 ON_PolylineCurve::Write(ON_BinaryArchive& archive) const {
    return archive.Write3dmChunkVersion(1, 0) && archive.WriteArray(m_pline) &&
                   archive.WriteArray(m_t) && archive.WriteInt(m_dim)
               ? 1
               : 0;
}

ON_BOOL32 ON_PolylineCurve::Read(ON_BinaryArchive& archive) {
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1) {
        return 1;
    }
    return archive.ReadArray(m_pline) && archive.ReadArray(m_t) && archive.ReadInt(&m_dim) ? 1 : 0;
}

ON_BoundingBox ON_PolylineCurve::BoundingBox() const {
    ON_BoundingBox box;
    for (int number = 0; number < m_pline.Count(); ++number) {
        box.Set(m_pline[number], 1);
    }
    return box;
}

ON_PolylineCurve* ON_PolylineCurve::DuplicateCurve() const {
    return new ON_PolylineCurve(*this);
}

ON_Interval ON_PolylineCurve::Domain() const {
    return m_t.Count() > 0 ? ON_Interval(m_t[0], m_t[m_t.Count() - 1]) : ON_Interval();
}

ON_3dPoint ON_PolylineCurve::PointAt(double t) const {
    const int count = m_pline.Count();
    if (count == 0 || m_t.Count() != count) {
        return ON_UNSET_POINT;
    }
    if (count == 1) {
        return m_pline[0];
    }
    const double* parameters = m_t.Array();
    const double* behind = std::upper_bound(parameters + 1, parameters + count - 1, t);
    const int number = static_cast<int>(behind - parameters);
    const double fraction =
        t == parameters[number] ? 1.0 : (t - *(behind - 1)) / (*behind - *(behind - 1));
    return ON_Line(m_pline[number - 1], m_pline[number]).PointAt(fraction);
}

int ON_PolylineCurve::GetNurbForm(ON_NurbsCurve& form) const {
    form.Destroy();
    const int count = m_pline.Count();
    bool isUsable = count >= 2 && m_dim <= 3 && HasIncreasingParameters();
    for (int number = 0; isUsable && number < count; ++number) {
        isUsable = m_pline[number].IsValid();
    }
    if (!isUsable || !form.Create(m_dim, false, 2, count)) {
        return 0;
    }
    for (int number = 0; number < count; ++number) {
        form.SetKnot(number, m_t[number]);
        form.SetCV(number, m_pline[number]);
    }
    return 1;
}

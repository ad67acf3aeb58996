// A plane surface is bilinear, so its NURBS form is its four corners.
#include "ON_PlaneSurface.h"

#include "ON_BinaryArchive.h"
#include "ON_NurbsSurface.h"

namespace {

double ExtentAt(const ON_Interval& domain, const ON_Interval& extents, double t) noexcept {
    if (domain == extents) {
        return t;
    }
    const double fraction = t == domain[1] ? 1.0 : (t - domain[0]) / (domain[1] - domain[0]);
    return (1.0 - fraction) * extents[0] + fraction * extents[1];
}

}  // namespace

bool ON_PlaneSurface::SetDomain(int direction, double t0, double t1) noexcept {
    if (!(t0 < t1)) {
        return false;
    }
    m_domain[direction ? 1 : 0].Set(t0, t1);
    return true;
}

bool ON_PlaneSurface::SetExtents(int direction, ON_Interval extents, bool setsDomain) noexcept {
    if (!extents.IsIncreasing()) {
        return false;
    }
    m_extents[direction ? 1 : 0] = extents;
    return !setsDomain || SetDomain(direction, extents[0], extents[1]);
}

ON_BOOL32 ON_PlaneSurface::IsValid() const {
    return m_plane.IsValid() && m_domain[0].IsIncreasing() && m_domain[1].IsIncreasing() &&
                   m_extents[0].IsIncreasing() && m_extents[1].IsIncreasing()
               ? 1
               : 0;
}

ON_BOOL32 ON_PlaneSurface::Write(ON_BinaryArchive& archive) const {
    return archive.Write3dmChunkVersion(1, 1) && archive.WritePlane(m_plane) &&
                   archive.WriteInterval(m_domain[0]) && archive.WriteInterval(m_domain[1]) &&
                   archive.WriteInterval(m_extents[0]) && archive.WriteInterval(m_extents[1])
               ? 1
               : 0;
}

ON_BOOL32 ON_PlaneSurface::Read(ON_BinaryArchive& archive) {
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1) {
        return 1;
    }
    if (!archive.ReadPlane(m_plane) || !archive.ReadInterval(m_domain[0]) ||
        !archive.ReadInterval(m_domain[1])) {
        return 0;
    }
    m_extents[0] = m_domain[0];
    m_extents[1] = m_domain[1];
    return minor < 1 || (archive.ReadInterval(m_extents[0]) && archive.ReadInterval(m_extents[1]))
               ? 1
               : 0;
}

ON_PlaneSurface* ON_PlaneSurface::DuplicateSurface() const {
    return new ON_PlaneSurface(*this);
}

ON_3dPoint ON_PlaneSurface::PointAt(double u, double v) const {
    return m_plane.PointAt(ExtentAt(m_domain[0], m_extents[0], u),
                           ExtentAt(m_domain[1], m_extents[1], v));
}

int ON_PlaneSurface::GetNurbForm(ON_NurbsSurface& form) const {
    form.Destroy();
    if (!IsValid()) {
        return 0;
    }
    form.Create(3, false, 2, 2, 2, 2);
    for (int i = 0; i < 2; ++i) {
        form.SetKnot(0, i, m_domain[0][i]);
        form.SetKnot(1, i, m_domain[1][i]);
        for (int j = 0; j < 2; ++j) {
            form.SetCV(i, j, PointAt(m_domain[0][i], m_domain[1][j]));
        }
    }
    return 1;
}

// The parameter of a line is mapped to a fraction first, so that the ends come out exactly.
#include "ON_LineCurve.h"

#include "ON_BinaryArchive.h"
#include "ON_NurbsCurve.h"

ON_BOOL32 ON_LineCurve::IsValid() const {
    return m_t.IsIncreasing() && m_line.from.IsValid() && m_line.to.IsValid() &&
                   m_line.from != m_line.to
               ? 1
               : 0;
}

ON_BOOL32 ON_LineCurve::Write(ON_BinaryArchive& archive) const {
    return archive.Write3dmChunkVersion(1, 0) && archive.WriteLine(m_line) &&
                   archive.WriteInterval(m_t) && archive.WriteInt(m_dim)
               ? 1
               : 0;
}

ON_BOOL32 ON_LineCurve::Read(ON_BinaryArchive& archive) {
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1) {
        return 1;
    }
    return archive.ReadLine(m_line) && archive.ReadInterval(m_t) && archive.ReadInt(&m_dim) ? 1 : 0;
}

ON_LineCurve* ON_LineCurve::DuplicateCurve() const {
    return new ON_LineCurve(*this);
}

ON_3dPoint ON_LineCurve::PointAt(double t) const {
    return m_line.PointAt(t == m_t[1] ? 1.0 : (t - m_t[0]) / (m_t[1] - m_t[0]));
}

int ON_LineCurve::GetNurbForm(ON_NurbsCurve& form) const {
    form.Destroy();
    if (!(m_t[0] < m_t[1])) {
        return 0;
    }
    form.Create(m_dim == 2 ? 2 : 3, false, 2, 2);
    for (int end = 0; end < 2; ++end) {
        form.SetKnot(end, m_t[end]);
        form.SetCV(end, PointAt(m_t[end]));
    }
    return 1;
}

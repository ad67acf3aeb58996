// Storage, access, evaluation and the record of NURBS curves. The public pointers always point into
// the two vectors, so that copying and growing are left to those.
#include "ON_NurbsCurve.h"

#include <algorithm>
#include <utility>

#include "ON_BinaryArchive.h"
#include "detail/NurbsBasis.h"

ON_NurbsCurve::ON_NurbsCurve(const ON_NurbsCurve& other) : ON_Curve(other) {
    *this = other;
}

ON_NurbsCurve& ON_NurbsCurve::operator=(const ON_NurbsCurve& other) {
    if (this == &other) {
        return *this;
    }
    std::vector<double> knots;
    if (other.m_knot) {
        knots.assign(other.m_knot, other.m_knot + other.KnotCount());
    }
    std::vector<double> controlPoints;
    for (int number = 0; other.HasArrays() && number < other.m_cv_count; ++number) {
        const double* point = other.CV(number);
        controlPoints.insert(controlPoints.end(), point, point + other.CVSize());
    }
    m_dim = other.m_dim;
    m_is_rat = other.m_is_rat;
    m_order = other.m_order;
    m_cv_count = other.m_cv_count;
    TakeArrays(std::move(knots), std::move(controlPoints));
    return *this;
}

bool ON_NurbsCurve::Create(int dimension, bool isRational, int order, int cvCount) {
    Destroy();
    const int knotCount = kernel_detail::KnotCount(order, cvCount);
    if (knotCount == 0 || !kernel_detail::CanHoldPoints(dimension, isRational, cvCount)) {
        return false;
    }
    m_dim = dimension;
    m_is_rat = isRational ? 1 : 0;
    m_order = order;
    m_cv_count = cvCount;
    TakeArrays(std::vector<double>(static_cast<size_t>(knotCount)),
               std::vector<double>(static_cast<size_t>(cvCount) * static_cast<size_t>(CVSize())));
    return true;
}

void ON_NurbsCurve::Destroy() noexcept {
    m_dim = 0;
    m_is_rat = 0;
    m_order = 0;
    m_cv_count = 0;
    TakeArrays({}, {});
}

void ON_NurbsCurve::TakeArrays(std::vector<double>&& knots,
                               std::vector<double>&& controlPoints) noexcept {
    m_knotMemory = std::move(knots);
    m_cvMemory = std::move(controlPoints);
    m_knot_capacity = static_cast<int>(m_knotMemory.size());
    m_knot = m_knotMemory.empty() ? nullptr : m_knotMemory.data();
    m_cv_stride = m_cvMemory.empty() ? 0 : CVSize();
    m_cv_capacity = static_cast<int>(m_cvMemory.size());
    m_cv = m_cvMemory.empty() ? nullptr : m_cvMemory.data();
}

bool ON_NurbsCurve::ReserveKnotCapacity(int knotCapacity) {
    if (knotCapacity > m_knot_capacity) {
        m_knotMemory.resize(static_cast<size_t>(knotCapacity));
        m_knot = m_knotMemory.data();
        m_knot_capacity = knotCapacity;
    }
    return true;
}

bool ON_NurbsCurve::ReserveCVCapacity(int cvCapacity) {
    if (cvCapacity > m_cv_capacity) {
        m_cvMemory.resize(static_cast<size_t>(cvCapacity));
        m_cv = m_cvMemory.data();
        m_cv_capacity = cvCapacity;
    }
    return true;
}

int ON_NurbsCurve::KnotCount() const noexcept {
    return kernel_detail::KnotCount(m_order, m_cv_count);
}

double ON_NurbsCurve::Weight(int number) const noexcept {
    return m_cv && m_is_rat != 0 ? CV(number)[m_dim] : 1.0;
}

ON_3dPoint ON_NurbsCurve::ControlPoint(int number) const noexcept {
    return m_cv ? kernel_detail::PointOf(CV(number), m_dim, IsRational())
                : ON_3dPoint(0.0, 0.0, 0.0);
}

bool ON_NurbsCurve::SetKnot(int number, double value) noexcept {
    if (!m_knot || number < 0 || number >= KnotCount()) {
        return false;
    }
    m_knot[number] = value;
    return true;
}

bool ON_NurbsCurve::SetCV(int number, const ON_3dPoint& point) noexcept {
    return SetCV(number, ON_4dPoint(point.x, point.y, point.z, 1.0));
}

bool ON_NurbsCurve::SetCV(int number, const ON_4dPoint& point) noexcept {
    if (!m_cv || number < 0 || number >= m_cv_count) {
        return false;
    }
    kernel_detail::SetPoint(point, m_dim, IsRational(), CV(number));
    return true;
}

bool ON_NurbsCurve::HasArrays() const noexcept {
    return m_dim >= 1 && m_cv && m_cv_stride >= CVSize() &&
           kernel_detail::KnotCount(m_order, m_cv_count) != 0;
}

ON_BOOL32 ON_NurbsCurve::IsValid() const {
    return HasArrays() && kernel_detail::IsKnotVector(m_order, m_cv_count, m_knot) ? 1 : 0;
}

ON_Interval ON_NurbsCurve::Domain() const {
    return m_knot && KnotCount() != 0 ? ON_Interval(m_knot[m_order - 2], m_knot[m_cv_count - 1])
                                      : ON_Interval();
}

ON_3dPoint ON_NurbsCurve::PointAt(double t) const {
    if (!IsValid()) {
        return ON_UNSET_POINT;
    }
    const int span = kernel_detail::FindSpan(m_order, m_cv_count, m_knot, t);
    std::vector<double> points;
    for (int number = 0; number < m_order; ++number) {
        points.insert(points.end(), CV(span + number), CV(span + number) + CVSize());
    }
    const std::vector<double> arguments(static_cast<size_t>(m_order - 1), t);
    kernel_detail::EvaluateBlossom(m_order, CVSize(), m_knot + span, arguments.data(),
                                   points.data());
    return kernel_detail::PointOf(points.data(), m_dim, IsRational());
}

ON_BoundingBox ON_NurbsCurve::BoundingBox() const {
    ON_BoundingBox box;
    for (int number = 0; HasArrays() && number < m_cv_count; ++number) {
        box.Set(ControlPoint(number), 1);
    }
    return box;
}

ON_NurbsCurve* ON_NurbsCurve::DuplicateCurve() const {
    return new ON_NurbsCurve(*this);
}

int ON_NurbsCurve::GetNurbForm(ON_NurbsCurve& form) const {
    if (!IsValid()) {
        form.Destroy();
        return 0;
    }
    form = *this;
    return 1;
}

ON_BOOL32 ON_NurbsCurve::Write(ON_BinaryArchive& archive) const {
    if (!archive.Write3dmChunkVersion(1, 0) || !archive.WriteInt(m_dim) ||
        !archive.WriteInt(m_is_rat) || !archive.WriteInt(m_order) ||
        !archive.WriteInt(m_cv_count) || !archive.WriteInt(0) || !archive.WriteInt(0) ||
        !archive.WriteBoundingBox(ON_BoundingBox()) ||
        !kernel_detail::WriteKnots(archive, KnotCount(), m_knot)) {
        return 0;
    }
    const int writtenCount = HasArrays() ? m_cv_count : 0;
    bool isWritten = archive.WriteInt(writtenCount);
    for (int number = 0; isWritten && number < writtenCount; ++number) {
        isWritten = archive.WriteDouble(static_cast<size_t>(CVSize()), CV(number));
    }
    return isWritten ? 1 : 0;
}

ON_BOOL32 ON_NurbsCurve::Read(ON_BinaryArchive& archive) {
    Destroy();
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1) {
        return 1;
    }
    int dimension = 0;
    int isRational = 0;
    int order = 0;
    int cvCount = 0;
    int reserved = 0;
    ON_BoundingBox ignoredBox;
    if (!archive.ReadInt(&dimension) || !archive.ReadInt(&isRational) || !archive.ReadInt(&order) ||
        !archive.ReadInt(&cvCount) || !archive.ReadInt(&reserved) || !archive.ReadInt(&reserved) ||
        !archive.ReadBoundingBox(ignoredBox)) {
        return 0;
    }
    const int knotCount = kernel_detail::KnotCount(order, cvCount);
    std::vector<double> knots;
    int pointCount = 0;
    if (dimension < 1 || knotCount == 0 || !kernel_detail::ReadKnots(archive, knotCount, knots) ||
        !archive.ReadInt(&pointCount)) {
        return 0;
    }
    // The count only says whether control points follow.
    const bool hasPoints = pointCount > 0;
    if (hasPoints && !kernel_detail::CanHoldPoints(dimension, isRational != 0, cvCount)) {
        return 0;
    }
    const size_t pointSize = static_cast<size_t>(dimension) + (isRational != 0 ? 1 : 0);
    std::vector<double> controlPoints;
    for (int number = 0; hasPoints && number < cvCount; ++number) {
        if (!kernel_detail::AppendDoubles(archive, pointSize, controlPoints)) {
            return 0;
        }
    }
    m_dim = dimension;
    m_is_rat = isRational != 0 ? 1 : 0;
    m_order = order;
    m_cv_count = cvCount;
    TakeArrays(std::move(knots), std::move(controlPoints));
    return 1;
}

// Storage, access, evaluation and the record of NURBS surfaces. A point is taken by evaluating the rows
// of one span in v, and the curve through the results in u.
#include "ON_NurbsSurface.h"

#include <algorithm>
#include <utility>

#include "ON_BinaryArchive.h"
#include "detail/NurbsBasis.h"

ON_NurbsSurface::ON_NurbsSurface(const ON_NurbsSurface& other) : ON_Surface(other) {
    *this = other;
}

ON_NurbsSurface& ON_NurbsSurface::operator=(const ON_NurbsSurface& other) {
    if (this == &other) {
        return *this;
    }
    std::vector<double> knots[2];
    for (int direction = 0; direction < 2; ++direction) {
        if (other.m_knot[direction]) {
            knots[direction].assign(other.m_knot[direction],
                                    other.m_knot[direction] + other.KnotCount(direction));
        }
    }
    std::vector<double> controlPoints;
    for (int i = 0; other.HasArrays() && i < other.m_cv_count[0]; ++i) {
        for (int j = 0; j < other.m_cv_count[1]; ++j) {
            const double* point = other.CV(i, j);
            controlPoints.insert(controlPoints.end(), point, point + other.CVSize());
        }
    }
    m_dim = other.m_dim;
    m_is_rat = other.m_is_rat;
    std::copy_n(other.m_order, 2, m_order);
    std::copy_n(other.m_cv_count, 2, m_cv_count);
    TakeArrays(std::move(knots[0]), std::move(knots[1]), std::move(controlPoints));
    return *this;
}

bool ON_NurbsSurface::Create(int dimension, bool isRational, int order0, int order1, int cvCount0,
                             int cvCount1) {
    Destroy();
    const int knotCount0 = kernel_detail::KnotCount(order0, cvCount0);
    const int knotCount1 = kernel_detail::KnotCount(order1, cvCount1);
    if (knotCount0 == 0 || knotCount1 == 0 ||
        !kernel_detail::CanHoldPoints(dimension, isRational, cvCount0, cvCount1)) {
        return false;
    }
    m_dim = dimension;
    m_is_rat = isRational ? 1 : 0;
    m_order[0] = order0;
    m_order[1] = order1;
    m_cv_count[0] = cvCount0;
    m_cv_count[1] = cvCount1;
    TakeArrays(std::vector<double>(static_cast<size_t>(knotCount0)),
               std::vector<double>(static_cast<size_t>(knotCount1)),
               std::vector<double>(static_cast<size_t>(cvCount0) * static_cast<size_t>(cvCount1) *
                                   static_cast<size_t>(CVSize())));
    return true;
}

void ON_NurbsSurface::Destroy() noexcept {
    m_dim = 0;
    m_is_rat = 0;
    std::fill_n(m_order, 2, 0);
    std::fill_n(m_cv_count, 2, 0);
    TakeArrays({}, {}, {});
}

void ON_NurbsSurface::TakeArrays(std::vector<double>&& knots0, std::vector<double>&& knots1,
                                 std::vector<double>&& controlPoints) noexcept {
    m_knotMemory[0] = std::move(knots0);
    m_knotMemory[1] = std::move(knots1);
    m_cvMemory = std::move(controlPoints);
    for (int direction = 0; direction < 2; ++direction) {
        auto& memory = m_knotMemory[direction];
        m_knot_capacity[direction] = static_cast<int>(memory.size());
        m_knot[direction] = memory.empty() ? nullptr : memory.data();
    }
    const bool hasPoints = !m_cvMemory.empty();
    m_cv_stride[0] = hasPoints ? CVSize() * m_cv_count[1] : 0;
    m_cv_stride[1] = hasPoints ? CVSize() : 0;
    m_cv_capacity = static_cast<int>(m_cvMemory.size());
    m_cv = hasPoints ? m_cvMemory.data() : nullptr;
}

int ON_NurbsSurface::KnotCount(int direction) const noexcept {
    return kernel_detail::KnotCount(Order(direction), CVCount(direction));
}

ON_3dPoint ON_NurbsSurface::ControlPoint(int i, int j) const noexcept {
    return m_cv ? kernel_detail::PointOf(CV(i, j), m_dim, IsRational()) : ON_3dPoint(0.0, 0.0, 0.0);
}

bool ON_NurbsSurface::SetKnot(int direction, int number, double value) noexcept {
    double* const knots = m_knot[direction ? 1 : 0];
    if (!knots || number < 0 || number >= KnotCount(direction)) {
        return false;
    }
    knots[number] = value;
    return true;
}

bool ON_NurbsSurface::SetCV(int i, int j, const ON_3dPoint& point) noexcept {
    return SetCV(i, j, ON_4dPoint(point.x, point.y, point.z, 1.0));
}

bool ON_NurbsSurface::SetCV(int i, int j, const ON_4dPoint& point) noexcept {
    if (!m_cv || i < 0 || i >= m_cv_count[0] || j < 0 || j >= m_cv_count[1]) {
        return false;
    }
    kernel_detail::SetPoint(point, m_dim, IsRational(), CV(i, j));
    return true;
}

void ON_NurbsSurface::Transpose() {
    ON_NurbsSurface transposed(m_dim, m_is_rat != 0, m_order[1], m_order[0], m_cv_count[1],
                               m_cv_count[0]);
    for (int direction = 0; direction < 2; ++direction) {
        std::copy_n(m_knot[direction], m_knot[direction] ? KnotCount(direction) : 0,
                    transposed.m_knot[1 - direction]);
    }
    for (int i = 0; HasArrays() && i < m_cv_count[0]; ++i) {
        for (int j = 0; j < m_cv_count[1]; ++j) {
            std::copy_n(CV(i, j), CVSize(), transposed.CV(j, i));
        }
    }
    *this = transposed;
}

bool ON_NurbsSurface::HasArrays() const noexcept {
    return m_dim >= 1 && m_cv && KnotCount(0) != 0 && KnotCount(1) != 0 &&
           m_cv_stride[0] >= CVSize() && m_cv_stride[1] >= CVSize();
}

ON_BOOL32 ON_NurbsSurface::IsValid() const {
    return HasArrays() && kernel_detail::IsKnotVector(m_order[0], m_cv_count[0], m_knot[0]) &&
                   kernel_detail::IsKnotVector(m_order[1], m_cv_count[1], m_knot[1])
               ? 1
               : 0;
}

ON_Interval ON_NurbsSurface::Domain(int direction) const {
    const double* const knots = m_knot[direction ? 1 : 0];
    return knots && KnotCount(direction) != 0
               ? ON_Interval(knots[Order(direction) - 2], knots[CVCount(direction) - 1])
               : ON_Interval();
}

ON_3dPoint ON_NurbsSurface::PointAt(double u, double v) const {
    if (!IsValid()) {
        return ON_3dPoint(0.0, 0.0, 0.0);
    }
    const int spanU = kernel_detail::FindSpan(m_order[0], m_cv_count[0], m_knot[0], u);
    const int spanV = kernel_detail::FindSpan(m_order[1], m_cv_count[1], m_knot[1], v);
    const std::vector<double> argumentsU(static_cast<size_t>(m_order[0] - 1), u);
    const std::vector<double> argumentsV(static_cast<size_t>(m_order[1] - 1), v);
    const int pointSize = CVSize();
    std::vector<double> row;
    std::vector<double> points;
    for (int i = 0; i < m_order[0]; ++i) {
        row.clear();
        for (int j = 0; j < m_order[1]; ++j) {
            const double* const point = CV(spanU + i, spanV + j);
            row.insert(row.end(), point, point + pointSize);
        }
        kernel_detail::EvaluateBlossom(m_order[1], pointSize, m_knot[1] + spanV, argumentsV.data(),
                                       row.data());
        points.insert(points.end(), row.begin(), row.begin() + pointSize);
    }
    kernel_detail::EvaluateBlossom(m_order[0], pointSize, m_knot[0] + spanU, argumentsU.data(),
                                   points.data());
    return kernel_detail::PointOf(points.data(), m_dim, IsRational());
}

ON_BoundingBox ON_NurbsSurface::BoundingBox() const {
    ON_BoundingBox box;
    for (int i = 0; HasArrays() && i < m_cv_count[0]; ++i) {
        for (int j = 0; j < m_cv_count[1]; ++j) {
            box.Set(ControlPoint(i, j), 1);
        }
    }
    return box;
}

ON_NurbsSurface* ON_NurbsSurface::DuplicateSurface() const {
    return new ON_NurbsSurface(*this);
}

int ON_NurbsSurface::GetNurbForm(ON_NurbsSurface& form) const {
    if (!IsValid()) {
        form.Destroy();
        return 0;
    }
    form = *this;
    return 1;
}

ON_BOOL32 ON_NurbsSurface::Write(ON_BinaryArchive& archive) const {
    bool isWritten = archive.Write3dmChunkVersion(1, 0);
    for (const int number :
         {m_dim, m_is_rat, m_order[0], m_order[1], m_cv_count[0], m_cv_count[1], 0, 0}) {
        isWritten = isWritten && archive.WriteInt(number);
    }
    isWritten = isWritten && archive.WriteBoundingBox(ON_BoundingBox()) &&
                kernel_detail::WriteKnots(archive, KnotCount(0), m_knot[0]) &&
                kernel_detail::WriteKnots(archive, KnotCount(1), m_knot[1]);
    const bool hasPoints = HasArrays();
    isWritten = isWritten && archive.WriteInt(hasPoints ? m_cv_count[0] * m_cv_count[1] : 0);
    for (int i = 0; isWritten && hasPoints && i < m_cv_count[0]; ++i) {
        for (int j = 0; isWritten && j < m_cv_count[1]; ++j) {
            isWritten = archive.WriteDouble(static_cast<size_t>(CVSize()), CV(i, j));
        }
    }
    return isWritten ? 1 : 0;
}

bool ON_NurbsSurface::ReadNumbers(ON_BinaryArchive& archive) {
    int reserved = 0;
    ON_BoundingBox ignoredBox;
    if (!archive.ReadInt(&m_dim) || !archive.ReadInt(&m_is_rat) || !archive.ReadInt(&m_order[0]) ||
        !archive.ReadInt(&m_order[1]) || !archive.ReadInt(&m_cv_count[0]) ||
        !archive.ReadInt(&m_cv_count[1]) || !archive.ReadInt(&reserved) ||
        !archive.ReadInt(&reserved) || !archive.ReadBoundingBox(ignoredBox)) {
        return false;
    }
    m_is_rat = m_is_rat != 0 ? 1 : 0;
    return m_dim >= 1 && KnotCount(0) != 0 && KnotCount(1) != 0;
}

ON_BOOL32 ON_NurbsSurface::Read(ON_BinaryArchive& archive) {
    Destroy();
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1) {
        return 1;
    }
    std::vector<double> knots[2];
    std::vector<double> controlPoints;
    int pointCount = 0;
    bool isRead =
        ReadNumbers(archive) && kernel_detail::ReadKnots(archive, KnotCount(0), knots[0]) &&
        kernel_detail::ReadKnots(archive, KnotCount(1), knots[1]) && archive.ReadInt(&pointCount);
    // The count only says whether control points follow.
    const bool hasPoints = pointCount > 0;
    isRead = isRead && (!hasPoints || kernel_detail::CanHoldPoints(m_dim, IsRational(),
                                                                   m_cv_count[0], m_cv_count[1]));
    for (int i = 0; isRead && hasPoints && i < m_cv_count[0]; ++i) {
        for (int j = 0; isRead && j < m_cv_count[1]; ++j) {
            isRead =
                kernel_detail::AppendDoubles(archive, static_cast<size_t>(CVSize()), controlPoints);
        }
    }
    if (!isRead) {
        Destroy();
        return 0;
    }
    TakeArrays(std::move(knots[0]), std::move(knots[1]), std::move(controlPoints));
    return 1;
}

// A polycurve owns its segments; each keeps its own domain, which the parameters map onto. Its NURBS
// form is made by appending the forms of the segments one after the other.
#include "ON_PolyCurve.h"

#include <algorithm>
#include <utility>

#include "ON_BinaryArchive.h"
#include "ON_NurbsCurve.h"
#include "detail/NurbsBasis.h"

ON_PolyCurve::ON_PolyCurve(const ON_PolyCurve& other) : ON_Curve(other), m_t(other.m_t) {
    for (const auto& segment : other.m_segments) {
        m_segments.emplace_back(segment->DuplicateCurve());
    }
}

ON_PolyCurve& ON_PolyCurve::operator=(const ON_PolyCurve& other) {
    ON_PolyCurve copy(other);
    m_segments.swap(copy.m_segments);
    std::swap(m_t, copy.m_t);
    return *this;
}

ON_Curve* ON_PolyCurve::SegmentCurve(int number) const noexcept {
    return number >= 0 && number < Count() ? m_segments[static_cast<size_t>(number)].get()
                                           : nullptr;
}

bool ON_PolyCurve::Append(ON_Curve* segment) {
    if (!segment || segment == this) {
        return false;
    }
    const ON_Interval domain = segment->Domain();
    if (!domain.IsIncreasing()) {
        return false;
    }
    // Room first, so that nothing is half done when memory is short.
    if (m_segments.size() == m_segments.capacity()) {
        m_segments.reserve(2 * m_segments.size() + 1);
        m_t.Reserve(2 * Count() + 2);
    }
    if (m_t.Count() == 0) {
        m_t.Append(domain[0]);
        m_t.Append(domain[1]);
    } else {
        const double end = m_t[m_t.Count() - 1];
        m_t.Append(domain[0] == end ? domain[1] : (domain[1] - domain[0]) + end);
    }
    m_segments.emplace_back(segment);
    return true;
}

void ON_PolyCurve::RemoveNesting() {
    if (!HasAllParameters()) {
        return;
    }
    std::vector<std::unique_ptr<ON_Curve>> flatSegments;
    ON_SimpleArray<double> flatParameters;
    flatParameters.Append(m_t[0]);
    for (int number = 0; number < Count(); ++number) {
        auto& segment = m_segments[static_cast<size_t>(number)];
        auto* const nested = ON_PolyCurve::Cast(segment.get());
        if (!nested || !nested->HasIncreasingParameters()) {
            flatSegments.push_back(std::move(segment));
            flatParameters.Append(m_t[number + 1]);
            continue;
        }
        nested->RemoveNesting();
        // Parameters move like the knots of a curve of degree 1.
        kernel_detail::SetKnotDomain(2, nested->m_t.Count(), nested->m_t.Array(), m_t[number],
                                     m_t[number + 1]);
        for (int inner = 0; inner < nested->Count(); ++inner) {
            flatSegments.push_back(std::move(nested->m_segments[static_cast<size_t>(inner)]));
            flatParameters.Append(nested->m_t[inner + 1]);
        }
        flatParameters[flatParameters.Count() - 1] = m_t[number + 1];
    }
    m_segments = std::move(flatSegments);
    m_t = std::move(flatParameters);
}

bool ON_PolyCurve::HasIncreasingParameters() const noexcept {
    bool isIncreasing = HasAllParameters();
    for (int number = 0; isIncreasing && number < m_t.Count(); ++number) {
        isIncreasing = ON_IsValid(m_t[number]) && (number == 0 || m_t[number - 1] < m_t[number]);
    }
    return isIncreasing;
}

ON_BOOL32 ON_PolyCurve::IsValid() const {
    return HasIncreasingParameters() &&
                   std::all_of(m_segments.begin(), m_segments.end(),
                               [](const auto& segment) { return segment->IsValid() != 0; })
               ? 1
               : 0;
}

int ON_PolyCurve::Dimension() const {
    return m_segments.empty() ? 0 : m_segments.front()->Dimension();
}

ON_PolyCurve* ON_PolyCurve::DuplicateCurve() const {
    return new ON_PolyCurve(*this);
}

ON_Interval ON_PolyCurve::Domain() const {
    return m_t.Count() > 0 ? ON_Interval(m_t[0], m_t[m_t.Count() - 1]) : ON_Interval();
}

ON_3dPoint ON_PolyCurve::PointAt(double t) const {
    if (!HasIncreasingParameters()) {
        return ON_UNSET_POINT;
    }
    const double* parameters = m_t.Array();
    const double* end = std::upper_bound(parameters + 1, parameters + Count(), t);
    const double start = *(end - 1);
    const ON_Curve& segment = *m_segments[static_cast<size_t>(end - 1 - parameters)];
    const ON_Interval domain = segment.Domain();
    const double fraction = t == *end ? 1.0 : (t - start) / (*end - start);
    return segment.PointAt((1.0 - fraction) * domain[0] + fraction * domain[1]);
}

int ON_PolyCurve::GetNurbForm(ON_NurbsCurve& form) const {
    form.Destroy();
    if (!HasIncreasingParameters()) {
        return 0;
    }
    for (int number = 0; number < Count(); ++number) {
        ON_NurbsCurve segmentForm;
        if (SegmentCurve(number)->GetNurbForm(segmentForm) == 0) {
            form.Destroy();
            return 0;
        }
        segmentForm.SetDomain(m_t[number], m_t[number + 1]);
        if (number == 0) {
            form = segmentForm;
        } else if (!form.Append(segmentForm)) {
            form.Destroy();
            return 0;
        }
    }
    return 1;
}

ON_BOOL32 ON_PolyCurve::Write(ON_BinaryArchive& archive) const {
    bool isWritten = archive.Write3dmChunkVersion(1, 0) && archive.WriteInt(Count()) &&
                     archive.WriteInt(0) && archive.WriteInt(0) &&
                     archive.WriteBoundingBox(ON_BoundingBox()) && archive.WriteArray(m_t);
    for (const auto& segment : m_segments) {
        isWritten = isWritten && archive.WriteObject(segment.get());
    }
    return isWritten ? 1 : 0;
}

ON_BOOL32 ON_PolyCurve::Read(ON_BinaryArchive& archive) {
    m_segments.clear();
    m_t.Empty();
    int major = 0;
    int minor = 0;
    if (!archive.Read3dmChunkVersion(&major, &minor)) {
        return 0;
    }
    if (major != 1) {
        return 1;
    }
    int count = 0;
    int reserved = 0;
    ON_BoundingBox ignoredBox;
    if (!archive.ReadInt(&count) || !archive.ReadInt(&reserved) || !archive.ReadInt(&reserved) ||
        !archive.ReadBoundingBox(ignoredBox) || !archive.ReadArray(m_t) ||
        !ReadSegments(archive, count)) {
        return 0;
    }
    SnapParameters();
    RemoveNesting();
    return 1;
}

bool ON_PolyCurve::ReadSegments(ON_BinaryArchive& archive, int count) {
    for (int number = 0; number < count; ++number) {
        ON_Object* read = nullptr;
        const int code = archive.ReadObject(&read);
        std::unique_ptr<ON_Object> object(read);
        ON_Curve* const segment = ON_Curve::Cast(object.get());
        if (code != 1 || !segment) {
            return false;
        }
        m_segments.emplace_back(segment);
        object.release();
    }
    return true;
}

void ON_PolyCurve::SnapParameters() {
    if (!HasAllParameters()) {
        return;
    }
    for (int number = 0; number <= Count(); ++number) {
        const auto lengthBetween = [this](int first, int last) {
            return std::fabs(m_t[last] - m_t[first]);
        };
        double shorter = number > 0 ? lengthBetween(number - 1, number) : lengthBetween(0, 1);
        if (number > 0 && number < Count()) {
            shorter = std::min(shorter, lengthBetween(number, number + 1));
        }
        const double tolerance = ON_SQRT_EPSILON * shorter;
        for (const int end : {1, 0}) {
            const ON_Curve* const segment = SegmentCurve(number - end);
            if (segment && std::fabs(segment->Domain()[end] - m_t[number]) <= tolerance) {
                m_t[number] = segment->Domain()[end];
                break;
            }
        }
    }
}

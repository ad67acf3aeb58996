/// Curves joined end to end.
#pragma once

#include <memory>
#include <vector>

#include "ON_Array.h"
#include "ON_Curve.h"

class VERIDANE_OPENNURBS_API ON_PolyCurve : public ON_Curve {
public:
    static const ON_ClassId m_ON_PolyCurve_class_id;

    ON_PolyCurve() = default;
    ON_PolyCurve(const ON_PolyCurve& other);
    ON_PolyCurve& operator=(const ON_PolyCurve& other);

    static ON_PolyCurve* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_PolyCurve*>(object);
    }
    static const ON_PolyCurve* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_PolyCurve*>(object);
    }

    /// Returns the number of segments.
    int Count() const noexcept { return static_cast<int>(m_segments.size()); }
    /// Returns a segment, which stays the polycurve's; null for a number out of range.
    ON_Curve* SegmentCurve(int number) const noexcept;
    /// - Shape: one parameter more than segments; none without segments.
    const ON_SimpleArray<double>& SegmentParameters() const noexcept { return m_t; }

    /// Appends a segment and owns it from then on.
    ///
    /// The first segment brings its own domain. A later one keeps its domain when that begins at the
    /// current end, and is moved there otherwise.
    ///
    /// - Result: false, and the segment still the caller's, for a null pointer, the polycurve itself
    ///   or a domain that does not increase.
    bool Append(ON_Curve* segment);
    /// Replaces every nested polycurve by its segments.
    void RemoveNesting();

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    /// Reads the segments.
    ///
    /// - Deliberate: parameters that miss the ends of a segment's own domain by rounding only are
    ///   moved onto them, and nested polycurves are flattened.
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    int Dimension() const override;
    ON_PolyCurve* DuplicateCurve() const override;
    ON_Interval Domain() const override;
    ON_3dPoint PointAt(double t) const override;
    /// A polycurve has one when it has segments, its parameters increase, and each segment has one.
    int GetNurbForm(ON_NurbsCurve& form) const override;

private:
    bool HasAllParameters() const noexcept { return Count() > 0 && m_t.Count() == Count() + 1; }
    bool HasIncreasingParameters() const noexcept;
    bool ReadSegments(ON_BinaryArchive& archive, int count);
    void SnapParameters();

    std::vector<std::unique_ptr<ON_Curve>> m_segments;
    ON_SimpleArray<double> m_t;
};

/// Polylines as curves.
#pragma once

#include "ON_Array.h"
#include "ON_Curve.h"

/// Points joined by segments.
using ON_Polyline = ON_SimpleArray<ON_3dPoint>;

class VERIDANE_OPENNURBS_API ON_PolylineCurve : public ON_Curve {
public:
    static const ON_ClassId m_ON_PolylineCurve_class_id;

    ON_Polyline m_pline;
    /// One parameter for each point.
    ON_SimpleArray<double> m_t;
    int m_dim = 3;

    ON_PolylineCurve() = default;
    explicit ON_PolylineCurve(const ON_SimpleArray<ON_3dPoint>& points) { *this = points; }
    /// Takes the points at the parameters 0, 1, 2, ...
    ON_PolylineCurve& operator=(const ON_SimpleArray<ON_3dPoint>& points);

    static ON_PolylineCurve* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_PolylineCurve*>(object);
    }
    static const ON_PolylineCurve* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_PolylineCurve*>(object);
    }

    int PointCount() const noexcept { return m_pline.Count(); }

    const ON_ClassId* ClassId() const noexcept override;
    /// - Deliberate: a polyline of fewer than two points is valid.
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    int Dimension() const override { return m_dim; }
    /// The box of the points.
    ON_BoundingBox BoundingBox() const override;
    ON_PolylineCurve* DuplicateCurve() const override;
    ON_Interval Domain() const override;
    ON_3dPoint PointAt(double t) const override;
    /// A polyline of at least two points and increasing parameters has one; points may repeat.
    int GetNurbForm(ON_NurbsCurve& form) const override;

private:
    bool HasIncreasingParameters() const noexcept;
};

/// Arcs and circles as curves.
#pragma once

#include "ON_Curve.h"
#include "ON_RoundShapes.h"

class VERIDANE_OPENNURBS_API ON_ArcCurve : public ON_Curve {
public:
    static const ON_ClassId m_ON_ArcCurve_class_id;

    ON_Arc m_arc;
    ON_Interval m_t;
    int m_dim = 3;

    /// The unit circle in the world xy plane.
    ON_ArcCurve() noexcept : ON_ArcCurve(ON_Circle()) {}
    /// The domain is [0, length].
    explicit ON_ArcCurve(const ON_Arc& arc) noexcept
        : m_arc(arc), m_t(0.0, std::fabs(arc.AngleRadians() * arc.radius)) {}
    explicit ON_ArcCurve(const ON_Circle& circle) noexcept : ON_ArcCurve(ON_Arc(circle)) {}
    ON_ArcCurve(const ON_Arc& arc, double t0, double t1) noexcept : m_arc(arc), m_t(t0, t1) {}

    static ON_ArcCurve* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_ArcCurve*>(object);
    }
    static const ON_ArcCurve* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_ArcCurve*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    /// - Deliberate: fails on another major version, where the other classes succeed with nothing
    ///   read; a dimension other than 2 and 3 becomes 3.
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    int Dimension() const override { return m_dim; }
    ON_ArcCurve* DuplicateCurve() const override;
    ON_Interval Domain() const override { return m_t; }
    ON_3dPoint PointAt(double t) const override;
    /// A valid arc has one: rational of degree 2 with 1, 2 or 4 spans.
    ///
    /// - Deliberate: never 3 spans. The last control point of a full circle is exactly the first.
    int GetNurbForm(ON_NurbsCurve& form) const override;
};

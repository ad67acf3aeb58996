/// Line segments as curves.
#pragma once

#include "ON_Curve.h"

class VERIDANE_OPENNURBS_API ON_LineCurve : public ON_Curve {
public:
    static const ON_ClassId m_ON_LineCurve_class_id;

    ON_Line m_line;
    ON_Interval m_t;
    int m_dim = 3;

    /// A line of length zero with the domain [0, 1].
    ON_LineCurve() noexcept : m_t(0.0, 1.0) {}
    /// The domain is [0, length], or [0, 1] for a length of at most `ON_ZERO_TOLERANCE`.
    explicit ON_LineCurve(const ON_Line& line) noexcept : m_line(line), m_t(LengthDomain(line)) {}
    ON_LineCurve(const ON_3dPoint& start, const ON_3dPoint& end) noexcept
        : ON_LineCurve(ON_Line(start, end)) {}
    /// A line of dimension 2.
    ON_LineCurve(const ON_2dPoint& start, const ON_2dPoint& end) noexcept
        : ON_LineCurve(ON_3dPoint(start.x, start.y, 0.0), ON_3dPoint(end.x, end.y, 0.0)) {
        m_dim = 2;
    }
    ON_LineCurve(const ON_Line& line, double t0, double t1) noexcept : m_line(line), m_t(t0, t1) {}

    static ON_LineCurve* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_LineCurve*>(object);
    }
    static const ON_LineCurve* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_LineCurve*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    int Dimension() const override { return m_dim; }
    ON_LineCurve* DuplicateCurve() const override;
    ON_Interval Domain() const override { return m_t; }
    ON_3dPoint PointAt(double t) const override;
    /// A line has one when its domain increases, also when its length is zero.
    int GetNurbForm(ON_NurbsCurve& form) const override;

private:
    static ON_Interval LengthDomain(const ON_Line& line) noexcept {
        const double length = line.Length();
        return ON_Interval(0.0, length > ON_ZERO_TOLERANCE ? length : 1.0);
    }
};

/// Surfaces swept by one curve along another.
#pragma once

#include "ON_Curve.h"
#include "ON_Surface.h"

/// The points A(u) + B(v) + base point.
class VERIDANE_OPENNURBS_API ON_SumSurface : public ON_Surface {
public:
    static const ON_ClassId m_ON_SumSurface_class_id;

    /// Owned; null when there is none.
    ON_Curve* m_curve[2] = {nullptr, nullptr};
    ON_3dVector m_basepoint;
    /// What the record stores; invalid until the host sets it.
    ON_BoundingBox m_bbox;

    /// No curves, base point 0.
    ON_SumSurface() noexcept : m_basepoint(0.0, 0.0, 0.0) {}
    ON_SumSurface(const ON_SumSurface& other);
    ON_SumSurface& operator=(const ON_SumSurface& other);
    ~ON_SumSurface() override;

    static ON_SumSurface* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_SumSurface*>(object);
    }
    static const ON_SumSurface* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_SumSurface*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    /// Missing curves are written as null records.
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    int Dimension() const override;
    ON_SumSurface* DuplicateSurface() const override;
    ON_Interval Domain(int direction) const override;
    ON_3dPoint PointAt(double u, double v) const override;
    /// A surface of two curves of the same dimension has one.
    int GetNurbForm(ON_NurbsSurface& form) const override;
};

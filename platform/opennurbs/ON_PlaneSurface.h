/// Rectangles in a plane as surfaces.
#pragma once

#include "ON_Plane.h"
#include "ON_Surface.h"

/// The domains are mapped linearly onto the extents, which are measured along the axes of the plane.
class VERIDANE_OPENNURBS_API ON_PlaneSurface : public ON_Surface {
public:
    static const ON_ClassId m_ON_PlaneSurface_class_id;

    ON_Plane m_plane;

    /// The world xy plane with unset domains and extents.
    ON_PlaneSurface() = default;
    /// Domains and extents [0, 1].
    explicit ON_PlaneSurface(const ON_Plane& plane) noexcept
        : m_plane(plane),
          m_domain{ON_Interval(0.0, 1.0), ON_Interval(0.0, 1.0)},
          m_extents{ON_Interval(0.0, 1.0), ON_Interval(0.0, 1.0)} {}

    static ON_PlaneSurface* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_PlaneSurface*>(object);
    }
    static const ON_PlaneSurface* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_PlaneSurface*>(object);
    }

    ON_Interval Extents(int direction) const noexcept { return m_extents[direction ? 1 : 0]; }
    /// - Result: false, and nothing set, for an interval that does not increase.
    bool SetDomain(int direction, double t0, double t1) noexcept;
    /// - Result: false, and nothing set, for an interval that does not increase.
    bool SetExtents(int direction, ON_Interval extents, bool setsDomain = false) noexcept;

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    /// Records before version 1.1 have no extents; the domains stand for them.
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    ON_PlaneSurface* DuplicateSurface() const override;
    ON_Interval Domain(int direction) const override { return m_domain[direction ? 1 : 0]; }
    ON_3dPoint PointAt(double u, double v) const override;
    /// A valid plane surface has one, with its corners as control points.
    int GetNurbForm(ON_NurbsSurface& form) const override;

private:
    ON_Interval m_domain[2];
    ON_Interval m_extents[2];
};

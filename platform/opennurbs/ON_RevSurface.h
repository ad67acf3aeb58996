/// Surfaces of revolution.
#pragma once

#include "ON_Curve.h"
#include "ON_Surface.h"

/// A curve turned about an axis. Direction 0 goes around, direction 1 along the curve; transposed the
/// other way round.
class VERIDANE_OPENNURBS_API ON_RevSurface : public ON_Surface {
public:
    static const ON_ClassId m_ON_RevSurface_class_id;

    /// Owned; null when there is none.
    ON_Curve* m_curve = nullptr;
    ON_Line m_axis;
    /// - Units: radians.
    ON_Interval m_angle;
    /// The parameters that the angles are mapped to.
    ON_Interval m_t;
    ON_BOOL32 m_bTransposed = 0;
    /// What the record stores; invalid until the host sets it.
    ON_BoundingBox m_bbox;

    /// No curve, the world z axis, a full turn.
    ON_RevSurface() noexcept
        : m_axis(ON_3dPoint(0.0, 0.0, 0.0), ON_3dPoint(0.0, 0.0, 1.0)),
          m_angle(0.0, 2.0 * ON_PI),
          m_t(0.0, 2.0 * ON_PI) {}
    ON_RevSurface(const ON_RevSurface& other);
    ON_RevSurface& operator=(const ON_RevSurface& other);
    ~ON_RevSurface() override;

    static ON_RevSurface* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_RevSurface*>(object);
    }
    static const ON_RevSurface* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_RevSurface*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    ON_BOOL32 IsValid() const override;
    ON_BOOL32 Write(ON_BinaryArchive& archive) const override;
    /// Records of major version 1 have no parameters; the angles stand for them.
    ON_BOOL32 Read(ON_BinaryArchive& archive) override;
    ON_RevSurface* DuplicateSurface() const override;
    ON_Interval Domain(int direction) const override;
    ON_3dPoint PointAt(double u, double v) const override;
    /// A surface with a curve and an angle that makes a valid arc has one; it is rational.
    int GetNurbForm(ON_NurbsSurface& form) const override;
};

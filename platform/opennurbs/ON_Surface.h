/// The base of surfaces.
#pragma once

#include "ON_Object.h"

class ON_NurbsSurface;

/// Direction 0 is u, direction 1 is v.
class VERIDANE_OPENNURBS_API ON_Surface : public ON_Geometry {
public:
    static const ON_ClassId m_ON_Surface_class_id;

    /// Returns the object as a surface; null when it is none.
    static ON_Surface* Cast(ON_Object* object) noexcept {
        return dynamic_cast<ON_Surface*>(object);
    }
    static const ON_Surface* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_Surface*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    int Dimension() const override { return 3; }
    /// The box of the NURBS form's control points.
    ON_BoundingBox BoundingBox() const override;

    /// Returns a copy for the caller to delete.
    virtual ON_Surface* DuplicateSurface() const = 0;

    virtual ON_Interval Domain(int direction) const = 0;

    /// - Result: the origin when the surface has no points.
    virtual ON_3dPoint PointAt(double u, double v) const = 0;

    /// Sets `form` to the same surface as a NURBS surface.
    ///
    /// - Result: 0, and an empty `form`, when there is none.
    virtual int GetNurbForm(ON_NurbsSurface& form) const = 0;
    /// Returns the NURBS form for the caller to delete; null when there is none.
    ON_NurbsSurface* NurbsSurface() const;
};

/// The base of curves.
#pragma once

#include "ON_Object.h"

class ON_NurbsCurve;

class VERIDANE_OPENNURBS_API ON_Curve : public ON_Geometry {
public:
    static const ON_ClassId m_ON_Curve_class_id;

    /// Returns the object as a curve; null when it is none.
    static ON_Curve* Cast(ON_Object* object) noexcept { return dynamic_cast<ON_Curve*>(object); }
    static const ON_Curve* Cast(const ON_Object* object) noexcept {
        return dynamic_cast<const ON_Curve*>(object);
    }

    const ON_ClassId* ClassId() const noexcept override;
    /// The box of the NURBS form's control points.
    ON_BoundingBox BoundingBox() const override;

    /// Returns a copy for the caller to delete.
    virtual ON_Curve* DuplicateCurve() const = 0;

    virtual ON_Interval Domain() const = 0;

    /// - Result: the origin when the curve has no points.
    /// - Result: `ON_UNSET_POINT` where there is no curve to evaluate.
    virtual ON_3dPoint PointAt(double t) const = 0;
    ON_3dPoint PointAtStart() const { return PointAt(Domain()[0]); }
    ON_3dPoint PointAtEnd() const { return PointAt(Domain()[1]); }

    /// Sets `form` to the same curve as a NURBS curve.
    ///
    /// - Result: 0, and an empty `form`, when there is none.
    virtual int GetNurbForm(ON_NurbsCurve& form) const = 0;
    /// Returns the NURBS form for the caller to delete; null when there is none.
    ON_NurbsCurve* NurbsCurve() const;
};

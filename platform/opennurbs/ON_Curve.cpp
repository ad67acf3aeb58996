// What every curve gets from its NURBS form.
#include "ON_Curve.h"

#include <memory>

#include "ON_NurbsCurve.h"

ON_BoundingBox ON_Curve::BoundingBox() const {
    ON_NurbsCurve form;
    return GetNurbForm(form) != 0 ? form.BoundingBox() : ON_BoundingBox();
}

ON_NurbsCurve* ON_Curve::NurbsCurve() const {
    auto form = std::make_unique<ON_NurbsCurve>();
    return GetNurbForm(*form) != 0 ? form.release() : nullptr;
}

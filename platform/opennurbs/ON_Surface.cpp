// What every surface gets from its NURBS form.
#include "ON_Surface.h"

#include <memory>

#include "ON_NurbsSurface.h"

ON_BoundingBox ON_Surface::BoundingBox() const {
    ON_NurbsSurface form;
    return GetNurbForm(form) != 0 ? form.BoundingBox() : ON_BoundingBox();
}

ON_NurbsSurface* ON_Surface::NurbsSurface() const {
    auto form = std::make_unique<ON_NurbsSurface>();
    return GetNurbForm(*form) != 0 ? form.release() : nullptr;
}

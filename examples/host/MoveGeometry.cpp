// Whatever the class, its NURBS form moves with its control points. That is also what openNURBS stores of
// most classes. A perspective would need weights where there are none.

#include "MoveGeometry.h"

#include <algorithm>
#include <cmath>

#include "ForEachMesh.h"
#include "Interrupt.h"

namespace Host {

namespace {

constexpr int kSpace = 3;

bool IsPerspective(const ON_Xform& xform) {
    return xform[3][0] != 0.0 || xform[3][1] != 0.0 || xform[3][2] != 0.0 || xform[3][3] != 1.0;
}

// Moves a control point, which is multiplied by its weight, and returns whether it is finite then.
bool MoveControlPoint(double* controlPoint, bool isRational, const ON_Xform& xform) {
    const double weight = isRational ? controlPoint[kSpace] : 1.0;
    double moved[kSpace];
    for (int row = 0; row < kSpace; ++row)
        moved[row] = xform[row][0] * controlPoint[0] + xform[row][1] * controlPoint[1] +
                     xform[row][2] * controlPoint[2] + xform[row][3] * weight;
    std::copy(moved, moved + kSpace, controlPoint);
    return std::all_of(moved, moved + kSpace, [](double value) { return std::isfinite(value); });
}

bool MoveControlPoints(ON_NurbsCurve& curve, const ON_Xform& xform) {
    bool areFinite = true;
    for (int number = 0; number < curve.CVCount(); ++number)
        areFinite = MoveControlPoint(curve.CV(number), curve.IsRational(), xform) && areFinite;
    return areFinite;
}

bool MoveControlPoints(ON_NurbsSurface& surface, const ON_Xform& xform) {
    bool areFinite = true;
    for (int i = 0; i < surface.CVCount(0); ++i)
        for (int j = 0; j < surface.CVCount(1); ++j)
            areFinite =
                MoveControlPoint(surface.CV(i, j), surface.IsRational(), xform) && areFinite;
    return areFinite;
}

template <class Form, class Base>
std::shared_ptr<Base> Moved(const Base& geometry, const ON_Xform& xform, size_t object) {
    if (IsPerspective(xform))
        ThrowForObject(object, "curves and surfaces take no perspective");
    const auto form = std::make_shared<Form>();
    if (!geometry.IsValid() || geometry.GetNurbForm(*form) == 0)
        ThrowForObject(object, "it has no NURBS form to transform");
    if (form->Dimension() != kSpace)
        ThrowForObject(object, "it is not in space");
    if (!MoveControlPoints(*form, xform))
        ThrowForObject(object, "a control point is not finite");
    return form;
}

}  // namespace

size_t TransformCurvesAndSurfaces(Document& document, const ON_Xform& xform) {
    size_t movedCount = 0;
    for (size_t object = 0; object < document.objects.size(); ++object) {
        ThrowIfInterrupted();
        if (Curve* const curve = std::get_if<Curve>(&document.objects[object]))
            *curve = Moved<ON_NurbsCurve>(**curve, xform, object);
        else if (Surface* const surface = std::get_if<Surface>(&document.objects[object]))
            *surface = Moved<ON_NurbsSurface>(**surface, xform, object);
        else
            continue;
        ++movedCount;
    }
    return movedCount;
}

}  // namespace Host

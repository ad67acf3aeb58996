/// Curves and surfaces moved in space.
#pragma once

#include <opennurbs.h>

#include <cstddef>

#include "Document.h"

namespace Host {

/// Replaces each curve and surface by its transformed NURBS form and returns how many these are.
///
/// The control points move, knots and weights stay; so do directions, also when the transformation
/// mirrors.
///
/// - Throws: `std::runtime_error` when one is not in space, has no NURBS form, or has a control point that
///   is not finite afterwards; for a perspective when there are any. `Interrupted`.
size_t TransformCurvesAndSurfaces(Document& document, const ON_Xform& xform);

}  // namespace Host

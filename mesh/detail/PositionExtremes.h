#pragma once

#include "mesh/VraMeshPrimitive.h"

namespace Vr::detail {

/// Finds the box of the used vertices by minimum and maximum, where that equals growing a box point
/// by point.
///
/// - Result: false, and `box` untouched, when a coordinate of the vertex array is not an ordinary
///   number (not finite, or openNURBS's unset value or below), or when there are so many more
///   vertices than triangles that looking at each would cost more than it saves.
/// - Requires: at least one triangle; every vertex number is below the vertex count.
[[nodiscard]] bool FindPositionExtremes(const VraMeshPrimitive::VertexArray& vertices,
                                        const VraMeshPrimitive::VertexIndexArray& triangles,
                                        ON_BoundingBox& box);

}  // namespace Vr::detail

#pragma once

#include <afx.h>

namespace Vr::detail {

/// @name What the body of a mesh leaves to its reader (docs/stream-format.md)
/// @{
constexpr BYTE kPerVertexFlag = 0;
constexpr BYTE kPerTriangleFlag = 1;

/// Returns whether streams of this schema have the UV envelope.
///
/// - Deliberate: two conditions, so that 2 to 9, 12 to 19 and all from 20 up have it.
inline bool HasUVEnvelope(UINT schema) {
    return !(schema < 20 && schema % 10 < 2);
}
/// @}

}  // namespace Vr::detail

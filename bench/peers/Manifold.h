/// Which meshes half-edge structures can hold.
#pragma once

#include "peers/Contest.h"

namespace Vr::bench::peers {

/// Answers whether every edge has at most one triangle on each side, all wound alike, and the
/// triangles around each point hang together.
[[nodiscard]] bool IsManifold(const std::vector<Triangle>& triangles);

}  // namespace Vr::bench::peers

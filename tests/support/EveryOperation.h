/// Everything that a host can do with loaded meshes, one thing at a time.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "mesh/VraMesh.h"
#include "support/MeshBuilders.h"

namespace Vr::test {

/// Runs every public operation, each on objects that `load` makes anew.
///
/// Checks nothing but that each returns: the sanitizers and the debug assertions look on. The
/// exceptions that some operations promise for meshes that fit badly are taken.
///
/// - Requires: `load` gives no empty pointers.
void RunEveryOperation(const std::function<std::vector<Mesh>()>& load);

}  // namespace Vr::test

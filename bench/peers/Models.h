/// Meshes from files that a user names.
#pragma once

#include <string>

#include "peers/Contest.h"

namespace Vr::bench::peers {

/// Imports all triangles of a file, with exactly equal positions joined, as one mesh.
///
/// - Throws: `std::runtime_error` when the file cannot be read, has no triangle, or the program was
///   built without Assimp.
[[nodiscard]] PlainMesh LoadModel(const std::string& path);

}  // namespace Vr::bench::peers

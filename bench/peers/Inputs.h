/// The meshes by name, and the inputs that operations make of them.
#pragma once

#include <string>

#include "peers/Contest.h"

namespace Vr::bench::peers {

/// Returns the names of the built-in meshes, "sphere-10k" to "grid-10M-shuf".
[[nodiscard]] std::vector<std::string> MeshNames();

/// Builds a built-in mesh.
///
/// - Throws: `std::invalid_argument` for a name that `MeshNames` does not have.
[[nodiscard]] PlainMesh MakeMesh(const std::string& name);

/// @name Inputs
/// @{
[[nodiscard]] Input WholeMesh(const PlainMesh& mesh);
/// Three points a triangle.
[[nodiscard]] Input Soup(const PlainMesh& mesh);
/// A soup's numbers with a colour by height at each corner, one of 65536.
[[nodiscard]] Input CornerColors(const PlainMesh& mesh);
/// One triangle in twenty repeats a number.
[[nodiscard]] Input WithDegenerate(const PlainMesh& mesh);
/// A sorted tenth of the triangles to delete.
[[nodiscard]] Input WithFacesToDelete(const PlainMesh& mesh);
/// One point in ten is used by no triangle.
[[nodiscard]] Input WithUnusedPoints(const PlainMesh& mesh);
/// Eight meshes of an eighth of the triangles each.
[[nodiscard]] Input EightParts(const PlainMesh& mesh);
/// @}

}  // namespace Vr::bench::peers

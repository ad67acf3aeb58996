/// What the golden documents that are rows of meshes hold, built by hand as they are.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "serialize/CheckStream.h"
#include "support/MeshBuilders.h"

namespace Vr::golden {

/// A finding of the check, and how the meaning of the field begins that it stands at.
struct ExpectedFinding {
    CheckCode code;
    std::string meaning;
};

struct Expectation {
    std::string name;
    std::function<std::vector<test::Mesh>()> objects;
    std::vector<ExpectedFinding> findings = {};
    /// Whether this library stores the objects so, byte for byte.
    bool isStoredSo = true;
    /// The numbers that the host gives out before the first object.
    std::size_t hostNumbers = 0;
};

/// One a document.
std::vector<Expectation> Expectations();

/// @name Triangles with every array of golden/MeshScript.h that is stored
/// @{
test::Mesh FullMesh(double creaseAngle);
test::Mesh FullPrimitive(double creaseAngle);
/// @}
/// Gives `mesh` every stored array of `source`.
test::Mesh Sharing(const test::Mesh& mesh, const test::Mesh& source);

}  // namespace Vr::golden

/// A scene of Assimp with one mesh made of plain arrays.
#pragma once

#include <assimp/scene.h>

#include <assimp/Importer.hpp>

#include "peers/Contest.h"

namespace Vr::bench::peers {

/// An importer that holds a scene, on which it can run its post-processing steps.
///
/// Assimp runs steps only on scenes that it has read, so a loader of our own "reads" the plain arrays.
class AssimpScene {
public:
    /// With `withNormals` the points are the normals too.
    AssimpScene(const Input& input, bool withNormals);

    /// Makes the scene anew from the arrays.
    void Restore();

    Assimp::Importer& Importer() { return importer_; }
    [[nodiscard]] aiMesh& Mesh() const { return *importer_.GetScene()->mMeshes[0]; }

private:
    Assimp::Importer importer_;
};

}  // namespace Vr::bench::peers

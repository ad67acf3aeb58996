/// Model files of many formats, read through Assimp.
#pragma once

#include <cstddef>
#include <filesystem>
#include <vector>

#include "Document.h"

namespace Host {

/// What came out of a model file and what did not.
struct ImportedModel {
    std::vector<Mesh> meshes;
    size_t triangleCount = 0;
    /// Faces of one and of two corners, which are no triangles.
    size_t droppedPointCount = 0;
    size_t droppedLineCount = 0;
    /// Meshes without normals, because their place flattens them and leaves normals no direction.
    size_t flattenedCount = 0;
};

/// Imports every mesh of a model at each of its places, as one `VraMesh` a place.
///
/// - Shape: one position a vertex of the model. Normals and colours go with the vertices, so their
///   index arrays hold the per-vertex form with the numbers of the vertex index array. The first
///   texture channel becomes three UVs a triangle, one a corner. There is no texture-UV array, since
///   documents do not store it.
/// - Order: places depth first; vertices and triangles as in the model. Polygons come as triangles.
/// - Sharing: the places of one mesh share its colours, UVs and index arrays. A place that mirrors
///   turns the triangles round, so that they face outwards again; mirrored places share among
///   themselves.
/// - Throws: `Failure` for a file that cannot be read, holds no triangle or has positions that are
///   not finite; `Interrupted`.
ImportedModel ImportModel(const std::filesystem::path& path);

}  // namespace Host

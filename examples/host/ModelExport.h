/// Model files of many formats, written through Assimp.
#pragma once

#include <cstddef>
#include <filesystem>

#include "Document.h"

namespace Host {

/// Exports the meshes of a document to a model file, whose extension says the format.
///
/// A model has one number a corner for position, normal, colour and UV alike. So a vertex is repeated
/// where its corners differ in one of the others, and kept once where they do not. Positions and
/// normals become single precision.
///
/// - Order: one mesh an object; triangles as in the object. Meshes without triangles are left out.
/// - Sharing: a format of several files puts the others beside the model, under its name.
/// - Result: the count of triangles in the model.
/// - Throws: `Failure` for an extension no format has, a document without triangles, or a file that
///   cannot be written; what stood at `path` is then as it was. `Interrupted`.
size_t ExportModel(const Document& document, const std::filesystem::path& path);

}  // namespace Host

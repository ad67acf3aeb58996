/// The host's documents: a file that holds meshes, curves, surfaces and materials.
#pragma once

#include <opennurbs.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "mesh/VraMesh.h"

namespace Host {

using Mesh = boost::intrusive_ptr<Vr::VraMeshPrimitive>;
using Curve = std::shared_ptr<ON_Curve>;
using Surface = std::shared_ptr<ON_Surface>;
using Material = std::shared_ptr<ON_Material>;

/// One object of a document, never null.
using Object = std::variant<Mesh, Curve, Surface, Material>;

/// What a document holds. Meshes may share arrays with each other.
struct Document {
    std::vector<Object> objects;
};

/// Returns the meshes of a document, in their order.
std::vector<Mesh> MeshesOf(const Document& document);

/// Returns what is no mesh in a document, as "2 curves, 1 material"; nothing where all are meshes.
std::string CountOthers(const Document& document);

/// Where a document is loaded from.
struct DocumentSource {
    std::string path;
    bool isTrusted = false;  ///< Is loaded without being checked.
};

/// Checks a document and loads it; the file layout is in docs/sample-host.md.
///
/// Check and load read one open file. Shows the progress of the load and can be cancelled with Ctrl-C
/// before each object. Whatever was loaded by then is released.
///
/// - Result: meshes on which every operation may run, and objects of openNURBS as it has read them. Of a
///   trusted document nothing is known but that it was read to its end; a hostile one may have done any
///   harm by then.
/// - Throws: `Failure` for a file that cannot be read, is no document, is damaged or was stored by a
///   newer version; `Interrupted`.
Document LoadDocument(const DocumentSource& source);

/// Stores a document in place of the one that was there, if any, and returns its length in bytes.
///
/// A document of nothing but meshes is stored in the format that holds nothing else.
///
/// - Throws: `Failure` or `Interrupted`; the old document is then as it was.
uint64_t StoreDocument(const Document& document, const std::filesystem::path& path);

}  // namespace Host

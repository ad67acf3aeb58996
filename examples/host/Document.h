/// The host's documents: a file that holds mesh objects.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "mesh/VraMesh.h"

namespace Host {

using Mesh = boost::intrusive_ptr<Vr::VraMeshPrimitive>;

/// What a document holds. Objects may share arrays with each other.
struct Document {
    std::vector<Mesh> objects;
};

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
/// - Result: objects on which every operation may run. Of a trusted document nothing is known but that
///   it was read to its end; a hostile one may have done any harm by then.
/// - Throws: `Failure` for a file that cannot be read, is no document, is damaged or was stored by a
///   newer version; `Interrupted`.
Document LoadDocument(const DocumentSource& source);

/// Stores a document in place of the one that was there, if any, and returns its length in bytes.
///
/// - Throws: `Failure` or `Interrupted`; the old document is then as it was.
uint64_t StoreDocument(const Document& document, const std::filesystem::path& path);

}  // namespace Host

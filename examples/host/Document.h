/// The host's documents: a file that holds mesh objects.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "mesh/VraMesh.h"

namespace Host {

using Mesh = boost::intrusive_ptr<Vr::VraMeshPrimitive>;

/// What a document holds. Objects may share arrays with each other.
struct Document {
    std::vector<Mesh> objects;
};

/// Loads a document; the file layout is in docs/sample-host.md.
///
/// Shows its progress and can be cancelled with Ctrl-C before each object. Whatever was loaded by
/// then is released.
///
/// - Result: objects whose numbers are all in range (`CheckObjects`).
/// - Throws: `Failure` for a file that cannot be read, is no document, is damaged or was stored by a
///   newer version; `Interrupted`.
Document LoadDocument(const std::filesystem::path& path);

/// Stores a document in place of the one that was there, if any, and returns its length in bytes.
///
/// - Throws: `Failure` or `Interrupted`; the old document is then as it was.
uint64_t StoreDocument(const Document& document, const std::filesystem::path& path);

}  // namespace Host

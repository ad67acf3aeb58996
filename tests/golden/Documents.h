/// The golden documents: what stored documents look like, byte by byte, for as long as there is a
/// version that reads them. They lie in tests/golden/documents and are never changed.
///
/// A document is written down here by hand, field by field, and made a file by
///
///     cmake --build <build> --target golden_documents
///
/// which leaves files alone that are there. A new stored shape gets a new document.
#pragma once

#include <string>
#include <vector>

#include "support/ByteScript.h"

namespace Vr::golden {

using test::ByteScript;

struct Document {
    std::string name;
    ByteScript script;
};

/// Rows of meshes as this library stores them, and as older versions have.
std::vector<Document> MeshDocuments();
/// Rows of meshes that this library reads but does not store so.
std::vector<Document> ForeignDocuments();
/// Single values, curves, surfaces and materials, with meshes between them.
std::vector<Document> ValueDocuments();

/// All of the above.
std::vector<Document> AllDocuments();

/// A row of meshes with more than 0x7FFF numbers, which is too large for a file: 32766 meshes, then
/// three primitives, then some of them again.
ByteScript ManyMeshes();

}  // namespace Vr::golden

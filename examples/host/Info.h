/// What is to be said about a document.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "Document.h"

namespace Host {

/// Describes each object of a document and the document as a whole.
///
/// - Shape: a block of lines an object, with its class; of a mesh counts, forms of index arrays, measures,
///   and the arrays it shares with itself or an object before it; of others what `GeometryInfo.h` says. A
///   line of totals over the meshes at the end.
/// - Units: those of the positions; the crease angle in degrees.
/// - Throws: `Interrupted`.
std::string DescribeDocument(const Document& document, const std::filesystem::path& path);

/// Lists the free edges of all meshes, which are those that close no surface.
///
/// - Shape: a line each of the object, counted from 1, and the edge's two vertices, counted from 0,
///   in the direction of the triangle that has it.
/// - Order: objects as in the document, edges ascending.
/// - Throws: `Interrupted`.
std::string ListFreeEdges(const Document& document);

}  // namespace Host

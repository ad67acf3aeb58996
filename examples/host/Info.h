/// What is to be said about a document.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "Document.h"

namespace Host {

/// Describes each object of a document and the document as a whole.
///
/// - Shape: a block of lines an object, with its class, counts, forms of index arrays, measures, and
///   the arrays it shares with itself or an object before it; a line of totals at the end.
/// - Units: those of the positions; the crease angle in degrees.
/// - Throws: `Interrupted`.
std::string DescribeDocument(const Document& document, const std::filesystem::path& path);

}  // namespace Host

/// What a host that opens other people's documents checks before it uses them.
#pragma once

#include <filesystem>

#include "Document.h"

namespace Host {

/// Checks that every number in the objects addresses something.
///
/// Loading takes what the stream holds as it is, and the library's operations trust the numbers in
/// the index arrays. So a host looks once, after loading: whether an array serves only roles of its
/// own kind, whether the lists have one entry a triangle, and whether every number is in range.
///
/// - Throws: `Failure` for `path`, which names the first object that is not sound.
/// - Complexity: linear in the stored numbers, one small table entry an array.
void CheckObjects(const Document& document, const std::filesystem::path& path);

}  // namespace Host

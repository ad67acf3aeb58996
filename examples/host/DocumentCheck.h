/// What a host that opens other people's documents checks before it loads them.
#pragma once

#include <afx.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "serialize/CheckStream.h"

namespace Host {

/// A finding, and in which object it is: counted from 1, 0 for the document's own values.
struct DocumentFinding {
    uint64_t objectNumber;
    Vr::CheckFinding finding;
};

/// What is wrong with a document.
struct DocumentReport {
    uint64_t objectCount = 0;               ///< As the document says.
    std::vector<DocumentFinding> findings;  ///< As many as the library's check keeps.
    Vr::CheckReport summary;  ///< Counts and the answer; its list of findings is empty.
};

/// Checks a document from its first byte, without loading it.
///
/// Takes the steps that loading takes, each with the library's check of the same step. Leaves the file
/// anywhere.
///
/// - Throws: `Interrupted`; what the file throws.
DocumentReport CheckDocument(CFile& file);

/// Returns "object 1, byte 345: vertex number 8 where there are 8".
std::string Describe(const DocumentFinding& finding);

/// Checks that a document can be loaded and worked on.
///
/// - Throws: `Failure` for `path`, with the first finding that speaks against it, and what
///   `CheckDocument` throws.
void RequireSafe(CFile& file, const std::filesystem::path& path);

}  // namespace Host

/// Objects of openNURBS in a document, each in a frame of its own.
#pragma once

#include <afx.h>

#include "Document.h"
#include "DocumentLayout.h"

namespace Host {

/// @name Storing
/// Stores how many bytes follow, then what the library's `operator&` stores.
///
/// - Throws: `std::runtime_error` for an object of 4 GB or more, and for one that does not come back from
///   what openNURBS has stored of it; what the archive throws.
/// @{
void StoreFramed(CArchive& archive, Curve curve);
void StoreFramed(CArchive& archive, Surface surface);
void StoreFramed(CArchive& archive, Material material);
/// @}

/// Loads an object of a kind (`DocumentLayout.h`) that is no mesh.
///
/// openNURBS reads from a copy of the frame, so that a damaged object leads it nowhere else, and what it
/// has made is looked at: the handle of a curve may come back with a surface in it, or with nothing.
///
/// - Throws: `std::runtime_error` when the frame does not hold just such an object; what the archive
///   throws.
Object LoadFramed(CArchive& archive, DWORD kind);

}  // namespace Host

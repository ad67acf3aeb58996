#pragma once

#include <opennurbs.h>

#include "serialize/detail/CheckContext.h"

namespace Vr::detail {

/// Passes over openNURBS's record of an object whose class is derived from `baseName`, such as
/// "ON_Curve", or of no object.
///
/// The frame of the record and its class are looked at, which decide where loading goes on and whether
/// the handle may hold the object. What the class itself has stored is the geometry kernel's to read.
CheckedObject CheckRecord(CheckContext& context, const char* baseName);

}  // namespace Vr::detail

#pragma once

#include "serialize/detail/CheckContext.h"

namespace Vr::detail {

/// Passes over the bare fields of a material, as `operator&` loads them.
///
/// Only the oldest form, which this library stores, is gone along with; strings are the only fields of
/// no fixed length in it.
bool CheckMaterial(CheckContext& context);

}  // namespace Vr::detail

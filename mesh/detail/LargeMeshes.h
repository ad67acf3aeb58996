#pragma once

namespace Vr::detail {

/// Whether meshes of any size take the roads of large ones: loops are dealt out however short they are,
/// and numbers have 64 bits. Test builds define it, since nobody has meshes of billions of triangles at
/// hand; no result depends on it.
#if defined(VERIDANE_SMALL_AS_LARGE)
constexpr bool kSmallAsLarge = true;
#else
constexpr bool kSmallAsLarge = false;
#endif

}  // namespace Vr::detail

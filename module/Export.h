/// The export macro of the module. A leaf: it includes nothing, so every public header may use it.
#pragma once

#if defined(_WIN32)
#if defined(VERIDANE_MESH_BUILD)
#define VERIDANE_MESH_API __declspec(dllexport)
#else
#define VERIDANE_MESH_API __declspec(dllimport)
#endif
#else
#define VERIDANE_MESH_API __attribute__((visibility("default")))
#endif

#if defined(__FAST_MATH__)
#error "Veridane_Mesh promises the same bits everywhere; do not compile it with -ffast-math"
#endif

/// The export macro of the kernel. A leaf: it includes nothing, so every header may use it.
#pragma once

#if defined(_WIN32)
#if defined(VERIDANE_OPENNURBS_BUILD)
#define VERIDANE_OPENNURBS_API __declspec(dllexport)
#else
#define VERIDANE_OPENNURBS_API __declspec(dllimport)
#endif
#else
#define VERIDANE_OPENNURBS_API __attribute__((visibility("default")))
#endif

#if defined(__FAST_MATH__)
#error "the geometry kernel promises the same bits everywhere; do not compile it with -ffast-math"
#endif

/// Where the results of later releases differ from the recorded ones, which are those of 201307115.
#pragma once

#include <cmath>

#include "unit/platform/opennurbs/SameBits.h"

namespace kerneltest {

/// Whether the kernel is of release 6 or later; a constant tells their headers.
#if defined(ON_UNSET_POSITIVE_VALUE)
constexpr bool kIsLaterRelease = true;
#else
constexpr bool kIsLaterRelease = false;
#endif

/// Whether it is the project's own kernel, which has not all of openNURBS.
#if defined(VERIDANE_EMBEDDED_KERNEL)
constexpr bool kIsEmbedded = true;
#else
constexpr bool kIsEmbedded = false;
#endif

/// The equation's d of default circles and arcs.
constexpr double kDefaultCircleD = kIsLaterRelease ? -0.0 : 0.0;

/// Later releases let no number be valid from the magnitude of `ON_UNSET_VALUE` up.
template <class Value>
bool IsWithinLimits(const Value& value) {
    bool isWithin = true;
    for (const double number : DoublesOf(value)) {
        isWithin = isWithin && !(std::fabs(number) >= -ON_UNSET_VALUE);
    }
    return isWithin || !kIsLaterRelease;
}

}  // namespace kerneltest

/// Constants of the kernel and the test of a usable coordinate.
#pragma once

#include <cmath>
#include <cstddef>

#include "ON_Export.h"

#define ON_PI 3.141592653589793238462643
#define ON_DBL_MIN 2.2250738585072014e-308
#define ON_EPSILON 2.2204460492503131e-16
#define ON_SQRT_EPSILON 1.490116119385000000e-8
#define ON_ZERO_TOLERANCE 2.3283064365386962890625e-10
#define ON_UNSET_VALUE -1.23432101234321e+308
#define ON_UNSET_COLOR 0xffffffff

/// The result of `Write`, `Read` and `IsValid` of object classes: zero or not zero.
typedef int ON_BOOL32;

/// Says whether a coordinate is neither NaN nor infinite nor `ON_UNSET_VALUE`.
inline bool ON_IsValid(double x) noexcept {
    return x != ON_UNSET_VALUE && std::isfinite(x);
}

class ON {
public:
    /// What an archive is used for. Bit 0 allows reading, bit 1 allows writing.
    ///
    /// - Deliberate: the 3dm modes behave like the plain ones here.
    enum archive_mode {
        unknown_archive_mode = 0,
        read = 1,
        write = 2,
        readwrite = 3,
        read3dm = 5,
        write3dm = 6
    };

    /// Registers every class of the kernel; with the shared library that has happened already.
    static void Begin() noexcept {}

    /// Counterpart of `Begin`; nothing is left to release.
    static void End() noexcept {}
};

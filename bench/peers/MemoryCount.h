/// Counts the memory that is held, between two calls, by everything in the process.
#pragma once

namespace Vr::bench::peers {

/// Starts counting; or stops, and returns the most bytes held at a time beyond those at the start.
///
/// - Result: 0 at the start, and where the C library's allocation cannot be intercepted.
double CountMemory(bool start);

}  // namespace Vr::bench::peers

/// What NURBS curves and surfaces share: knot vectors, and polynomials given by control points.
#pragma once

#include <cstddef>
#include <vector>

#include "ON_Point.h"

class ON_BinaryArchive;

namespace kernel_detail {

/// Returns the number of knots; there are no superfluous ones at the ends.
///
/// - Result: 0 when the numbers make no NURBS curve, or more knots than an `int` counts.
int KnotCount(int order, int controlPointCount) noexcept;

/// Says whether control points of these numbers can be counted with an `int` of doubles.
bool CanHoldPoints(int dimension, bool isRational, int count0, int count1 = 1) noexcept;

/// @name Control points: `dimension` numbers, and a weight behind them on rational ones
/// @{

/// Returns the point divided by its weight, with 0.0 for coordinates beyond the dimension.
ON_3dPoint PointOf(const double* source, int dimension, bool isRational) noexcept;
/// Sets a homogeneous point, which is divided by its weight where none is stored.
void SetPoint(const ON_4dPoint& point, int dimension, bool isRational, double* target) noexcept;
/// @}

/// Says whether the knots do not decrease, are usable numbers and give the curve a domain.
bool IsKnotVector(int order, int controlPointCount, const double* knots) noexcept;

/// Moves the knots so that the domain becomes [t0, t1].
///
/// - Result: false, and the knots as they were, when either interval does not increase.
bool SetKnotDomain(int order, int controlPointCount, double* knots, double t0, double t1) noexcept;

/// Returns the first control point of the span that holds `t`; the last span holds the domain's end.
///
/// - Requires: a valid knot vector.
int FindSpan(int order, int controlPointCount, const double* knots, double t) noexcept;

/// Evaluates the blossom of one span in place; equal arguments give the point at that parameter.
///
/// - Shape: `points` holds order * pointSize numbers, `knots` the 2 * (order - 1) knots of the span,
///   `arguments` order - 1 parameters.
/// - Result: the first `pointSize` numbers of `points`.
void EvaluateBlossom(int order, int pointSize, const double* knots, const double* arguments,
                     double* points) noexcept;

/// Appends doubles from an archive; memory is taken as they arrive.
bool AppendDoubles(ON_BinaryArchive& archive, size_t count, std::vector<double>& values);

/// Writes a count and that many knots; the count 0 where there are none.
bool WriteKnots(ON_BinaryArchive& archive, int count, const double* knots);

/// Reads what `WriteKnots` has written.
///
/// - Result: false for a count other than 0 and `expectedCount`.
bool ReadKnots(ON_BinaryArchive& archive, int expectedCount, std::vector<double>& knots);

}  // namespace kernel_detail

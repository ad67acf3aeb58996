#pragma once

#include <opennurbs.h>

#include <cmath>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::detail {

// What `CreateNormalPerVertex` keeps of each triangle: as little as its weighting needs, because
// fetching these records around every vertex is most of the time of a large mesh.

/// A face weighted by area, where all faces around a vertex share one normal.
struct AreaFace {
    ON_3dVector raw;  ///< Normal, twice as long as the area.

    void AddTo(ON_3dVector& sum, size_t /*corner*/) const { sum += raw; }
};

/// A face weighted by area, where creases split normals.
///
/// The test is that of the unit normals, to the last bit, but most faces are told apart without the
/// divisions of a unit normal: it is made only where the raw normals leave doubt. Aligned so that no
/// record lies across two cache lines.
struct alignas(32) CreaseAreaFace {
    ON_3dVector raw;
    double length;  ///< Of `raw`, to some last bits; any value where it overflows or vanishes.

    void AddTo(ON_3dVector& sum, size_t /*corner*/) const { sum += raw; }

    /// Returns whether the dot product of the unit normals is greater than `threshold`.
    bool IsSmoothWith(const CreaseAreaFace& seed, double threshold) const {
        const double lengths = seed.length * length;
        const double excess = ON_DotProduct(seed.raw, raw) - threshold * lengths;
        // Rounding moves the excess and the dot product of the unit normals by less than
        // 32 * 2^-53 of `lengths`, as long as nothing underflows or overflows: a length is the root
        // of a sum of squares, so both have to be well inside the range of numbers.
        const bool isSafe = seed.length > 1e-120 && length > 1e-120 && lengths < 1e120;
        if (isSafe && std::fabs(excess) > 1e-14 * lengths)
            return excess > 0.0;
        return IsUnitDotGreater(seed, threshold);
    }

private:
    bool IsUnitDotGreater(const CreaseAreaFace& seed, double threshold) const {
        ON_3dVector seedUnit = seed.raw;
        ON_3dVector unit = raw;
        seedUnit.Unitize();
        unit.Unitize();
        return ON_DotProduct(seedUnit, unit) > threshold;
    }
};

/// A face weighted by its interior angle at the vertex.
///
/// - Source: Thürmer and Wüthrich, "Computing vertex normals from polygonal facets", 1998.
struct AngleFace {
    ON_3dVector unit;
    double angles[3];

    void AddTo(ON_3dVector& sum, size_t corner) const { sum += unit * angles[corner]; }

    bool IsSmoothWith(const AngleFace& seed, double threshold) const {
        return ON_DotProduct(seed.unit, unit) > threshold;
    }
};

/// @name Faces of the triangles in [begin, end)
/// - Shape: `faces[0]` is that of triangle `begin`.
/// - Requires: every vertex number is below the vertex count.
/// @{
void MakeFaces(const VraMeshPrimitive::VertexArray& vertices,
               const VraMeshPrimitive::VertexIndexArray& triangles, size_t begin, size_t end,
               AreaFace* faces);
void MakeFaces(const VraMeshPrimitive::VertexArray& vertices,
               const VraMeshPrimitive::VertexIndexArray& triangles, size_t begin, size_t end,
               CreaseAreaFace* faces);
void MakeFaces(const VraMeshPrimitive::VertexArray& vertices,
               const VraMeshPrimitive::VertexIndexArray& triangles, size_t begin, size_t end,
               AngleFace* faces);
/// @}

}  // namespace Vr::detail

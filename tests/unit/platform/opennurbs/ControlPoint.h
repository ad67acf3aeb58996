/// Control points under one name: releases differ in what they call them.
#pragma once

#include "opennurbs.h"

namespace kerneltest {

/// Divides stored coordinates by their weight.
inline ON_3dPoint PointOf(const double* stored, bool hasWeight) {
    const double weight = hasWeight ? stored[3] : 1.0;
    return ON_3dPoint(stored[0] / weight, stored[1] / weight, stored[2] / weight);
}

/// A control point of a curve in three dimensions.
inline ON_3dPoint ControlPointOf(const ON_NurbsCurve& curve, int number) {
    return PointOf(curve.CV(number), curve.m_is_rat != 0);
}

/// A control point of a surface in three dimensions.
inline ON_3dPoint ControlPointOf(const ON_NurbsSurface& surface, int i, int j) {
    return PointOf(surface.CV(i, j), surface.m_is_rat != 0);
}

}  // namespace kerneltest

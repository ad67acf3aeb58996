// Edits of the geometry in place. Arrays are reached through the getters that hosts may override, each
// once and in a fixed order, and nothing is installed.

#include <algorithm>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/Pair.h"
#include "mesh/detail/UnitVectors.h"

namespace Vr {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using NormalArray = VraMeshPrimitive::NormalArray;

// What `ON_3dPoint::Transform` does, to the last bit, to two points at a time.
void TransformPoints(const ON_Xform& xf, ON_3dPoint* points, size_t count) {
    using detail::Pair;
    // A copy, which no point that is written can be a part of, stays in registers.
    const ON_Xform matrix = xf;
    const auto& m = matrix.m_xform;
    const auto row = [&m](int number, Pair x, Pair y, Pair z) {
        return Pair::Both(m[number][0]) * x + Pair::Both(m[number][1]) * y +
               Pair::Both(m[number][2]) * z + Pair::Both(m[number][3]);
    };
    size_t point = 0;
    for (; point + 2 <= count; point += 2) {
        double* const six = &points[point].x;
        const Pair first = Pair::Load(six);
        const Pair second = Pair::Load(six + 2);
        const Pair third = Pair::Load(six + 4);
        const Pair x = LowHigh(first, second);
        const Pair y = HighLow(first, third);
        const Pair z = LowHigh(second, third);
        const Pair weight = row(3, x, y, z);
        Pair newX = row(0, x, y, z);
        Pair newY = row(1, x, y, z);
        Pair newZ = row(2, x, y, z);
        // Most matrices give every point the weight 1, and to divide by that changes nothing.
        if (!AreEqual(weight, Pair::Both(1.0))) {
            // A weight of 0 is no divisor, but a factor.
            const Pair zero = Pair::Both(0.0);
            const Pair divisor = WhereEqual(weight, zero, Pair::Both(1.0), weight);
            const Pair factor = WhereEqual(weight, zero, weight, Pair::Both(1.0) / divisor);
            newX = factor * newX;
            newY = factor * newY;
            newZ = factor * newZ;
        }
        LowLow(newX, newY).Store(six);
        LowHigh(newZ, newX).Store(six + 2);
        HighHigh(newY, newZ).Store(six + 4);
    }
    if (point < count)
        points[point].Transform(matrix);
}

void TransformNormals(const ON_Xform& inverseTranspose, NormalArray& normals) {
    const ON_Xform matrix = inverseTranspose;
    // Blocks that stay in the nearest cache between the two steps.
    constexpr size_t kBlock = 256;
    for (size_t begin = 0; begin < normals.size(); begin += kBlock) {
        const size_t end = std::min(begin + kBlock, normals.size());
        for (size_t normal = begin; normal < end; ++normal)
            normals[normal].Transform(matrix);
        detail::UnitizeAll(normals.data() + begin, end - begin);
    }
}

void SwapLastTwo(std::vector<TriangleIndex>& triples) {
    for (TriangleIndex& triple : triples)
        std::swap(triple.v[1], triple.v[2]);
}

void SwapLastTwo(VraMeshPrimitive::IndexArray& indices) {
    SwapLastTwo(boost::get<VraMeshPrimitive::IndexArray::PerVertex>(indices.data));
}

// Also edits what a read-only getter answered: both kinds answer the same array.
template <class Array>
void SwapLastTwo(const std::shared_ptr<Array>& array) {
    if (array)
        SwapLastTwo(*std::const_pointer_cast<std::remove_const_t<Array>>(array));
}

}  // namespace

bool VraMeshPrimitive::Transform(const ON_Xform& xf, std::set<void*>& done) {
    const auto normals = GetModifiableNormalArray();
    if (normals && done.insert(normals.get()).second) {
        ON_Xform inverseTranspose = xf;
        // Deliberate: the address stays in the set, and the points stay where they are.
        if (!inverseTranspose.Invert())
            return false;
        inverseTranspose.Transpose();
        TransformNormals(inverseTranspose, *normals);
    }
    const auto vertices = GetModifiableVertexArray();
    if (!vertices || !done.insert(vertices.get()).second)
        return true;
    TransformPoints(xf, vertices->data(), vertices->size());
    return true;
}

bool VraMeshPrimitive::Scale(double factor) {
    const auto vertices = GetModifiableVertexArray();
    if (!vertices)
        return true;
    for (ON_3dPoint& point : *vertices)
        point *= factor;
    return true;
}

void VraMeshPrimitive::ReverseFaces(bool reverseNormals) {
    // Deliberate: an array that serves two roles is swapped once for each, which undoes the swap.
    SwapLastTwo(GetVertexIndexArray());
    if (IsNormalPerVertex())
        SwapLastTwo(GetNormalIndexArray());
    if (IsColorPerVertex())
        SwapLastTwo(GetModifiableColorIndexArray());
    SwapLastTwo(GetTextureUVIndexArray());
    if (!reverseNormals)
        return;
    const auto normals = std::const_pointer_cast<NormalArray>(GetNormalArray());
    if (!normals)
        return;
    for (ON_3dVector& normal : *normals)
        normal.Reverse();
}

}  // namespace Vr

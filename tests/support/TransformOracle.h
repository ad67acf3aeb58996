/// Transform, scaling and reversal of faces one element at a time, as they are defined.
#pragma once

#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

inline bool TransformByDefinition(VraMeshPrimitive& mesh, const ON_Xform& xf,
                                  std::set<void*>& done) {
    if (const auto normals = mesh.GetModifiableNormalArray()) {
        if (done.count(normals.get()) == 0) {
            done.insert(normals.get());
            ON_Xform inverse = xf;
            if (!inverse.Invert())
                return false;
            inverse.Transpose();
            for (std::size_t normal = 0; normal < normals->size(); ++normal) {
                (*normals)[normal].Transform(inverse);
                (*normals)[normal].Unitize();
            }
        }
    }
    if (const auto vertices = mesh.GetModifiableVertexArray()) {
        if (done.count(vertices.get()) == 0) {
            done.insert(vertices.get());
            for (std::size_t vertex = 0; vertex < vertices->size(); ++vertex)
                (*vertices)[vertex].Transform(xf);
        }
    }
    return true;
}

inline void SwapEachByDefinition(std::vector<VraMeshPrimitive::TriangleIndex>& triples) {
    for (std::size_t triangle = 0; triangle < triples.size(); ++triangle) {
        const std::size_t second = triples[triangle][1];
        triples[triangle][1] = triples[triangle][2];
        triples[triangle][2] = second;
    }
}

/// Handles each role for itself, so an array that serves two is swapped twice.
inline void ReverseFacesByDefinition(VraMeshPrimitive& mesh, bool reverseNormals) {
    using PerVertex = VraMeshPrimitive::IndexArray::PerVertex;
    if (const auto triangles = mesh.GetModifiableVertexIndexArray())
        SwapEachByDefinition(*triangles);
    if (mesh.IsNormalPerVertex())
        SwapEachByDefinition(boost::get<PerVertex>(mesh.GetModifiableNormalIndexArray()->data));
    if (mesh.IsColorPerVertex())
        SwapEachByDefinition(boost::get<PerVertex>(mesh.GetModifiableColorIndexArray()->data));
    if (const auto triangles = mesh.GetModifiableTextureUVIndexArray())
        SwapEachByDefinition(*triangles);
    if (const auto normals = mesh.GetModifiableNormalArray(); normals && reverseNormals)
        for (std::size_t normal = 0; normal < normals->size(); ++normal)
            (*normals)[normal] = -(*normals)[normal];
}

}  // namespace Vr::test

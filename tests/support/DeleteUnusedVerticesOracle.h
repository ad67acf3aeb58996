/// A slow compaction of unused vertices: a set of used ones, and an ordered map from old to new
/// number.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// Compacts one vertex array with the index arrays into it, in list order; one that is listed more
/// than once is renumbered as often.
inline void OracleCompactGroup(VraMeshPrimitive::VertexArray& vertices,
                               const std::vector<VraMeshPrimitive::VertexIndexArray*>& lists) {
    std::set<size_t> used;
    for (const auto* triangles : lists)
        for (const auto& corners : *triangles)
            used.insert(corners.v, corners.v + 3);

    std::map<size_t, size_t> tableAt;
    VraMeshPrimitive::VertexArray kept;
    for (size_t vertex = 0; vertex < vertices.size(); ++vertex) {
        tableAt[vertex] = used.count(vertex) ? kept.size() : 1;
        if (used.count(vertex))
            kept.push_back(vertices[vertex]);
    }
    vertices = kept;
    for (auto* triangles : lists)
        for (auto& corners : *triangles)
            for (size_t& vertex : corners.v)
                vertex = tableAt.at(vertex);
}

/// Compacts a list of primitives, each vertex array once. Primitives that lack vertices or
/// triangles take no part.
inline void OracleDeleteUnusedVertices(
    const std::vector<boost::intrusive_ptr<VraMeshPrimitive>>& primitives) {
    std::vector<
        std::pair<VraMeshPrimitive::VertexArray*, std::vector<VraMeshPrimitive::VertexIndexArray*>>>
        groups;
    for (const auto& primitive : primitives) {
        auto* const vertices = primitive->GetModifiableVertexArray().get();
        auto* const triangles = primitive->GetModifiableVertexIndexArray().get();
        if (!vertices || !triangles)
            continue;
        bool isNew = true;
        for (auto& group : groups) {
            if (group.first == vertices) {
                group.second.push_back(triangles);
                isNew = false;
            }
        }
        if (isNew)
            groups.push_back({vertices, {triangles}});
    }
    for (const auto& group : groups)
        OracleCompactGroup(*group.first, group.second);
}

}  // namespace Vr::test

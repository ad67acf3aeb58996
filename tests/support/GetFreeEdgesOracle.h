/// Free edges by one ordered set, as they are defined.
#pragma once

#include <cstddef>
#include <set>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

using EdgeList = std::vector<std::pair<std::size_t, std::size_t>>;

inline std::set<std::pair<std::size_t, std::size_t>> FreeEdgeSet(
    const std::vector<VraMeshPrimitive::TriangleIndex>& triangles) {
    std::set<std::pair<std::size_t, std::size_t>> edges;
    for (const auto& triangle : triangles) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const std::size_t from = triangle[corner];
            const std::size_t to = triangle[(corner + 1) % 3];
            const auto reversed = edges.find({to, from});
            if (reversed != edges.end())
                edges.erase(reversed);
            else if (edges.find({from, to}) == edges.end())
                edges.insert({from, to});
        }
    }
    return edges;
}

/// Does to `edges` what the operation does, capacity included.
inline void AppendFreeEdgesByDefinition(
    const std::vector<VraMeshPrimitive::TriangleIndex>& triangles, EdgeList& edges) {
    const auto found = FreeEdgeSet(triangles);
    if (found.empty())
        return;
    if (edges.capacity() < found.size())
        edges.reserve(found.size());
    for (const auto& edge : found)
        edges.push_back(edge);
}

}  // namespace Vr::test

// Corners at the same point are joined into fans across the edges between their triangles; a point with
// two fans is where two parts of a mesh only touch.

#include "peers/Manifold.h"

#include <algorithm>
#include <numeric>

namespace Vr::bench::peers {

namespace {

struct DirectedEdge {
    uint64_t from;
    uint64_t to;
    size_t fromCorner;
    size_t toCorner;
};

bool IsBefore(const DirectedEdge& a, const DirectedEdge& b) {
    return a.from != b.from ? a.from < b.from : a.to < b.to;
}

class Fans {
public:
    explicit Fans(size_t cornerCount) : parentOf_(cornerCount) {
        std::iota(parentOf_.begin(), parentOf_.end(), size_t{0});
    }

    size_t Of(size_t corner) {
        while (parentOf_[corner] != corner)
            corner = parentOf_[corner] = parentOf_[parentOf_[corner]];
        return corner;
    }
    void Join(size_t corner, size_t other) { parentOf_[Of(corner)] = Of(other); }

private:
    std::vector<size_t> parentOf_;
};

std::vector<DirectedEdge> EdgesOf(const std::vector<Triangle>& triangles) {
    std::vector<DirectedEdge> edges;
    edges.reserve(3 * triangles.size());
    for (size_t triangle = 0; triangle < triangles.size(); ++triangle) {
        for (size_t side = 0; side < 3; ++side) {
            const size_t next = (side + 1) % 3;
            edges.push_back({triangles[triangle][side], triangles[triangle][next],
                             3 * triangle + side, 3 * triangle + next});
        }
    }
    std::sort(edges.begin(), edges.end(), IsBefore);
    return edges;
}

}  // namespace

bool IsManifold(const std::vector<Triangle>& triangles) {
    const std::vector<DirectedEdge> edges = EdgesOf(triangles);
    Fans fans(3 * triangles.size());
    for (size_t place = 0; place < edges.size(); ++place) {
        const DirectedEdge& edge = edges[place];
        if (edge.from == edge.to || (place > 0 && !IsBefore(edges[place - 1], edge)))
            return false;
        const DirectedEdge back = {edge.to, edge.from, 0, 0};
        const auto opposite = std::lower_bound(edges.begin(), edges.end(), back, IsBefore);
        if (opposite == edges.end() || IsBefore(back, *opposite))
            continue;
        fans.Join(edge.fromCorner, opposite->toCorner);
        fans.Join(edge.toCorner, opposite->fromCorner);
    }

    // The edges are sorted by the point that they leave, so a point's corners are together.
    for (size_t place = 1; place < edges.size(); ++place)
        if (edges[place].from == edges[place - 1].from &&
            fans.Of(edges[place].fromCorner) != fans.Of(edges[place - 1].fromCorner))
            return false;
    return true;
}

}  // namespace Vr::bench::peers

// Edges are dealt into one bucket for each smaller end, in the order triangles traverse them, and
// paired within their bucket: linear, where looking each edge up in a set is n log n and misses the
// cache at every step. Vertex numbers are only compared, so when they lie too far apart for a table
// their ranks take their place.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/LargeMeshes.h"
#include "mesh/detail/Prefetch.h"

namespace Vr {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;
using EdgeList = std::vector<std::pair<size_t, size_t>>;

// Vertex numbers from `first` on, `count` of them.
struct NumberRange {
    size_t first;
    size_t count;
};

// Finds the free edges of triangles whose vertex numbers lie in a range that a table can have.
//
// An edge is kept in the bucket of its smaller end, as its greater end times two, plus one where it is
// traversed from the greater to the smaller. Both count from the begin of the range.
template <class Number>
class EdgePairing {
public:
    [[nodiscard]] static bool CanHold(size_t triangleCount, size_t numberCount) {
        constexpr size_t kLargest = std::numeric_limits<Number>::max();
        return triangleCount <= kLargest / 3 && numberCount <= kLargest / 2;
    }

    EdgePairing(const VertexIndexArray& triangles, NumberRange range)
        : triangles_(triangles),
          range_(range),
          edges_(new Number[3 * triangles.size()]),
          bucketEnds_(new Number[range.count]()) {}

    // Appends to a vector of edges in ascending order, whose ends `numberOf` turns from range to
    // vertex numbers.
    template <class NumberOf>
    void AppendFreeEdges(EdgeList& edges, const NumberOf& numberOf) {
        DealEdges();
        PairBuckets();
        if (!free_.empty())
            AppendSorted(edges, numberOf);
    }

private:
    static constexpr size_t kTrianglesAhead = 12;
    // Longer buckets are sorted, since searching them entry by entry would be quadratic.
    static constexpr std::ptrdiff_t kLongBucket = 64;

    struct Edge {
        Number from;
        Number to;
    };

    static Number OtherEnd(Number edge) { return edge / 2; }

    size_t LowEnd(const TriangleIndex& triangle, size_t corner) const {
        return std::min(triangle.v[corner], triangle.v[(corner + 1) % 3]) - range_.first;
    }

    void DealEdges() {
        for (const TriangleIndex& triangle : triangles_)
            for (size_t corner = 0; corner < 3; ++corner)
                ++bucketEnds_[LowEnd(triangle, corner)];
        Number begin = 0;
        for (size_t low = 0; low < range_.count; ++low)
            begin += std::exchange(bucketEnds_[low], begin);

        // While the edges go in, the table moves from the begin of each bucket to its end.
        Number* const edges = edges_.get();
        Number* const next = bucketEnds_.get();
        for (size_t number = 0; number < triangles_.size(); ++number) {
            PrefetchBuckets(number);
            const TriangleIndex& triangle = triangles_[number];
            for (size_t corner = 0; corner < 3; ++corner) {
                const size_t from = triangle.v[corner] - range_.first;
                const size_t to = triangle.v[(corner + 1) % 3] - range_.first;
                const size_t isDescending = from > to ? 1 : 0;
                edges[next[std::min(from, to)]++] =
                    static_cast<Number>(2 * std::max(from, to) + isDescending);
            }
        }
    }

    void PrefetchBuckets(size_t number) const {
        if (number + 2 * kTrianglesAhead >= triangles_.size())
            return;
        for (size_t corner = 0; corner < 3; ++corner) {
            const Number* const next = bucketEnds_.get();
            detail::Prefetch(next + LowEnd(triangles_[number + 2 * kTrianglesAhead], corner));
            detail::Prefetch(edges_.get() +
                             next[LowEnd(triangles_[number + kTrianglesAhead], corner)]);
        }
    }

    void PairBuckets() {
        Number* begin = edges_.get();
        for (size_t low = 0; low < range_.count; ++low) {
            Number* const end = edges_.get() + bucketEnds_[low];
            const Number lowEnd = static_cast<Number>(low);
            Number* const freeEnd = end - begin > kLongBucket ? PairLong(begin, end, lowEnd)
                                                              : PairShort(begin, end, lowEnd);
            for (const Number* edge = begin; edge != freeEnd; ++edge)
                free_.push_back(*edge % 2 == 0 ? Edge{lowEnd, OtherEnd(*edge)}
                                               : Edge{OtherEnd(*edge), lowEnd});
            begin = end;
        }
    }

    // Moves the free edges to the front of the bucket and returns their end. An edge takes away one of
    // the opposite direction and is dropped beside one of its own; an edge from a vertex to itself
    // is its own opposite.
    static Number* PairShort(Number* begin, Number* end, Number lowEnd) {
        Number* freeEnd = begin;
        for (const Number* edge = begin; edge != end; ++edge) {
            Number* match = begin;
            while (match != freeEnd && OtherEnd(*match) != OtherEnd(*edge))
                ++match;
            if (match == freeEnd)
                *freeEnd++ = *edge;
            else if (*match != *edge || OtherEnd(*edge) == lowEnd)
                *match = *--freeEnd;
        }
        return freeEnd;
    }

    static Number* PairLong(Number* begin, Number* end, Number lowEnd) {
        std::stable_sort(begin, end, [](Number a, Number b) { return OtherEnd(a) < OtherEnd(b); });
        Number* freeEnd = begin;
        for (Number* sameEnds = begin; sameEnds != end;) {
            Number* const nextEnds = std::find_if(
                sameEnds, end, [&](Number edge) { return OtherEnd(edge) != OtherEnd(*sameEnds); });
            for (Number* const pairEnd = PairShort(sameEnds, nextEnds, lowEnd); sameEnds != pairEnd;
                 ++sameEnds)
                *freeEnd++ = *sameEnds;
            sameEnds = nextEnds;
        }
        return freeEnd;
    }

    // Deals the free edges into buckets once more, by their first end, and sorts each by the other.
    template <class NumberOf>
    void AppendSorted(EdgeList& edges, const NumberOf& numberOf) {
        Number* const next = bucketEnds_.get();
        Number* const ends = edges_.get();
        std::fill(next, next + range_.count, Number{0});
        for (const Edge& edge : free_)
            ++next[edge.from];
        Number begin = 0;
        for (size_t from = 0; from < range_.count; ++from)
            begin += std::exchange(next[from], begin);
        for (const Edge& edge : free_)
            ends[next[edge.from]++] = edge.to;

        // Deliberate: the length there is does not count, and appending may still grow the vector.
        edges.reserve(free_.size());
        begin = 0;
        for (size_t from = 0; from < range_.count; begin = next[from++]) {
            std::sort(ends + begin, ends + next[from]);
            for (Number to = begin; to < next[from]; ++to)
                edges.push_back({numberOf(from), numberOf(ends[to])});
        }
    }

    const VertexIndexArray& triangles_;
    const NumberRange range_;
    std::unique_ptr<Number[]> edges_;
    std::unique_ptr<Number[]> bucketEnds_;
    std::vector<Edge> free_;
};

template <class NumberOf>
void AppendFreeEdges(const VertexIndexArray& triangles, NumberRange range, EdgeList& edges,
                     const NumberOf& numberOf) {
    if (!detail::kSmallAsLarge && EdgePairing<uint32_t>::CanHold(triangles.size(), range.count))
        EdgePairing<uint32_t>(triangles, range).AppendFreeEdges(edges, numberOf);
    else
        // LCOV_EXCL_LINE: 2^30 triangles; the presets portable and tsan come here
        EdgePairing<uint64_t>(triangles, range).AppendFreeEdges(edges, numberOf);
}

// Replaces vertex numbers by their ranks among those used, which keep their order.
void AppendFreeEdgesByRank(const VertexIndexArray& triangles, EdgeList& edges) {
    std::vector<size_t> numbers;
    numbers.reserve(3 * triangles.size());
    for (const TriangleIndex& triangle : triangles)
        numbers.insert(numbers.end(), triangle.v, triangle.v + 3);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());

    VertexIndexArray ranks = triangles;
    for (TriangleIndex& triangle : ranks)
        for (size_t& vertex : triangle.v)
            vertex = static_cast<size_t>(std::lower_bound(numbers.begin(), numbers.end(), vertex) -
                                         numbers.begin());
    AppendFreeEdges(ranks, {0, numbers.size()}, edges, [&](size_t rank) { return numbers[rank]; });
}

}  // namespace

void VraMeshPrimitive::GetFreeEdges(std::vector<std::pair<size_t, size_t>>& edges) const {
    const auto triangles = GetVertexIndexArray();
    if (!triangles || triangles->empty())
        return;
    size_t smallest = triangles->front().v[0];
    size_t greatest = smallest;
    for (const TriangleIndex& triangle : *triangles) {
        for (const size_t vertex : triangle.v) {
            smallest = std::min(smallest, vertex);
            greatest = std::max(greatest, vertex);
        }
    }
    // A table of four numbers a triangle is still less than what looking up ranks would need.
    if (greatest - smallest < 4 * triangles->size())
        AppendFreeEdges(*triangles, {smallest, greatest - smallest + 1}, edges,
                        [=](size_t number) { return smallest + number; });
    else
        AppendFreeEdgesByRank(*triangles, edges);
}

}  // namespace Vr

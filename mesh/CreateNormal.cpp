// Normals of triangles and of vertices.
//
// Vertex normals take one of two roads to the same result. Where no crease can split them, each
// triangle is added to its three vertices in ascending order, which is the order of the sums. Where
// creases split them, the triangles around each vertex are listed first and grouped in place. Workers
// own ranges of vertices, so no lock is taken and the normals come out in vertex order.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/CornerReader.h"
#include "mesh/detail/FaceNormals.h"
#include "mesh/detail/IncidenceLists.h"
#include "mesh/detail/LargeMeshes.h"
#include "mesh/detail/ParallelFor.h"
#include "mesh/detail/Prefetch.h"
#include "mesh/detail/UnitVectors.h"

namespace Vr {

namespace {

using TriangleIndex = VraMeshPrimitive::TriangleIndex;
using VertexArray = VraMeshPrimitive::VertexArray;
using NormalArray = VraMeshPrimitive::NormalArray;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;

// Fewer triangles than this are not worth waking a worker for.
constexpr size_t kGrain = 8192;
// Triangles or vertices that are worked on together while they are in the nearest cache.
constexpr size_t kBlock = detail::CornerReader::kBlock;
// How far ahead memory is asked for that is met in random order.
constexpr size_t kTrianglesAhead = 16;
constexpr std::ptrdiff_t kEntriesAhead = 24;
// Faces whose numbers differ by this much fit into a second-level cache.
constexpr size_t kNearbyFaces = 8192;

struct Result {
    NormalArray normals;
    VertexIndexArray indices;
};

size_t WorkersFor(size_t triangleCount) {
    return detail::WorkerCount(triangleCount, kGrain);
}

// Without splitting: one sum for each vertex ------------------------------------------------------

template <class Face>
class JoinedNormals {
public:
    JoinedNormals(const VertexArray& vertices, const VertexIndexArray& triangles)
        : vertices_(vertices),
          triangles_(triangles),
          corners_(vertices, triangles),
          workers_(WorkersFor(triangles.size())),
          sums_(vertices.size(), ON_3dVector(0.0, 0.0, 0.0)),
          isUsed_(vertices.size(), 0) {}

    Result Make() {
        if (workers_ == 1)
            SumAlone();
        else
            SumTogether();
        detail::ParallelRanges(sums_.size(), workers_, [&](size_t begin, size_t end, size_t) {
            detail::UnitizeAll(sums_.data() + begin, end - begin);
        });
        Result result;
        result.indices = triangles_;
        if (hasRepeats_ || std::find(isUsed_.begin(), isUsed_.end(), 0) != isUsed_.end())
            Renumber(result);
        else
            result.normals = std::move(sums_);
        return result;
    }

private:
    void SumAlone() {
        Face faces[kBlock];
        for (size_t block = 0; block < triangles_.size(); block += kBlock) {
            const size_t blockEnd = std::min(block + kBlock, triangles_.size());
            detail::MakeFaces(vertices_, triangles_, block, blockEnd, faces);
            hasRepeats_ |= AddFaces(faces, block, blockEnd, 0, sums_.size());
        }
    }

    // Each worker goes through all faces and adds those at its own vertices, in ascending order.
    void SumTogether() {
        const size_t count = triangles_.size();
        const std::unique_ptr<Face[]> faces(new Face[count]);
        detail::ParallelRanges(count, workers_, [&](size_t begin, size_t end, size_t) {
            detail::MakeFaces(vertices_, triangles_, begin, end, faces.get() + begin);
        });
        // With more readers than this, reading all faces takes longer than adding them up; and one
        // alone is faster as long as the sums are in its cache and no owner has to be guessed.
        const bool areSumsNear =
            !detail::kSmallAsLarge && sums_.size() < 4 * detail::CornerReader::kNearbyVertices;
        const size_t readers = areSumsNear ? 1 : std::min<size_t>(workers_, 8);
        std::vector<unsigned char> hasRepeats(readers);
        detail::ParallelRanges(sums_.size(), readers, [&](size_t begin, size_t end, size_t worker) {
            hasRepeats[worker] = AddFaces(faces.get(), 0, count, begin, end);
        });
        hasRepeats_ = hasRepeats.front() != 0;  // Each has seen all triangles.
    }

    // Adds the faces of triangles [first, last) to those of their vertices that are in [begin, end),
    // and returns whether one of the triangles names a vertex twice.
    bool AddFaces(const Face* faces, size_t first, size_t last, size_t begin, size_t end) {
        // In variables of their own, since a store of bytes might change any member.
        const TriangleIndex* const triangles = triangles_.data();
        ON_3dVector* const sums = sums_.data();
        unsigned char* const isUsed = isUsed_.data();
        bool hasRepeats = false;
        bool isScattered = false;
        for (size_t number = first; number < last; ++number, ++faces) {
            if (number % kBlock == 0)
                isScattered = corners_.IsScatteredAt(number);
            if (isScattered)
                PrefetchSums(number + kTrianglesAhead, begin, end);
            const TriangleIndex triangle = triangles[number];
            const Face face = *faces;
            for (size_t corner = 0; corner < 3; ++corner) {
                const size_t vertex = triangle.v[corner];
                const size_t firstCorner = detail::FirstCornerOf(triangle, vertex);
                hasRepeats |= firstCorner != corner;
                if (vertex - begin < end - begin) {
                    face.AddTo(sums[vertex], firstCorner);
                    isUsed[vertex] = 1;
                }
            }
        }
        return hasRepeats;
    }

    // Sums of other workers are left alone: asking for them would take them away from their owner.
    void PrefetchSums(size_t triangle, size_t begin, size_t end) const {
        if (triangle >= triangles_.size())
            return;
        for (const size_t vertex : triangles_[triangle].v)
            if (vertex - begin < end - begin)
                detail::PrefetchWhole(sums_.data() + vertex);
    }

    // Leaves out the vertices without a triangle. A corner that repeats the vertex of an earlier one
    // keeps the number 0.
    void Renumber(Result& result) {
        std::vector<size_t> numberOf(sums_.size());
        const auto usedCount = std::count(isUsed_.begin(), isUsed_.end(), 1);
        result.normals.reserve(static_cast<size_t>(usedCount));
        for (size_t vertex = 0; vertex < sums_.size(); ++vertex) {
            numberOf[vertex] = result.normals.size();
            if (isUsed_[vertex])
                result.normals.push_back(sums_[vertex]);
        }
        detail::ParallelRanges(triangles_.size(), workers_, [&](size_t begin, size_t end, size_t) {
            for (size_t triangle = begin; triangle < end; ++triangle) {
                const TriangleIndex& corners = triangles_[triangle];
                for (size_t corner = 0; corner < 3; ++corner) {
                    const size_t vertex = corners.v[corner];
                    const bool isFirst = detail::FirstCornerOf(corners, vertex) == corner;
                    result.indices[triangle].v[corner] = isFirst ? numberOf[vertex] : 0;
                }
            }
        });
    }

    const VertexArray& vertices_;
    const VertexIndexArray& triangles_;
    const detail::CornerReader corners_;
    const size_t workers_;
    NormalArray sums_;
    std::vector<unsigned char> isUsed_;
    bool hasRepeats_ = false;
};

// With splitting: the triangles around each vertex in groups --------------------------------------

template <class Face, class Number>
class SplitNormals {
public:
    SplitNormals(const VertexArray& vertices, const VertexIndexArray& triangles, double threshold)
        : vertices_(vertices),
          triangles_(triangles),
          threshold_(threshold),
          workers_(WorkersFor(triangles.size())) {}

    Result Make() {
        Lists lists(vertices_.size(), triangles_, workers_);
        faces_.reset(new Face[triangles_.size()]);
        detail::ParallelRanges(triangles_.size(), workers_, [&](size_t begin, size_t end, size_t) {
            detail::MakeFaces(vertices_, triangles_, begin, end, faces_.get() + begin);
        });
        indices_.assign(triangles_.size(), TriangleIndex{});
        std::vector<NormalArray> normalsOf(workers_);
        detail::ParallelRanges(vertices_.size(), workers_,
                               [&](size_t begin, size_t end, size_t worker) {
                                   normalsOf[worker] = NormalsOfVertices(lists, begin, end);
                               });
        faces_.reset();
        NormalArray normals = workers_ == 1 ? std::move(normalsOf[0]) : Join(normalsOf);
        if (normals.capacity() > normals.size())
            NormalArray(normals).swap(normals);
        return {std::move(normals), std::move(indices_)};
    }

private:
    using Lists = detail::IncidenceLists<Number>;

    // The normals of one worker's vertices, numbered from 0.
    NormalArray NormalsOfVertices(Lists& lists, size_t begin, size_t end) {
        NormalArray normals;
        normals.reserve(end - begin);
        for (size_t block = begin; block < end; block += kBlock) {
            const size_t blockEnd = std::min(block + kBlock, end);
            const size_t firstNumber = normals.size();
            const bool isScattered = AreFacesScattered(
                lists.Begin(std::max(begin + kBlock, block) - kBlock), lists.Begin(block));
            for (size_t vertex = block; vertex < blockEnd; ++vertex) {
                if (isScattered)
                    PrefetchFaces(lists.Begin(vertex), lists.End(vertex), lists.End(end - 1));
                SumGroups(lists.Begin(vertex), lists.End(vertex), normals);
            }
            detail::UnitizeAll(normals.data() + firstNumber, normals.size() - firstNumber);
        }
        return normals;
    }

    // Judged by the lists in front, which are likely to be in the cache still.
    static bool AreFacesScattered(const Number* list, const Number* listEnd) {
        return detail::AreScattered(0, static_cast<size_t>(listEnd - list), kNearbyFaces,
                                    [=](size_t entry) { return Lists::TriangleOf(list[entry]); });
    }

    // Asks for what the next lists need. Those behind `lastEnd` belong to another worker, who may be
    // rearranging them.
    void PrefetchFaces(const Number* list, const Number* listEnd, const Number* lastEnd) const {
        if (lastEnd - listEnd < kEntriesAhead)
            return;
        for (const Number* entry = list; entry != listEnd; ++entry) {
            const size_t triangle = Lists::TriangleOf(entry[kEntriesAhead]);
            detail::PrefetchWhole(faces_.get() + triangle);
            detail::PrefetchWhole(indices_.data() + triangle);
        }
    }

    // Each round takes the first entry that is left as the seed of a group, adds the group up and
    // moves the rest to the front of the list, in order.
    void SumGroups(Number* list, Number* listEnd, NormalArray& normals) {
        while (list != listEnd) {
            const Face& seed = faces_[Lists::TriangleOf(*list)];
            const size_t number = normals.size();
            ON_3dVector sum(0.0, 0.0, 0.0);
            Number* restEnd = list;
            for (const Number* entry = list; entry != listEnd; ++entry) {
                const size_t triangle = Lists::TriangleOf(*entry);
                const size_t corner = Lists::CornerOf(*entry);
                const Face& face = faces_[triangle];
                // Deliberate: compared with the seed alone, so a group need not be smooth throughout.
                if (entry == list || face.IsSmoothWith(seed, threshold_)) {
                    face.AddTo(sum, corner);
                    indices_[triangle].v[corner] = number;
                } else {
                    *restEnd++ = *entry;
                }
            }
            normals.push_back(sum);
            listEnd = restEnd;
        }
    }

    // Puts the workers' normals one behind the other and moves the numbers of their corners up.
    NormalArray Join(const std::vector<NormalArray>& normalsOf) {
        std::vector<size_t> firstNumberOf(workers_ + 1, 0);
        std::vector<size_t> firstVertexOf(workers_);
        for (size_t worker = 0; worker < workers_; ++worker) {
            firstNumberOf[worker + 1] = firstNumberOf[worker] + normalsOf[worker].size();
            firstVertexOf[worker] = detail::RangeBegin(vertices_.size(), worker, workers_);
        }
        NormalArray normals(firstNumberOf[workers_]);
        detail::ParallelRanges(
            triangles_.size(), workers_, [&](size_t begin, size_t end, size_t worker) {
                std::copy(normalsOf[worker].begin(), normalsOf[worker].end(),
                          normals.data() + firstNumberOf[worker]);
                for (size_t triangle = begin; triangle < end; ++triangle) {
                    const TriangleIndex& corners = triangles_[triangle];
                    for (size_t corner = 0; corner < 3; ++corner) {
                        const size_t vertex = corners.v[corner];
                        if (detail::FirstCornerOf(corners, vertex) != corner)
                            continue;
                        size_t firstNumber = 0;
                        for (size_t other = 1; other < workers_; ++other)
                            firstNumber =
                                vertex < firstVertexOf[other] ? firstNumber : firstNumberOf[other];
                        indices_[triangle].v[corner] += firstNumber;
                    }
                }
            });
        return normals;
    }

    const VertexArray& vertices_;
    const VertexIndexArray& triangles_;
    const double threshold_;
    const size_t workers_;
    std::unique_ptr<Face[]> faces_;
    VertexIndexArray indices_;
};

template <class Face>
Result MakeSplitNormals(const VertexArray& vertices, const VertexIndexArray& triangles,
                        double threshold) {
    if (!detail::kSmallAsLarge && detail::IncidenceLists<uint32_t>::CanHold(triangles.size()))
        return SplitNormals<Face, uint32_t>(vertices, triangles, threshold).Make();
    // LCOV_EXCL_LINE: 2^30 triangles; the presets portable and tsan come here
    return SplitNormals<Face, uint64_t>(vertices, triangles, threshold).Make();
}

Result MakeVertexNormals(const VertexArray& vertices, const VertexIndexArray& triangles,
                         double creaseAngle, VraMeshPrimitive::VertexNormalWeightType weightType) {
    const bool isByAngle = weightType == VraMeshPrimitive::Angle;
    const double threshold = std::cos(creaseAngle) - 1e-12;
    // No dot product of unit normals is as small as this.
    const bool isAlwaysSmooth = threshold < -1.0 - 1e-13;
    if (0.0 > creaseAngle || isAlwaysSmooth)
        return isByAngle ? JoinedNormals<detail::AngleFace>(vertices, triangles).Make()
                         : JoinedNormals<detail::AreaFace>(vertices, triangles).Make();
    return isByAngle ? MakeSplitNormals<detail::AngleFace>(vertices, triangles, threshold)
                     : MakeSplitNormals<detail::CreaseAreaFace>(vertices, triangles, threshold);
}

}  // namespace

bool VraMeshPrimitive::CreateNormalPerTriangle() {
    const auto vertices = GetVertexArray();
    const auto triangles = GetVertexIndexArray();
    if (!vertices || !triangles)
        return true;

    const size_t triangleCount = triangles->size();
    const auto normals = std::make_shared<NormalArray>(triangleCount);
    const auto normalIndices = std::make_shared<IndexArray>(IndexArray::PerTriangle(triangleCount));
    ON_3dVector* const normalOf = normals->data();
    size_t* const numberOf = boost::get<IndexArray::PerTriangle>(normalIndices->data).data();
    const detail::CornerReader corners(*vertices, *triangles);
    const auto setNormal = [=](size_t triangle) {
        const ON_3dPoint& p0 = corners.Point(triangle, 0);
        const ON_3dPoint& p1 = corners.Point(triangle, 1);
        const ON_3dPoint& p2 = corners.Point(triangle, 2);
        normalOf[triangle] = ON_CrossProduct(p0 - p1, p1 - p2);
        numberOf[triangle] = triangle;
    };
    detail::ParallelRanges(triangleCount, WorkersFor(triangleCount),
                           [&](size_t begin, size_t end, size_t) {
                               for (size_t block = begin; block < end; block += kBlock) {
                                   const size_t blockEnd = std::min(block + kBlock, end);
                                   corners.ForEach(block, blockEnd, setNormal);
                                   detail::UnitizeAll(normalOf + block, blockEnd - block);
                               }
                           });
    SetNormalArray(normals);
    SetNormalIndexArray(normalIndices);
    return true;
}

bool VraMeshPrimitive::CreateNormalPerVertex() {
    const auto vertices = GetVertexArray();
    const auto triangles = GetVertexIndexArray();
    if (!vertices || !triangles)
        return true;

    const VertexNormalWeightType weightType = GetVertexNormalWeightType();
    Result result = MakeVertexNormals(*vertices, *triangles, creaseAngle_, weightType);
    // Deliberate: under any other weighting no triangle counts, and every normal is the zero vector.
    if (weightType != Area && weightType != Angle)
        std::fill(result.normals.begin(), result.normals.end(), ON_3dVector(0.0, 0.0, 0.0));

    const auto normals = std::make_shared<NormalArray>(std::move(result.normals));
    const auto normalIndices = std::make_shared<IndexArray>(std::move(result.indices));
    SetNormalArray(normals);
    SetNormalIndexArray(normalIndices);
    return true;
}

}  // namespace Vr

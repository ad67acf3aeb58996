// One byte a vertex does all: first a mark, written by every worker into a table of its own so that
// no cache line is fought over, then the vertex's new number within its block of 256. A block's
// start completes the number. The byte table stays in a cache where numbers of 32 bits would not.

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <limits>
#include <memory>
#include <unordered_map>
#include <unordered_set>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/OrderedRemoval.h"
#include "mesh/detail/ParallelFor.h"

namespace Vr {

namespace {

using VertexArray = VraMeshPrimitive::VertexArray;
using VertexIndexArray = VraMeshPrimitive::VertexIndexArray;
using TriangleIndex = VraMeshPrimitive::TriangleIndex;

// Fewer triangles than this a worker are done before it has started.
constexpr size_t kGrain = 8192;
// Marking reads memory as fast as a few cores can; each worker more costs a table.
constexpr size_t kMaxMarkingWorkers = 4;

// Deliberate: triangles are counted with 32 signed bits, and an array of more is passed over.
constexpr size_t LoopCount(size_t triangleCount) {
    return triangleCount <= static_cast<size_t>(std::numeric_limits<int32_t>::max()) ? triangleCount
                                                                                     : 0;
}
static_assert(LoopCount(0x7FFFFFFF) == 0x7FFFFFFF);
static_assert(LoopCount(0x80000000) == 0);
static_assert(LoopCount(0x100000005) == 0);

// A vertex array and the index arrays into it, in the order in which they were listed.
struct Group {
    explicit Group(std::shared_ptr<VertexArray> vertexArray) : vertices(std::move(vertexArray)) {}

    void Add(std::shared_ptr<VertexIndexArray> triangles) {
        isRepeated.push_back(!listed.insert(triangles.get()).second);
        indexArrays.push_back(std::move(triangles));
    }

    std::shared_ptr<VertexArray> vertices;
    std::vector<std::shared_ptr<VertexIndexArray>> indexArrays;
    std::vector<bool> isRepeated;
    std::unordered_set<const VertexIndexArray*> listed;
};

size_t MarkingWorkers(const Group& group) {
    size_t triangleCount = 0;
    for (const auto& triangles : group.indexArrays)
        triangleCount = std::max(triangleCount, LoopCount(triangles->size()));
    const size_t workerCount = detail::WorkerCount(triangleCount, kGrain);
    // Where vertices are many, clearing and joining a table a worker costs more than it saves.
    return group.vertices->size() > triangleCount ? 1 : std::min(workerCount, kMaxMarkingWorkers);
}

// Which vertices are used, and then the numbers of those that stay.
class VertexNumbers {
public:
    VertexNumbers(size_t vertexCount, size_t workerCount)
        : vertexCount_(vertexCount),
          workerCount_(workerCount),
          stride_(vertexCount + kCacheLine),
          keptBefore_(new uint8_t[stride_ * workerCount]()),
          blockStart_(new uint32_t[vertexCount / kBlock + 1]) {}

    void MarkUsed(const VertexIndexArray& triangles);
    // Joins the marks of all workers and returns how many vertices are used.
    size_t CountUsed();
    // Moves the used vertices to the front, in order, and turns marks into numbers.
    void MoveUsed(ON_3dPoint* vertices);
    void Renumber(VertexIndexArray& triangles) const;
    // Renumbers triangles whose numbers are new ones already, taken for old ones.
    void RenumberAgain(VertexIndexArray& triangles) const;

private:
    static constexpr size_t kBlock = 256;
    static constexpr size_t kCacheLine = 64;

    // Returns how many vertices in front of this one stay, which is its new number if it stays too.
    uint32_t KeptBefore(size_t oldVertex) const {
        return blockStart_[oldVertex / kBlock] + keptBefore_[oldVertex];
    }
    bool IsUsed(size_t oldVertex) const {
        return KeptBefore(oldVertex + 1) != KeptBefore(oldVertex);
    }

    size_t vertexCount_;
    size_t workerCount_;
    size_t stride_;
    // A mark a vertex and a table a worker; in the end the first table's numbers within blocks.
    std::unique_ptr<uint8_t[]> keptBefore_;
    // Deliberate: new numbers have 32 bits.
    std::unique_ptr<uint32_t[]> blockStart_;
};

void VertexNumbers::MarkUsed(const VertexIndexArray& triangles) {
    const auto mark = [&](size_t begin, size_t end, size_t worker) noexcept {
        uint8_t* const isUsed = keptBefore_.get() + worker * stride_;
        // A variable of its own, since a store of a byte might change any member.
        const TriangleIndex* const cornersOf = triangles.data();
        for (size_t triangle = begin; triangle < end; ++triangle) {
            const TriangleIndex corners = cornersOf[triangle];
            for (const size_t vertex : corners.v) {
                assert(vertex < vertexCount_);
                isUsed[vertex] = 1;
            }
        }
    };
    const size_t count = LoopCount(triangles.size());
    detail::ParallelRanges(count, std::min(workerCount_, detail::WorkerCount(count, kGrain)), mark);
}

size_t VertexNumbers::CountUsed() {
    uint8_t* const isUsed = keptBefore_.get();
    for (size_t worker = 1; worker < workerCount_; ++worker) {
        const uint8_t* const isUsedToo = isUsed + worker * stride_;
        for (size_t vertex = 0; vertex < vertexCount_; ++vertex)
            isUsed[vertex] |= isUsedToo[vertex];
    }
    size_t usedCount = 0;
    for (size_t vertex = 0; vertex < vertexCount_; ++vertex)
        usedCount += isUsed[vertex];
    return usedCount;
}

void VertexNumbers::MoveUsed(ON_3dPoint* vertices) {
    uint8_t* const keptBefore = keptBefore_.get();
    size_t keptCount = 0;
    for (size_t block = 0; block <= vertexCount_ / kBlock; ++block) {
        const size_t keptInFront = keptCount;
        const size_t end = std::min((block + 1) * kBlock, vertexCount_);
        blockStart_[block] = static_cast<uint32_t>(keptInFront);
        for (size_t vertex = block * kBlock; vertex < end; ++vertex) {
            const size_t isUsed = keptBefore[vertex];
            const ON_3dPoint position = vertices[vertex];
            vertices[keptCount] = position;
            keptBefore[vertex] = static_cast<uint8_t>(keptCount - keptInFront);
            keptCount += isUsed;
        }
    }
    // The entry behind the last vertex belongs to the last block, or starts an empty one.
    keptBefore_[vertexCount_] =
        static_cast<uint8_t>(static_cast<uint32_t>(keptCount) - blockStart_[vertexCount_ / kBlock]);
}

void VertexNumbers::Renumber(VertexIndexArray& triangles) const {
    const auto renumber = [&](size_t begin, size_t end, size_t) noexcept {
        for (size_t triangle = begin; triangle < end; ++triangle)
            for (size_t& vertex : triangles[triangle].v)
                vertex = KeptBefore(vertex);
    };
    const size_t count = LoopCount(triangles.size());
    detail::ParallelRanges(count, detail::WorkerCount(count, kGrain), renumber);
}

void VertexNumbers::RenumberAgain(VertexIndexArray& triangles) const {
    const auto renumber = [&](size_t begin, size_t end, size_t) noexcept {
        for (size_t triangle = begin; triangle < end; ++triangle)
            for (size_t& vertex : triangles[triangle].v)
                // Deliberate: 1 stands for a vertex that went.
                vertex = IsUsed(vertex) ? KeptBefore(vertex) : 1;
    };
    const size_t count = LoopCount(triangles.size());
    detail::ParallelRanges(count, detail::WorkerCount(count, kGrain), renumber);
}

void DeleteUnusedVerticesOf(const Group& group) {
    VertexArray& vertices = *group.vertices;
    VertexNumbers numbers(vertices.size(), MarkingWorkers(group));
    for (size_t number = 0; number < group.indexArrays.size(); ++number)
        if (!group.isRepeated[number])
            numbers.MarkUsed(*group.indexArrays[number]);

    const size_t usedCount = numbers.CountUsed();
    const bool keepsAll = usedCount == vertices.size();
    detail::ShortenAndShrink(vertices, usedCount, [&](ON_3dPoint* first) {
        if (!keepsAll)
            numbers.MoveUsed(first);
    });
    if (keepsAll)
        return;

    for (size_t number = 0; number < group.indexArrays.size(); ++number) {
        if (group.isRepeated[number])
            numbers.RenumberAgain(*group.indexArrays[number]);
        else
            numbers.Renumber(*group.indexArrays[number]);
    }
}

}  // namespace

void VraMeshPrimitive::DeleteUnusedVertices() {
    const auto vertices = std::const_pointer_cast<VertexArray>(GetVertexArray());
    const auto triangles = std::const_pointer_cast<VertexIndexArray>(GetVertexIndexArray());
    if (!vertices || !triangles)
        return;
    Group group(vertices);
    group.Add(triangles);
    DeleteUnusedVerticesOf(group);
}

void VraMeshPrimitive::DeleteUnusedVertices(
    const std::vector<boost::intrusive_ptr<VraMeshPrimitive>>& primitives) {
    std::vector<Group> groups;
    std::unordered_map<const VertexArray*, size_t> groupOf;
    for (const auto& primitive : primitives) {
        const auto vertices = std::const_pointer_cast<VertexArray>(primitive->GetVertexArray());
        const auto triangles =
            std::const_pointer_cast<VertexIndexArray>(primitive->GetVertexIndexArray());
        if (!vertices || !triangles)
            continue;
        const auto [entry, isNew] = groupOf.emplace(vertices.get(), groups.size());
        if (isNew)
            groups.emplace_back(vertices);
        groups[entry->second].Add(triangles);
    }
    for (const Group& group : groups)
        DeleteUnusedVerticesOf(group);
}

}  // namespace Vr

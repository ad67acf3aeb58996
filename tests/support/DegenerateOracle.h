/// A slow judge and a slow removal of triangles: one plain list for each thing they speak of.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <set>
#include <vector>

#include "mesh/VraMeshDegenJudge.h"
#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// How a table shows a removed triangle.
constexpr int64_t kGone = -1;

/// Reads a judge's table through a vertex a triangle. Changes the judge's last key.
inline std::vector<int64_t> TableOf(VraMeshDegenJudge& judge, size_t triangleCount) {
    std::vector<int64_t> table;
    for (size_t triangle = 0; triangle < triangleCount; ++triangle) {
        VraMeshPrimitive::MeshVertex vertex;
        vertex.triangles.push_back(triangle);
        judge(vertex);
        table.push_back(vertex.triangles.empty() ? kGone
                                                 : static_cast<int64_t>(vertex.triangles.front()));
    }
    return table;
}

/// What a judge answers, with unbounded signed numbers for everything.
class JudgeOracle {
public:
    explicit JudgeOracle(size_t triangleCount) : newTriangleOf_(triangleCount, kGone) {}

    bool isJudging = true;

    void SetDegenTriangles(const std::vector<size_t>& triangles) {
        const std::set<size_t> listed(triangles.begin(), triangles.end());
        int64_t next = 0;
        for (size_t triangle = 0; triangle < newTriangleOf_.size(); ++triangle)
            newTriangleOf_[triangle] = listed.count(triangle) ? kGone : next++;
    }
    void ResetIndex() {
        askedCorners_ = 0;
        lastKey_ = -1;
    }
    bool IsExistDegen() const {
        return std::count(newTriangleOf_.begin(), newTriangleOf_.end(), kGone) > 0;
    }
    /// Whether a sequential question may still be asked.
    bool HasNext() const { return askedCorners_ / 3 < newTriangleOf_.size(); }

    /// Called only between triangles or after some corners, which it leaves half asked.
    bool AskTriangle(const VraMeshPrimitive::TriangleIndex& corners) {
        int64_t& entry = newTriangleOf_[askedCorners_ / 3];
        askedCorners_ += 3;
        if (isJudging) {
            const std::set<size_t> distinct(corners.v, corners.v + 3);
            entry = distinct.size() < 3 ? kGone : nextNew_++;
        }
        return entry == kGone;
    }
    bool AskNumber(size_t triangle) const { return newTriangleOf_[triangle] == kGone; }
    bool AskCorner() { return newTriangleOf_[askedCorners_++ / 3] == kGone; }

    /// Keys below 2^31 only.
    bool AskVertex(int64_t key, std::vector<uint64_t>& triangles) {
        std::vector<uint64_t> kept;
        for (const uint64_t triangle : triangles)
            if (newTriangleOf_[triangle] != kGone)
                kept.push_back(static_cast<uint64_t>(newTriangleOf_[triangle]));
        triangles = kept;
        const bool isRepeated = key == lastKey_;
        lastKey_ = key;
        return isRepeated;
    }

    const std::vector<int64_t>& Table() const { return newTriangleOf_; }

private:
    std::vector<int64_t> newTriangleOf_;
    int64_t nextNew_ = 0;
    size_t askedCorners_ = 0;
    int64_t lastKey_ = -1;
};

/// Removes the given triangles from the index arrays of a mesh, array by array, each array object
/// once; a per-triangle list loses the entries whose value is given.
inline void OracleRemoveTriangles(VraMeshPrimitive& mesh, const std::set<size_t>& removed) {
    using TriangleIndex = VraMeshPrimitive::TriangleIndex;
    std::set<const void*> done;
    const auto withoutRemoved = [&removed](const std::vector<TriangleIndex>& triples) {
        std::vector<TriangleIndex> kept;
        for (size_t position = 0; position < triples.size(); ++position)
            if (removed.count(position) == 0)
                kept.push_back(triples[position]);
        return kept;
    };
    for (const auto& triples :
         {mesh.GetModifiableVertexIndexArray(), mesh.GetModifiableTextureUVIndexArray()})
        if (triples && done.insert(triples.get()).second)
            *triples = withoutRemoved(*triples);
    for (const auto& numbers :
         {mesh.GetModifiableNormalIndexArray(), mesh.GetModifiableColorIndexArray()}) {
        if (!numbers || !done.insert(numbers.get()).second)
            continue;
        if (numbers->which() == 1) {
            auto& triples = boost::get<std::vector<TriangleIndex>>(numbers->data);
            triples = withoutRemoved(triples);
        } else {
            std::vector<size_t> kept;
            for (const size_t number : boost::get<std::vector<size_t>>(numbers->data))
                if (removed.count(number) == 0)
                    kept.push_back(number);
            boost::get<std::vector<size_t>>(numbers->data) = kept;
        }
    }
}

/// The numbers of the triangles that name a vertex twice.
inline std::set<size_t> OracleDegenerateTriangles(const VraMeshPrimitive& mesh) {
    std::set<size_t> degenerate;
    const auto triangles = mesh.GetVertexIndexArray();
    for (size_t triangle = 0; triangles && triangle < triangles->size(); ++triangle) {
        const auto& corners = (*triangles)[triangle];
        if (std::set<size_t>(corners.v, corners.v + 3).size() < 3)
            degenerate.insert(triangle);
    }
    return degenerate;
}

}  // namespace Vr::test

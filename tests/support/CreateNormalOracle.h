/// Vertex normals by lists of triangles, groups and set differences, as they are defined.
#pragma once

#include <algorithm>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// The unit normal of each triangle; zero where there is none.
inline std::vector<ON_3dVector> TriangleNormalsByDefinition(
    const std::vector<ON_3dPoint>& vertices,
    const std::vector<VraMeshPrimitive::TriangleIndex>& triangles) {
    std::vector<ON_3dVector> normals;
    for (const auto& triangle : triangles) {
        const ON_3dPoint& p1 = vertices[triangle[1]];
        normals.push_back(ON_CrossProduct(vertices[triangle[0]] - p1, p1 - vertices[triangle[2]]));
        normals.back().Unitize();
    }
    return normals;
}

struct VertexNormals {
    std::vector<ON_3dVector> normals;
    std::vector<VraMeshPrimitive::TriangleIndex> indices;
};

/// One call of the definition; `weightType` as stored, so that unsupported values can be asked for.
class CreateNormalOracle {
public:
    CreateNormalOracle(const std::vector<ON_3dPoint>& vertices,
                       const std::vector<VraMeshPrimitive::TriangleIndex>& triangles,
                       double creaseAngle, int weightType)
        : vertices_(vertices),
          triangles_(triangles),
          creaseAngle_(creaseAngle),
          weightType_(weightType) {
        for (const auto& triangle : triangles_) {
            const ON_3dPoint& p0 = vertices_[triangle[0]];
            const ON_3dPoint& p1 = vertices_[triangle[1]];
            const ON_3dPoint& p2 = vertices_[triangle[2]];
            rawNormals_.push_back(ON_CrossProduct(p1 - p0, p2 - p1));
            unitNormals_.push_back(rawNormals_.back());
            unitNormals_.back().Unitize();
        }
    }

    VertexNormals Compute() const {
        std::vector<std::vector<size_t>> trianglesOf(vertices_.size());
        for (size_t triangle = 0; triangle < triangles_.size(); ++triangle)
            for (size_t corner = 0; corner < 3; ++corner)
                trianglesOf[triangles_[triangle][corner]].push_back(triangle);

        VertexNormals result;
        result.indices.assign(triangles_.size(), VraMeshPrimitive::TriangleIndex{});
        for (size_t vertex = 0; vertex < vertices_.size(); ++vertex) {
            std::vector<size_t> list = trianglesOf[vertex];
            while (!list.empty()) {
                const std::vector<size_t> group = TakeGroup(list);
                ON_3dVector sum(0.0, 0.0, 0.0);
                for (const size_t triangle : group)
                    Add(triangle, vertex, sum);
                sum.Unitize();
                for (const size_t triangle : group)
                    result.indices[triangle][CornerOf(triangle, vertex)] = result.normals.size();
                result.normals.push_back(sum);
            }
        }
        return result;
    }

private:
    std::vector<size_t> TakeGroup(std::vector<size_t>& list) const {
        std::vector<size_t> group;
        if (0.0 > creaseAngle_) {
            group.swap(list);
            return group;
        }
        const double threshold = std::cos(creaseAngle_) - 1e-12;
        group.push_back(list.front());
        for (size_t entry = 1; entry < list.size(); ++entry)
            if (ON_DotProduct(unitNormals_[list.front()], unitNormals_[list[entry]]) > threshold)
                group.push_back(list[entry]);
        std::vector<size_t> rest;
        std::set_difference(list.begin(), list.end(), group.begin(), group.end(),
                            std::back_inserter(rest));
        list.swap(rest);
        return group;
    }

    size_t CornerOf(size_t triangle, size_t vertex) const {
        for (size_t corner = 0; corner < 3; ++corner)
            if (triangles_[triangle][corner] == vertex)
                return corner;
        throw std::logic_error("a list names a triangle that does not name its vertex");
    }

    void Add(size_t triangle, size_t vertex, ON_3dVector& sum) const {
        if (weightType_ == 0)
            sum += rawNormals_[triangle];
        else if (weightType_ == 1)
            sum += unitNormals_[triangle] * AngleAt(triangle, CornerOf(triangle, vertex));
    }

    double AngleAt(size_t triangle, size_t corner) const {
        const ON_3dPoint q = vertices_[triangles_[triangle][corner]];
        const ON_3dVector a = vertices_[triangles_[triangle][(corner + 2) % 3]] - q;
        const ON_3dVector b = vertices_[triangles_[triangle][(corner + 1) % 3]] - q;
        if (b.Length() == 0.0 || a.Length() == 0.0)
            return 0.0;
        const double cosine = ON_DotProduct(b, a) / b.Length() / a.Length();
        if (cosine >= 1.0)
            return 0.0;
        if (cosine <= -1.0)
            return 3.14159265358979323846;
        return std::acos(cosine);
    }

    const std::vector<ON_3dPoint>& vertices_;
    const std::vector<VraMeshPrimitive::TriangleIndex>& triangles_;
    double creaseAngle_;
    int weightType_;
    std::vector<ON_3dVector> rawNormals_;
    std::vector<ON_3dVector> unitNormals_;
};

}  // namespace Vr::test

/// Exact merging of vertices, normals and colours with an ordered map, step by step: slow and
/// obviously right.
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// An ordered map from a value to the numbers that referred to it; the key keeps the bits of the
/// value that came first.
template <class Key, class Less>
class MergeOracle {
public:
    explicit MergeOracle(Less less) : numbersOf_(less) {}

    void Refer(const Key& key, std::size_t number) { numbersOf_[key].push_back(number); }

    std::vector<Key> Keys() const {
        std::vector<Key> keys;
        for (const auto& entry : numbersOf_)
            keys.push_back(entry.first);
        return keys;
    }

    std::vector<std::size_t> NewNumberOf(std::size_t count) const {
        std::vector<std::size_t> newNumberOf(count, 0);
        std::size_t newNumber = 0;
        for (const auto& entry : numbersOf_) {
            for (const std::size_t number : entry.second)
                newNumberOf[number] = newNumber;
            ++newNumber;
        }
        return newNumberOf;
    }

private:
    std::map<Key, std::vector<std::size_t>, Less> numbersOf_;
};

/// The numbers of an index array one after the other, so that they can be read and written.
inline std::vector<std::size_t*> NumbersOf(std::vector<VraMeshPrimitive::TriangleIndex>& triples) {
    std::vector<std::size_t*> numbers;
    for (VraMeshPrimitive::TriangleIndex& triple : triples)
        for (std::size_t corner = 0; corner < 3; ++corner)
            numbers.push_back(&triple[corner]);
    return numbers;
}

inline std::vector<std::size_t*> NumbersOf(VraMeshPrimitive::IndexArray& indices) {
    if (indices.which() == 1)
        return NumbersOf(boost::get<VraMeshPrimitive::IndexArray::PerVertex>(indices.data));
    std::vector<std::size_t*> numbers;
    for (std::size_t& number : boost::get<VraMeshPrimitive::IndexArray::PerTriangle>(indices.data))
        numbers.push_back(&number);
    return numbers;
}

/// Merges an array of values; `less` orders them.
template <class Value, class Less>
void MergeValuesSlowly(std::vector<Value>& values, const std::vector<std::size_t*>& numbers,
                       Less less) {
    MergeOracle<Value, Less> oracle(less);
    for (const std::size_t* const number : numbers) {
        if (*number >= values.size())
            throw std::out_of_range("invalid vector subscript");
        oracle.Refer(values[*number], *number);
    }
    const std::vector<std::size_t> newNumberOf = oracle.NewNumberOf(values.size());
    values = oracle.Keys();
    for (std::size_t* const number : numbers)
        *number = newNumberOf[*number];
}

/// What `OnMergeSameVertex` does to the primitive's arrays.
inline void MergeVerticesSlowly(VraMeshPrimitive& mesh) {
    const auto vertices = mesh.GetModifiableVertexArray();
    const auto textureUVs = mesh.GetModifiableTextureUVArray();
    const auto triangles = mesh.GetModifiableVertexIndexArray();
    if (!vertices || !triangles)
        return;
    const std::vector<std::size_t*> numbers = NumbersOf(*triangles);
    if (!textureUVs || textureUVs->empty()) {
        MergeValuesSlowly(*vertices, numbers,
                          [](const ON_3dPoint& a, const ON_3dPoint& b) { return a < b; });
        return;
    }
    std::vector<std::pair<ON_3dPoint, ON_2dPoint>> pairs;
    for (std::size_t i = 0; i < std::min(vertices->size(), textureUVs->size()); ++i)
        pairs.emplace_back((*vertices)[i], (*textureUVs)[i]);
    using Pair = std::pair<ON_3dPoint, ON_2dPoint>;
    MergeValuesSlowly(pairs, numbers, [](const Pair& a, const Pair& b) {
        if (a.first < b.first)
            return true;
        if (b.first < a.first)
            return false;
        return a.second < b.second;
    });
    vertices->clear();
    textureUVs->clear();
    for (const Pair& pair : pairs) {
        vertices->push_back(pair.first);
        textureUVs->push_back(pair.second);
    }
}

/// What `OnMergeSameNormal` does.
inline void MergeNormalsSlowly(VraMeshPrimitive& mesh) {
    const auto normals = mesh.GetModifiableNormalArray();
    const auto indices = mesh.GetModifiableNormalIndexArray();
    if (normals && indices)
        MergeValuesSlowly(*normals, NumbersOf(*indices),
                          [](const ON_3dVector& a, const ON_3dVector& b) { return a < b; });
}

/// What `OnMergeSameColor` does.
inline void MergeColorsSlowly(VraMeshPrimitive& mesh) {
    const auto colors = mesh.GetModifiableColorArray();
    const auto indices = mesh.GetModifiableColorIndexArray();
    if (colors && indices)
        MergeValuesSlowly(*colors, NumbersOf(*indices), [](const ON_Color& a, const ON_Color& b) {
            return static_cast<unsigned int>(a) < static_cast<unsigned int>(b);
        });
}

}  // namespace Vr::test

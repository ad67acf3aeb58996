/// Merging of primitives with linear searches, step by step: slow and obviously right.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "mesh/VraMeshPrimitive.h"

namespace Vr::test {

/// The merged values of one kind: a value is found by `operator==`, so NaN never is.
template <class Value>
struct SlowPool {
    std::vector<Value> values;

    std::size_t FindOrAdd(const Value& value) {
        for (std::size_t number = 0; number < values.size(); ++number)
            if (values[number] == value)
                return number;
        values.push_back(value);
        return values.size() - 1;
    }
};

/// Maps of one kind, one vector a source; nothing is kept where the caller wants none.
using SlowMaps = std::vector<std::vector<int>>;

template <class Values>
void AppendMap(SlowMaps* maps, const Values& values) {
    if (maps)
        maps->push_back(std::vector<int>(values ? values->size() : 0, -1));
}

template <class Value>
std::size_t MergeNumber(SlowPool<Value>& pool, const std::vector<Value>& values, std::size_t number,
                        SlowMaps* maps) {
    const std::size_t merged = pool.FindOrAdd(values.at(number));
    if (maps)
        maps->back()[number] = static_cast<int>(merged);
    return merged;
}

template <class Value>
void MergeTriples(SlowPool<Value>& pool, const std::shared_ptr<const std::vector<Value>>& values,
                  const std::vector<VraMeshPrimitive::TriangleIndex>& triples,
                  std::vector<VraMeshPrimitive::TriangleIndex>& merged, SlowMaps* maps) {
    for (const auto& triple : triples) {
        VraMeshPrimitive::TriangleIndex numbers{};
        for (std::size_t corner = 0; corner < 3; ++corner)
            numbers[corner] = MergeNumber(pool, *values, triple[corner], maps);
        merged.push_back(numbers);
    }
}

template <class Value>
void MergeForm(SlowPool<Value>& pool, const std::shared_ptr<const std::vector<Value>>& values,
               const std::shared_ptr<const VraMeshPrimitive::IndexArray>& indices,
               VraMeshPrimitive::IndexArray& merged, SlowMaps* maps) {
    using IndexArray = VraMeshPrimitive::IndexArray;
    if (!indices)
        throw boost::bad_get();
    if (merged.which() == 1) {
        MergeTriples(pool, values, boost::get<IndexArray::PerVertex>(indices->data),
                     boost::get<IndexArray::PerVertex>(merged.data), maps);
        return;
    }
    for (const std::size_t number : boost::get<IndexArray::PerTriangle>(indices->data))
        boost::get<IndexArray::PerTriangle>(merged.data)
            .push_back(MergeNumber(pool, *values, number, maps));
}

/// Returns the empty merged index array, or nothing when this kind is not merged.
template <class GetIndices>
std::shared_ptr<VraMeshPrimitive::IndexArray> StartIndices(
    const std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>& sources,
    const GetIndices& getIndices) {
    std::optional<int> form;
    for (const auto& source : sources) {
        const auto indices = getIndices(*source);
        if (source->GetVertexArray() && !indices)
            return nullptr;
        if (!indices)
            continue;
        if (form && *form != indices->which())
            return nullptr;
        form = indices->which();
    }
    if (!form)
        return nullptr;
    auto started = std::make_shared<VraMeshPrimitive::IndexArray>();
    if (*form == 1)
        started->data = VraMeshPrimitive::IndexArray::PerVertex();
    return started;
}

/// What `VraMeshPrimitive::Merge` does.
inline bool MergeSlowly(VraMeshPrimitive& target,
                        const std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>& sources,
                        SlowMaps* vertexMaps, SlowMaps* normalMaps, SlowMaps* colorMaps) {
    if (sources.empty())
        return false;
    const auto colorIndices = StartIndices(
        sources, [](const VraMeshPrimitive& source) { return source.GetColorIndexArray(); });
    const auto normalIndices = StartIndices(
        sources, [](const VraMeshPrimitive& source) { return source.GetNormalIndexArray(); });
    SlowPool<ON_3dPoint> vertices;
    SlowPool<ON_3dVector> normals;
    SlowPool<ON_Color> colors;
    const auto triangles = std::make_shared<VraMeshPrimitive::VertexIndexArray>();
    for (const auto& source : sources) {
        AppendMap(vertexMaps, source->GetVertexArray());
        AppendMap(normalMaps, source->GetNormalArray());
        AppendMap(colorMaps, source->GetColorArray());
        if (!source->GetVertexIndexArray())
            continue;
        MergeTriples(vertices, source->GetVertexArray(), *source->GetVertexIndexArray(), *triangles,
                     vertexMaps);
        if (normalIndices)
            MergeForm(normals, source->GetNormalArray(), source->GetNormalIndexArray(),
                      *normalIndices, normalMaps);
        if (colorIndices)
            MergeForm(colors, source->GetColorArray(), source->GetColorIndexArray(), *colorIndices,
                      colorMaps);
    }
    target.SetVertexArray(std::make_shared<VraMeshPrimitive::VertexArray>(vertices.values));
    target.SetVertexIndexArray(triangles);
    target.SetNormalArray(
        normalIndices ? std::make_shared<VraMeshPrimitive::NormalArray>(normals.values) : nullptr);
    target.SetNormalIndexArray(normalIndices);
    target.SetColorArray(
        colorIndices ? std::make_shared<VraMeshPrimitive::ColorArray>(colors.values) : nullptr);
    target.SetColorIndexArray(colorIndices);
    target.SetUVArray(nullptr);
    target.SetTextureUVArray(nullptr);
    return true;
}

}  // namespace Vr::test

// Sources are read one after the other, in blocks of triangles that fit the innermost cache: first
// the numbers that the source uses for the first time, then their values through the pool, then the
// block with its numbers replaced. A value is sought once a source, however many corners use it.

#include <cassert>
#include <limits>
#include <optional>

#include "mesh/VraMeshPrimitive.h"
#include "mesh/detail/LargeMeshes.h"
#include "mesh/detail/Prefetch.h"
#include "mesh/detail/Throw.h"
#include "mesh/detail/ValuePool.h"

namespace Vr {

namespace {

using IndexArray = VraMeshPrimitive::IndexArray;
using Source = boost::intrusive_ptr<const VraMeshPrimitive>;
using Sources = std::vector<Source>;
using NumberMaps = std::vector<std::vector<int>>;

// The numbers in an element of an index array, side by side.
template <class Element>
constexpr size_t kNumbersIn = sizeof(Element) / sizeof(size_t);

/// Pools the values of one kind and rewrites index arrays to the numbers of the pool.
template <class Value, class Number>
class ValueMerger {
public:
    explicit ValueMerger(size_t expectedCount) : pool_(expectedCount) {}

    /// Appends the elements of one source to `merged` with the pool's numbers, and writes these into
    /// `newNumberOf` where that is not null.
    template <class Element>
    void Append(const std::vector<Value>* values, const std::vector<Element>& elements,
                std::vector<Element>& merged, std::vector<int>* newNumberOf) {
        BeginSource(values);
        constexpr size_t kBlockSize = kNumbersInBlock / kNumbersIn<Element>;
        Element block[kBlockSize];
        for (size_t begin = 0; begin < elements.size(); begin += kBlockSize) {
            const size_t count = std::min(kBlockSize, elements.size() - begin);
            MergeBlock(reinterpret_cast<const size_t*>(elements.data() + begin),
                       count * kNumbersIn<Element>, reinterpret_cast<size_t*>(block));
            merged.insert(merged.end(), block, block + count);
        }
        if (newNumberOf)
            for (size_t number = 0; number < newNumberOf->size(); ++number)
                if (mergedNumberOf_[number] != kNone)
                    (*newNumberOf)[number] = static_cast<int>(mergedNumberOf_[number]);
    }

    [[nodiscard]] std::vector<Value> TakeValues() { return pool_.TakeValues(); }

private:
    using Pool = detail::ValuePool<Value, Number>;

    static constexpr size_t kNumbersInBlock = 1536;
    static constexpr Number kNone = static_cast<Number>(-1);
    static constexpr Number kPending = static_cast<Number>(-2);

    void BeginSource(const std::vector<Value>* values) {
        values_ = values ? values->data() : nullptr;
        valueCount_ = values ? values->size() : 0;
        if (valueCount_ > Pool::kGreatestCount)
            // LCOV_EXCL_LINE: 2^31 values of one source, 8 GiB at least
            detail::ThrowUnorderedMapTooLong();
        hasNaN_ = false;
        if (valueCount_ > capacity_) {
            mergedNumberOf_.reset(new Number[valueCount_]);
            capacity_ = valueCount_;
        }
        std::fill(mergedNumberOf_.get(), mergedNumberOf_.get() + valueCount_, kNone);
    }

    void MergeBlock(const size_t* numbers, size_t count, size_t* mergedNumbers) {
        if (!hasNaN_) {
            Number firstUsed[kNumbersInBlock];
            const size_t firstUsedCount = ListFirstUsed(numbers, count, firstUsed);
            hasNaN_ = !AddToPool(firstUsed, firstUsedCount);
        }
        if (hasNaN_) {
            for (size_t i = 0; i < count; ++i)
                mergedNumbers[i] = MergeOne(numbers[i]);
        } else {
            for (size_t i = 0; i < count; ++i)
                mergedNumbers[i] = mergedNumberOf_[numbers[i]];
        }
    }

    size_t ListFirstUsed(const size_t* numbers, size_t count, Number* firstUsed) {
        size_t firstUsedCount = 0;
        for (size_t i = 0; i < count; ++i) {
            assert(numbers[i] < valueCount_);
            const Number known = mergedNumberOf_[numbers[i]];
            firstUsed[firstUsedCount] = static_cast<Number>(numbers[i]);
            firstUsedCount += known == kNone;
            mergedNumberOf_[numbers[i]] = known == kNone ? kPending : known;
        }
        return firstUsedCount;
    }

    // Returns false when there is a NaN. All values before it are in the pool then, in order, so the
    // block can be merged number by number from its beginning.
    bool AddToPool(const Number* firstUsed, size_t count) {
        Value values[Pool::kBatchSize];
        Number poolNumbers[Pool::kBatchSize];
        for (size_t begin = 0; begin < count; begin += Pool::kBatchSize) {
            const size_t batchSize = std::min(Pool::kBatchSize, count - begin);
            if (!Gather(firstUsed + begin, batchSize, values)) {
                for (size_t i = begin; i < count; ++i)
                    mergedNumberOf_[firstUsed[i]] = kNone;
                return false;
            }
            pool_.FindOrAdd(
                batchSize, [&](size_t i) { return values[i]; }, poolNumbers);
            for (size_t i = 0; i < batchSize; ++i)
                mergedNumberOf_[firstUsed[begin + i]] = poolNumbers[i];
        }
        return true;
    }

    bool Gather(const Number* numbers, size_t count, Value* values) const {
        constexpr size_t kStepsAhead = 16;
        bool hasNaN = false;
        for (size_t i = 0; i < count; ++i) {
            detail::Prefetch(values_ + numbers[std::min(i + kStepsAhead, count - 1)]);
            values[i] = values_[numbers[i]];
            hasNaN |= detail::HasNaN(values[i]);
        }
        return !hasNaN;
    }

    // NaN equals nothing, so each use of a value with NaN adds it again.
    Number MergeOne(size_t number) {
        const Value& value = values_[number];
        Number& known = mergedNumberOf_[number];
        if (detail::HasNaN(value))
            known = pool_.AddUnfound(value);
        else if (known == kNone)
            pool_.FindOrAdd(
                1, [&](size_t) { return value; }, &known);
        return known;
    }

    Pool pool_;
    const Value* values_ = nullptr;
    size_t valueCount_ = 0;
    std::unique_ptr<Number[]> mergedNumberOf_;
    size_t capacity_ = 0;
    bool hasNaN_ = false;
};

/// Merges the normals or the colours of the sources, whose index arrays have one form.
template <class Value, class Number>
class IndexedValueMerger {
public:
    IndexedValueMerger(bool isPerVertex, size_t expectedCount)
        : merger_(expectedCount),
          isPerVertex_(isPerVertex),
          merged_(isPerVertex ? IndexArray(IndexArray::PerVertex())
                              : IndexArray(IndexArray::PerTriangle())) {}

    void Append(const std::vector<Value>* values, const IndexArray* indices,
                std::vector<int>* newNumberOf) {
        if (!indices)
            throw boost::bad_get();
        if (isPerVertex_)
            AppendForm<IndexArray::PerVertex>(values, *indices, newNumberOf);
        else
            AppendForm<IndexArray::PerTriangle>(values, *indices, newNumberOf);
    }

    [[nodiscard]] std::vector<Value> TakeValues() { return merger_.TakeValues(); }
    [[nodiscard]] IndexArray TakeIndices() { return std::move(merged_); }

private:
    template <class Form>
    void AppendForm(const std::vector<Value>* values, const IndexArray& indices,
                    std::vector<int>* newNumberOf) {
        merger_.Append(values, boost::get<Form>(indices.data), boost::get<Form>(merged_.data),
                       newNumberOf);
    }

    ValueMerger<Value, Number> merger_;
    bool isPerVertex_;
    IndexArray merged_;
};

/// How the getters of normals and of colours are called.
struct IndexAccess {
    std::shared_ptr<const IndexArray> (VraMeshPrimitive::*getIndexArray)() const;
    bool (VraMeshPrimitive::*isPerVertex)() const;
};
constexpr IndexAccess kNormalAccess = {&VraMeshPrimitive::GetNormalIndexArray,
                                       &VraMeshPrimitive::IsNormalPerVertex};
constexpr IndexAccess kColorAccess = {&VraMeshPrimitive::GetColorIndexArray,
                                      &VraMeshPrimitive::IsColorPerVertex};

// Returns whether the form common to all sources is per vertex, or nothing when a source with
// vertices has no such index array, when none has, or when the forms are mixed.
std::optional<bool> FindCommonForm(const Sources& sources, const IndexAccess& access) {
    for (const Source& source : sources)
        if (source->GetVertexArray() && !(*source.*access.getIndexArray)())
            return std::nullopt;
    std::optional<bool> common;
    for (const Source& source : sources) {
        if (!(*source.*access.getIndexArray)())
            continue;
        const bool isPerVertex = (*source.*access.isPerVertex)();
        if (common && *common != isPerVertex)
            return std::nullopt;
        common = isPerVertex;
    }
    return common;
}

/// How much the sources hold, as far as can be told without calling them. Only time and memory
/// depend on it: an override of a getter may answer with other arrays.
struct ExpectedCounts {
    size_t vertices = 0;
    size_t triangles = 0;
    size_t normals = 0;
    size_t colors = 0;
};

/// The vectors of maps that the caller wants, null where not wanted.
struct NumberMapOutputs {
    NumberMaps* vertices;
    NumberMaps* normals;
    NumberMaps* colors;
};

/// The map of one source within a vector of maps. Kept by place, since the vector may grow and may
/// have been given for two kinds.
class NumberMap {
public:
    /// Appends a map of -1 for each value, an empty one when there are no values.
    template <class Values>
    NumberMap(NumberMaps* maps, const std::shared_ptr<const Values>& values) : maps_(maps) {
        if (!maps_)
            return;
        maps_->emplace_back();
        place_ = maps_->size() - 1;
        if (values)
            maps_->back().resize(values->size(), -1);
    }

    [[nodiscard]] std::vector<int>* Get() const { return maps_ ? &(*maps_)[place_] : nullptr; }

private:
    NumberMaps* maps_;
    size_t place_ = 0;
};

/// Collects the result of a merge, source by source.
template <class Number>
class PrimitiveMerger {
public:
    PrimitiveMerger(const ExpectedCounts& expected, std::optional<bool> colorForm,
                    std::optional<bool> normalForm)
        : vertices_(std::min(expected.vertices, MostDistinct(expected.triangles))) {
        triangles_.reserve(expected.triangles);
        if (normalForm)
            normals_.emplace(*normalForm,
                             std::min(expected.normals, MostDistinct(expected.triangles)));
        if (colorForm)
            colors_.emplace(*colorForm,
                            std::min(expected.colors, MostDistinct(expected.triangles)));
    }

    void Append(const Source& source, const NumberMapOutputs& maps) {
        const Source held = source;
        const auto vertices = held->GetVertexArray();
        const auto normals = held->GetNormalArray();
        const auto colors = held->GetColorArray();
        const auto triangles = held->GetVertexIndexArray();
        const auto normalIndices = held->GetNormalIndexArray();
        const auto colorIndices = held->GetColorIndexArray();

        const NumberMap vertexMap(maps.vertices, vertices);
        const NumberMap normalMap(maps.normals, normals);
        const NumberMap colorMap(maps.colors, colors);
        if (!triangles)
            return;
        vertices_.Append(vertices.get(), *triangles, triangles_, vertexMap.Get());
        if (normals_)
            normals_->Append(normals.get(), normalIndices.get(), normalMap.Get());
        if (colors_)
            colors_->Append(colors.get(), colorIndices.get(), colorMap.Get());
    }

    /// Hands the result over; nothing is installed when memory runs short before.
    void Install(VraMeshPrimitive& target) {
        const auto vertices =
            std::make_shared<VraMeshPrimitive::VertexArray>(vertices_.TakeValues());
        const auto triangles =
            std::make_shared<VraMeshPrimitive::VertexIndexArray>(std::move(triangles_));
        const auto [normals, normalIndices] = Handles(normals_);
        const auto [colors, colorIndices] = Handles(colors_);
        target.SetVertexArray(vertices);
        target.SetVertexIndexArray(triangles);
        target.SetNormalArray(normals);
        target.SetNormalIndexArray(normalIndices);
        target.SetColorArray(colors);
        target.SetColorIndexArray(colorIndices);
        target.SetUVArray(nullptr);
        target.SetTextureUVArray(nullptr);
    }

private:
    // How many values to make room for at first: a closed surface has one for every two triangles,
    // an open one hardly more. Room for more would be memory and a table that fits no cache.
    static size_t MostDistinct(size_t triangleCount) { return triangleCount / 8 * 5; }

    template <class Value>
    static std::pair<std::shared_ptr<std::vector<Value>>, std::shared_ptr<IndexArray>> Handles(
        std::optional<IndexedValueMerger<Value, Number>>& merger) {
        if (!merger)
            return {};
        return {std::make_shared<std::vector<Value>>(merger->TakeValues()),
                std::make_shared<IndexArray>(merger->TakeIndices())};
    }

    ValueMerger<ON_3dPoint, Number> vertices_;
    VraMeshPrimitive::VertexIndexArray triangles_;
    std::optional<IndexedValueMerger<ON_3dVector, Number>> normals_;
    std::optional<IndexedValueMerger<ON_Color, Number>> colors_;
};

template <class Number>
void MergeAs(VraMeshPrimitive& target, const Sources& sources, const NumberMapOutputs& maps,
             const ExpectedCounts& expected) {
    const std::optional<bool> colorForm = FindCommonForm(sources, kColorAccess);
    const std::optional<bool> normalForm = FindCommonForm(sources, kNormalAccess);
    PrimitiveMerger<Number> merger(expected, colorForm, normalForm);
    for (const Source& source : sources)
        merger.Append(source, maps);
    merger.Install(target);
}

template <class Array>
size_t CountOf(const std::shared_ptr<Array>& array) {
    return array ? array->size() : 0;
}

}  // namespace

bool VraMeshPrimitive::Merge(
    boost::intrusive_ptr<VraMeshPrimitive> target,
    const std::vector<boost::intrusive_ptr<const VraMeshPrimitive>>& sources,
    std::vector<std::vector<int>>* vertexMaps, std::vector<std::vector<int>>* normalMaps,
    std::vector<std::vector<int>>* colorMaps) {
    if (sources.empty())
        return false;
    for (NumberMaps* const maps : {vertexMaps, normalMaps, colorMaps})
        if (maps)
            maps->reserve(sources.size());

    ExpectedCounts expected;
    for (const Source& source : sources) {
        expected.vertices += CountOf(source->vertexArray_);
        expected.triangles += CountOf(source->vertexIndexArray_);
        expected.normals += CountOf(source->normalArray_);
        expected.colors += CountOf(source->colorArray_);
    }
    const size_t greatest =
        3 * expected.triangles + expected.vertices + expected.normals + expected.colors;
    const NumberMapOutputs maps = {vertexMaps, normalMaps, colorMaps};
    if (!detail::kSmallAsLarge &&
        greatest <= static_cast<size_t>(std::numeric_limits<int32_t>::max()))
        MergeAs<uint32_t>(*target, sources, maps, expected);
    else
        // LCOV_EXCL_LINE: 2^31 elements; the presets portable and tsan come here
        MergeAs<uint64_t>(*target, sources, maps, expected);
    return true;
}

}  // namespace Vr

/// Exact merging of the values that an index array uses: the distinct values in ascending order, and
/// every number of the index array turned into the number of its value.
///
/// Values that occur often are first brought together by a hash table, so that only distinct ones
/// are sorted. Where a sample shows that hardly any value repeats, the table is left out.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include "mesh/detail/LargeMeshes.h"
#include "mesh/detail/Throw.h"
#include "mesh/detail/ValueOrder.h"
#include "mesh/detail/ValuePool.h"
#include "mesh/detail/ValueSort.h"

namespace Vr::detail {

/// The numbers from `first` on, read like an array.
template <class Number>
struct ConsecutiveNumbers {
    size_t first;
    Number operator[](size_t i) const { return static_cast<Number>(first + i); }
};

/// The used ones among the values of an array.
template <class Values, class Number>
class UsedValues {
public:
    /// `isUsed[number]` is 1 for a used value and 0 for another; null when all are used.
    UsedValues(const Values& values, size_t valueCount, size_t usedCount, const uint8_t* isUsed)
        : values_(values),
          valueCount_(valueCount),
          usedCount_(usedCount),
          isUsed_(usedCount < valueCount ? isUsed : nullptr) {}

    [[nodiscard]] size_t Count() const { return usedCount_; }
    [[nodiscard]] auto ValueOf(Number number) const { return values_[number]; }

    /// Calls `body(numbers, size_t count)` for blocks of used numbers, `numbers[0]` to
    /// `numbers[count - 1]`, ascending, at most `kBlockSize` at a time, until it returns false.
    static constexpr size_t kBlockSize = 512;
    template <class Body>
    void ForEachBlock(const Body& body) const {
        Number numbers[kBlockSize];
        for (size_t begin = 0; begin < valueCount_; begin += kBlockSize) {
            const size_t blockSize = std::min(kBlockSize, valueCount_ - begin);
            if (!isUsed_) {
                if (!body(ConsecutiveNumbers<Number>{begin}, blockSize))
                    return;
                continue;
            }
            size_t count = 0;
            for (size_t i = 0; i < blockSize; ++i) {
                numbers[count] = static_cast<Number>(begin + i);
                count += isUsed_[begin + i];
            }
            if (count > 0 && !body(static_cast<const Number*>(numbers), count))
                return;
        }
    }

private:
    const Values& values_;
    size_t valueCount_;
    size_t usedCount_;
    const uint8_t* isUsed_;
};

/// Takes values in ascending order and gives equal ones the same new number.
template <class Value, class Number>
class DistinctValues {
public:
    /// - Shape: `values` has room for as many values as are distinct.
    /// - Sharing: `values` may be what the values are sorted from: none is written before it was
    ///   read for the last time.
    /// - Requires: `newNumberOf` has an entry for every number that comes.
    DistinctValues(Value* values, Number* newNumberOf)
        : values_(values), newNumberOf_(newNumberOf) {}

    void operator()(const NumberedValue<Value>* run, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            const Value& value = run[i].value;
            if (count_ == 0 || !AreEqual(values_[count_ - 1], value))
                values_[count_++] = value;
            else if (!HaveSameBits(values_[count_ - 1], value))
                hasMixedZeros_ = true;
            newNumberOf_[run[i].number] = static_cast<Number>(count_ - 1);
        }
    }

    [[nodiscard]] size_t Count() const { return count_; }
    [[nodiscard]] bool HasMixedZeros() const { return hasMixedZeros_; }

private:
    Value* values_;
    size_t count_ = 0;
    Number* newNumberOf_;
    bool hasMixedZeros_ = false;
};

template <class Value, class Number, class Source>
void SortDistinct(const Source& source, DistinctValues<Value, Number>& distinct) {
    bool isAscending = true;
    Value last;
    bool isFirst = true;
    source.ForEachBlock([&](const auto numbers, size_t count) {
        for (size_t i = 0; i < count && isAscending; ++i) {
            const Value value = source.ValueOf(numbers[i]);
            isAscending = isFirst || !IsLessFrom<0>(value, last);
            isFirst = false;
            last = value;
        }
        return isAscending;
    });
    if (isAscending) {
        source.ForEachBlock([&](const auto numbers, size_t count) {
            for (size_t i = 0; i < count; ++i) {
                const NumberedValue<Value> item = {source.ValueOf(numbers[i]), numbers[i]};
                distinct(&item, 1);
            }
            return true;
        });
    } else {
        ValueSorter<Value, Number, DistinctValues<Value, Number>>(distinct).Sort(source);
    }
}

/// One array of values as `MergeEqual` takes it.
template <class Element>
class ArrayRole {
public:
    using Value = Element;

    explicit ArrayRole(std::vector<Value>& values) : values_(values) {}

    [[nodiscard]] size_t Count() const { return values_.size(); }
    [[nodiscard]] const Value& operator[](size_t number) const { return values_[number]; }
    void Exchange(std::vector<Value>& merged) const { values_.swap(merged); }

private:
    std::vector<Value>& values_;
};

/// The merge itself, with `Number` wide enough for the numbers of the values; see `MergeEqual`.
template <class Number, class Role>
class ExactMerge {
public:
    using Value = typename Role::Value;

    ExactMerge(const Role& role, size_t* numbers, size_t numberCount)
        : role_(role), numbers_(numbers), numberCount_(numberCount), valueCount_(role.Count()) {}

    void Run() {
        MarkUsed();
        const UsedValues<Role, Number> used(role_, valueCount_, usedCount_, isUsed_.get());
        newNumberOf_.reset(new Number[valueCount_]);
        {
            ValuePool<Value, Number> pool(usedCount_ * 2 / kExpectedUsesOfTwo);
            if (AddToPool(used, pool)) {
                MergePooled(pool);
                return;
            }
        }
        MergeUsed(used);
    }

private:
    // In a mesh whose triangles have vertices of their own each position comes six times, or a little
    // less often.
    static constexpr size_t kExpectedUsesOfTwo = 11;
    // A sample of this share of the used values decides whether the pool is worth its cost.
    static constexpr size_t kSampleShare = 16;
    static constexpr size_t kSmallestSample = 1024;
    static constexpr size_t kFewestRepeats = 32;  // One in so many.

    void MarkUsed() {
        isUsed_.reset(new uint8_t[valueCount_]());
        // In variables of their own, since a store of bytes might change any member.
        uint8_t* const isUsed = isUsed_.get();
        const size_t* const numbers = numbers_;
        const size_t numberCount = numberCount_;
        const size_t valueCount = valueCount_;
        for (size_t i = 0; i < numberCount; ++i) {
            const size_t number = numbers[i];
            if (number >= valueCount)
                ThrowInvalidSubscript();
            isUsed[number] = 1;
        }
        usedCount_ = std::accumulate(isUsed, isUsed + valueCount, size_t{0});
    }

    // Afterwards newNumberOf_ gives the numbers of the pool. Returns false when it gave up.
    bool AddToPool(const UsedValues<Role, Number>& used, ValuePool<Value, Number>& pool) {
        const size_t sampleSize = std::max(kSmallestSample, usedCount_ / kSampleShare);
        size_t addedCount = 0;
        bool isWorthIt = true;
        used.ForEachBlock([&](const auto numbers, size_t count) {
            Number poolNumbers[UsedValues<Role, Number>::kBlockSize];
            pool.FindOrAdd(
                count, [&](size_t i) { return used.ValueOf(numbers[i]); }, poolNumbers);
            for (size_t i = 0; i < count; ++i)
                newNumberOf_[numbers[i]] = poolNumbers[i];
            const bool wasSampled = addedCount >= sampleSize;
            addedCount += count;
            if (!wasSampled && addedCount >= sampleSize)
                isWorthIt = addedCount - pool.Count() >= addedCount / kFewestRepeats;
            return isWorthIt;
        });
        return isWorthIt;
    }

    void MergePooled(ValuePool<Value, Number>& pool) {
        pool.ReleaseTable();
        isUsed_.reset();
        const bool hasMixedZeros = pool.HasMixedZeros();
        std::vector<Value> values = pool.TakeValues();
        const size_t count = values.size();
        const std::unique_ptr<Number[]> rankOf(new Number[count]);
        DistinctValues<Value, Number> distinct(values.data(), rankOf.get());
        SortDistinct<Value, Number>(
            UsedValues<std::vector<Value>, Number>(values, count, count, nullptr), distinct);
        values.resize(distinct.Count());
        Finish(values, hasMixedZeros,
               [rankOf = rankOf.get(), poolNumberOf = newNumberOf_.get()](size_t number) {
                   return rankOf[poolNumberOf[number]];
               });
    }

    void MergeUsed(const UsedValues<Role, Number>& used) {
        std::vector<Value> values(usedCount_);
        DistinctValues<Value, Number> distinct(values.data(), newNumberOf_.get());
        SortDistinct<Value, Number>(used, distinct);
        values.resize(distinct.Count());
        Finish(values, distinct.HasMixedZeros(),
               [newNumberOf = newNumberOf_.get()](size_t number) { return newNumberOf[number]; });
    }

    template <class NumberOf>
    void Finish(std::vector<Value>& values, bool hasMixedZeros, const NumberOf& newNumberOf) {
        if (values.capacity() > values.size())
            std::vector<Value>(values).swap(values);
        if (hasMixedZeros)
            RestoreFirstUsed(values, newNumberOf);
        role_.Exchange(values);
        std::transform(numbers_, numbers_ + numberCount_, numbers_, newNumberOf);
    }

    // Of values that differ by signs of zeros the first used one stands for all.
    template <class NumberOf>
    void RestoreFirstUsed(std::vector<Value>& values, const NumberOf& newNumberOf) {
        std::vector<bool> isRestored(values.size());
        for (size_t i = 0; i < numberCount_; ++i) {
            const size_t newNumber = newNumberOf(numbers_[i]);
            if (isRestored[newNumber])
                continue;
            isRestored[newNumber] = true;
            values[newNumber] = role_[numbers_[i]];
        }
    }

    const Role& role_;
    size_t* numbers_;
    size_t numberCount_;
    size_t valueCount_;
    size_t usedCount_ = 0;
    std::unique_ptr<uint8_t[]> isUsed_;
    std::unique_ptr<Number[]> newNumberOf_;
};

template <class Role>
void MergeEqual(const Role& role, size_t* numbers, size_t numberCount) {
    if (!kSmallAsLarge && role.Count() <= static_cast<size_t>(std::numeric_limits<int32_t>::max()))
        ExactMerge<uint32_t, Role>(role, numbers, numberCount).Run();
    else
        // LCOV_EXCL_LINE: 2^31 values; the presets portable and tsan come here
        ExactMerge<uint64_t, Role>(role, numbers, numberCount).Run();
}

/// @name Merging of equal values
/// Exchanges the values of `role` for the distinct ones that `indices` uses, and each number in
/// `indices` for the number of its value among them.
///
/// `role` is an `ArrayRole` or has its members: `Count()`, `operator[]` and `Exchange(values)`, which
/// installs the values or throws and changes nothing.
///
/// - Order: ascending by `Coordinates`; where values differ by signs of zeros, the one that `indices`
///   uses first stands for all. Undefined for values with NaN, but nothing else is touched by them.
/// - Throws: std::out_of_range "invalid vector subscript" for a number that is not below
///   `role.Count()`, std::bad_alloc; nothing has changed then.
/// - Complexity: linear in numbers and values, and n log n in the distinct values at worst.
/// @{
template <class Role>
void MergeEqual(const Role& role, std::vector<size_t>& indices) {
    MergeEqual(role, indices.data(), indices.size());
}
template <class Role>
void MergeEqual(const Role& role, std::vector<VraMeshPrimitive::TriangleIndex>& indices) {
    MergeEqual(role, reinterpret_cast<size_t*>(indices.data()), 3 * indices.size());
}
/// @}

}  // namespace Vr::detail

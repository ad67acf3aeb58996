/// Sorting of values that carry a number, in ascending order by all coordinates.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>

#include "mesh/detail/ValueOrder.h"

namespace Vr::detail {

/// Without padding, so that copies move whole words and what was just stored is soon read again.
template <class Value>
struct NumberedValue {
    Value value;
    uint64_t number;
};

/// Sorts into buckets of equal width along one axis, then within the buckets, and hands the result
/// on run by run.
///
/// Buckets are refined until they are small enough for insertion sort; an axis without extent is
/// skipped. Values that are too unevenly spread, infinite or NaN are sorted by comparison, so the
/// work never exceeds n log n.
///
/// `Emit` is called as `emit(const NumberedValue* run, size_t count)`. All runs together are the
/// values in ascending order; equal values come in any order. The source is not read again once the
/// first run is handed on.
template <class Value, class Number, class Emit>
class ValueSorter {
public:
    using Item = NumberedValue<Value>;

    explicit ValueSorter(Emit& emit) : emit_(emit) {}

    /// Sorts the values of `source`: `source.Count()` of them, whose numbers it lists with
    /// `source.ForEachBlock(body)` as `body(numbers, size_t count)` while that returns
    /// true, and whose values are `source.ValueOf(number)`.
    template <class Source>
    void Sort(const Source& source) {
        if (source.Count() < kFewestForStreaming) {
            SortCopy(source);
            return;
        }
        const Scale scale = ScaleOfFirstAxis(source);
        if (scale.IsUsable())
            SortFromSource(source, scale);
        else
            SortCopy(source);
    }

private:
    static constexpr size_t kLargestInsertion = 24;
    static constexpr size_t kMostBuckets = 1024;
    static constexpr size_t kFewestForStreaming = 4096;
    static constexpr int kMostRefinements = 6;

    // Where a coordinate lies between the least and the greatest, in buckets.
    struct Scale {
        double least = std::numeric_limits<double>::infinity();
        double greatest = -std::numeric_limits<double>::infinity();
        double bucketsPerUnit = 0.0;
        double lastBucket = 0.0;

        void Include(double coordinate) {
            least = coordinate < least ? coordinate : least;
            greatest = coordinate > greatest ? coordinate : greatest;
        }
        void Divide(size_t bucketCount) {
            bucketsPerUnit = static_cast<double>(bucketCount) / (greatest - least);
            lastBucket = static_cast<double>(bucketCount - 1);
        }
        bool HasExtent() const { return least < greatest; }
        // The extent is finite and not so small that its reciprocal is infinite.
        bool IsUsable() const {
            return bucketsPerUnit > 0.0 && bucketsPerUnit <= std::numeric_limits<double>::max();
        }
        // Rounding keeps the order. The comparison also catches NaN, which goes last.
        size_t BucketOf(double coordinate) const {
            const double bucket = (coordinate - least) * bucketsPerUnit;
            return static_cast<size_t>(static_cast<int>(bucket < lastBucket ? bucket : lastBucket));
        }
    };

    template <size_t axis>
    static double CoordinateOf(const Value& value) {
        return std::get<axis>(Coordinates(value));
    }

    template <class Source>
    static Scale ScaleOfFirstAxis(const Source& source) {
        Scale scale;
        source.ForEachBlock([&](const auto numbers, size_t count) {
            for (size_t i = 0; i < count; ++i)
                scale.Include(CoordinateOf<0>(source.ValueOf(numbers[i])));
            return true;
        });
        scale.Divide(BucketCountOfFirstAxis(source.Count()));
        return scale;
    }

    static size_t BucketCountOfFirstAxis(size_t count) {
        return std::min(kMostBuckets, std::max<size_t>(2, count / 256));
    }

    template <class Source>
    void SortCopy(const Source& source) {
        const size_t count = source.Count();
        const std::unique_ptr<Item[]> items(new Item[count]);
        const std::unique_ptr<Item[]> spare(new Item[count]);
        size_t copied = 0;
        source.ForEachBlock([&](const auto numbers, size_t blockCount) {
            for (size_t i = 0; i < blockCount; ++i)
                items[copied++] = {source.ValueOf(numbers[i]), numbers[i]};
            return true;
        });
        SortRange<0>(items.get(), spare.get(), count, 0);
    }

    // The first distribution reads the source itself, so that besides the items only the largest
    // bucket needs space.
    template <class Source>
    void SortFromSource(const Source& source, const Scale& scale) {
        Number ends[kMostBuckets] = {};
        source.ForEachBlock([&](const auto numbers, size_t count) {
            for (size_t i = 0; i < count; ++i)
                ++ends[scale.BucketOf(CoordinateOf<0>(source.ValueOf(numbers[i])))];
            return true;
        });
        const size_t bucketCount = BucketCountOfFirstAxis(source.Count());
        const size_t largest = CountsToBegins(ends, bucketCount);

        const std::unique_ptr<Item[]> items(new Item[source.Count()]);
        source.ForEachBlock([&](const auto numbers, size_t count) {
            for (size_t i = 0; i < count; ++i) {
                const Value value = source.ValueOf(numbers[i]);
                items[ends[scale.BucketOf(CoordinateOf<0>(value))]++] = {value, numbers[i]};
            }
            return true;
        });
        const std::unique_ptr<Item[]> spare(new Item[largest]);
        size_t begin = 0;
        for (size_t bucket = 0; bucket < bucketCount; ++bucket) {
            const size_t end = static_cast<size_t>(ends[bucket]);
            SortRange<0>(items.get() + begin, spare.get(), end - begin, 1);
            begin = end;
        }
    }

    // Turns the number of items in each bucket into the place of its first item and returns the
    // greatest number. Filling the buckets then makes each place the end of its bucket.
    static size_t CountsToBegins(Number* counts, size_t bucketCount) {
        Number begin = 0;
        Number largest = 0;
        for (size_t bucket = 0; bucket < bucketCount; ++bucket) {
            const Number count = counts[bucket];
            counts[bucket] = begin;
            begin = static_cast<Number>(begin + count);
            largest = std::max(largest, count);
        }
        return static_cast<size_t>(largest);
    }

    // Sorts items that are equal along the axes before `axis`. `spare` has room for as many.
    template <size_t axis>
    void SortRange(Item* items, Item* spare, size_t count, int refinements) {
        if constexpr (axis == kAxisCount<Value>) {
            emit_(items, count);
        } else {
            if (count <= kLargestInsertion) {
                SortByInsertion<axis>(items, count);
                emit_(items, count);
                return;
            }
            Scale scale;
            for (size_t i = 0; i < count; ++i)
                scale.Include(CoordinateOf<axis>(items[i].value));
            const size_t bucketCount = std::min(kMostBuckets, count / 2);
            scale.Divide(bucketCount);
            if (scale.least == scale.greatest)
                SortRange<axis + 1>(items, spare, count, 0);
            else if (scale.IsUsable() && refinements < kMostRefinements)
                Distribute<axis>(items, spare, count, scale, bucketCount, refinements);
            else
                SortByComparison(items, count);
        }
    }

    template <size_t axis>
    void Distribute(Item* items, Item* spare, size_t count, const Scale& scale, size_t bucketCount,
                    int refinements) {
        Number ends[kMostBuckets];
        std::fill(ends, ends + bucketCount, Number{0});
        for (size_t i = 0; i < count; ++i)
            ++ends[scale.BucketOf(CoordinateOf<axis>(items[i].value))];
        const size_t largest = CountsToBegins(ends, bucketCount);
        for (size_t i = 0; i < count; ++i)
            spare[ends[scale.BucketOf(CoordinateOf<axis>(items[i].value))]++] = items[i];
        if (largest <= kLargestInsertion) {
            // The buckets are in order, so insertion moves nothing from one to another.
            SortByInsertion<axis>(spare, count);
            emit_(spare, count);
            return;
        }
        size_t begin = 0;
        for (size_t bucket = 0; bucket < bucketCount; ++bucket) {
            const size_t end = static_cast<size_t>(ends[bucket]);
            if (end > begin)
                SortRange<axis>(spare + begin, items + begin, end - begin, refinements + 1);
            begin = end;
        }
    }

    template <size_t axis>
    static void SortByInsertion(Item* items, size_t count) {
        for (size_t i = 1; i < count; ++i) {
            if (!IsLessFrom<axis>(items[i].value, items[i - 1].value))
                continue;
            const Item moved = items[i];
            size_t place = i;
            do {
                items[place] = items[place - 1];
                --place;
            } while (place > 0 && IsLessFrom<axis>(moved.value, items[place - 1].value));
            items[place] = moved;
        }
    }

    void SortByComparison(Item* items, size_t count) {
        std::sort(items, items + count,
                  [](const Item& a, const Item& b) { return TotalOrderLess(a.value, b.value); });
        emit_(items, count);
    }

    Emit& emit_;
};

}  // namespace Vr::detail

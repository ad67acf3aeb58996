/// A pool of distinct values, numbered in the order in which they were added.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "mesh/detail/Prefetch.h"
#include "mesh/detail/Throw.h"
#include "mesh/detail/ValueOrder.h"

namespace Vr::detail {

/// Finds and adds values by an open hash table over one array of values.
///
/// A slot holds the upper bits of the hash beside the number, so that a look-up rarely reads a value
/// that differs, and a larger table is filled from the old slots alone. The slot sought first is
/// given by the uppermost bits: growing keeps the slots in order and runs through both tables once.
///
/// - Throws: std::length_error "unordered_map/set too long" beyond `kGreatestCount` values.
template <class Value, class Number>
class ValuePool {
public:
    /// How many values one call of `FindOrAdd` takes at most.
    static constexpr size_t kBatchSize = 512;
    /// How many values the pool takes at most.
    static constexpr size_t kGreatestCount = static_cast<size_t>(static_cast<Number>(-1) / 2);

    /// Makes room for `expectedCount` values; more are taken at the cost of growing.
    explicit ValuePool(size_t expectedCount) {
        int slotBits = kFewestSlotBits;
        while (LimitOf(slotBits) < expectedCount)
            ++slotBits;
        Resize(slotBits);
        values_.resize(expectedCount);
    }

    /// Writes the number of each of the values `valueOf(0)` to `valueOf(count - 1)`, adding those
    /// that are not in the pool. Each is read twice.
    ///
    /// - Order: as if the values were sought one after the other.
    template <class ValueOf>
    void FindOrAdd(size_t count, const ValueOf& valueOf, Number* numbers) {
        MakeRoomFor(count);
        Table table = {slots_.get(),
                       kTagBits - slotBits_,
                       (size_t{1} << slotBits_) - 1,
                       values_.data(),
                       count_,
                       false};
        // Slots and then values are asked for ahead of their use, each as many steps as it takes.
        Number tags[kBatchSize];
        for (size_t step = 0; step < count + 2 * kStepsAhead; ++step) {
            if (step < count) {
                tags[step] = TagOf(HashOf(valueOf(step)));
                Prefetch(&table.slots[table.SlotOf(tags[step])]);
            }
            const size_t next = step - kStepsAhead;
            if (next < count)
                table.PrefetchValue(tags[next]);
            const size_t current = step - 2 * kStepsAhead;
            if (current < count)
                numbers[current] = table.FindOrAdd(valueOf(current), tags[current]);
        }
        usedSlotCount_ += table.count - count_;
        count_ = table.count;
        hasMixedZeros_ |= table.hasMixedZeros;
    }

    /// Adds a value that later look-ups do not find, and returns its number.
    Number AddUnfound(const Value& value) {
        MakeRoomFor(1);
        values_[count_] = value;
        return static_cast<Number>(count_++);
    }

    [[nodiscard]] size_t Count() const { return count_; }

    /// Returns the values, leaving the pool without any.
    ///
    /// - Throws: std::bad_alloc; the values stay then.
    [[nodiscard]] std::vector<Value> TakeValues() {
        // Room was made for as many as there could be, which may be far more than there are.
        if (values_.capacity() - count_ > count_ / 4)
            return std::vector<Value>(values_.data(), values_.data() + count_);
        values_.resize(count_);
        return std::move(values_);
    }

    /// Returns whether a value was found that differs from the one in the pool by signs of zeros.
    [[nodiscard]] bool HasMixedZeros() const { return hasMixedZeros_; }

    /// Gives the table back; values can no longer be sought.
    void ReleaseTable() { slots_.reset(); }

private:
    struct Slot {
        Number tag;
        Number number;
    };
    static constexpr Number kFree = static_cast<Number>(-1);
    static constexpr int kTagBits = 8 * sizeof(Number);
    static constexpr int kFewestSlotBits = 6;
    static constexpr size_t kStepsAhead = 24;

    // What a batch works on, in one place that no store through a pointer can change.
    struct Table {
        Slot* slots;
        int tagBitsBesideSlot;
        size_t lastSlot;
        Value* values;
        size_t count;
        bool hasMixedZeros;

        size_t SlotOf(Number tag) const { return static_cast<size_t>(tag >> tagBitsBesideSlot); }

        // Without a branch: one that waits for a slot would keep the prefetches behind it waiting.
        void PrefetchValue(Number tag) const {
            const Slot slot = slots[SlotOf(tag)];
            const Number isLikely = slot.tag == tag;
            PrefetchWhole(values + slot.number * isLikely);
        }

        Number FindOrAdd(const Value& value, Number tag) {
            size_t place = SlotOf(tag);
            for (;; place = (place + 1) & lastSlot) {
                const Slot slot = slots[place];
                if (slot.number == kFree)
                    break;
                if (slot.tag != tag)
                    continue;
                if (HaveSameBits(values[slot.number], value))
                    return slot.number;
                if (AreEqual(values[slot.number], value)) {
                    hasMixedZeros = true;
                    return slot.number;
                }
            }
            const Number number = static_cast<Number>(count);
            slots[place] = {tag, number};
            values[count++] = value;
            return number;
        }
    };

    // The table is at most nine sixteenths full.
    static size_t LimitOf(int slotBits) { return (size_t{9} << slotBits) / 16; }
    // Even, so that no value has the tag of a free slot.
    static Number TagOf(uint64_t hash) {
        return static_cast<Number>(hash >> (64 - kTagBits) & ~uint64_t{1});
    }

    void MakeRoomFor(size_t count) {
        if (count_ + count > kGreatestCount)
            ThrowUnorderedMapTooLong();
        while (usedSlotCount_ + count > LimitOf(slotBits_))
            Grow();
        if (count_ + count > values_.size())
            values_.resize(std::max(count_ + count, 2 * values_.size()));
    }

    void Resize(int slotBits) {
        const size_t slotCount = size_t{1} << slotBits;
        slots_.reset(new Slot[slotCount]);
        std::memset(slots_.get(), 0xFF, slotCount * sizeof(Slot));
        slotBits_ = slotBits;
    }

    void Grow() {
        const size_t oldSlotCount = size_t{1} << slotBits_;
        const std::unique_ptr<Slot[]> oldSlots = std::move(slots_);
        Resize(slotBits_ + 1);
        const size_t lastSlot = 2 * oldSlotCount - 1;
        for (size_t oldSlot = 0; oldSlot < oldSlotCount; ++oldSlot) {
            if (oldSlots[oldSlot].number == kFree)
                continue;
            size_t slot = static_cast<size_t>(oldSlots[oldSlot].tag >> (kTagBits - slotBits_));
            while (slots_[slot].number != kFree)
                slot = (slot + 1) & lastSlot;
            slots_[slot] = oldSlots[oldSlot];
        }
    }

    std::unique_ptr<Slot[]> slots_;
    int slotBits_ = 0;
    size_t usedSlotCount_ = 0;
    // Sized ahead; the first `count_` are in the pool.
    std::vector<Value> values_;
    size_t count_ = 0;
    bool hasMixedZeros_ = false;
};

/// A pool of colours. The table holds the colours themselves, four to a bucket: hardly one lies
/// outside the bucket sought first, so that most are found without a branch that depends on them.
template <class Number>
class ValuePool<ON_Color, Number> {
public:
    static constexpr size_t kBatchSize = 512;
    static constexpr size_t kGreatestCount = static_cast<size_t>(static_cast<Number>(-1) / 2);

    /// Colours are often few, and a small table stays in the cache, so room is made as they come.
    explicit ValuePool(size_t /*expectedCount*/) { Resize(kFewestBucketBits); }

    template <class ValueOf>
    void FindOrAdd(size_t count, const ValueOf& valueOf, Number* numbers) {
        MakeRoomFor(count);
        uint16_t missed[kBatchSize];
        size_t missedCount = 0;
        const Bucket* const buckets = buckets_.get();
        const int bucketBits = bucketBits_;
        for (size_t i = 0; i < count; ++i) {
            const unsigned int color = valueOf(i);
            const Number number = NumberIn(buckets[BucketOf(color, bucketBits)], color);
            numbers[i] = number;
            missed[missedCount] = static_cast<uint16_t>(i);
            missedCount += number == kFree;
        }
        for (size_t i = 0; i < missedCount; ++i)
            numbers[missed[i]] = FindOrAddSlowly(valueOf(missed[i]));
    }

    Number AddUnfound(const ON_Color& value) {
        MakeRoomFor(1);
        values_.push_back(value);
        return static_cast<Number>(values_.size() - 1);
    }

    [[nodiscard]] size_t Count() const { return values_.size(); }

    [[nodiscard]] std::vector<ON_Color> TakeValues() {
        if (values_.capacity() - values_.size() > values_.size() / 4)
            return std::vector<ON_Color>(values_);
        return std::move(values_);
    }

    [[nodiscard]] static bool HasMixedZeros() { return false; }

    void ReleaseTable() { buckets_.reset(); }

private:
    static constexpr size_t kWays = 4;
    static constexpr Number kFree = static_cast<Number>(-1);
    static constexpr int kFewestBucketBits = 10;

    // Ways are taken from the first on. All bits of a free one are set, also those of its colour.
    struct Bucket {
        unsigned int colors[kWays];
        Number numbers[kWays];
    };

    // The factor spreads the cubes, ramps and gradients that colours come in more evenly than a
    // random function would.
    static size_t BucketOf(unsigned int color, int bucketBits) {
        return static_cast<size_t>(color * uint64_t{0xD6E8FEB86659FD93} >> (64 - bucketBits));
    }

    // Returns the number of a colour in one bucket, or `kFree`: all numbers of the bucket with all
    // bits set where the colour is another, taken together.
    static Number NumberIn(const Bucket& bucket, unsigned int color) {
#if defined(__SSE2__)
        if constexpr (sizeof(Number) == sizeof(unsigned int)) {
            const auto* const colors = reinterpret_cast<const __m128i*>(bucket.colors);
            const auto* const numbers = reinterpret_cast<const __m128i*>(bucket.numbers);
            const __m128i sought = _mm_set1_epi32(static_cast<int>(color));
            const __m128i isSame = _mm_cmpeq_epi32(_mm_loadu_si128(colors), sought);
            const __m128i isOther = _mm_xor_si128(isSame, _mm_set1_epi32(-1));
            __m128i all = _mm_or_si128(_mm_loadu_si128(numbers), isOther);
            all = _mm_and_si128(all, _mm_unpackhi_epi64(all, all));
            all = _mm_and_si128(all, _mm_shuffle_epi32(all, 1));
            return static_cast<Number>(_mm_cvtsi128_si32(all));
        }
#endif
        Number number = kFree;
        for (size_t way = 0; way < kWays; ++way)
            number &= bucket.numbers[way] | (0 - Number{bucket.colors[way] != color});
        return number;
    }

    // Returns the number kept for the colour, which is `kFree` if it was not in the table yet.
    Number& NumberOf(unsigned int color) {
        const size_t lastBucket = (size_t{1} << bucketBits_) - 1;
        for (size_t place = BucketOf(color, bucketBits_);; place = (place + 1) & lastBucket) {
            Bucket& bucket = buckets_[place];
            for (size_t way = 0; way < kWays; ++way) {
                if (bucket.numbers[way] == kFree)
                    bucket.colors[way] = color;
                if (bucket.colors[way] == color)
                    return bucket.numbers[way];
            }
        }
    }

    Number FindOrAddSlowly(unsigned int color) {
        Number& number = NumberOf(color);
        if (number == kFree) {
            number = static_cast<Number>(values_.size());
            values_.push_back(ON_Color(color));
            ++takenCount_;
        }
        return number;
    }

    void MakeRoomFor(size_t count) {
        if (values_.size() + count > kGreatestCount)
            ThrowUnorderedMapTooLong();
        // At most five eighths of the ways are taken.
        while (takenCount_ + count > (5 * kWays << bucketBits_) / 8)
            Grow();
        if (values_.size() + count > values_.capacity())
            values_.reserve(std::max(values_.size() + count, 2 * values_.size()));
    }

    void Resize(int bucketBits) {
        const size_t bucketCount = size_t{1} << bucketBits;
        buckets_.reset(new Bucket[bucketCount]);
        std::memset(static_cast<void*>(buckets_.get()), 0xFF, bucketCount * sizeof(Bucket));
        bucketBits_ = bucketBits;
    }

    void Grow() {
        const size_t oldBucketCount = size_t{1} << bucketBits_;
        const std::unique_ptr<Bucket[]> oldBuckets = std::move(buckets_);
        Resize(bucketBits_ + 1);
        for (size_t old = 0; old < oldBucketCount; ++old)
            for (size_t way = 0; way < kWays && oldBuckets[old].numbers[way] != kFree; ++way)
                NumberOf(oldBuckets[old].colors[way]) = oldBuckets[old].numbers[way];
    }

    std::unique_ptr<Bucket[]> buckets_;
    int bucketBits_ = 0;
    size_t takenCount_ = 0;
    std::vector<ON_Color> values_;
};

}  // namespace Vr::detail

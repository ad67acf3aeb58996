/// A pool of distinct values, numbered in the order in which they were added.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

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
        // Colours are often few, and a small table stays in the cache.
        if constexpr (std::is_same_v<Value, ON_Color>)
            expectedCount = std::min(expectedCount, kExpectedColors);
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
    static constexpr size_t kExpectedColors = 4096;

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

    // The table is at most five eighths full.
    static size_t LimitOf(int slotBits) { return (size_t{5} << slotBits) / 8; }
    // Even, so that no value has the tag of a free slot.
    static Number TagOf(uint64_t hash) {
        return static_cast<Number>(hash >> (64 - kTagBits)) & ~Number{1};
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

}  // namespace Vr::detail

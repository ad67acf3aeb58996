// The order of the virtual functions is binary interface: hosts call them by number. The Itanium ABI
// lets a test read the numbers out of pointers to member functions and out of virtual tables.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"
#include "serialize/VrwSerializeObserver.h"

#if !defined(_MSC_VER) && defined(__x86_64__)

namespace {

using Vr::VraMesh;
using Vr::VraMeshPrimitive;

constexpr size_t kSlotCount = 57;
// The destructor has two entries: one that destroys and one that also deletes.
constexpr size_t kEntryCount = kSlotCount + 1;
constexpr size_t kDestructorSlot = 1;

constexpr size_t EntryOfSlot(size_t slot) {
    return slot <= kDestructorSlot ? slot : slot + 1;
}

// A pointer to a virtual member function is one more than the byte offset of its entry.
template <class Member>
size_t EntryOf(Member member) {
    static_assert(sizeof(Member) == 2 * sizeof(std::ptrdiff_t));
    std::ptrdiff_t words[2];
    std::memcpy(words, &member, sizeof words);
    EXPECT_EQ(words[0] % 2, 1) << "not virtual";
    EXPECT_EQ(words[1], 0) << "not in the first base";
    return static_cast<size_t>(words[0] - 1) / sizeof(void*);
}

std::vector<const void*> TableOf(const CObject& object) {
    const void* const* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    return std::vector<const void*>(table, table + kEntryCount);
}

// Makes the protected operations reachable; the pointers stay the base class's.
class Reach : public VraMeshPrimitive {
public:
    using VraMeshPrimitive::OnDuplicate;
    using VraMeshPrimitive::OnMergeSameColor;
    using VraMeshPrimitive::OnMergeSameNormal;
    using VraMeshPrimitive::OnMergeSameVertex;
    using VraMeshPrimitive::OnRemoveDegenerateMesh;
    using VraMeshPrimitive::Serialize;
};

struct Slot {
    size_t number;
    const char* name;
    size_t entry;
};

#define VERIDANE_SLOT(number, name)                     \
    Slot {                                              \
        number, #name, EntryOf(&VraMeshPrimitive::name) \
    }
#define VERIDANE_PROTECTED_SLOT(number, name) \
    Slot {                                    \
        number, #name, EntryOf(&Reach::name)  \
    }
#define VERIDANE_ACCESSOR_SLOTS(number, name)                                             \
    VERIDANE_SLOT(number, Set##name##Array), VERIDANE_SLOT(number + 1, Get##name##Array), \
        VERIDANE_SLOT(number + 2, GetModifiable##name##Array)

std::vector<Slot> AllSlotsButTheDestructor() {
    return {VERIDANE_SLOT(0, GetRuntimeClass),
            VERIDANE_PROTECTED_SLOT(2, Serialize),
            VERIDANE_SLOT(3, AssertValid),
            VERIDANE_SLOT(4, Dump),
            VERIDANE_PROTECTED_SLOT(5, OnDuplicate),
            VERIDANE_SLOT(6, IsNormalPerVertex),
            VERIDANE_SLOT(7, IsColorPerVertex),
            VERIDANE_SLOT(8, IsEmpty),
            VERIDANE_ACCESSOR_SLOTS(9, Vertex),
            VERIDANE_ACCESSOR_SLOTS(12, Normal),
            VERIDANE_ACCESSOR_SLOTS(15, Color),
            VERIDANE_ACCESSOR_SLOTS(18, VertexIndex),
            VERIDANE_ACCESSOR_SLOTS(21, NormalIndex),
            VERIDANE_ACCESSOR_SLOTS(24, ColorIndex),
            VERIDANE_ACCESSOR_SLOTS(27, TextureUVIndex),
            VERIDANE_ACCESSOR_SLOTS(30, UV),
            VERIDANE_ACCESSOR_SLOTS(33, TextureUV),
            VERIDANE_SLOT(36, GetCreaseAngle),
            VERIDANE_SLOT(37, SetCreaseAngle),
            VERIDANE_SLOT(38, CreateNormalPerTriangle),
            VERIDANE_SLOT(39, CreateNormalPerVertex),
            VERIDANE_SLOT(40, GetTriangleArea),
            VERIDANE_SLOT(41, SetDataAsBox),
            VERIDANE_SLOT(42, SetDataAsCone),
            VERIDANE_SLOT(43, SetDataAsCylinder),
            VERIDANE_SLOT(44, MergeSameData),
            VERIDANE_SLOT(45, DeleteFacetFaces),
            {46, "DeleteUnusedVertices",
             EntryOf(static_cast<void (VraMeshPrimitive::*)()>(
                 &VraMeshPrimitive::DeleteUnusedVertices))},
            VERIDANE_SLOT(47, Transform),
            VERIDANE_SLOT(48, Scale),
            VERIDANE_SLOT(49, CalcBoundingBox),
            VERIDANE_SLOT(50, ShallowCopy),
            VERIDANE_SLOT(51, CalcVolume),
            VERIDANE_SLOT(52, GetFreeEdges),
            VERIDANE_PROTECTED_SLOT(53, OnMergeSameVertex),
            VERIDANE_PROTECTED_SLOT(54, OnMergeSameNormal),
            VERIDANE_PROTECTED_SLOT(55, OnMergeSameColor),
            VERIDANE_PROTECTED_SLOT(56, OnRemoveDegenerateMesh)};
}

TEST(VirtualSlots, EveryOperationStandsInItsSlot) {
    const std::vector<Slot> slots = AllSlotsButTheDestructor();
    EXPECT_EQ(slots.size(), kSlotCount - 1);
    for (const Slot& slot : slots)
        EXPECT_EQ(slot.entry, EntryOfSlot(slot.number)) << slot.name;
}

TEST(VirtualSlots, TheTwoEntriesLeftAreTheDestructors) {
    std::set<size_t> left;
    for (size_t entry = 0; entry < kEntryCount; ++entry)
        left.insert(entry);
    for (const Slot& slot : AllSlotsButTheDestructor())
        left.erase(slot.entry);
    EXPECT_EQ(left, (std::set<size_t>{kDestructorSlot, kDestructorSlot + 1}));
}

TEST(VirtualSlots, TheFirstFiveAreThoseOfCObject) {
    EXPECT_EQ(EntryOf(&CObject::GetRuntimeClass), EntryOfSlot(0));
    EXPECT_EQ(EntryOf(&CObject::Serialize), EntryOfSlot(2));
    EXPECT_EQ(EntryOf(&CObject::AssertValid), EntryOfSlot(3));
    EXPECT_EQ(EntryOf(&CObject::Dump), EntryOfSlot(4));
}

TEST(VirtualSlots, VraMeshOverridesItsClassItsDestructorSerializeAndOnDuplicateOnly) {
    const VraMeshPrimitive primitive;
    const VraMesh mesh;
    const std::vector<const void*> primitiveTable = TableOf(primitive);
    const std::vector<const void*> meshTable = TableOf(mesh);
    std::set<size_t> overridden;
    for (size_t entry = 0; entry < kEntryCount; ++entry)
        if (primitiveTable[entry] != meshTable[entry])
            overridden.insert(entry);
    EXPECT_EQ(overridden, (std::set<size_t>{EntryOfSlot(0), kDestructorSlot, kDestructorSlot + 1,
                                            EntryOfSlot(2), EntryOfSlot(5)}));
}

TEST(VirtualSlots, TheObserverIsAskedBeforeItIsTold) {
    EXPECT_EQ(EntryOf(&Vr::VrwSerializeObserver::IsCanceled), 0u);
    EXPECT_EQ(EntryOf(&Vr::VrwSerializeObserver::OnProgress), 1u);
}

}  // namespace

#endif

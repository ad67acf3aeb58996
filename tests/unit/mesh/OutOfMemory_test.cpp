// What the mesh model and its archive do when memory is short, at every allocation in turn. This
// program replaces the global allocation functions, so it holds these tests alone.

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <vector>

#include "mesh/VraMesh.h"
#include "mesh/VruDuplicateMap.h"
#include "mesh/detail/CreateObject.h"
#include "support/Caught.h"
#include "support/FailingAllocation.h"
#include "support/MeshBuilders.h"
#include "support/MeshMatchers.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;
using Vr::VrmArchive;
using Vr::VruDuplicateMap;

// Runs `attempt(number)` with the first, second, third... allocation failing until none fails, and
// returns how many failed. What an attempt leaves behind must be nothing.
template <class Attempt>
std::size_t FailEachAllocation(const Attempt& attempt) {
    for (std::size_t number = 1;; ++number) {
        SCOPED_TRACE("allocation " + std::to_string(number));
        if (!attempt(number))
            return number - 1;
    }
}

TEST(OutOfMemory, CreationFunctionsAnswerNull) {
    for (CRuntimeClass* const record : {RUNTIME_CLASS(VraMeshPrimitive), RUNTIME_CLASS(VraMesh)}) {
        CObject* viaFunction = nullptr;
        CObject* viaRecord = nullptr;
        {
            const FailAllocation failure(1, FailAllocation::Fails::kFromThenOn);
            viaFunction = record->m_pfnCreateObject();
            viaRecord = record->CreateObject();
        }
        EXPECT_EQ(viaFunction, nullptr);
        EXPECT_EQ(viaRecord, nullptr);
    }
}

TEST(OutOfMemory, NewItselfThrowsBadAlloc) {
    Caught caught;
    {
        const FailAllocation failure(1);
        try {
            Mesh(new VraMesh);
        } catch (const std::bad_alloc&) {
            caught.kind = "std::bad_alloc";
        }
    }
    EXPECT_EQ(caught, BadAlloc());
}

TEST(OutOfMemory, MeasuresAllocateNothing) {
    const Mesh mesh = Box();
    ON_BoundingBox box;
    const std::size_t before = AllocationCount();
    mesh->CalcBoundingBox(box);
    mesh->GetTriangleArea(3);
    mesh->CalcVolume(ON_3dPoint(0, 0, 0));
    EXPECT_EQ(AllocationCount(), before);
}

TEST(OutOfMemory, ShallowCopyAndAccessorsAllocateNothing) {
    const Mesh mesh = FullSquare();
    const Mesh target = NewPrimitive();
    const std::size_t before = AllocationCount();
    mesh->ShallowCopy(target);
    target->SetUVArray(mesh->GetModifiableUVArray());
    EXPECT_EQ(AllocationCount(), before);
}

TEST(OutOfMemory, DuplicateThrowsAndLeavesNothingBehind) {
    const Mesh source = FullSquare();
    const std::size_t failed = FailEachAllocation([&](std::size_t number) {
        const std::size_t before = LiveAllocations();
        Caught caught;
        bool hasHappened = false;
        {
            const FailAllocation failure(number);
            caught = CaughtFrom([&] { source->Duplicate(); });
            hasHappened = failure.HasHappened();
        }
        EXPECT_EQ(caught, hasHappened ? BadAlloc() : Nothing());
        caught = Caught();
        EXPECT_EQ(LiveAllocations(), before);
        return hasHappened;
    });
    // The object, eight arrays with their contents, and the map's own blocks.
    EXPECT_GE(failed, 1u + 8 * 2 + 9);
    ExpectBitEqual(*source, *FullSquare());
}

TEST(OutOfMemory, AFailedDuplicateIsNotRecorded) {
    const Mesh source = FullSquare();
    FailEachAllocation([&](std::size_t number) {
        VruDuplicateMap map;
        Mesh kept;
        bool hasHappened = false;
        {
            const FailAllocation failure(number);
            CaughtFrom([&] { kept = source->Duplicate(map); });
            hasHappened = failure.HasHappened();
        }
        EXPECT_EQ(kept == nullptr, hasHappened);
        // The pass goes on: the duplicate is whole, and found again.
        const Mesh duplicate = source->Duplicate(map);
        duplicate->SetUVArray(source->GetModifiableUVArray());
        EXPECT_TRUE(AreBitEqual(*duplicate, *source));
        EXPECT_EQ(source->Duplicate(map), duplicate);
        return hasHappened;
    });
}

TEST(OutOfMemory, DeepCopyKeepsWhatItAssignedInItsFixedOrder) {
    constexpr Role kOrder[] = {kVertices,         kNormals,    kColors,        kVertexIndices,
                               kTextureUVIndices, kTextureUVs, kNormalIndices, kColorIndices};
    const Mesh source = FullSquare();
    std::set<std::size_t> assignedCounts;
    FailEachAllocation([&](std::size_t number) {
        const Mesh target = FullSquare();
        const ArrayAddresses before = AddressesOf(*target);
        VruDuplicateMap map;
        bool hasHappened = false;
        {
            const FailAllocation failure(number);
            CaughtFrom([&] { source->DeepCopy(target, map); });
            hasHappened = failure.HasHappened();
        }
        const ArrayAddresses after = AddressesOf(*target);
        std::size_t assigned = 0;
        while (assigned < 8 && after[kOrder[assigned]] != before[kOrder[assigned]])
            ++assigned;
        for (std::size_t place = assigned; place < 8; ++place)
            EXPECT_EQ(after[kOrder[place]], before[kOrder[place]]) << NameOf(kOrder[place]);
        EXPECT_EQ(after[kUVs], before[kUVs]);
        assignedCounts.insert(assigned);
        return hasHappened;
    });
    EXPECT_EQ(assignedCounts, (std::set<std::size_t>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(OutOfMemory, AFailedLoadKeepsTheArraysReadSoFar) {
    const Mesh source = FullSquare();
    const Bytes body = StoredBody(*source);
    const std::size_t failed = FailEachAllocation([&](std::size_t number) {
        const std::size_t before = LiveAllocations();
        bool hasHappened = false;
        {
            const Mesh target = NewPrimitive();
            LoadedFrom loaded(body);
            Caught caught;
            {
                const FailAllocation failure(number);
                caught = CaughtFrom([&] { SerializeBody(*target, loaded.archive); });
                hasHappened = failure.HasHappened();
            }
            EXPECT_EQ(caught, hasHappened ? BadAlloc() : Nothing());
            const ArrayAddresses after = AddressesOf(*target);
            const Role order[] = {kVertices,      kNormals,      kColors, kVertexIndices,
                                  kNormalIndices, kColorIndices, kUVs};
            bool isMissing = false;
            for (const Role role : order) {
                EXPECT_FALSE(isMissing && after[role]) << NameOf(role) << " after a missing one";
                isMissing = isMissing || !after[role];
            }
            EXPECT_EQ(isMissing, hasHappened && after[kUVs] == nullptr);
        }
        EXPECT_EQ(LiveAllocations(), before);
        return hasHappened;
    });
    // Seven arrays, their contents and the archive's record of each.
    EXPECT_GE(failed, 7u * 3);
}

TEST(OutOfMemory, AFailedLoadOfAnObjectIsAMemoryExceptionOfThePlatform) {
    // The first object sets up the platform's own tables, so the second needs memory for itself only.
    LoadedFrom loaded(StoredObjects({NewPrimitive(), NewPrimitive()}));
    const Mesh first = loaded.Next();
    Caught caught;
    {
        const FailAllocation failure(1);
        caught = CaughtFrom([&] { loaded.Next(); });
    }
    EXPECT_EQ(caught, PlatformException("CMemoryException"));
}

// Throws what MFC's `operator new` does, and this program's does not.
struct ShortOfMemory : CObject {
    ShortOfMemory() { throw new CMemoryException(TRUE); }
};

TEST(OutOfMemory, ThePlatformsExceptionIsDeletedWhereAnObjectIsToBeCreated) {
    const std::size_t before = LiveAllocations();
    EXPECT_EQ(Vr::detail::CreateObjectOrNull<ShortOfMemory>(), nullptr);
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(OutOfMemory, AFailedStoreThrowsAndChangesNothing) {
    const Mesh source = FullSquare();
    const std::size_t failed = FailEachAllocation([&](std::size_t number) {
        MemoryFile file;
        VrmArchive archive(&file, CArchive::store);
        Caught caught;
        bool hasHappened = false;
        {
            const FailAllocation failure(number);
            caught = CaughtFrom([&] { SerializeBody(*source, archive); });
            hasHappened = failure.HasHappened();
        }
        EXPECT_EQ(caught, hasHappened ? BadAlloc() : Nothing());
        archive.Abort();
        return hasHappened;
    });
    EXPECT_GE(failed, 7u) << "one number for each array";
    ExpectBitEqual(*source, *FullSquare());
}

TEST(OutOfMemory, AFailedAssignmentOfAnArchiveCopiesTheWrittenNumbersFirst) {
    // An archive with one table of each kind: assigned from a storing and loaded into.
    const Mesh mesh = SingleTriangle();
    MemoryFile storedFile;
    VrmArchive storing(&storedFile, CArchive::store);
    SerializeBody(*mesh, storing);
    storing.Flush();
    LoadedFrom source(StoredBody(*mesh));
    source.archive = storing;
    const Mesh loaded = NewPrimitive();
    SerializeBody(*loaded, source.archive);

    std::vector<long> loadedCounts;
    FailEachAllocation([&](std::size_t number) {
        MemoryFile file;
        VrmArchive target(&file, CArchive::store);
        bool hasHappened = false;
        Caught caught;
        {
            const FailAllocation failure(number);
            caught = CaughtFrom([&] { target = source.archive; });
            hasHappened = failure.HasHappened();
        }
        EXPECT_EQ(caught, hasHappened ? BadAlloc() : Nothing());
        loadedCounts.push_back(loaded->GetVertexArray().use_count());
        // Whatever was taken over, the archive works.
        SerializeBody(*mesh, target);
        target.Close();
        return hasHappened;
    });
    // Two written numbers, then two loaded arrays: the vertices come first among those. The mesh,
    // the source archive, this handle, and at last the target hold them.
    EXPECT_EQ(loadedCounts.front(), 3);
    EXPECT_EQ(loadedCounts.back(), 4);
    EXPECT_GE(loadedCounts.size(), 5u);
}

}  // namespace

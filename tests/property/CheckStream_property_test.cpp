// Laws of the check on random documents: what the library stores of consistent meshes is safe, and
// what is safe, by luck after damage too, loads and can be worked on.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "support/CheckedDocuments.h"
#include "support/ConsistentDocument.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/Random.h"
#include "support/StoreLoad.h"

namespace {

using namespace Vr::test;
using Vr::CheckDocument;
using Vr::CheckReport;
using Vr::VraMeshPrimitive;

CheckReport Check(const Bytes& bytes) {
    return CheckDocument(bytes.data(), bytes.size());
}

TEST(CheckLaw, WhatIsStoredOfConsistentMeshesIsSafe) {
    for (std::size_t round = 0; round < 400; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> objects = ConsistentDocument(random);
        const Bytes bytes = StoredObjects(objects);
        const CheckReport report = Check(bytes);
        ASSERT_EQ(report.findingCount, 0u) << report.findings[0].text;
        std::set<const VraMeshPrimitive*> distinct;
        for (const Mesh& mesh : objects)
            if (mesh)
                distinct.insert(mesh.get());
        ASSERT_EQ(report.readCount, objects.size());
        ASSERT_EQ(report.objectCount, distinct.size());
        ASSERT_TRUE(LoadsAsReported(bytes, report));
    }
}

TEST(CheckLaw, WhatIsSafeIsConsistent) {
    std::size_t safeCount = 0;
    for (std::size_t round = 0; round < 400; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        std::vector<Mesh> objects;
        while (objects.size() < 3) {
            objects.push_back(RandomMesh(random));
            const Mesh other = random.OneOf(objects);
            // Arrays that need not fit.
            if (random.Chance(30))
                objects.back()->SetVertexArray(other->GetModifiableVertexArray());
            if (random.Chance(30))
                objects.back()->SetColorIndexArray(other->GetModifiableNormalIndexArray());
        }
        const Bytes bytes = StoredObjects(objects);
        const CheckReport report = Check(bytes);
        ASSERT_TRUE(LoadsAsReported(bytes, report));
        if (!report.IsSafe())
            continue;
        ++safeCount;
        for (const Mesh& mesh : objects)
            ASSERT_TRUE(IsConsistent(*mesh));
    }
    EXPECT_GT(safeCount, 20u);
    EXPECT_LT(safeCount, 380u);
}

TEST(CheckLaw, AnInconsistentMeshIsNotSafe) {
    for (std::size_t round = 0; round < 400; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomMesh(random);
        const Mesh other = RandomMesh(random);
        mesh->SetVertexArray(other->GetModifiableVertexArray());
        mesh->SetNormalArray(other->GetModifiableNormalArray());
        mesh->SetColorIndexArray(other->GetModifiableColorIndexArray());
        if (IsConsistent(*mesh))
            continue;
        ASSERT_FALSE(Check(StoredObjects({mesh})).IsSafe());
    }
}

// Flips bits, overwrites numbers, cuts and repeats pieces.
void Damage(Random& random, Bytes& bytes) {
    const std::size_t place = random.Below(bytes.size());
    switch (random.Below(4)) {
        case 0:
            bytes[place] ^= static_cast<BYTE>(1u << random.Below(8));
            break;
        case 1:
            bytes[place] = static_cast<BYTE>(random.Below(4));
            break;
        case 2: {
            const std::size_t size = std::min(bytes.size() - place, random.Below(24));
            bytes.erase(bytes.begin() + static_cast<long>(place),
                        bytes.begin() + static_cast<long>(place + size));
            break;
        }
        default: {
            const std::size_t size = std::min(bytes.size() - place, random.Below(24));
            const Bytes piece(bytes.begin() + static_cast<long>(place),
                              bytes.begin() + static_cast<long>(place + size));
            bytes.insert(bytes.begin() + static_cast<long>(random.Below(bytes.size())),
                         piece.begin(), piece.end());
        }
    }
}

TEST(CheckLaw, DamagedDocumentsLoadAsReported) {
    std::size_t safeCount = 0;
    for (std::size_t round = 0; round < 3000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        Bytes bytes = StoredObjects(ConsistentDocument(random));
        const std::size_t damageCount = 1 + random.Below(3);
        for (std::size_t damage = 0; damage < damageCount && !bytes.empty(); ++damage)
            Damage(random, bytes);
        const CheckReport report = Check(bytes);
        safeCount += report.IsSafe();
        ASSERT_TRUE(LoadsAsReported(bytes, report));
        MemoryFile file(bytes);
        ASSERT_EQ(CheckDocument(file).findingCount, report.findingCount);
    }
    EXPECT_GT(safeCount, 300u) << "damage to coordinates does no harm";
    EXPECT_LT(safeCount, 2700u);
}

}  // namespace

// Laws of duplication on random meshes that share arrays among roles and objects.

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <set>
#include <vector>

#include "mesh/VruDuplicateMap.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Vr::VruDuplicateMap;

// Meshes of which any role may hold an array of another one's same kind.
std::vector<Mesh> RandomFamily(Random& random) {
    std::vector<Mesh> family;
    const std::size_t count = 1 + random.Below(5);
    while (family.size() < count) {
        RandomMeshOptions options;
        options.hasSpecialValues = true;
        options.isVraMesh = random.Chance(50);
        const Mesh mesh = RandomMesh(random, options);
        if (!family.empty()) {
            const Mesh& other = random.OneOf(family);
            if (random.Chance(50))
                mesh->SetVertexArray(other->GetModifiableVertexArray());
            if (random.Chance(30))
                mesh->SetVertexIndexArray(other->GetModifiableTextureUVIndexArray());
            if (random.Chance(30))
                mesh->SetColorIndexArray(other->GetModifiableNormalIndexArray());
            if (random.Chance(30))
                mesh->SetNormalArray(other->GetModifiableNormalArray());
            if (random.Chance(30))
                mesh->SetTextureUVArray(other->GetModifiableUVArray());
        }
        family.push_back(mesh);
    }
    return family;
}

// The addresses of all arrays that are duplicated, mesh by mesh.
std::vector<const void*> CopiedArrays(const std::vector<Mesh>& family) {
    std::vector<const void*> addresses;
    for (const Mesh& mesh : family) {
        const ArrayAddresses all = AddressesOf(*mesh);
        for (std::size_t role = 0; role < kRoleCount; ++role)
            if (role != kUVs)
                addresses.push_back(all[role]);
    }
    return addresses;
}

// Numbers the addresses by first appearance; 0 is a missing array.
std::vector<std::size_t> PatternOf(const std::vector<const void*>& addresses) {
    std::map<const void*, std::size_t> numberOf{{nullptr, 0}};
    std::vector<std::size_t> pattern;
    for (const void* const address : addresses)
        pattern.push_back(numberOf.emplace(address, numberOf.size()).first->second);
    return pattern;
}

void ExpectDuplicateOf(const VraMeshPrimitive& duplicate, const Mesh& original) {
    EXPECT_EQ(duplicate.GetRuntimeClass(), original->GetRuntimeClass());
    EXPECT_EQ(duplicate.GetUVArray(), nullptr);
    const Mesh withoutUVs = NewPrimitive();
    original->ShallowCopy(withoutUVs);
    EXPECT_TRUE(AreBitEqual(duplicate, *withoutUVs));
}

TEST(DuplicateLaw, DuplicatesOfOnePassShareExactlyAsTheOriginalsDo) {
    for (std::size_t round = 0; round < 400; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> family = RandomFamily(random);
        VruDuplicateMap map;
        std::vector<Mesh> duplicates;
        for (const Mesh& mesh : family)
            duplicates.push_back(mesh->Duplicate(map));

        for (std::size_t number = 0; number < family.size(); ++number)
            ExpectDuplicateOf(*duplicates[number], family[number]);
        const std::vector<const void*> originals = CopiedArrays(family);
        const std::vector<const void*> copies = CopiedArrays(duplicates);
        EXPECT_EQ(PatternOf(copies), PatternOf(originals));
        const std::set<const void*> originalSet(originals.begin(), originals.end());
        for (const void* const copy : copies)
            EXPECT_TRUE(copy == nullptr || originalSet.count(copy) == 0);
        if (HasFailure())
            return;
    }
}

TEST(DuplicateLaw, TheOrderOfThePassDoesNotMatter) {
    for (std::size_t round = 0; round < 100; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> family = RandomFamily(random);
        VruDuplicateMap map;
        for (std::size_t number = family.size(); number-- > 0;) {
            const Mesh target = NewPrimitive();
            family[number]->DeepCopy(target, map);
        }
        std::vector<Mesh> duplicates;
        for (const Mesh& mesh : family)
            duplicates.push_back(mesh->Duplicate(map));
        EXPECT_EQ(PatternOf(CopiedArrays(duplicates)), PatternOf(CopiedArrays(family)));
    }
}

TEST(DuplicateLaw, TheOriginalsStayAsTheyWere) {
    for (std::size_t round = 0; round < 100; ++round) {
        Random random(round);
        Random same(round);
        SCOPED_TRACE(random.Trace());
        const std::vector<Mesh> family = RandomFamily(random);
        const std::vector<const void*> before = CopiedArrays(family);
        VruDuplicateMap map;
        for (const Mesh& mesh : family)
            mesh->Duplicate(map)->GetModifiableVertexArray().reset();
        EXPECT_EQ(CopiedArrays(family), before);
        const std::vector<Mesh> untouched = RandomFamily(same);
        for (std::size_t number = 0; number < family.size(); ++number)
            ExpectBitEqual(*family[number], *untouched[number]);
    }
}

TEST(DuplicateLaw, ADuplicateOfADuplicateIsEqual) {
    for (std::size_t round = 0; round < 100; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomMesh(random);
        const Mesh duplicate = mesh->Duplicate();
        const Mesh again = duplicate->Duplicate();
        ExpectBitEqual(*again, *duplicate);
        EXPECT_TRUE(ShareAlike(*again, *duplicate));
        ExpectConsistent(*duplicate);
    }
}

}  // namespace

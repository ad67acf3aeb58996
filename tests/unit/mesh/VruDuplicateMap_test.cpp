#include "mesh/VruDuplicateMap.h"

#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "support/MeshBuilders.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;
using Vr::VruDuplicateMap;

TEST(VruDuplicateMap, CannotBeCopiedAndHasAVirtualDestructor) {
    EXPECT_FALSE(std::is_copy_constructible_v<VruDuplicateMap>);
    EXPECT_FALSE(std::is_copy_assignable_v<VruDuplicateMap>);
    EXPECT_TRUE(std::has_virtual_destructor_v<VruDuplicateMap>);
    EXPECT_TRUE(std::is_default_constructible_v<VruDuplicateMap>);
}

TEST(VruDuplicateMap, KeepsTheCopiesOfArraysAliveButNotTheDuplicates) {
    const Mesh source = SingleTriangle();
    std::weak_ptr<const VraMeshPrimitive::VertexArray> copy;
    {
        VruDuplicateMap map;
        const Mesh target = NewPrimitive();
        source->DeepCopy(target, map);
        copy = target->GetVertexArray();
        target->SetVertexArray(nullptr);
        EXPECT_EQ(copy.use_count(), 1) << "the map's own handle";
        // The copy is found again although no primitive holds it any more.
        const Mesh later = NewPrimitive();
        source->DeepCopy(later, map);
        EXPECT_EQ(later->GetVertexArray(), copy.lock());
    }
    EXPECT_TRUE(copy.expired());
}

TEST(VruDuplicateMap, DoesNotOwnTheDuplicates) {
    struct Watched : VraMeshPrimitive {
        explicit Watched(int& destroyedCount) : count(destroyedCount) {}
        ~Watched() override { ++count; }
        int& count;
    };
    struct Source : VraMeshPrimitive {
        Mesh OnDuplicate(VruDuplicateMap&) const override { return Mesh(new Watched(*destroyed)); }
        int* destroyed = nullptr;
    };
    int destroyedCount = 0;
    const boost::intrusive_ptr<Source> source(new Source);
    source->destroyed = &destroyedCount;
    VruDuplicateMap map;
    Mesh duplicate = source->Duplicate(map);
    duplicate.reset();
    EXPECT_EQ(destroyedCount, 1);
}

TEST(VruDuplicateMap, ServesThroughADerivedClass) {
    struct NamedMap : VruDuplicateMap {
        int passNumber = 1;
    };
    const std::unique_ptr<VruDuplicateMap> map = std::make_unique<NamedMap>();
    const Mesh source = SingleTriangle();
    const Mesh duplicate = source->Duplicate(*map);
    EXPECT_EQ(source->Duplicate(*map), duplicate);
}

}  // namespace

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "mesh/VraMesh.h"
#include "mesh/VraMeshPrimitive.h"
#include "mesh/VruDuplicateMap.h"
#include "support/Caught.h"
#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/RecordingPrimitive.h"

// A class of the host's own that can be created by its record, and one that cannot.
class CHostPrimitive : public Vr::VraMeshPrimitive {
    DECLARE_DYNCREATE(CHostPrimitive)
};
IMPLEMENT_DYNCREATE(CHostPrimitive, Vr::VraMeshPrimitive)

class CUncreatablePrimitive : public Vr::VraMeshPrimitive {
    DECLARE_DYNAMIC(CUncreatablePrimitive)
};
IMPLEMENT_DYNAMIC(CUncreatablePrimitive, Vr::VraMeshPrimitive)

namespace {

using namespace Vr::test;
using ::testing::ElementsAre;
using Vr::VraMesh;
using Vr::VraMeshPrimitive;
using Vr::VruDuplicateMap;

// The addresses without the role that duplication leaves out.
ArrayAddresses WithoutUVs(ArrayAddresses addresses) {
    addresses[kUVs] = nullptr;
    return addresses;
}

TEST(Duplicate, CopiesEveryArrayButTheUVs) {
    const Mesh source = FullSquare();
    const Mesh duplicate = source->Duplicate();
    EXPECT_EQ(duplicate->GetUVArray(), nullptr);

    duplicate->SetUVArray(source->GetModifiableUVArray());
    ExpectBitEqual(*duplicate, *source);
    ExpectConsistent(*duplicate);
    const ArrayAddresses copies = AddressesOf(*duplicate);
    const ArrayAddresses originals = AddressesOf(*source);
    for (std::size_t role = 0; role < kRoleCount; ++role)
        EXPECT_EQ(copies[role] == originals[role], role == kUVs) << NameOf(Role(role));
}

TEST(Duplicate, IsANewObjectWithOneOwner) {
    const Mesh source = SingleTriangle();
    const Mesh duplicate = source->Duplicate();
    EXPECT_NE(duplicate, source);
    EXPECT_EQ(duplicate->GetVertexArray().use_count(), 2) << "the primitive's and this one";
}

TEST(Duplicate, LeavesTheOriginalAsItWas) {
    const Mesh source = FullSquare();
    const ArrayAddresses before = AddressesOf(*source);
    source->Duplicate()->GetModifiableVertexArray()->clear();
    EXPECT_EQ(AddressesOf(*source), before);
    ExpectBitEqual(*source, *FullSquare());
}

TEST(Duplicate, MissingArraysStayMissingAndEmptyOnesComeBackEmpty) {
    const Mesh source = NewPrimitive();
    source->SetVertexArray(Vertices({}));
    source->SetNormalIndexArray(PerVertex({}));
    const Mesh duplicate = source->Duplicate();
    ExpectBitEqual(*duplicate, *source);
    EXPECT_NE(duplicate->GetVertexArray(), source->GetVertexArray());
}

TEST(Duplicate, KeepsTheFormOfIndexArraysAndTheBitsOfTheCreaseAngle) {
    const Mesh source = NewPrimitive();
    source->SetCreaseAngle(std::numeric_limits<double>::quiet_NaN());
    source->SetNormalIndexArray(PerVertex({{{1, 2, 3}}}));
    source->SetColorIndexArray(PerTriangle({4, 7}));
    const Mesh duplicate = source->Duplicate();
    ExpectBitEqual(*duplicate, *source);
    EXPECT_TRUE(duplicate->IsNormalPerVertex());
    EXPECT_FALSE(duplicate->IsColorPerVertex());
}

TEST(Duplicate, RolesThatShareAnArrayShareItsCopy) {
    const Mesh source = FullSquare();
    source->SetColorIndexArray(source->GetModifiableNormalIndexArray());
    source->SetTextureUVIndexArray(source->GetModifiableVertexIndexArray());
    const Mesh duplicate = source->Duplicate();
    duplicate->SetUVArray(UVs({}));
    EXPECT_TRUE(ShareAlike(*duplicate, *source));
    EXPECT_EQ(duplicate->GetColorIndexArray(), duplicate->GetNormalIndexArray());
    EXPECT_EQ(duplicate->GetTextureUVIndexArray(), duplicate->GetVertexIndexArray());
}

TEST(Duplicate, ATextureUVArrayThatIsAlsoTheUVArrayIsCopiedForItsOwnRoleOnly) {
    const Mesh source = FullSquare();
    source->SetTextureUVArray(source->GetModifiableUVArray());
    const Mesh duplicate = source->Duplicate();
    EXPECT_EQ(duplicate->GetUVArray(), nullptr);
    EXPECT_NE(duplicate->GetTextureUVArray(), source->GetTextureUVArray());
    EXPECT_TRUE(SameBits(duplicate->GetTextureUVArray().get(), source->GetTextureUVArray().get()));
}

TEST(Duplicate, PrimitivesOfOnePassShareCopiesAsTheOriginalsShareArrays) {
    const auto [first, second] = SharedPair();
    VruDuplicateMap map;
    const Mesh firstDuplicate = first->Duplicate(map);
    const Mesh secondDuplicate = second->Duplicate(map);
    EXPECT_EQ(firstDuplicate->GetVertexArray(), secondDuplicate->GetVertexArray());
    EXPECT_NE(firstDuplicate->GetVertexArray(), first->GetVertexArray());
    EXPECT_NE(firstDuplicate->GetVertexIndexArray(), secondDuplicate->GetVertexIndexArray());
}

TEST(Duplicate, EqualButSeparateArraysAreCopiedSeparately) {
    const Mesh first = SingleTriangle();
    const Mesh second = SingleTriangle();
    VruDuplicateMap map;
    EXPECT_NE(first->Duplicate(map)->GetVertexArray(), second->Duplicate(map)->GetVertexArray());
}

TEST(Duplicate, SeparatePassesCopySeparately) {
    const auto [first, second] = SharedPair();
    VruDuplicateMap firstMap;
    VruDuplicateMap secondMap;
    const Mesh copies[] = {first->Duplicate(firstMap), second->Duplicate(secondMap),
                           first->Duplicate(), second->Duplicate()};
    for (std::size_t one = 0; one < 4; ++one)
        for (std::size_t other = one + 1; other < 4; ++other)
            EXPECT_NE(copies[one]->GetVertexArray(), copies[other]->GetVertexArray());
}

TEST(Duplicate, TheSameMapGivesTheSameObjectAgain) {
    const Mesh source = FullSquare();
    VruDuplicateMap map;
    const Mesh duplicate = source->Duplicate(map);
    EXPECT_EQ(source->Duplicate(map), duplicate);
    EXPECT_NE(source->Duplicate(), duplicate);
}

TEST(Duplicate, TheObjectIsTheSameAgainAlsoAfterTheOriginalChanged) {
    const Mesh source = FullSquare();
    VruDuplicateMap map;
    const Mesh duplicate = source->Duplicate(map);
    source->SetCreaseAngle(9.0);
    EXPECT_EQ(source->Duplicate(map)->GetCreaseAngle(), 0.5);
}

TEST(Duplicate, HasTheDynamicClassOfTheOriginal) {
    const Mesh host(new CHostPrimitive);
    host->SetVertexArray(Vertices({{1, 2, 3}}));
    const Mesh duplicate = host->Duplicate();
    EXPECT_EQ(duplicate->GetRuntimeClass(), RUNTIME_CLASS(CHostPrimitive));
    EXPECT_NE(dynamic_cast<CHostPrimitive*>(duplicate.get()), nullptr);
    ExpectBitEqual(*duplicate, *host);
    EXPECT_EQ(NewPrimitive()->Duplicate()->GetRuntimeClass(), RUNTIME_CLASS(VraMeshPrimitive));
}

TEST(Duplicate, OfAClassThatCannotBeCreatedIsAnEmptyPointer) {
    const Mesh source(new CUncreatablePrimitive);
    VruDuplicateMap map;
    EXPECT_EQ(source->Duplicate(), nullptr);
    EXPECT_EQ(source->Duplicate(map), nullptr);
    EXPECT_EQ(source->Duplicate(map), nullptr);
}

TEST(Duplicate, AsksOnDuplicateOnceAMap) {
    const boost::intrusive_ptr<RecordingPrimitive> source(new RecordingPrimitive);
    VruDuplicateMap map;
    const Mesh duplicate = source->Duplicate(map);
    EXPECT_THAT(source->Calls(), ElementsAre("OnDuplicate", "GetRuntimeClass"));
    source->ClearCalls();
    EXPECT_EQ(source->Duplicate(map), duplicate);
    EXPECT_THAT(source->Calls(), ElementsAre());
}

// Answers an empty pointer, or throws, the first time it is asked.
class Reluctant : public VraMeshPrimitive {
public:
    explicit Reluctant(bool throws) : throws_(throws) {}
    Mesh OnDuplicate(VruDuplicateMap& map) const override {
        if (++askedCount > 1)
            return VraMeshPrimitive::OnDuplicate(map);
        if (throws_)
            throw std::bad_alloc();
        return nullptr;
    }
    mutable int askedCount = 0;

private:
    bool throws_;
};

TEST(Duplicate, AnEmptyAnswerOfOnDuplicateIsNotRecorded) {
    const boost::intrusive_ptr<Reluctant> source(new Reluctant(false));
    VruDuplicateMap map;
    EXPECT_EQ(source->Duplicate(map), nullptr);
    const Mesh duplicate = source->Duplicate(map);
    EXPECT_NE(duplicate, nullptr);
    EXPECT_EQ(source->Duplicate(map), duplicate);
    EXPECT_EQ(source->askedCount, 2);
}

TEST(Duplicate, AFailureOfOnDuplicatePassesAndIsNotRecorded) {
    const boost::intrusive_ptr<Reluctant> source(new Reluctant(true));
    VruDuplicateMap map;
    EXPECT_EQ(CaughtFrom([&] { source->Duplicate(map); }), BadAlloc());
    EXPECT_NE(source->Duplicate(map), nullptr);
    EXPECT_EQ(source->askedCount, 2);
}

TEST(DeepCopy, AnswersTrueAndCopiesAllButTheUVs) {
    const Mesh source = FullSquare();
    const Mesh target = NewPrimitive();
    VruDuplicateMap map;
    EXPECT_TRUE(source->DeepCopy(target, map));
    target->SetUVArray(source->GetModifiableUVArray());
    ExpectBitEqual(*target, *source);
}

TEST(DeepCopy, HandlesThatAreEmptyHereLeaveTheTargetsAsTheyAre) {
    const Mesh source = NewPrimitive();
    const Mesh target = FullSquare();
    const ArrayAddresses before = AddressesOf(*target);
    source->SetCreaseAngle(0.125);
    VruDuplicateMap map;
    EXPECT_TRUE(source->DeepCopy(target, map));
    EXPECT_EQ(AddressesOf(*target), before);
    EXPECT_EQ(target->GetCreaseAngle(), 0.125);
}

TEST(DeepCopy, TheTargetsUVArrayIsNeverTouched) {
    const Mesh source = FullSquare();
    const Mesh target = NewPrimitive();
    const auto uvs = UVs({{9, 9}});
    target->SetUVArray(uvs);
    VruDuplicateMap map;
    source->DeepCopy(target, map);
    EXPECT_EQ(target->GetUVArray(), uvs);
    EXPECT_EQ(*uvs, *UVs({{9, 9}}));
}

TEST(DeepCopy, ReplacesTheTargetsHandlesAndNotTheirContents) {
    const Mesh source = FullSquare();
    const Mesh target = NewPrimitive();
    const auto old = Vertices({{9, 9, 9}});
    target->SetVertexArray(old);
    VruDuplicateMap map;
    source->DeepCopy(target, map);
    EXPECT_EQ(*old, *Vertices({{9, 9, 9}}));
    EXPECT_NE(target->GetVertexArray(), old);
}

TEST(DeepCopy, ReadsAndWritesMembersAndNotThroughAccessors) {
    const boost::intrusive_ptr<RecordingPrimitive> source(new RecordingPrimitive);
    const boost::intrusive_ptr<RecordingPrimitive> target(new RecordingPrimitive);
    source->SetVertexArray(Vertices({{1, 2, 3}}));
    source->substitutes.vertexArray = Vertices({{9, 9, 9}});
    source->ClearCalls();
    VruDuplicateMap map;
    source->DeepCopy(target, map);
    EXPECT_THAT(source->Calls(), ElementsAre());
    EXPECT_THAT(target->Calls(), ElementsAre());
    EXPECT_EQ(*target->GetVertexArray(), *Vertices({{1, 2, 3}}));
}

TEST(DeepCopy, TwoTargetsOfOnePassShareTheCopies) {
    const Mesh source = FullSquare();
    const Mesh first = NewPrimitive();
    const Mesh second = NewPrimitive();
    VruDuplicateMap map;
    source->DeepCopy(first, map);
    source->DeepCopy(second, map);
    ExpectSameArrays(*second, *first);
}

TEST(DeepCopy, AndDuplicateShareOneMap) {
    const Mesh source = FullSquare();
    const Mesh target = NewPrimitive();
    VruDuplicateMap map;
    source->DeepCopy(target, map);
    ExpectSameArrays(*source->Duplicate(map), *target);
}

TEST(DeepCopy, OntoItselfRecordsTheArrayItReplaced) {
    const auto [first, second] = SharedPair();
    VruDuplicateMap map;
    EXPECT_TRUE(first->DeepCopy(first, map));
    EXPECT_NE(first->GetVertexArray(), second->GetVertexArray());
    EXPECT_EQ(second->Duplicate(map)->GetVertexArray(), first->GetVertexArray());
}

TEST(ShallowCopy, SharesEveryArrayButTheUVs) {
    const Mesh source = FullSquare();
    const Mesh target = NewPrimitive();
    const auto uvs = UVs({{9, 9}});
    target->SetUVArray(uvs);
    source->ShallowCopy(target);
    EXPECT_EQ(WithoutUVs(AddressesOf(*target)), WithoutUVs(AddressesOf(*source)));
    EXPECT_EQ(target->GetUVArray(), uvs);
    EXPECT_EQ(target->GetCreaseAngle(), 0.5);
}

TEST(ShallowCopy, HandlesThatAreEmptyHereBecomeEmptyThere) {
    const Mesh source = NewPrimitive();
    const Mesh target = FullSquare();
    const auto uvs = target->GetUVArray();
    source->ShallowCopy(target);
    EXPECT_EQ(WithoutUVs(AddressesOf(*target)), ArrayAddresses{});
    EXPECT_EQ(target->GetUVArray(), uvs);
    EXPECT_EQ(target->GetCreaseAngle(), 0.0);
}

TEST(ShallowCopy, AnEditInPlaceIsSeenThroughBoth) {
    const Mesh source = SingleTriangle();
    const Mesh target = NewPrimitive();
    source->ShallowCopy(target);
    source->GetModifiableVertexIndexArray()->clear();
    EXPECT_TRUE(target->IsEmpty());
}

TEST(ShallowCopy, AsksTheGettersInAFixedOrderAndNotTheTargetsSetters) {
    const boost::intrusive_ptr<RecordingPrimitive> source(new RecordingPrimitive);
    const boost::intrusive_ptr<RecordingPrimitive> target(new RecordingPrimitive);
    const auto substitute = Colors({1, 2});
    source->SetColorArray(Colors({3}));
    source->substitutes.colorArray = substitute;
    source->ClearCalls();
    source->ShallowCopy(target);
    EXPECT_THAT(source->Calls(),
                ElementsAre("ShallowCopy", "GetVertexArray", "GetNormalArray", "GetColorArray",
                            "GetVertexIndexArray", "GetTextureUVArray", "GetTextureUVIndexArray",
                            "GetNormalIndexArray", "GetColorIndexArray"));
    EXPECT_THAT(target->Calls(), ElementsAre());
    EXPECT_EQ(target->GetColorArray(), substitute);
}

TEST(ShallowCopy, OntoItselfChangesNothing) {
    const Mesh mesh = FullSquare();
    const ArrayAddresses before = AddressesOf(*mesh);
    mesh->ShallowCopy(mesh);
    EXPECT_EQ(AddressesOf(*mesh), before);
    ExpectBitEqual(*mesh, *FullSquare());
}

TEST(ShallowCopy, LetsGoOfTheTargetAfterwards) {
    const Mesh source = FullSquare();
    Mesh target = NewPrimitive();
    source->ShallowCopy(target);
    const std::weak_ptr<const VraMeshPrimitive::UVArray> watched = [&] {
        target->SetUVArray(UVs({}));
        return target->GetUVArray();
    }();
    target.reset();
    EXPECT_TRUE(watched.expired());
}

}  // namespace

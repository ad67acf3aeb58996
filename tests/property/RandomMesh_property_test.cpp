// The support code itself: random meshes keep their promises, and the comparisons see what they
// should.

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>

#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"
#include "support/RecordingPrimitive.h"

namespace {

using namespace Vr::test;

TEST(RandomMesh, IsAlwaysConsistentAndReachesEveryShape) {
    std::set<std::string> seen;
    for (std::size_t round = 0; round < 2000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = RandomMesh(random);
        ASSERT_TRUE(IsConsistent(*mesh));
        seen.insert(mesh->IsNormalPerVertex() ? "per vertex" : "per triangle");
        if (mesh->IsEmpty() && mesh->GetVertexIndexArray())
            seen.insert("no triangles");
        const ArrayAddresses arrays = AddressesOf(*mesh);
        for (std::size_t role = 0; role < kRoleCount; ++role)
            if (!arrays[role])
                seen.insert(std::string("no ") + NameOf(static_cast<Role>(role)));
        if (arrays[kNormalIndices] && arrays[kNormalIndices] == arrays[kColorIndices])
            seen.insert("shared normal and colour indices");
        if (arrays[kVertexIndices] && arrays[kVertexIndices] == arrays[kTextureUVIndices])
            seen.insert("shared vertex and texture-UV indices");
        if (arrays[kUVs] && arrays[kUVs] == arrays[kTextureUVs])
            seen.insert("shared UVs");
    }
    EXPECT_EQ(seen.size(), 3 + kRoleCount + 3) << ::testing::PrintToString(seen);
}

TEST(RandomMesh, TheSameRoundGivesTheSameMesh) {
    Random first(7);
    Random second(7);
    Random other(8);
    const Mesh mesh = RandomMesh(first);
    ExpectBitEqual(*RandomMesh(second), *mesh);
    EXPECT_FALSE(AreBitEqual(*RandomMesh(other), *mesh));
}

TEST(AreBitEqual, SeesASignOfZeroALastBitAFormAndAMissingArray) {
    const Mesh mesh = FullSquare();
    ExpectBitEqual(*FullSquare(), *mesh);

    Mesh changed = FullSquare();
    (*changed->GetModifiableVertexArray())[0].z = -0.0;
    EXPECT_FALSE(AreBitEqual(*changed, *mesh));

    changed = FullSquare();
    (*changed->GetModifiableUVArray())[5].y = std::nextafter(1.0, 2.0);
    EXPECT_FALSE(AreBitEqual(*changed, *mesh));

    changed = FullSquare();
    changed->SetColorIndexArray(PerVertex({}));
    const Mesh perTriangle = FullSquare();
    perTriangle->SetColorIndexArray(PerTriangle({}));
    EXPECT_FALSE(AreBitEqual(*changed, *perTriangle));

    changed->SetColorIndexArray(nullptr);
    EXPECT_FALSE(AreBitEqual(*changed, *perTriangle));

    changed = FullSquare();
    changed->SetCreaseAngle(-0.5);
    EXPECT_FALSE(AreBitEqual(*changed, *mesh));
}

TEST(HaveSameArrays, ComparesAddressesAndNotContents) {
    const Mesh mesh = FullSquare();
    EXPECT_TRUE(HaveSameArrays(*mesh, *mesh));
    const Mesh other = FullSquare();
    other->SetVertexArray(mesh->GetModifiableVertexArray());
    EXPECT_FALSE(HaveSameArrays(*other, *mesh));
    mesh->SetTextureUVArray(mesh->GetModifiableUVArray());
    EXPECT_FALSE(ShareAlike(*mesh, *other));
    EXPECT_TRUE(ShareAlike(*other, *FullSquare()));
}

TEST(IsConsistent, SeesANumberOutOfRangeAndAListOfAnotherLength) {
    const Mesh square = FullSquare();
    EXPECT_TRUE(IsConsistent(*square));
    (*square->GetModifiableVertexIndexArray())[1][2] = 4;
    EXPECT_FALSE(IsConsistent(*square));

    const Mesh shortList = FullSquare();
    shortList->SetColorIndexArray(PerTriangle({0}));
    EXPECT_FALSE(IsConsistent(*shortList));

    const Mesh wrongNormal = FullSquare();
    wrongNormal->SetNormalIndexArray(PerVertex({{{0, 1, 2}}, {{0, 0, 0}}}));
    EXPECT_FALSE(IsConsistent(*wrongNormal));
}

TEST(RecordingPrimitive, NotesCallsInOrderAndAnswersSubstitutes) {
    const boost::intrusive_ptr<RecordingPrimitive> mesh(new RecordingPrimitive);
    const auto substitute = Vertices({{1, 2, 3}});
    mesh->substitutes.vertexArray = substitute;
    mesh->substitutes.uvArray = nullptr;
    mesh->SetUVArray(UVs({{0, 0}}));
    EXPECT_EQ(mesh->GetModifiableVertexArray(), substitute);
    EXPECT_EQ(mesh->GetUVArray(), nullptr);
    EXPECT_EQ(mesh->Calls(),
              (std::vector<std::string>{"SetUVArray", "GetModifiableVertexArray", "GetUVArray"}));
}

}  // namespace

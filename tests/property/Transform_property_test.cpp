#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <vector>

#include "support/MeshBuilders.h"
#include "support/MeshInvariants.h"
#include "support/MeshMatchers.h"
#include "support/Random.h"
#include "support/TransformOracle.h"

namespace {

using namespace Vr::test;
using Vr::VraMeshPrimitive;

ON_Xform RandomTransformation(Random& random) {
    ON_Xform xf(1.0);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            if (random.Chance(row == 3 ? 20 : 70))
                xf.m_xform[row][column] =
                    random.Chance(20) ? RandomCoordinate(random) : random.Between(-3, 3);
    if (random.Chance(15))
        for (double& entry : xf.m_xform[random.Below(3)])
            entry = 0.0;
    return xf;
}

// The sign of a NaN depends on the compiler, so every NaN becomes the same one before comparing.
void UnifyNaNs(VraMeshPrimitive& mesh) {
    if (const auto vertices = mesh.GetModifiableVertexArray())
        for (ON_3dPoint& point : *vertices)
            for (int axis = 0; axis < 3; ++axis)
                if (std::isnan(point[axis]))
                    point[axis] = std::numeric_limits<double>::quiet_NaN();
}

::testing::AssertionResult AreEqual(const Mesh& actual, const Mesh& expected) {
    UnifyNaNs(*actual);
    UnifyNaNs(*expected);
    return AreBitEqual(*actual, *expected);
}

// Two primitives that may share arrays, twice over with the same bits and the same sharing.
struct TwinPairs {
    Mesh actual[2];
    Mesh expected[2];
};

TwinPairs RandomPairs(const Random& seed) {
    TwinPairs pairs;
    for (Mesh* pair : {pairs.actual, pairs.expected}) {
        Random random = seed;
        RandomMeshOptions options;
        options.hasSpecialValues = random.Chance(30);
        pair[0] = RandomMesh(random, options);
        pair[1] = RandomMesh(random, options);
        if (random.Chance(50))
            pair[1]->SetVertexArray(pair[0]->GetModifiableVertexArray());
        if (random.Chance(50))
            pair[1]->SetNormalArray(pair[0]->GetModifiableNormalArray());
    }
    return pairs;
}

TEST(TransformLaws, WalkingTwoPrimitivesWithOneSetIsAsDefined) {
    std::set<bool> outcomes;
    for (std::size_t round = 0; round < 1000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const TwinPairs pairs = RandomPairs(random);
        Random choices(round + 1000000);
        const ON_Xform xf = RandomTransformation(choices);
        std::set<void*> done;
        std::set<void*> doneByDefinition;
        for (std::size_t each = 0; each < 2; ++each) {
            const bool isDone = pairs.actual[each]->Transform(xf, done);
            ASSERT_EQ(isDone, TransformByDefinition(*pairs.expected[each], xf, doneByDefinition));
            outcomes.insert(isDone);
        }
        for (std::size_t each = 0; each < 2; ++each)
            ASSERT_TRUE(AreEqual(pairs.actual[each], pairs.expected[each]));
        ASSERT_EQ(done.size(), doneByDefinition.size());
    }
    EXPECT_EQ(outcomes.size(), 2u);
}

TEST(TransformLaws, ManyNormalsAreTransformedOneByOne) {
    for (std::size_t round = 0; round < 50; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const Mesh mesh = NewPrimitive();
        const auto normals = Normals({});
        for (std::size_t count = random.Below(1000); count > 0; --count)
            normals->push_back(ON_3dVector(RandomCoordinate(random, random.Chance(2)),
                                           random.Between(-1, 1), random.Between(-1, 1)));
        mesh->SetNormalArray(normals);
        const Mesh expected = mesh->Duplicate();
        const ON_Xform xf = RandomTransformation(random);
        std::set<void*> done;
        std::set<void*> doneByDefinition;
        ASSERT_EQ(mesh->Transform(xf, done),
                  TransformByDefinition(*expected, xf, doneByDefinition));
        ASSERT_TRUE(AreEqual(mesh, expected));
    }
}

TEST(ScaleLaws, EveryCoordinateIsMultiplied) {
    for (std::size_t round = 0; round < 300; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const TwinPairs pairs = RandomPairs(random);
        const double factor = RandomCoordinate(random, true);
        ASSERT_TRUE(pairs.actual[0]->Scale(factor));
        if (const auto vertices = pairs.expected[0]->GetModifiableVertexArray())
            for (ON_3dPoint& point : *vertices)
                for (int axis = 0; axis < 3; ++axis)
                    point[axis] *= factor;
        ASSERT_TRUE(AreEqual(pairs.actual[0], pairs.expected[0]));
        ASSERT_TRUE(AreEqual(pairs.actual[1], pairs.expected[1]));
    }
}

TEST(ReverseFacesLaws, ReversalIsAsDefinedWhateverRolesShareAnArray) {
    for (std::size_t round = 0; round < 1000; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const TwinPairs pairs = RandomPairs(random);
        const bool reverseNormals = random.Chance(50);
        const ArrayAddresses before = AddressesOf(*pairs.actual[0]);
        pairs.actual[0]->ReverseFaces(reverseNormals);
        ReverseFacesByDefinition(*pairs.expected[0], reverseNormals);
        ASSERT_TRUE(AreBitEqual(*pairs.actual[0], *pairs.expected[0]));
        ASSERT_EQ(AddressesOf(*pairs.actual[0]), before);
        ExpectConsistent(*pairs.actual[0]);
    }
}

TEST(ReverseFacesLaws, TwiceIsTheIdentity) {
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        const TwinPairs pairs = RandomPairs(random);
        const bool reverseNormals = random.Chance(50);
        pairs.actual[0]->ReverseFaces(reverseNormals);
        pairs.actual[0]->ReverseFaces(reverseNormals);
        ASSERT_TRUE(AreBitEqual(*pairs.actual[0], *pairs.expected[0]));
    }
}

TEST(ReverseFacesLaws, TheVolumeIsNegatedExactly) {
    for (std::size_t round = 0; round < 500; ++round) {
        Random random(round);
        SCOPED_TRACE(random.Trace());
        RandomMeshOptions options;
        options.sharesRoles = false;
        const Mesh mesh = RandomMesh(random, options);
        const ON_3dPoint reference(random.Between(-1, 1), random.Between(-1, 1), 0);
        const double volume = mesh->CalcVolume(reference);
        mesh->ReverseFaces(false);
        ASSERT_EQ(mesh->CalcVolume(reference), -volume);
    }
}

}  // namespace
